#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"
#include "documents/Accounts.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentStore.h"
#include "documents/Firm.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <memory>

// The same firm on SQLite and on a PostgreSQL server: the same structure, the same answers,
// and the server's own troubles (foreign objects) told.
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
    void sameAnswersOnBoth_data();
    void sameAnswersOnBoth();
    void otherWorkstationFollowed();
    void foreignObjectsRefused();

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

// A new firm on the server, and one of the oldest layout (the four base tables alone, with
// rows in them) upgraded there twice, have the structure of a new firm file.
void TestServer::sameStructureOnBoth()
{
    QString error;
    QVERIFY2(FirmDatabase::create(serverFirm(QStringLiteral("srv_new")), &error), qPrintable(error));
    // A second creation does not touch the firm that is there.
    QVERIFY(!FirmDatabase::create(serverFirm(QStringLiteral("srv_new")), &error));
    QVERIFY(error.contains(QStringLiteral("nie zostanie nadpisana")));
    QSqlDatabase db = admin();
    QSqlQuery q(db);
    QVERIFY(q.exec(QStringLiteral("CREATE SCHEMA srv_old")));
    QVERIFY(q.exec(QStringLiteral("SET search_path TO srv_old")));
    QVERIFY2(Dialect::definePostgresHelpers(db, &error), qPrintable(error));
    QVERIFY2(Structure::CreateDatabase(db, &error), qPrintable(error));
    QVERIFY(q.exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ, DATA_DOKUMENTU, WARTOSC) VALUES (1, '2003-04-05', 150000)")));
    QVERIFY(q.exec(QStringLiteral("INSERT INTO cykliczne (NAZWA, M1) VALUES ('Czynsz', 1)")));
    Structure::UpgradeStructure(db);
    Structure::UpgradeStructure(db);
    const QString upgraded = structureOf(db);
    QVERIFY(q.exec(QStringLiteral("SET search_path TO public")));

    const QString file = m_env->newPath(QStringLiteral("firma.zlc"));
    QVERIFY2(FirmDatabase::create(file, &error), qPrintable(error));
    const QString onFile = structureOf(openRaw(file, QStringLiteral("s")));
    QVERIFY(onFile.count(QLatin1Char('\n')) > 150);
    QCOMPARE(structureOf(openRaw(serverFirm(QStringLiteral("srv_new")), QStringLiteral("p"))), onFile);
    QCOMPARE(upgraded, onFile);
    // The old rows stay and are repaired as on SQLite; the settings have their one row.
    QSqlDatabase old = openRaw(serverFirm(QStringLiteral("srv_old")), QStringLiteral("a"));
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

    // Documents on the first account, their recipient written otherwise than the contractor.
    QVERIFY(Accounts::charge(db, 1, Money::fromGrosze(-1000000), &error));
    for (const QDate &day : {QDate(2025, 3, 31), QDate(2026, 12, 31)}) {
        PaymentDocument doc = sampleDocument(1, day);
        doc.banknr = 1;
        doc.klientNazwa = QStringLiteral("  łódzki handel ");
        QVERIFY2(DocumentStore::insert(db, doc, &error), qPrintable(error));
    }
    // Every document found its contractor by name; the balance is exact to the grosz.
    QCOMPARE(queryRows(db, QStringLiteral("SELECT count(DISTINCT KLIENT_ID) FROM zlecanki")), QStringLiteral("1"));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT STAN_KONTA1 FROM firma")), QString::number((1000000 - 2 * 123450) * 100));
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
    // An address that cannot be a firm's.
    QVERIFY(!OpenDb(testServer() + QStringLiteral("?password=tajne")));
    QVERIFY(m_dialogs.saw(QStringLiteral("~/.pgpass")));
}

QTEST_GUILESS_MAIN(TestServer)
#include "tst_server.moc"
