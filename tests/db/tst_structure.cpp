#include "TestEnv.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

#include <memory>

using namespace Structure;

namespace {

// Everything a database holds, schema and rows, as text: two equal dumps mean nothing changed.
QString dump(const QSqlDatabase &db)
{
    QString out;
    QSqlQuery q(db);
    q.exec(QStringLiteral("SELECT type, name, sql FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' ORDER BY name"));
    QStringList tables;
    while (q.next()) {
        out += q.value(0).toString() + QLatin1Char(' ') + q.value(2).toString() + QLatin1Char('\n');
        if (q.value(0).toString() == QLatin1String("table"))
            tables << q.value(1).toString();
    }
    for (const QString &t : tables) {
        QSqlQuery rows(db);
        rows.exec(QStringLiteral("SELECT * FROM ") + quoted(t) + QStringLiteral(" ORDER BY rowid"));
        while (rows.next()) {
            QStringList values;
            for (int i = 0; i < rows.record().count(); ++i)
                values << (rows.isNull(i) ? QStringLiteral("NULL") : rows.value(i).toString());
            out += t + QStringLiteral(": ") + values.join(QLatin1Char('|')) + QLatin1Char('\n');
        }
    }
    return out;
}

QStringList columnNames(const QSqlDatabase &db, const QString &table)
{
    QStringList names;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name FROM pragma_table_info(?)"));
    q.addBindValue(table);
    q.exec();
    while (q.next())
        names << q.value(0).toString();
    return names;
}

QList<QVariantList> rows(const QSqlDatabase &db, const QString &sql)
{
    QList<QVariantList> out;
    QSqlQuery q(db);
    if (!q.exec(sql))
        qWarning() << q.lastError().text();
    while (q.next()) {
        QVariantList r;
        for (int i = 0; i < q.record().count(); ++i)
            r << q.value(i);
        out << r;
    }
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
    void init();
    void cleanup();

    void tablesOfNewDatabase_data();
    void tablesOfNewDatabase();
    void columnTypesAndWidths_data();
    void columnTypesAndWidths();
    void documentColumnsInOrder();
    void indexes();
    void countersNeverReuse();
    void valuesRefusedNotCut_data();
    void valuesRefusedNotCut();
    void baseStructureUpgradedToFull();
    void settingsRowKeptOnceElixirExists();
    void secondUpgradeChangesNothing();
    void olderDatabaseReachesSameStructure();
    void existingRowsKeepNullInNewColumns();
    void scheduledPaymentNameIsUnique();
    void fixNullsSparesIdAndDates();
    void zeroDatesBecomeNull();

private:
    QSqlDatabase openNew(bool upgrade);
    std::unique_ptr<TestEnv> m_env;
    QString m_path;
    int m_counter = 0;
};

void TestStructure::init()
{
    m_path = m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_counter));
}

void TestStructure::cleanup()
{
    FirmDatabase::close(QStringLiteral("t"));
}

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

void TestStructure::tablesOfNewDatabase_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("baseColumns");
    QTest::addColumn<int>("fullColumns");
    QTest::newRow("CYKLICZNE") << "CYKLICZNE" << 30 << 30;
    QTest::newRow("FIRMA") << "FIRMA" << 17 << 17 + 7 * 3 + 6 + 30 * 3;
    QTest::newRow("KONTRAHENCI") << "KONTRAHENCI" << 10 << 10;
    QTest::newRow("ZLECANKI") << "ZLECANKI" << 18 << 30;
    QTest::newRow("Ustawienia") << "Ustawienia" << 0 << 7;
    QTest::newRow("Ustawienia2") << "Ustawienia2" << 0 << 2;
}

void TestStructure::tablesOfNewDatabase()
{
    QFETCH(QString, table);
    QFETCH(int, baseColumns);
    QFETCH(int, fullColumns);
    QSqlDatabase db = openNew(false);
    QCOMPARE(columnNames(db, table).size(), baseColumns);
    UpgradeStructure(db);
    QCOMPARE(columnNames(db, table).size(), fullColumns);
}

