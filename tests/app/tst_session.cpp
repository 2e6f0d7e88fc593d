#include "TestBus.h"
#include "TestFirm.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <signal.h>

// The program as a user starts it, one running copy per session. On a private session bus
// a second start hands its firm to the running copy and an automation copy gives way to a
// desktop start; without a bus a lock file keeps the second copy out.
class TestSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void withoutBus();
    void secondStartHandsOver();
    void automationGivesWayToWindow();

private:
    QProcess *run(QProcess &p, const QStringList &args, bool bus = true);
    // Starts a copy that is to end by itself: its exit code, a blank and its standard error.
    QString ended(const QStringList &args, bool bus = true);
    uint ownerPid();
    QString lastFirm() const;
    TestEnv m_env;
    TestEnv m_noBus; // a home of its own for the starts without a bus
    QString m_firms[3];
    QProcess m_first;
    QProcess m_other;
    QList<uint> m_started; // copies the bus or the program started
};

namespace {
const QString Service = QStringLiteral("pl.kontorian.Zlecanki");

QDBusMessage busCall(const QString &method, const QVariantList &args)
{
    QDBusMessage m = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                                    QStringLiteral("org.freedesktop.DBus"), method);
    m.setArguments(args);
    return QDBusConnection::sessionBus().call(m);
}

bool alive(uint pid)
{
    return pid != 0 && ::kill(pid_t(pid), 0) == 0;
}
} // namespace

void TestSession::initTestCase()
{
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "run under dbus-run-session");
    QVERIFY(startProgramsInTestHome(m_env, 60));
    for (int i = 0; i < 3; ++i) {
        m_firms[i] = m_env.newPath(QStringLiteral("firma%1.zlc").arg(i));
        QVERIFY(createFirm(m_firms[i]));
    }
}

void TestSession::cleanup()
{
    for (QProcess *p : {&m_first, &m_other}) {
        if (p->state() != QProcess::NotRunning) {
            p->kill();
            p->waitForFinished(5000);
        }
    }
    for (uint pid : std::as_const(m_started))
        if (alive(pid))
            ::kill(pid_t(pid), SIGKILL);
    m_started.clear();
}

QProcess *TestSession::run(QProcess &p, const QStringList &args, bool bus)
{
    QProcessEnvironment env = (bus ? m_env : m_noBus).processEnvironment();
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    if (!bus)
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=") + m_noBus.root() + QStringLiteral("/brak"));
    p.setProcessEnvironment(env);
    p.start(programPath(), args);
    return &p;
}

QString TestSession::ended(const QStringList &args, bool bus)
{
    if (!run(m_other, args, bus)->waitForFinished(20000))
        return QStringLiteral("still running");
    return QString::number(m_other.exitCode()) + QLatin1Char(' ') + QString::fromLocal8Bit(m_other.readAllStandardError());
}

void TestSession::withoutBus()
{
    // The first start creates the default firm; the copy holds its lock once the firm is open.
    const QString lock = m_noBus.runtimeDir() + QStringLiteral("/zlecanki.lock");
    QVERIFY(run(m_first, {}, false)->waitForStarted(10000));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_noBus.dataHome() + QStringLiteral("/Kontorian/bazy/standardowa.zlc")) &&
                                 QFile::exists(lock),
                             10000);
    QString out = ended({}, false);
    QVERIFY2(out.startsWith(QStringLiteral("1 ")) && out.contains(QStringLiteral("Nie można uruchomić drugiej kopii programu")),
             qPrintable(out));
    QCOMPARE(m_first.state(), QProcess::Running);
    // Automation lives on the session bus: without one it ends at once, saying why.
    out = ended({QStringLiteral("--automation")}, false);
    QVERIFY2(out.startsWith(QStringLiteral("1 ")) && out.contains(QStringLiteral("D-Bus")), qPrintable(out));

    // The first copy crashes, leaving its lock behind: the program starts again all the same.
    ::kill(pid_t(m_first.processId()), SIGKILL);
    QVERIFY(m_first.waitForFinished(5000));
    QVERIFY(QFile::exists(lock));
    out = ended({QStringLiteral("--zamknij-po-starcie")}, false);
    QVERIFY2(out.startsWith(QStringLiteral("0 ")) && !out.contains(QStringLiteral("Zakończyć")), qPrintable(out));
}

uint TestSession::ownerPid()
{
    const QDBusMessage reply = busCall(QStringLiteral("GetConnectionUnixProcessID"), {Service});
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toUInt() : 0;
}

QString TestSession::lastFirm() const
{
    QFile f(m_env.configHome() + QStringLiteral("/Kontorian/Zlecanki.conf"));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

void TestSession::secondStartHandsOver()
{
    QVERIFY(run(m_first, {m_firms[0]})->waitForStarted(10000));
    QTRY_COMPARE_WITH_TIMEOUT(ownerPid(), uint(m_first.processId()), 15000);
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma0.zlc")), 10000);

    // The firm of a second start opens in the running copy; the second one ends quietly.
    QVERIFY(ended({m_firms[1]}).startsWith(QStringLiteral("0 ")));
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma1.zlc")), 10000);

    // Without a firm it is refused as before; an automation start leaves the calls to the window.
    const QString out = ended({});
    QVERIFY2(out.startsWith(QStringLiteral("1 ")) && out.contains(QStringLiteral("Nie można uruchomić drugiej kopii programu")),
             qPrintable(out));
    QVERIFY(ended({QStringLiteral("--automation")}).startsWith(QStringLiteral("0 ")));
    QCOMPARE(ownerPid(), uint(m_first.processId()));
}

void TestSession::automationGivesWayToWindow()
{
    const auto call = [](const QString &method, const QString &firm) {
        QDBusMessage m = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                        QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"), method);
        m << firm;
        return QDBusConnection::sessionBus().call(m, QDBus::Block, 20000);
    };
    // The bus starts the automation copy for a call...
    QCOMPARE(call(QStringLiteral("OtworzBaze"), m_firms[0]).arguments().value(0).toBool(), true);
    const uint automation = ownerPid();
    QVERIFY(alive(automation));
    m_started << automation;

    // ...which, asked for the window, starts a desktop copy that takes its place.
    QCOMPARE(call(QStringLiteral("UruchomZBaza"), m_firms[2]).type(), QDBusMessage::ReplyMessage);
    QTRY_VERIFY_WITH_TIMEOUT(ownerPid() != 0 && ownerPid() != automation, 15000);
    m_started << ownerPid();
    QTRY_VERIFY_WITH_TIMEOUT(!alive(automation), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma2.zlc")), 10000);
}

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
