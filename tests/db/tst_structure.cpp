#include "TestEnv.h"
#include "TestFirm.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"

#include <QSqlQuery>
#include <QTest>

#include <memory>

using namespace Structure;

namespace {

// Every column of every table with its declared type and default, in the order of names.
QString definitions(const QSqlDatabase &db)
{
    return queryRows(db, QStringLiteral("SELECT m.name, p.name, p.type, p.dflt_value FROM sqlite_master m, "
                                   "pragma_table_info(m.name) p WHERE m.type='table' AND m.name NOT LIKE 'sqlite_%' "
                                   "ORDER BY lower(m.name), lower(p.name)"));
}

// Everything a database holds, schema and rows: two equal dumps mean nothing changed.
QString dump(const QSqlDatabase &db)
{
    QString out = queryRows(db, QStringLiteral("SELECT sql FROM sqlite_master ORDER BY name"));
    for (const QString &t : db.tables())
        out += QLatin1Char('\n') + t + QLatin1Char(':') +
               queryRows(db, QStringLiteral("SELECT * FROM ") + quoted(t) + QStringLiteral(" ORDER BY rowid"));
    return out;
}

bool exec(const QSqlDatabase &db, const QString &sql, QString *error = nullptr)
{
    QSqlQuery q(db);
    const bool ok = q.exec(sql);
    if (!ok && error)
        *error = explainError(q.lastError());
    return ok;
}

} // namespace

class TestStructure : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init() { m_path = m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_counter)); }
    void cleanup() { FirmDatabase::close(QStringLiteral("t")); }

    void tablesOfNewDatabase();
    void valuesRefusedNotCut_data();
    void valuesRefusedNotCut();
    void baseStructureUpgradedToFull();
    void nullsAndZeroDatesRepaired();

private:
    QSqlDatabase openNew(bool upgrade);
    std::unique_ptr<TestEnv> m_env;
    QString m_path;
    int m_counter = 0;
};

QSqlDatabase TestStructure::openNew(bool upgrade)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("t"));
    db.setDatabaseName(m_path);
    if (!db.open())
        qFatal("cannot open %s", qPrintable(m_path));
    QString error;
    if (!CreateDatabase(db, &error))
        qFatal("CreateDatabase: %s", qPrintable(error));
    if (upgrade)
        UpgradeStructure(db);
    return db;
}

void TestStructure::tablesOfNewDatabase()
{
    QSqlDatabase db = openNew(true);
    // Types, widths and defaults spelled as the firm files always spelled them.
    const QStringList columns = {
        "CYKLICZNE|NAZWA|VARCHAR(25)|NULL",      "CYKLICZNE|M12|BOOLEAN|NULL",
        "CYKLICZNE|DZIEN_ALARMU|SMALLINT|NULL",  "FIRMA|BANK_NAZWA11|VARCHAR(50)|'nazwa banku'",
        "FIRMA|STAN_KONTA40|CURRENCY|0",         "ZLECANKI|DATA_DOKUMENTU|DATE|NULL"};
    for (const QString &c : columns)
        QCOMPARE(c.section(u'|', 0, 0) + u'|' +
                     queryRows(db, QStringLiteral("SELECT name, type, dflt_value FROM pragma_table_info('%1') "
                                                  "WHERE name='%2'")
                                       .arg(c.section(u'|', 0, 0), c.section(u'|', 1, 1))),
                 c);
    // Documents are keyed by a counter that never reuses a number.
    for (const char *sql : {"INSERT INTO zlecanki (RODZAJ) VALUES (1)", "INSERT INTO zlecanki (RODZAJ) VALUES (1)",
                            "DELETE FROM zlecanki WHERE ID=2", "INSERT INTO zlecanki (RODZAJ) VALUES (1)"})
        QVERIFY2(exec(db, QLatin1String(sql)), sql);
    QCOMPARE(queryRows(db, QStringLiteral("SELECT ID FROM zlecanki")), QStringLiteral("1;3"));
}

void TestStructure::valuesRefusedNotCut_data()
{
    // A scheduled payment named `name` is added beside the one named "Czynsz".
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("message"); // empty: accepted
    const QVariant ok = QStringLiteral("ok");
    QTest::newRow("postal code of 6 Polish letters") << ok << "KLIENT_KOD" << QVariant(QString::fromUtf8("ąęśćżŁ")) << "";
    QTest::newRow("postal code of 7") << ok << "KLIENT_KOD" << QVariant(QString::fromUtf8("ąęśćżŁx"))
                                      << "polu KLIENT_KOD jest za długi: pole mieści najwyżej 6 znaków";
    QTest::newRow("amount as float") << ok << "WARTOSC" << QVariant(1234.5) << "Pole WARTOSC musi zawierać kwotę";
    QTest::newRow("boolean of old engine") << ok << "M1" << QVariant(-1) << "Pole M1 przyjmuje tylko wartość Tak lub Nie";
    QTest::newRow("day out of range") << ok << "DZIEN_ALARMU" << QVariant(70000) << "polu DZIEN_ALARMU jest poza zakresem";
    QTest::newRow("same name") << QVariant(QStringLiteral("Czynsz")) << "DZIEN_ALARMU" << QVariant(7)
                               << "Wartość pola NAZWA już istnieje";
    QTest::newRow("no name") << QVariant() << "DZIEN_ALARMU" << QVariant(7) << "Pole NAZWA nie może być puste";
}