void TestStructure::columnTypesAndWidths_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("declared");
    QTest::addColumn<QString>("defaultValue");
    QTest::newRow("payment name") << "CYKLICZNE" << "NAZWA" << "VARCHAR(25)" << "";
    QTest::newRow("payment amount") << "CYKLICZNE" << "WARTOSC" << "CURRENCY" << "";
    QTest::newRow("December") << "CYKLICZNE" << "M12" << "BOOLEAN" << "";
    QTest::newRow("alarm day") << "CYKLICZNE" << "DZIEN_ALARMU" << "SMALLINT" << "";
    QTest::newRow("payment NIP") << "Cykliczne" << "Klient_NIP" << "VARCHAR(13)" << "''";
    QTest::newRow("house number") << "FIRMA" << "NR_DOMU" << "VARCHAR(10)" << "";
    QTest::newRow("balance 1") << "FIRMA" << "STAN_KONTA1" << "CURRENCY" << "";
    QTest::newRow("bank 4") << "FIRMA" << "BANK_NAZWA4" << "VARCHAR(50)" << "''";
    QTest::newRow("balance 10") << "FIRMA" << "STAN_KONTA10" << "CURRENCY" << "0";
    QTest::newRow("bank 11") << "FIRMA" << "BANK_NAZWA11" << "VARCHAR(50)" << "'nazwa banku'";
    QTest::newRow("account 40") << "FIRMA" << "BANK_KONTO40" << "VARCHAR(40)" << "'numer konta'";
    QTest::newRow("balance 40") << "FIRMA" << "STAN_KONTA40" << "CURRENCY" << "0";
    QTest::newRow("ZUS identifier") << "FIRMA" << "IDENTZUS" << "VARCHAR(14)" << "''";
    QTest::newRow("ZUS identifier type") << "FIRMA" << "TYPIDENTZUS" << "SMALLINT" << "";
    QTest::newRow("chosen") << "KONTRAHENCI" << "WYBRANY" << "BOOLEAN" << "";
    QTest::newRow("postal code") << "KONTRAHENCI" << "KOD" << "VARCHAR(6)" << "";
    QTest::newRow("contractor id") << "ZLECANKI" << "KLIENT_ID" << "INTEGER" << "";
    QTest::newRow("kind") << "ZLECANKI" << "RODZAJ" << "SMALLINT" << "";
    QTest::newRow("document date") << "ZLECANKI" << "DATA_DOKUMENTU" << "DATE" << "";
    QTest::newRow("title") << "ZLECANKI" << "ZA_DOKUMENT_NAZWA" << "VARCHAR(150)" << "";
    QTest::newRow("declaration no") << "ZLECANKI" << "ZUS_NrDeklaracji" << "VARCHAR(2)" << "''";
    QTest::newRow("tax period no") << "ZLECANKI" << "POD_NrOkresu" << "VARCHAR(4)" << "''";
    QTest::newRow("tax form") << "ZLECANKI" << "POD_Symbol" << "VARCHAR(10)" << "''";
    QTest::newRow("Elixir switch") << "Ustawienia" << "Eliksir" << "SMALLINT" << "";
    QTest::newRow("grey") << "Ustawienia" << "Szary" << "BOOLEAN" << "";
    QTest::newRow("top margin") << "Ustawienia2" << "MargPrawy" << "SMALLINT" << "0";
}

void TestStructure::columnTypesAndWidths()
{
    QFETCH(QString, table);
    QFETCH(QString, column);
    QFETCH(QString, declared);
    QFETCH(QString, defaultValue);
    QSqlDatabase db = openNew(true);
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name, type, dflt_value FROM pragma_table_info(?) WHERE name=?"));
    q.addBindValue(table);
    q.addBindValue(column);
    QVERIFY(q.exec());
    QVERIFY2(q.next(), qPrintable(table + QLatin1Char('.') + column));
    QCOMPARE(q.value(0).toString(), column); // spelled as the firm files always spelled it
    QCOMPARE(q.value(1).toString(), declared);
    QCOMPARE(q.value(2).toString(), defaultValue);
}

