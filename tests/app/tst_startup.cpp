#include "TestEnv.h"

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
    void secondCopyRefused();
    void wrongOptionRefused();

private:
    void startFirst();
    QProcess *run(const QStringList &args, QProcess *p = nullptr);
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

// Starts the program as a user would, its messages on standard error.
QProcess *TestStartup::run(const QStringList &args, QProcess *p)
{
    if (!p)
        p = &m_second;
    QProcessEnvironment env = m_env->processEnvironment();
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    // No session bus here: the guard falls back to its lock file (tst_session has the bus).
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=") + m_env->root() + QStringLiteral("/brak"));
    p->setProcessEnvironment(env);
    p->start(programPath(), args);
    return p;
}

void TestStartup::startFirst()
{
    QVERIFY(run({}, &m_first)->waitForStarted(10000));
    // The first start creates the default firm; the copy holds its lock once the firm is open.
    const QString firm = m_env->dataHome() + QStringLiteral("/Kontorian/bazy/standardowa.zlc");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(firm) && QFile::exists(m_env->runtimeDir() + QStringLiteral("/zlecanki.lock")),
                             10000);
    QTest::qWait(300);
    QCOMPARE(m_first.state(), QProcess::Running);
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
    // Automation lives on the session bus: without one it ends at once, saying why.
    p = run({QStringLiteral("--automation")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 1);
    QVERIFY(QString::fromLocal8Bit(p->readAllStandardError()).contains(QStringLiteral("D-Bus")));

    // The first copy crashes, leaving its lock behind: the program starts again all the same.
    ::kill(pid_t(m_first.processId()), SIGKILL);
    QVERIFY(m_first.waitForFinished(5000));
    QVERIFY(QFile::exists(m_env->runtimeDir() + QStringLiteral("/zlecanki.lock")));
    p = run({QStringLiteral("--zamknij-po-starcie")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 0);
    QVERIFY(!p->readAllStandardError().contains("Zakończyć"));
}

void TestStartup::wrongOptionRefused()
{
    QProcess *p = run({QStringLiteral("--dzis"), QStringLiteral("30-02-2026")});
    QVERIFY(p->waitForFinished(20000));
    QCOMPARE(p->exitCode(), 2);
    QVERIFY(QString::fromLocal8Bit(p->readAllStandardError()).contains(QStringLiteral("Nieprawidłowa data")));
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
