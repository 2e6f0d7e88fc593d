#include "TestEnv.h"

#include "AppState.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

TestEnv::TestEnv()
{
    QVERIFY(m_dir.isValid());
    QDir().mkpath(configHome());
    QDir().mkpath(dataHome());
    QDir().mkpath(runtimeDir());
    QFile::setPermissions(runtimeDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_CONFIG_HOME", configHome().toLocal8Bit());
    qputenv("XDG_DATA_HOME", dataHome().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", runtimeDir().toLocal8Bit());
    qputenv("HOME", m_dir.path().toLocal8Bit());
    qunsetenv("ZLECANKI_SUITE_ROOT");
    // Access files are read by the program in a process of its own; a test is not the program.
    if (QFile::exists(programPath()))
        qputenv("ZLECANKI_MDB_READER", QFile::encodeName(programPath()));
    initPaths();
}

QString TestEnv::configHome() const
{
    return m_dir.path() + QStringLiteral("/config");
}

QString TestEnv::dataHome() const
{
    return m_dir.path() + QStringLiteral("/data");
}

QString TestEnv::runtimeDir() const
{
    return m_dir.path() + QStringLiteral("/run");
}

void TestEnv::clearSettings() const
{
    QDir(configHome() + QStringLiteral("/Kontorian")).removeRecursively();
}

QProcessEnvironment TestEnv::processEnvironment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome());
    env.insert(QStringLiteral("XDG_DATA_HOME"), dataHome());
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeDir());
    env.insert(QStringLiteral("HOME"), m_dir.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.remove(QStringLiteral("ZLECANKI_SUITE_ROOT"));
    return env;
}

QString TestEnv::newPath(const QString &fileName) const
{
    const QString path = m_dir.path() + QLatin1Char('/') + fileName;
    QFile::remove(path);
    return path;
}

QString programPath()
{
    const QString dir = qEnvironmentVariable("ZLECANKI_BINARY_DIR");
    return (dir.isEmpty() ? QStringLiteral(".") : dir) + QStringLiteral("/src/zlecanki");
}

TestEnv::Run TestEnv::run(const QStringList &args) const
{
    QProcess p;
    p.setProcessEnvironment(processEnvironment());
    p.start(programPath(), args);
    Run r;
    if (!p.waitForFinished(60000))
        return r;
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