void TestStructure::valuesRefusedNotCut()
{
    QFETCH(QVariant, name);
    QFETCH(QString, column);
    QFETCH(QVariant, value);
    QFETCH(QString, message);
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO cykliczne (NAZWA, DZIEN_ALARMU) VALUES ('Czynsz', 5)")));
    QSqlQuery q(db);
    q.prepare(QStringLiteral("INSERT INTO cykliczne (NAZWA, %1) VALUES (?, ?)").arg(column));
    q.addBindValue(name);
    q.addBindValue(value);
    QCOMPARE(q.exec(), message.isEmpty());
    const QString error = explainError(q.lastError());
    QVERIFY2(message.isEmpty() || error.contains(message), qPrintable(error));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT %1 FROM cykliczne WHERE NAZWA IS NOT 'Czynsz'").arg(column)),
             message.isEmpty() ? value.toString() : QString());
}

// A database from before the NIP columns, the settings tables and the extra bank slots
// reaches the structure of a new firm file.
void TestStructure::baseStructureUpgradedToFull()
{
    QSqlDatabase db = openNew(false);
    for (const char *sql : {"ALTER TABLE cykliczne DROP COLUMN Klient_NIP", "ALTER TABLE zlecanki DROP COLUMN Klient_NIP",
                            "ALTER TABLE kontrahenci DROP COLUMN NIP", "ALTER TABLE firma DROP COLUMN firma_NIP",
                            "INSERT INTO firma (NAZWA) VALUES ('Stara')",
                            "INSERT INTO cykliczne (NAZWA, LASTWYSTAWM) VALUES ('Czynsz', NULL), ('Woda', 3)"})
        QVERIFY2(exec(db, QLatin1String(sql)), sql);
    UpgradeStructure(db);
    const QString freshPath = m_env->newPath(QStringLiteral("fresh.zlc"));
    QVERIFY(FirmDatabase::create(freshPath, nullptr));
    {
        QSqlDatabase fresh = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fresh"));
        fresh.setDatabaseName(freshPath);
        QVERIFY(fresh.open());
        QCOMPARE(definitions(db), definitions(fresh));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fresh"));
    // Scheduled payments without the month of their last issue get 0, so that the due
    // check can list them; a month issued stays.
    QCOMPARE(queryRows(db, QStringLiteral("SELECT LASTWYSTAWM FROM cykliczne ORDER BY NAZWA")), QStringLiteral("0;3"));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, Szary, Eliksir, "
                                          "KodQR FROM Ustawienia")),
             QStringLiteral("1|0|0|1|0|0|0|1")); // the QR code on
    // Rows that were there keep Null in the new columns; later rows get the defaults.
    QVERIFY(exec(db, QStringLiteral("INSERT INTO firma (NAZWA) VALUES ('Nowa')")));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT NAZWA, BANK_NAZWA11, BANK_KONTO40, STAN_KONTA40, BANK_NAZWA4 "
                                     "FROM firma ORDER BY rowid")),
             QStringLiteral("Stara|NULL|NULL|NULL|NULL;Nowa|nazwa banku|numer konta|0|"));
    // A second upgrade changes nothing, the flags a user set included.
    QVERIFY(exec(db, QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=1, Nowe=1, CzteryOdcinki=0, "
                                    "CzteryNaStronie=1, Szary=1, Eliksir=1")));
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (RODZAJ, WARTOSC, DATA_DOKUMENTU) VALUES (1, 50000, '2026-03-05')")));
    const QString before = dump(db);
    UpgradeStructure(db);
    QCOMPARE(dump(db), before);
}

void TestStructure::nullsAndZeroDatesRepaired()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (ID, RODZAJ, DATA_SESJI) VALUES (7, NULL, '1899-12-30')")));
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (ID, DATA_SESJI) VALUES (8, '2026-03-05')")));
    QVERIFY(exec(db, QStringLiteral("UPDATE zlecanki SET Klient_NIP=NULL, ZUS_NrDeklaracji=NULL")));
    const QString sql = QStringLiteral("SELECT ID, RODZAJ, KLIENT_NAZWA, Klient_NIP, WARTOSC, DATA_DOKUMENTU, DATA_SESJI, "
                                       "ZUS_Rok, ZUS_NrDeklaracji FROM zlecanki WHERE ID=7");
    // Null text becomes '', any other Null 0, but never the Id nor a date.
    QVERIFY(FixNulls(db, QStringLiteral("zlecanki")));
    QCOMPARE(queryRows(db, sql), QStringLiteral("7|0|||0|NULL|1899-12-30|0|"));
    // The old engine's day zero becomes Null; a real date stays.
    QVERIFY(ZeroToNull(db, QStringLiteral("zlecanki")));
    QCOMPARE(queryRows(db, QStringLiteral("SELECT DATA_SESJI FROM zlecanki ORDER BY ID")), QStringLiteral("NULL;2026-03-05"));
}

QTEST_GUILESS_MAIN(TestStructure)
#include "tst_structure.moc"
