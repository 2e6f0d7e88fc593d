#include "TestEnv.h"
#include "db/FirmDatabase.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <memory>

#include <signal.h>

// One running copy per session, on a private session bus: a second start hands its firm
// to the running copy, an automation copy gives way to a desktop start.
class TestSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void secondStartHandsOver();
    void automationGivesWayToWindow();

private:
    QProcess *run(QProcess &p, const QStringList &args);
    uint ownerPid();
    QString lastFirm() const;
    std::unique_ptr<TestEnv> m_env;
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
    m_env = std::make_unique<TestEnv>();
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "run under dbus-run-session");
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QMap<QString, QString> env;
    const QProcessEnvironment pe = m_env->processEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME", "QT_QPA_PLATFORM"})
        env.insert(QLatin1String(name), pe.value(QLatin1String(name)));
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    QCOMPARE(busCall(QStringLiteral("UpdateActivationEnvironment"), {QVariant::fromValue(env)}).type(),
             QDBusMessage::ReplyMessage);
    for (int i = 0; i < 3; ++i) {
        m_firms[i] = m_env->newPath(QStringLiteral("firma%1.zlc").arg(i));
        QString error;
        QVERIFY2(FirmDatabase::create(m_firms[i], &error), qPrintable(error));
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

QProcess *TestSession::run(QProcess &p, const QStringList &args)
{
    QProcessEnvironment env = m_env->processEnvironment();
    env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    p.setProcessEnvironment(env);
    p.start(programPath(), args);
    return &p;
}

uint TestSession::ownerPid()
{
    const QDBusMessage reply = busCall(QStringLiteral("GetConnectionUnixProcessID"), {Service});
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toUInt() : 0;
}

QString TestSession::lastFirm() const
{
    QFile f(m_env->configHome() + QStringLiteral("/Kontorian/Zlecanki.conf"));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

void TestSession::secondStartHandsOver()
{
    QVERIFY(run(m_first, {m_firms[0]})->waitForStarted(10000));
    QTRY_COMPARE_WITH_TIMEOUT(ownerPid(), uint(m_first.processId()), 15000);
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma0.zlc")), 10000);

    // The firm of a second start opens in the running copy; the second one ends quietly.
    run(m_other, {m_firms[1]});
    QVERIFY(m_other.waitForFinished(20000));
    QCOMPARE(m_other.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma1.zlc")), 10000);

    // Without a firm it is refused as before; an automation start leaves the calls to the window.
    run(m_other, {});
    QVERIFY(m_other.waitForFinished(20000));
    QCOMPARE(m_other.exitCode(), 1);
    QVERIFY(QString::fromLocal8Bit(m_other.readAllStandardError()).contains(QStringLiteral("Nie można uruchomić drugiej kopii programu")));
    run(m_other, {QStringLiteral("--automation")});
    QVERIFY(m_other.waitForFinished(20000));
    QCOMPARE(m_other.exitCode(), 0);
    QCOMPARE(ownerPid(), uint(m_first.processId()));

    // A crashed copy leaves nothing behind: the bus frees its name.
    m_first.kill();
    QVERIFY(m_first.waitForFinished(5000));
    run(m_other, {QStringLiteral("--zamknij-po-starcie")});
    QVERIFY(m_other.waitForFinished(20000));
    QCOMPARE(m_other.exitCode(), 0);
}

void TestSession::automationGivesWayToWindow()
{
    // The bus starts the automation copy for a call...
    QDBusMessage open = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                       QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"),
                                                       QStringLiteral("OtworzBaze"));
    open << m_firms[0];
    QCOMPARE(QDBusConnection::sessionBus().call(open, QDBus::Block, 20000).arguments().value(0).toBool(), true);
    const uint automation = ownerPid();
    QVERIFY(alive(automation));
    m_started << automation;

    // ...which, asked for the window, starts a desktop copy that takes its place.
    QProcess gdbus;
    gdbus.start(QStringLiteral("gdbus"), {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"), Service,
                                          QStringLiteral("--object-path"), QStringLiteral("/clsSerwer"), QStringLiteral("--method"),
                                          QStringLiteral("pl.kontorian.Zlecanki.clsSerwer.UruchomZBaza"),
                                          QLatin1Char('\'') + m_firms[2] + QLatin1Char('\'')});
    QVERIFY(gdbus.waitForFinished(20000));
    QCOMPARE(gdbus.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(ownerPid() != 0 && ownerPid() != automation, 15000);
    m_started << ownerPid();
    QTRY_VERIFY_WITH_TIMEOUT(!alive(automation), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(lastFirm().contains(QStringLiteral("firma2.zlc")), 10000);
}

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
