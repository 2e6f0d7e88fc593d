#include "RecordingDialogs.h"
#include "TestBus.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/Firm.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QSqlQuery>
#include <QTest>

#include <memory>

// An office's two workstations issuing transfers into one firm on the database server at
// once: an automation copy of the program on each (each started by a session bus of its
// own), a thousand calls to each, and now and then both their connections cut in the middle
// of a save. Every caller's reference ends up with one document, and the balance is exact.
class TestSharedFirm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void twoServersOneFirm();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QProcess m_secondBus;
    QString m_firm;
};

namespace {

const QString Service = QStringLiteral("pl.kontorian.Zlecanki");
const QString SecondBus = QStringLiteral("drugi");

QDBusMessage request(const QString &method, const QVariantList &args)
{
    QDBusMessage m = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                    QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"), method);
    m.setArguments(args);
    return m;
}

// The process ids ("{1,2}") of the connections waiting, directly or behind one another, for
// the test's own transaction.
QString heldUp()
{
    // What the server tells of other connections stays as first read within a transaction.
    QSqlQuery(Db()).exec(QStringLiteral("SELECT pg_stat_clear_snapshot()"));
    return stored(QStringLiteral(
        "WITH RECURSIVE held(pid) AS (SELECT pid FROM pg_stat_activity WHERE pg_backend_pid() = ANY(pg_blocking_pids(pid)) "
        "UNION SELECT a.pid FROM pg_stat_activity a JOIN held h ON h.pid = ANY(pg_blocking_pids(a.pid))) "
        "SELECT array_agg(pid ORDER BY pid) FROM held"));
}

} // namespace

void TestSharedFirm::initTestCase()
{
    SKIP_WITHOUT_SERVER();
    if (!firmsOnServer())
        QSKIP("the firm of this test lives on the server (ZLECANKI_TEST_SERVER=1)");
    m_env = std::make_unique<TestEnv>();
    m_dialogs = std::make_unique<RecordingDialogs>();
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "run under dbus-run-session");

    // The first workstation's copy is started by the test's bus, in the test's private home.
    QVERIFY(startProgramsInTestHome(*m_env, 10));

    // The second one's by a bus of its own, which the copy it starts takes for its session bus.
    const QString address = QStringLiteral("unix:path=") + m_env->root() + QStringLiteral("/drugi-bus");
    QProcessEnvironment secondEnv = m_env->processEnvironment();
    secondEnv.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    secondEnv.insert(QStringLiteral("ZLECANKI_AUTOMATION_IDLE"), QStringLiteral("10"));
    m_secondBus.setProcessEnvironment(secondEnv);
    m_secondBus.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--config-file=") + qEnvironmentVariable("ZLECANKI_BINARY_DIR") +
                           QStringLiteral("/dbus-1/session-test.conf"),
                       QStringLiteral("--address=") + address, QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    QVERIFY2(m_secondBus.waitForReadyRead(10000), m_secondBus.readAllStandardError().constData());
    QVERIFY(QDBusConnection::connectToBus(QString::fromUtf8(m_secondBus.readLine().trimmed()), SecondBus).isConnected());

    FirmData firm = sampleFirm();
    firm.accounts[0].bankName = QStringLiteral("Bank 1");
    firm.accounts[0].number = QStringLiteral("12 1020 1026 0000 1234 5678 9010");
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("biuro.zlc")), firm));
    m_firm = firmFile();
}

void TestSharedFirm::cleanupTestCase()
{
    CloseDb();
    QDBusConnection::disconnectFromBus(SecondBus);
    if (m_secondBus.state() != QProcess::NotRunning) {
        m_secondBus.terminate();
        m_secondBus.waitForFinished(10000);
    }
}

