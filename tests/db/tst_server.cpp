#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"
#include "documents/Accounts.h"
#include "documents/BrowseQuery.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentStore.h"
#include "documents/Firm.h"
#include "documents/ScheduledPayments.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <memory>

// The same firm on SQLite and on a PostgreSQL server: the same structure, the same answers,
// and the server's own troubles (foreign objects, a lost connection) told and survived.
namespace {

// Every column of the program's tables: name, kind of value, width and default, one per line,
// in a form that does not depend on the engine.
QString structureOf(const QSqlDatabase &db)
{
    QStringList lines;
    for (const Structure::Table &t : Structure::fullTables()) {
        QSqlQuery q(db);
        if (Dialect::isPostgres(db)) {
            q.prepare(QStringLiteral("SELECT column_name, column_default FROM information_schema.columns WHERE "
                                     "table_schema = current_schema() AND table_name = lower(?)"));
        } else {
            q.prepare(QStringLiteral("SELECT name, dflt_value FROM pragma_table_info(?)"));
        }
        q.addBindValue(t.name);
        QHash<QString, QString> defaults;
        if (q.exec())
            while (q.next())
                defaults.insert(q.value(0).toString().toLower(),
                                q.value(1).toString().remove(QRegularExpression(QStringLiteral("::[\\w ]+$"))));
        for (const auto &[name, declared] : Dialect::columns(db, t.name))
            lines << QStringLiteral("%1.%2 %3 %4 %5")
                         .arg(t.name.toLower(), name.toLower())
                         .arg(int(Structure::typeOfDeclared(declared)))
                         .arg(declared.startsWith(QLatin1String("VARCHAR"), Qt::CaseInsensitive) ? declared.toUpper()
                                                                                                 : QString())
                         .arg(defaults.value(name.toLower()));
    }
    lines.sort();
    return lines.join(QLatin1Char('\n'));
}

QSqlDatabase openRaw(const QString &location, const QString &connection)
{
    bool readOnly = false;
    QString error;
    const auto db = FirmDatabase::open(location, connection, &readOnly, &error);
    if (!db)
        qWarning("%s", qPrintable(error));
    return db.value_or(QSqlDatabase());
}

Contractor named(const QString &name, const QString &city)
{
    Contractor c;
    c.nazwa = name;
    c.miasto = city;
    return c;
}

} // namespace

class TestServer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void sameStructureOnBoth();
    void oldestLayoutUpgraded();
    void sameAnswersOnBoth_data();
    void sameAnswersOnBoth();
    void otherWorkstationFollowed();
    void foreignObjectsRefused();
    void lostConnectionSavesNothingAndReconnects();

private:
    QString serverFirm(const QString &name) { return testServer() + QStringLiteral("?schema=") + name; }
    QSqlDatabase admin();
    std::unique_ptr<TestEnv> m_env;
    RecordingDialogs m_dialogs;
};

void TestServer::initTestCase()
{
    if (testServer().isEmpty())
        QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG");
    m_env = std::make_unique<TestEnv>();
    QSqlQuery q(admin());
    QVERIFY(q.exec(QStringLiteral("SELECT string_agg(format('DROP SCHEMA %I CASCADE', nspname), '; ') FROM pg_namespace "
                                  "WHERE nspname LIKE 'srv_%'")));
    if (q.next() && !q.value(0).toString().isEmpty())
        QVERIFY2(q.exec(q.value(0).toString()), qPrintable(q.lastError().text()));
}

void TestServer::cleanup()
{
    CloseDb();
    for (const char *c : {"a", "b", "s", "p"})
        FirmDatabase::close(QLatin1String(c));
    m_dialogs.clear();
}

QSqlDatabase TestServer::admin()
{
    if (!QSqlDatabase::contains(QStringLiteral("admin")))
        Dialect::connect(*Dialect::parseAddress(testServer()), QStringLiteral("admin"), nullptr);
    return QSqlDatabase::database(QStringLiteral("admin"), false);
}