void TestStructure::documentColumnsInOrder()
{
    QSqlDatabase db = openNew(true);
    const QStringList expected = {
        "ID", "RODZAJ", "BANKNR", "BANK_FIRMY", "KONTO_FIRMY", "DATA_DOKUMENTU", "KLIENT_ID", "KLIENT_NAZWA",
        "KLIENT_NAZWA1", "KLIENT_ULICA", "KLIENT_KOD", "KLIENT_MIASTO", "KLIENT_BANK", "KLIENT_KONTO", "Klient_NIP",
        "ZA_DOKUMENT_NAZWA", "WARTOSC", "DATA_SESJI", "ZUS_NrRachunku", "ZUS_TypWplaty", "ZUS_Rok", "ZUS_Miesiac",
        "ZUS_NrDeklaracji", "ZUS_CzyZus", "POD_Rok", "POD_TypOkresu", "POD_NrOkresu", "POD_Symbol",
        "POD_Identyfikacja", "POD_CzyPodatki"};
    QCOMPARE(columnNames(db, QStringLiteral("zlecanki")), expected);
    const QStringList firma = columnNames(db, QStringLiteral("firma"));
    QCOMPARE(firma.mid(17, 3), (QStringList{"BANK_NAZWA4", "BANK_KONTO4", "STAN_KONTA4"}));
    QCOMPARE(firma.mid(38, 6),
             (QStringList{"NAZWA_SKROCONA", "NAZWA_SKROCONACD", "TYPIDENTZUS", "IDENTZUS", "TYPIDENTPOD", "IDENTPOD"}));
    QCOMPARE(firma.last(), QStringLiteral("STAN_KONTA40"));
}

void TestStructure::indexes()
{
    QSqlDatabase db = openNew(true);
    QStringList found;
    for (const auto &r : rows(db, QStringLiteral("SELECT m.name, il.\"unique\", group_concat(ii.name) "
                                                 "FROM sqlite_master m, pragma_index_list(m.tbl_name) il, "
                                                 "pragma_index_info(il.name) ii "
                                                 "WHERE m.type='index' AND il.name=m.name AND m.sql IS NOT NULL "
                                                 "GROUP BY m.name ORDER BY m.name")))
        found << r[0].toString() + (r[1].toInt() ? QStringLiteral(" unique ") : QStringLiteral(" ")) + r[2].toString();
    const QStringList expected = {
        "CYKLICZNE_DZIEN_ALARMU DZIEN_ALARMU", "CYKLICZNE_DZIEN_PLATNOSCI DZIEN_PLATNOSCI",
        "CYKLICZNE_LASTWYSTAWM LASTWYSTAWM", "CYKLICZNE_PrimaryKey unique NAZWA", "KONTRAHENCI_WYBRANY WYBRANY",
        "ZLECANKI_BANK_FIRMY BANK_FIRMY", "ZLECANKI_DATA_DOKUMENTU DATA_DOKUMENTU", "ZLECANKI_DATA_SESJI DATA_SESJI",
        "ZLECANKI_KLIENT_ID KLIENT_ID", "ZLECANKI_RODZAJ RODZAJ"};
    QCOMPARE(found, expected);
    // The documents and contractors are keyed by their counter.
    for (const char *t : {"ZLECANKI", "KONTRAHENCI", "CYKLICZNE"}) {
        const auto pk = rows(db, QStringLiteral("SELECT name FROM pragma_table_info('%1') WHERE pk=1").arg(QLatin1String(t)));
        QCOMPARE(pk.size(), 1);
        QCOMPARE(pk[0][0].toString(), QStringLiteral("ID"));
    }
}

void TestStructure::countersNeverReuse()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")));
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")));
    QVERIFY(exec(db, QStringLiteral("DELETE FROM zlecanki WHERE ID=2")));
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")));
    QCOMPARE(rows(db, QStringLiteral("SELECT group_concat(ID) FROM zlecanki"))[0][0].toString(), QStringLiteral("1,3"));
}

void TestStructure::valuesRefusedNotCut_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("message"); // empty: accepted
    const QString polish25 = QString::fromUtf8("ąęśćżźńółĄĘŚĆŻŹŃÓŁąęśćżźń");
    QTest::newRow("name of 25 Polish letters") << "NAZWA" << QVariant(polish25) << "";
    QTest::newRow("name of 26") << "NAZWA" << QVariant(polish25 + QLatin1Char('x')) << "najwyżej 25 znaków";
    QTest::newRow("title of 150") << "ZA_DOKUMENT_NAZWA" << QVariant(QString(150, QLatin1Char('t'))) << "";
    QTest::newRow("title of 151") << "ZA_DOKUMENT_NAZWA" << QVariant(QString(151, QLatin1Char('t'))) << "najwyżej 150";
    QTest::newRow("amount in units") << "WARTOSC" << QVariant(qint64(12345000)) << "";
    QTest::newRow("amount as float") << "WARTOSC" << QVariant(1234.5) << "musi zawierać kwotę";
    QTest::newRow("amount as text") << "WARTOSC" << QVariant(QStringLiteral("sto")) << "musi zawierać kwotę";
    QTest::newRow("boolean") << "M1" << QVariant(1) << "";
    QTest::newRow("boolean of old engine") << "M1" << QVariant(-1) << "Tak lub Nie";
    QTest::newRow("day out of range") << "DZIEN_ALARMU" << QVariant(70000) << "poza zakresem";
}

