#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A private home for one test program: its own settings, data and runtime folders, so a
// test never reads or writes the real user's files. Create it before anything touches
// the settings store (initTestCase), keep it alive for the whole run.
class TestEnv {
public:
    TestEnv();
    QString root() const { return m_dir.path(); }
    QString configHome() const;
    QString dataHome() const;
    QString runtimeDir() const;
    // Forgets every stored setting (all applications).
    void clearSettings() const;
    // The environment to hand to a child process so that it shares this home.
    QProcessEnvironment processEnvironment() const;
    // Path of a new, not yet existing file in the private folder.
    QString newPath(const QString &fileName) const;

    // The program run with `args` in this home: exit code (-1 when it crashed or hung) and what it said.
    struct Run {
        int code = -1;
        QString out, err;
    };
    Run run(const QStringList &args) const;

private:
    QTemporaryDir m_dir;
};

// The path of the built program, for tests that run it as a separate process.
QString programPath();

// Writes `bytes` to a new file at `path`; false when it cannot.
bool writeFile(const QString &path, const QByteArray &bytes);
// The whole content of a file, empty when it cannot be read.
QByteArray readFile(const QString &path);