void TestServer::sameStructureOnBoth()
{
    const QString file = m_env->newPath(QStringLiteral("firma.zlc"));
    QString error;
    QVERIFY2(FirmDatabase::create(file, &error), qPrintable(error));
    QVERIFY2(FirmDatabase::create(serverFirm(QStringLiteral("srv_new")), &error), qPrintable(error));
    // A second creation does not touch the firm that is there.
    QVERIFY(!FirmDatabase::create(serverFirm(QStringLiteral("srv_new")), &error));
    QVERIFY(error.contains(QStringLiteral("nie zostanie nadpisana")));

    const QString onFile = structureOf(openRaw(file, QStringLiteral("s")));
    const QString onServer = structureOf(openRaw(serverFirm(QStringLiteral("srv_new")), QStringLiteral("p")));
    QVERIFY(onFile.count(QLatin1Char('\n')) > 150);
    QCOMPARE(onServer, onFile);
}

void TestServer::oldestLayoutUpgraded()
{
    // The oldest layout: the four base tables alone, with a document in them.
    QSqlDatabase db = admin();
    QSqlQuery q(db);
    QVERIFY(q.exec(QStringLiteral("CREATE SCHEMA srv_old")));
    QVERIFY(q.exec(QStringLiteral("SET search_path TO srv_old")));
    QString error;
    QVERIFY2(Dialect::definePostgresHelpers(db, &error), qPrintable(error));
    QVERIFY2(Structure::CreateDatabase(db, &error), qPrintable(error));
    QVERIFY(q.exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ, DATA_DOKUMENTU, WARTOSC) VALUES (1, '2003-04-05', 150000)")));
    QVERIFY(q.exec(QStringLiteral("INSERT INTO cykliczne (NAZWA, M1) VALUES ('Czynsz', 1)")));
    Structure::UpgradeStructure(db);
    const QString once = structureOf(db);
    Structure::UpgradeStructure(db);
    QCOMPARE(structureOf(db), once);
    QVERIFY(q.exec(QStringLiteral("SET search_path TO public")));

    const QString file = m_env->newPath(QStringLiteral("nowa.zlc"));
    QVERIFY2(FirmDatabase::create(file, &error), qPrintable(error));
    QCOMPARE(once, structureOf(openRaw(file, QStringLiteral("s"))));
    // The old rows stay and are repaired as on SQLite; the settings have their one row.
    QSqlDatabase old = openRaw(serverFirm(QStringLiteral("srv_old")), QStringLiteral("p"));
    QCOMPARE(queryRows(old, QStringLiteral("SELECT DATA_DOKUMENTU, WARTOSC FROM zlecanki")), QStringLiteral("2003-04-05|150000"));
    QCOMPARE(queryRows(old, QStringLiteral("SELECT NAZWA, LASTWYSTAWM FROM cykliczne")), QStringLiteral("Czynsz|0"));
    QCOMPARE(queryRows(old, QStringLiteral("SELECT Data, Eliksir, KodQR FROM Ustawienia")), QStringLiteral("1|0|1"));
}

void TestServer::sameAnswersOnBoth_data()
{
    QTest::addColumn<bool>("server");
    QTest::newRow("SQLite") << false;
    QTest::newRow("PostgreSQL") << true;
}