void TestStructure::valuesRefusedNotCut()
{
    QFETCH(QString, column);
    QFETCH(QVariant, value);
    QFETCH(QString, message);
    QSqlDatabase db = openNew(true);
    QSqlQuery q(db);
    const bool nameColumn = column == QLatin1String("NAZWA");
    q.prepare(QStringLiteral("INSERT INTO cykliczne (NAZWA%1) VALUES (?%2)")
                  .arg(nameColumn ? QString() : QLatin1Char(',') + column, nameColumn ? QString() : QStringLiteral(",?")));
    if (!nameColumn)
        q.addBindValue(QStringLiteral("ok"));
    q.addBindValue(value);
    const bool ok = q.exec();
    QCOMPARE(ok, message.isEmpty());
    if (!ok) {
        QVERIFY2(explainError(q.lastError()).contains(message), qPrintable(explainError(q.lastError())));
        QVERIFY(explainError(q.lastError()).contains(column));
        QCOMPARE(rows(db, QStringLiteral("SELECT count(*) FROM cykliczne"))[0][0].toInt(), 0);
    } else {
        QCOMPARE(rows(db, QStringLiteral("SELECT ") + column + QStringLiteral(" FROM cykliczne"))[0][0], value);
    }
}

void TestStructure::baseStructureUpgradedToFull()
{
    QSqlDatabase db = openNew(false);
    QVERIFY(!tableExists(db, QStringLiteral("Ustawienia")));
    UpgradeStructure(db);
    const auto settings = rows(db, QStringLiteral("SELECT Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, "
                                                  "Szary, Eliksir FROM Ustawienia"));
    QCOMPARE(settings.size(), 1);
    QCOMPARE(settings[0], (QVariantList{1, 0, 0, 1, 0, 0, 0}));
    QCOMPARE(rows(db, QStringLiteral("SELECT MargLewy, MargPrawy FROM Ustawienia2")),
             (QList<QVariantList>{{0, 0}}));
}

void TestStructure::settingsRowKeptOnceElixirExists()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=1, Nowe=1, CzteryOdcinki=0, "
                                    "CzteryNaStronie=1, Szary=1, Eliksir=1")));
    UpgradeStructure(db);
    QCOMPARE(rows(db, QStringLiteral("SELECT Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, Szary, Eliksir "
                                     "FROM Ustawienia")),
             (QList<QVariantList>{{0, 1, 1, 0, 1, 1, 1}}));
}

void TestStructure::secondUpgradeChangesNothing()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO firma (NAZWA, STAN_KONTA1) VALUES ('ACME', 10000)")));
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (RODZAJ, WARTOSC, DATA_DOKUMENTU) VALUES (1, 50000, '2026-03-05')")));
    const QString before = dump(db);
    UpgradeStructure(db);
    QCOMPARE(dump(db), before);
}

void TestStructure::olderDatabaseReachesSameStructure()
{
    // A database from before the NIP columns, the settings tables and the extra bank slots.
    QSqlDatabase db = openNew(false);
    for (const char *sql : {"ALTER TABLE cykliczne DROP COLUMN Klient_NIP", "ALTER TABLE zlecanki DROP COLUMN Klient_NIP",
                            "ALTER TABLE kontrahenci DROP COLUMN NIP", "ALTER TABLE firma DROP COLUMN firma_NIP"})
        QVERIFY2(exec(db, QLatin1String(sql)), sql);
    UpgradeStructure(db);

    m_path = m_env->newPath(QStringLiteral("fresh.zlc"));
    QVERIFY(FirmDatabase::create(m_path, nullptr));
    QSqlDatabase fresh = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fresh"));
    fresh.setDatabaseName(m_path);
    QVERIFY(fresh.open());
    for (const char *t : {"cykliczne", "zlecanki", "kontrahenci", "firma", "Ustawienia", "Ustawienia2"}) {
        QStringList a = columnNames(db, QLatin1String(t)), b = columnNames(fresh, QLatin1String(t));
        a.sort(Qt::CaseInsensitive);
        b.sort(Qt::CaseInsensitive);
        QCOMPARE(a, b);
    }
    fresh.close();
    fresh = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("fresh"));
}

