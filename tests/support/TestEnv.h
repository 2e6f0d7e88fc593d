#pragma once

#include <QProcessEnvironment>
#include <QString>
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

private:
    QTemporaryDir m_dir;
};

// The path of the built program, for tests that run it as a separate process.
QString programPath();