void TestServer::sameAnswersOnBoth()
{
    QFETCH(bool, server);
    static int n = 0;
    const QString location = server ? serverFirm(QStringLiteral("srv_answers%1").arg(++n))
                                    : m_env->newPath(QStringLiteral("odpowiedzi%1.zlc").arg(++n));
    QString error;
    QVERIFY2(FirmDatabase::create(location, &error), qPrintable(error));
    QVERIFY(OpenDb(location));
    QSqlDatabase db = Db();

    for (const auto &[name, city] : {std::pair{"Zabrze Stal", "Zabrze"}, {"ŁÓDZKI HANDEL", "ŁÓDŹ"}, {"Lublin Oil", "Lublin"},
                                     {"ćma", "Ćmielów"}, {"Czarny", "Łódź"}})
        QVERIFY(ContractorStore::insert(db, named(QString::fromUtf8(name), QString::fromUtf8(city)), &error));
    QStringList order;
    const auto names = ContractorStore::list(db, &error);
    QVERIFY2(names, qPrintable(error));
    for (const auto &c : *names)
        order << c.nazwa;
    QCOMPARE(order.join(QLatin1Char(',')), QStringLiteral("Czarny,ćma,Lublin Oil,ŁÓDZKI HANDEL,Zabrze Stal"));
    QCOMPARE(ContractorStore::search(db, ContractorStore::SearchBy::Town, QStringLiteral("łódź"), &error).value().size(), 2);
    QCOMPARE(ContractorStore::search(db, ContractorStore::SearchBy::Name, QStringLiteral("%"), &error).value().size(), 0);

    // Documents in three months of two years, on the first account.
    QVERIFY(Accounts::charge(db, 1, Money::fromGrosze(-1000000), &error));
    const QList<QDate> days = {QDate(2025, 3, 31), QDate(2026, 3, 1), QDate(2026, 3, 31), QDate(2026, 4, 1), QDate(2026, 12, 31)};
    for (const QDate &day : days) {
        PaymentDocument doc = sampleDocument(1, day);
        doc.banknr = 1;
        doc.klientNazwa = QStringLiteral("  łódzki handel ");
        QVERIFY2(DocumentStore::insert(db, doc, &error), qPrintable(error));
    }
    auto count = [&](Browse::Filter f) {
        const Browse::Query built = Browse::build(f);
        QSqlQuery q(db);
        q.prepare(QStringLiteral("SELECT count(*) FROM (") + built.sql + QStringLiteral(") x"));
        for (const QVariant &v : built.values)
            q.addBindValue(v);
        return q.exec() && q.next() ? q.value(0).toInt() : -1;
    };
    Browse::Filter f;
    f.period = Browse::Period::Month;
    f.month = 3;
    QCOMPARE(count(f), 3);
    f.period = Browse::Period::Year;
    f.year = 2026;
    QCOMPARE(count(f), 4);
    f.period = Browse::Period::Days;
    f.first = QDate(2026, 3, 31);
    f.last = QDate(2026, 4, 1);
    QCOMPARE(count(f), 2);
    // Every document found its contractor by name; the balance is exact to the grosz.
    QCOMPARE(queryRows(db, QStringLiteral("SELECT count(DISTINCT KLIENT_ID) FROM zlecanki")), QStringLiteral("1"));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT STAN_KONTA1 FROM firma")), QString::number((1000000 - 5 * 123450) * 100));
    // An overflowing balance is refused and leaves the balance as it was.
    QVERIFY(!Accounts::charge(db, 1, Money::fromUnits(std::numeric_limits<qint64>::min() + 1), &error));
    QVERIFY2(error.contains(QStringLiteral("poza zakres")), qPrintable(error));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT STAN_KONTA1 FROM firma")), QString::number((1000000 - 5 * 123450) * 100));
    // A scheduled payment is claimed once a month.
    ScheduledPayment p;
    p.nazwa = QStringLiteral("Czynsz");
    p.months.fill(true);
    p.dzienPlatnosci = p.dzienAlarmu = 1;
    QVERIFY(ScheduledPayments::insert(db, p, &error) == ScheduledPayments::SaveResult::Saved);
    QCOMPARE(ScheduledPayments::claimIssue(db, p.nazwa, 5, &error), std::optional<bool>(true));
    QCOMPARE(ScheduledPayments::claimIssue(db, p.nazwa, 5, &error), std::optional<bool>(false));
}

void TestServer::otherWorkstationFollowed()
{
    const QString location = serverFirm(QStringLiteral("srv_shared"));
    QString error;
    QVERIFY2(FirmDatabase::create(location, &error), qPrintable(error));
    QVERIFY(OpenDb(location));
    QSignalSpy changed(&FirmEvents::instance(), &FirmEvents::changedElsewhere);
    // Another workstation: a connection of its own saves a document paid from account 1.
    QSqlDatabase other = openRaw(location, QStringLiteral("b"));
    PaymentDocument doc = sampleDocument(1);
    doc.banknr = 1;
    QVERIFY2(DocumentStore::insert(other, doc, &error), qPrintable(error));
    QTRY_VERIFY(changed.count() > 0);
    QCOMPARE(Accounts::list()[0].balance, Money::fromGrosze(-123450));
    // This workstation's own saves are not announced back to it.
    changed.clear();
    QVERIFY(DocumentStore::insert(Db(), doc, &error));
    QTest::qWait(300);
    QCOMPARE(changed.count(), 0);
}