void TestStructure::existingRowsKeepNullInNewColumns()
{
    QSqlDatabase db = openNew(false);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO firma (NAZWA) VALUES ('Stara')")));
    UpgradeStructure(db);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO firma (NAZWA) VALUES ('Nowa')")));
    const auto r = rows(db, QStringLiteral("SELECT NAZWA, BANK_NAZWA11, BANK_KONTO40, STAN_KONTA40, BANK_NAZWA4 "
                                           "FROM firma ORDER BY rowid"));
    QCOMPARE(r.size(), 2);
    QVERIFY(r[0][1].isNull() && r[0][2].isNull() && r[0][3].isNull() && r[0][4].isNull());
    QCOMPARE(r[1], (QVariantList{"Nowa", "nazwa banku", "numer konta", 0, ""}));
}

void TestStructure::scheduledPaymentNameIsUnique()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO cykliczne (NAZWA, DZIEN_ALARMU) VALUES ('Czynsz', 5)")));
    QString error;
    QVERIFY(!exec(db, QStringLiteral("INSERT INTO cykliczne (NAZWA, DZIEN_ALARMU) VALUES ('Czynsz', 7)"), &error));
    QVERIFY2(error.contains(QStringLiteral("NAZWA")), qPrintable(error));
    QVERIFY(!exec(db, QStringLiteral("INSERT INTO cykliczne (DZIEN_ALARMU) VALUES (7)")));
    QCOMPARE(rows(db, QStringLiteral("SELECT count(*), max(DZIEN_ALARMU) FROM cykliczne"))[0], (QVariantList{1, 5}));
}

void TestStructure::fixNullsSparesIdAndDates()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (ID, RODZAJ) VALUES (7, NULL)")));
    QVERIFY(exec(db, QStringLiteral("UPDATE zlecanki SET Klient_NIP=NULL, ZUS_NrDeklaracji=NULL")));
    QVERIFY(FixNulls(db, QStringLiteral("zlecanki")));
    const auto r = rows(db, QStringLiteral("SELECT ID, RODZAJ, KLIENT_NAZWA, Klient_NIP, WARTOSC, DATA_DOKUMENTU, "
                                           "DATA_SESJI, ZUS_Rok, ZUS_NrDeklaracji FROM zlecanki"));
    QCOMPARE(r.size(), 1);
    QCOMPARE(r[0][0].toInt(), 7);
    QCOMPARE(r[0][1], QVariant(0));
    QCOMPARE(r[0][2], QVariant(QString()));
    QCOMPARE(r[0][3], QVariant(QString()));
    QCOMPARE(r[0][4], QVariant(0));
    QVERIFY(r[0][5].isNull());
    QVERIFY(r[0][6].isNull());
    QCOMPARE(r[0][7], QVariant(0));
    QCOMPARE(r[0][8], QVariant(QString()));
    QVERIFY(!FixNulls(db, QStringLiteral("nie_ma_takiej")));
}

void TestStructure::zeroDatesBecomeNull()
{
    QSqlDatabase db = openNew(true);
    QVERIFY(exec(db, QStringLiteral("INSERT INTO zlecanki (DATA_DOKUMENTU, DATA_SESJI) VALUES ('1899-12-30', '2026-03-05')")));
    QVERIFY(ZeroToNull(db, QStringLiteral("zlecanki")));
    const auto r = rows(db, QStringLiteral("SELECT DATA_DOKUMENTU, DATA_SESJI FROM zlecanki"));
    QVERIFY(r[0][0].isNull());
    QCOMPARE(r[0][1].toString(), QStringLiteral("2026-03-05"));
}

QTEST_GUILESS_MAIN(TestStructure)
#include "tst_structure.moc"
