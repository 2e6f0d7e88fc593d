#include "TestEnv.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <memory>

#include <signal.h>

// The program as a user starts it: real processes, offscreen, messages on standard error.
class TestStartup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void firstStartCreatesDefaultFirm();
    void secondCopyRefused();
    void lockOfCrashedCopyTakenOver();
    void wrongOptionsRefused_data();
    void wrongOptionsRefused();
    void automationStartShowsNothing();

private:
    void startFirst();
    QProcess *run(const QStringList &args);
    std::unique_ptr<TestEnv> m_env;
    QProcess m_first;
    QProcess m_second;
};

void TestStartup::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    QVERIFY2(QFile::exists(programPath()), qPrintable(programPath()));
}

void TestStartup::cleanup()
{
    for (QProcess *p : {&m_first, &m_second}) {
        if (p->state() != QProcess::NotRunning) {
            p->kill();
            p->waitForFinished(5000);
        }
    }
}

QProcess *TestStartup::run(const QStringList &args)
{
    QProcessEnvironment env = m_env->processEnvironment();
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    m_second.setProcessEnvironment(env);
    m_second.start(programPath(), args);
    return &m_second;
}

void TestStartup::startFirst()
{
    QProcessEnvironment env = m_env->processEnvironment();
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    m_first.setProcessEnvironment(env);
    m_first.start(programPath(), {});
    QVERIFY(m_first.waitForStarted(10000));
    // The first copy holds its lock once its firm is open.
    const QString firm = m_env->dataHome() + QStringLiteral("/Kontorian/bazy/standardowa.zlc");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(firm) && QFile::exists(m_env->runtimeDir() + QStringLiteral("/zlecanki.lock")),
                             10000);
    QTest::qWait(300);
    QCOMPARE(m_first.state(), QProcess::Running);
}

void TestStartup::firstStartCreatesDefaultFirm()
{
    QProcess *p = run({QStringLiteral("--zamknij-po-starcie")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 0);
    QVERIFY(QFile::exists(m_env->dataHome() + QStringLiteral("/Kontorian/bazy/standardowa.zlc")));
    QVERIFY(!p->readAllStandardError().contains("Zakończyć"));
}

void TestStartup::secondCopyRefused()
{
    startFirst();
    QProcess *p = run({});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 1);
    QVERIFY(QString::fromLocal8Bit(p->readAllStandardError())
                .contains(QStringLiteral("Nie można uruchomić drugiej kopii programu")));
    QCOMPARE(m_first.state(), QProcess::Running);

    // Once the first copy is gone, the program starts again.
    m_first.kill();
    QVERIFY(m_first.waitForFinished(5000));
    p = run({QStringLiteral("--zamknij-po-starcie")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 0);
}

void TestStartup::lockOfCrashedCopyTakenOver()
{
    startFirst();
    ::kill(pid_t(m_first.processId()), SIGKILL);
    QVERIFY(m_first.waitForFinished(5000));
    QVERIFY(QFile::exists(m_env->runtimeDir() + QStringLiteral("/zlecanki.lock")));
    QProcess *p = run({QStringLiteral("--zamknij-po-starcie")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 0);
}

void TestStartup::wrongOptionsRefused_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("bad working date") << QStringList{"--dzis", "30-02-2026"} << "Nieprawidłowa data";
    QTest::newRow("unknown option") << QStringList{"--kolor"} << "Nieznana opcja";
}

void TestStartup::wrongOptionsRefused()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QProcess *p = run(args);
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 2);
    QVERIFY(QString::fromLocal8Bit(p->readAllStandardError()).contains(message));
}

void TestStartup::automationStartShowsNothing()
{
    startFirst(); // an interactive copy does not stop the automation start
    QProcess *p = run({QStringLiteral("--automation")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 0);
    QVERIFY(p->readAllStandardError().isEmpty());
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