void TestServer::foreignObjectsRefused()
{
    QString error;
    QVERIFY2(FirmDatabase::create(serverFirm(QStringLiteral("srv_foreign")), &error), qPrintable(error));
    QSqlQuery q(admin());
    QVERIFY(q.exec(QStringLiteral("CREATE FUNCTION srv_foreign.nic() RETURNS trigger LANGUAGE plpgsql AS $$BEGIN RETURN NEW; END$$")));
    QVERIFY(q.exec(QStringLiteral("CREATE TRIGGER podmiana BEFORE INSERT ON srv_foreign.zlecanki FOR EACH ROW EXECUTE FUNCTION srv_foreign.nic()")));
    QVERIFY(q.exec(QStringLiteral("CREATE RULE cicho AS ON UPDATE TO srv_foreign.firma DO INSTEAD NOTHING")));
    QVERIFY(!OpenDb(serverFirm(QStringLiteral("srv_foreign"))));
    QVERIFY(!isFirmOpen());
    const QString shown = m_dialogs.calls.last().text;
    QVERIFY2(shown.contains(QStringLiteral("wyzwalacz podmiana na tabeli zlecanki")) &&
                 shown.contains(QStringLiteral("reguła cicho na tabeli firma")),
             qPrintable(shown));
    // Not a firm at all, and an address that cannot be one.
    QVERIFY(!OpenDb(serverFirm(QStringLiteral("srv_nothing"))));
    QVERIFY(m_dialogs.saw(QStringLiteral("nie ma bazy danych firmy")));
    QVERIFY(!OpenDb(testServer() + QStringLiteral("?password=tajne")));
    QVERIFY(m_dialogs.saw(QStringLiteral("~/.pgpass")));
}

void TestServer::lostConnectionSavesNothingAndReconnects()
{
    const QString location = serverFirm(QStringLiteral("srv_lost"));
    QString error;
    QVERIFY2(FirmDatabase::create(location, &error), qPrintable(error));
    QVERIFY(OpenDb(location));
    QSqlDatabase db = Db();
    QVERIFY(Accounts::charge(db, 1, Money::fromGrosze(-50000), &error));
    // The server drops the connection in the middle of a save: after the document's row,
    // before its balance charge.
    PaymentDocument doc = sampleDocument(1);
    doc.banknr = 1;
    const QString backend = queryRows(db, QStringLiteral("SELECT pg_backend_pid()"));
    const auto cut = [this, backend](QSqlDatabase &, qint32, QString *) {
        QSqlQuery kill(admin());
        kill.exec(QStringLiteral("SELECT pg_terminate_backend(") + backend + QLatin1Char(')'));
        return true;
    };
    QVERIFY(!DocumentStore::insert(db, doc, &error, cut));
    QVERIFY2(error.contains(QStringLiteral("Utracono połączenie")), qPrintable(error));
    // The next use makes the connection again; nothing of the cut save is there.
    QTest::qWait(2100);
    QSqlDatabase again = Db();
    QCOMPARE(queryRows(again, QStringLiteral("SELECT count(*) FROM zlecanki")), QStringLiteral("0"));
    QCOMPARE(queryRows(again, QStringLiteral("SELECT STAN_KONTA1 FROM firma")), QStringLiteral("5000000"));
    QVERIFY2(DocumentStore::insert(again, doc, &error), qPrintable(error));
    QCOMPARE(queryRows(Db(), QStringLiteral("SELECT count(*) FROM zlecanki")), QStringLiteral("1"));
}

QTEST_GUILESS_MAIN(TestServer)
#include "tst_server.moc"