void TestSharedFirm::twoServersOneFirm()
{
    QDBusConnection buses[] = {QDBusConnection::sessionBus(), QDBusConnection(SecondBus)};
    // Each copy keeps the firm open between calls, so its one connection has to come back
    // by itself after being cut.
    for (QDBusConnection &bus : buses) {
        const QDBusMessage opened = bus.call(request(QStringLiteral("OtworzBaze"), {m_firm}), QDBus::Block, 60000);
        QCOMPARE(opened.arguments().value(0).toBool(), true);
    }

    constexpr int Calls = 1000;
    const char *marks[] = {"A", "B"};
    qlonglong total = 0;
    for (int i = 1; i <= Calls; ++i) {
        QStringList values[2];
        QString references[2];
        bool answered[2] = {};
        for (int s = 0; s < 2; ++s) {
            references[s] = QStringLiteral("%1/%2").arg(QLatin1String(marks[s])).arg(i);
            // Both take the same recipients, new ones among them, at the same moments.
            values[s] = QStringList{m_firm, QStringLiteral("1"), QString(), QStringLiteral("Odbiorca %1").arg(i % 7),
                                    QStringLiteral("Kwiatowa 7"), QStringLiteral("31-000"), QStringLiteral("Kraków"),
                                    QStringLiteral("mBank"), QStringLiteral("FV"), references[s],
                                    QStringLiteral("%1,%2").arg(i).arg(s * 50 + i % 50, 2, 10, QLatin1Char('0')),
                                    QStringLiteral("05-03-2026"), QStringLiteral("45 1140 2004 0000 3002 0123 4567"), QString()};
            total += qlonglong(i) * 10000 + (s * 50 + i % 50) * 100;
        }
        // Every hundredth pair is held up by the test at the balance, its documents already
        // written, and both connections are cut there.
        const bool cut = i % 100 == 50;
        if (cut) {
            QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("BEGIN")));
            QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("SELECT 1 FROM firma FOR UPDATE")));
        }
        for (int attempt = 0; attempt < 5 && !(answered[0] && answered[1]); ++attempt) {
            QDBusPendingCall pending[2] = {
                buses[0].asyncCall(request(QStringLiteral("WystawPrzelew"), {values[0], references[0]}), 60000),
                buses[1].asyncCall(request(QStringLiteral("WystawPrzelew"), {values[1], references[1]}), 60000)};
            if (cut && attempt == 0) {
                QTRY_COMPARE_WITH_TIMEOUT(heldUp().count(u','), 1, 30000);
                QCOMPARE(stored(QStringLiteral("SELECT count(pg_terminate_backend(pid)) FROM unnest('%1'::int[]) pid").arg(heldUp())),
                         QStringLiteral("2"));
                QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("ROLLBACK")));
            }
            for (int s = 0; s < 2; ++s) {
                pending[s].waitForFinished();
                const QDBusMessage reply = pending[s].reply();
                if (cut && attempt == 0) {
                    // Told in Polish; the caller calls again with the same reference.
                    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
                    QVERIFY2(reply.errorMessage().contains(QStringLiteral("Utracono połączenie z serwerem")),
                             qPrintable(reply.errorMessage()));
                } else {
                    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage,
                             qPrintable(references[s] + QLatin1String(": ") + reply.errorMessage()));
                    answered[s] = true;
                }
            }
        }
        QVERIFY2(answered[0] && answered[1], qPrintable(references[0]));
    }

    // Read again on a connection of the test's own, after both copies are done: each reference
    // names a document of its own call.
    QCOMPARE(stored(QStringLiteral("SELECT count(*) || '|' || (SELECT count(*) FROM OdwolaniaSerwera o JOIN zlecanki z ON "
                                   "z.ID = o.ZlecenieId AND z.ZA_DOKUMENT_NAZWA = o.Odwolanie) FROM zlecanki")),
             QStringLiteral("%1|%1").arg(2 * Calls));
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA1 FROM firma")).toLongLong(), -total);
    // The recipients new to the firm joined its contractors once each, whichever copy came first.
    QCOMPARE(stored(QStringLiteral("SELECT count(*) || '|' || count(DISTINCT NAZWA) FROM kontrahenci")), QStringLiteral("7|7"));
}

QTEST_MAIN(TestSharedFirm)
#include "tst_sharedfirm.moc"
