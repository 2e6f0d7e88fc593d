#include "TestEnv.h"

#include "AppState.h"

#include <QDir>
#include <QFile>
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
