#include "Structure.h"

#include "FirmDatabase.h"

#include <QHash>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>
#include <functional>
#include <optional>

namespace Structure {

namespace {

Column text(const QString &name, int width, QVariant def = QVariant())
{
    return Column{name, ColumnType::Text, width, false, false, std::move(def)};
}
Column typed(const QString &name, ColumnType type, QVariant def = QVariant())
{
    return Column{name, type, 0, false, false, std::move(def)};
}
Column counter(const QString &name)
{
    return Column{name, ColumnType::Long, 0, true, false, QVariant()};
}

const QString Empty = QStringLiteral("");

// One bank slot of the firm: name, account number, balance.
QList<Column> bankSlots(int from, int to, const QVariant &nameDefault, const QVariant &accountDefault)
{
    QList<Column> cols;
    for (int i = from; i <= to; ++i) {
        const QString n = QString::number(i);
        cols << text(QStringLiteral("BANK_NAZWA") + n, 50, nameDefault)
             << text(QStringLiteral("BANK_KONTO") + n, 40, accountDefault)
             << typed(QStringLiteral("STAN_KONTA") + n, ColumnType::Currency, qint64(0));
    }
    return cols;
}

QList<Column> zusAndTaxColumns()
{
    return {typed(QStringLiteral("ZUS_NrRachunku"), ColumnType::Integer),
            typed(QStringLiteral("ZUS_TypWplaty"), ColumnType::Integer),
            typed(QStringLiteral("ZUS_Rok"), ColumnType::Integer),
            typed(QStringLiteral("ZUS_Miesiac"), ColumnType::Integer),
            text(QStringLiteral("ZUS_NrDeklaracji"), 2, Empty),
            typed(QStringLiteral("ZUS_CzyZus"), ColumnType::Integer),
            typed(QStringLiteral("POD_Rok"), ColumnType::Integer),
            typed(QStringLiteral("POD_TypOkresu"), ColumnType::Integer),
            text(QStringLiteral("POD_NrOkresu"), 4, Empty),
            text(QStringLiteral("POD_Symbol"), 10, Empty),
            text(QStringLiteral("POD_Identyfikacja"), 50, Empty),
            typed(QStringLiteral("POD_CzyPodatki"), ColumnType::Integer)};
}

QList<Column> firmIdentifierColumns()
{
    return {text(QStringLiteral("NAZWA_SKROCONA"), 50, Empty),
            text(QStringLiteral("NAZWA_SKROCONACD"), 50, Empty),
            typed(QStringLiteral("TYPIDENTZUS"), ColumnType::Integer),
            text(QStringLiteral("IDENTZUS"), 14, Empty),
            typed(QStringLiteral("TYPIDENTPOD"), ColumnType::Integer),
            text(QStringLiteral("IDENTPOD"), 14, Empty)};
}

// The firm's individual ZUS contribution account, paid to since contributions stopped
// going to the four common ZUS accounts.
QList<Column> firmContributionColumns()
{
    return {text(QStringLiteral("RACHUNEK_NRS"), 40, Empty)};
}

QList<Column> settingsFlagColumns()
{
    QList<Column> cols;
    for (const char *n : {"Data", "Wstawiany", "Nowe", "CzteryOdcinki", "CzteryNaStronie"})
        cols << typed(QLatin1String(n), ColumnType::Boolean);
    return cols;
}

QList<Column> marginColumns()
{
    return {typed(QStringLiteral("MargLewy"), ColumnType::Integer, 0),
            typed(QStringLiteral("MargPrawy"), ColumnType::Integer, 0)};
}

// What went to the bank in a file: one row per document and sending.
QList<Column> sentColumns()
{
    return {counter(QStringLiteral("ID")), typed(QStringLiteral("Dokument"), ColumnType::Long),
            typed(QStringLiteral("Data"), ColumnType::Date), text(QStringLiteral("Plik"), 255, Empty),
            text(QStringLiteral("Format"), 10, Empty)};
}

// The bank file format and code page the firm last chose.
QList<Column> bankChoiceColumns()
{
    return {text(QStringLiteral("Format"), 10, Empty), text(QStringLiteral("Kodowanie"), 12, Empty)};
}

Index plainIndex(const QString &column)
{
    return Index{column, {column}, false};
}

QList<Table> makeBaseTables()
{
    Table cykliczne{QStringLiteral("CYKLICZNE"), {}, {}};
    Column nazwa = text(QStringLiteral("NAZWA"), 25);
    nazwa.required = true; // the name is the key of a scheduled payment
    cykliczne.columns << counter(QStringLiteral("ID")) << nazwa
                      << typed(QStringLiteral("RODZAJ"), ColumnType::Integer)
                      << text(QStringLiteral("BANK_FIRMY"), 50) << text(QStringLiteral("KONTO_FIRMY"), 40)
                      << text(QStringLiteral("KLIENT_NAZWA"), 50) << text(QStringLiteral("KLIENT_NAZWA1"), 50)
                      << text(QStringLiteral("KLIENT_ULICA"), 40) << text(QStringLiteral("KLIENT_KOD"), 6)
                      << text(QStringLiteral("KLIENT_MIASTO"), 30) << text(QStringLiteral("KLIENT_BANK"), 50)
                      << text(QStringLiteral("KLIENT_KONTO"), 40) << text(QStringLiteral("Klient_NIP"), 13, Empty)
                      << text(QStringLiteral("ZA_DOKUMENT_NAZWA"), 150)
                      << typed(QStringLiteral("WARTOSC"), ColumnType::Currency);
    for (int m = 1; m <= 12; ++m)
        cykliczne.columns << typed(QStringLiteral("M") + QString::number(m), ColumnType::Boolean);
    cykliczne.columns << typed(QStringLiteral("DZIEN_PLATNOSCI"), ColumnType::Integer)
                      << typed(QStringLiteral("DZIEN_ALARMU"), ColumnType::Integer)
                      << typed(QStringLiteral("LASTWYSTAWM"), ColumnType::Integer);
    cykliczne.indexes << plainIndex(QStringLiteral("DZIEN_ALARMU")) << plainIndex(QStringLiteral("DZIEN_PLATNOSCI"))
                      << plainIndex(QStringLiteral("LASTWYSTAWM"))
                      << Index{QStringLiteral("PrimaryKey"), {QStringLiteral("NAZWA")}, true};

    Table firma{QStringLiteral("FIRMA"), {}, {}};
    firma.columns << text(QStringLiteral("NAZWA"), 50) << text(QStringLiteral("NAZWA1"), 50)
                  << text(QStringLiteral("ULICA"), 40) << text(QStringLiteral("NR_DOMU"), 10)
                  << text(QStringLiteral("NR_LOKALU"), 10) << text(QStringLiteral("KOD"), 6)
                  << text(QStringLiteral("MIASTO"), 30);
    for (int i = 1; i <= 3; ++i) {
        const QString n = QString::number(i);
        firma.columns << text(QStringLiteral("BANK_NAZWA") + n, 50) << text(QStringLiteral("BANK_KONTO") + n, 40)
                      << typed(QStringLiteral("STAN_KONTA") + n, ColumnType::Currency);
    }
    firma.columns << text(QStringLiteral("firma_NIP"), 13, Empty);

    Table kontrahenci{QStringLiteral("KONTRAHENCI"), {}, {}};
    kontrahenci.columns << counter(QStringLiteral("ID")) << text(QStringLiteral("NAZWA"), 50)
                        << text(QStringLiteral("NAZWA1"), 50) << text(QStringLiteral("ULICA"), 40)
                        << text(QStringLiteral("KOD"), 6) << text(QStringLiteral("MIASTO"), 30)
                        << text(QStringLiteral("BANK_NAZWA"), 50) << text(QStringLiteral("BANK_KONTO"), 40)
                        << text(QStringLiteral("NIP"), 13, Empty)
                        << typed(QStringLiteral("WYBRANY"), ColumnType::Boolean);
    kontrahenci.indexes << plainIndex(QStringLiteral("WYBRANY"));

    Table zlecanki{QStringLiteral("ZLECANKI"), {}, {}};
    zlecanki.columns << counter(QStringLiteral("ID")) << typed(QStringLiteral("RODZAJ"), ColumnType::Integer)
                     << typed(QStringLiteral("BANKNR"), ColumnType::Integer)
                     << text(QStringLiteral("BANK_FIRMY"), 50) << text(QStringLiteral("KONTO_FIRMY"), 40)
                     << typed(QStringLiteral("DATA_DOKUMENTU"), ColumnType::Date)
                     << typed(QStringLiteral("KLIENT_ID"), ColumnType::Long)
                     << text(QStringLiteral("KLIENT_NAZWA"), 50) << text(QStringLiteral("KLIENT_NAZWA1"), 50)
                     << text(QStringLiteral("KLIENT_ULICA"), 40) << text(QStringLiteral("KLIENT_KOD"), 6)
                     << text(QStringLiteral("KLIENT_MIASTO"), 30) << text(QStringLiteral("KLIENT_BANK"), 50)
                     << text(QStringLiteral("KLIENT_KONTO"), 40) << text(QStringLiteral("Klient_NIP"), 13, Empty)
                     << text(QStringLiteral("ZA_DOKUMENT_NAZWA"), 150)
                     << typed(QStringLiteral("WARTOSC"), ColumnType::Currency)
                     << typed(QStringLiteral("DATA_SESJI"), ColumnType::Date);
    zlecanki.indexes << plainIndex(QStringLiteral("BANK_FIRMY")) << plainIndex(QStringLiteral("DATA_DOKUMENTU"))
                     << plainIndex(QStringLiteral("DATA_SESJI")) << plainIndex(QStringLiteral("KLIENT_ID"))
                     << plainIndex(QStringLiteral("RODZAJ"));

    return {cykliczne, firma, kontrahenci, zlecanki};
}

QList<Table> makeFullTables()
{
    QList<Table> tables = makeBaseTables();
    for (Table &t : tables) {
        if (t.name == QLatin1String("FIRMA"))
            t.columns << bankSlots(4, 10, Empty, Empty) << firmIdentifierColumns()
                      << bankSlots(11, 40, QStringLiteral("nazwa banku"), QStringLiteral("numer konta"))
                      << firmContributionColumns();
        else if (t.name == QLatin1String("ZLECANKI"))
            t.columns << zusAndTaxColumns();
    }
    Table ustawienia{QStringLiteral("Ustawienia"), settingsFlagColumns(), {}};
    ustawienia.columns << typed(QStringLiteral("Szary"), ColumnType::Boolean)
                       << typed(QStringLiteral("Eliksir"), ColumnType::Integer)
                       << typed(QStringLiteral("KodQR"), ColumnType::Boolean);
    tables << ustawienia << Table{QStringLiteral("Ustawienia2"), marginColumns(), {}};
    tables << Table{QStringLiteral("WyslaneDoBanku"), sentColumns(), {plainIndex(QStringLiteral("Dokument"))}}
           << Table{QStringLiteral("UstawieniaBanku"), bankChoiceColumns(), {}};
    return tables;
}

QString literal(const QVariant &v)
{
    if (v.typeId() == QMetaType::QString) {
        QString s = v.toString();
        s.replace(QLatin1Char('\''), QStringLiteral("''"));
        return QLatin1Char('\'') + s + QLatin1Char('\'');
    }
    return QString::number(v.toLongLong());
}

// Runs one statement. On the server a failed statement would spoil the whole transaction,
// so each runs under a savepoint there and a failure undoes just that statement, as on SQLite.
bool run(QSqlDatabase &db, const QString &sql, QString *error = nullptr)
{
    QSqlQuery q(db);
    const bool guarded = Dialect::isPostgres(db) && q.exec(QStringLiteral("SAVEPOINT zlecanki_krok"));
    if (q.exec(sql)) {
        if (guarded)
            q.exec(QStringLiteral("RELEASE SAVEPOINT zlecanki_krok"));
        return true;
    }
    if (error)
        *error = q.lastError().text();
    if (guarded)
        q.exec(QStringLiteral("ROLLBACK TO SAVEPOINT zlecanki_krok"));
    return false;
}

bool hasCounter(const QList<Column> &columns)
{
    return std::any_of(columns.begin(), columns.end(), [](const Column &c) { return c.counter; });
}

QString createTableSql(const QSqlDatabase &db, const Table &t)
{
    const Dialect::Engine engine = Dialect::engineOf(db);
    QStringList defs;
    for (const Column &c : t.columns)
        defs << columnSql(c, engine);
    if (engine == Dialect::Engine::Postgres && !hasCounter(t.columns))
        defs << QStringLiteral("rowid BIGINT GENERATED BY DEFAULT AS IDENTITY");
    return QStringLiteral("CREATE TABLE ") + quoted(db, t.name) + QStringLiteral(" (\n  ") +
           defs.join(QStringLiteral(",\n  ")) + QStringLiteral("\n)");
}

QString createIndexSql(const QSqlDatabase &db, const Table &t, const Index &i)
{
    QStringList cols;
    for (const QString &c : i.columns)
        cols << quoted(db, c);
    return (i.unique ? QStringLiteral("CREATE UNIQUE INDEX ") : QStringLiteral("CREATE INDEX ")) +
           quoted(indexName(t.name, i.name)) + QStringLiteral(" ON ") + quoted(db, t.name) + QStringLiteral(" (") +
           cols.join(QStringLiteral(", ")) + QLatin1Char(')');
}

// Adds columns to an existing table, each on its own, a failure skipping just that column.
// As the old engine did, rows that were there before keep Null in the new columns; the
// default applies to rows written afterwards.
void addColumns(QSqlDatabase &db, const QString &table, const QList<Column> &columns)
{
    QStringList nullify;
    for (const Column &c : columns) {
        if (run(db, QStringLiteral("ALTER TABLE ") + quoted(db, table) + QStringLiteral(" ADD COLUMN ") +
                        columnSql(c, Dialect::engineOf(db))) &&
            c.defaultValue.isValid())
            nullify << quoted(db, c.name) + QStringLiteral("=NULL");
    }
    if (!nullify.isEmpty())
        run(db, QStringLiteral("UPDATE ") + quoted(db, table) + QStringLiteral(" SET ") + nullify.join(QLatin1Char(',')));
}

void createTable(QSqlDatabase &db, const QString &name, const QList<Column> &columns)
{
    run(db, createTableSql(db, Table{name, columns, {}}));
}

struct Step {
    QString table;
    QString marker;
    std::function<void(QSqlDatabase &)> apply;
    // Set for a repair of values: it runs while the marker column exists and this says
    // there is something to repair, instead of while the marker column is missing.
    std::function<bool(const QSqlDatabase &)> needed = {};
};

// A month of last issue that is not there: Null, or on SQLite also an empty text (a number
// column of the server cannot hold one).
QString missingMonth(const QSqlDatabase &db)
{
    return Dialect::isPostgres(db) ? QStringLiteral("LASTWYSTAWM IS NULL")
                                   : QStringLiteral("LASTWYSTAWM IS NULL OR LASTWYSTAWM=''");
}

bool anyRow(const QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    return q.exec(sql) && q.next();
}

QList<Step> upgradeSteps()
{
    return {
        {QStringLiteral("Cykliczne"), QStringLiteral("Klient_NIP"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("Cykliczne"), {text(QStringLiteral("Klient_NIP"), 13, Empty)}); }},
        {QStringLiteral("zlecanki"), QStringLiteral("Klient_NIP"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("zlecanki"), {text(QStringLiteral("Klient_NIP"), 13, Empty)}); }},
        {QStringLiteral("kontrahenci"), QStringLiteral("NIP"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("kontrahenci"), {text(QStringLiteral("NIP"), 13, Empty)}); }},
        {QStringLiteral("firma"), QStringLiteral("firma_NIP"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("firma"), {text(QStringLiteral("firma_NIP"), 13, Empty)}); }},
        {QStringLiteral("Ustawienia"), QStringLiteral("Data"),
         [](QSqlDatabase &db) {
             createTable(db, QStringLiteral("Ustawienia"), settingsFlagColumns());
             run(db, QStringLiteral("INSERT INTO Ustawienia (Data,Wstawiany,Nowe,CzteryOdcinki,CzteryNaStronie) "
                                    "VALUES (1,0,0,1,1);"));
         }},
        {QStringLiteral("Ustawienia2"), QStringLiteral("MargLewy"),
         [](QSqlDatabase &db) {
             createTable(db, QStringLiteral("Ustawienia2"), marginColumns());
             run(db, QStringLiteral("INSERT INTO Ustawienia2 (MargLewy,MargPrawy) VALUES (0,0);"));
         }},
        {QStringLiteral("FIRMA"), QStringLiteral("BANK_NAZWA4"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("FIRMA"), bankSlots(4, 10, Empty, Empty)); }},
        {QStringLiteral("Ustawienia"), QStringLiteral("Szary"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("Ustawienia"), {typed(QStringLiteral("Szary"), ColumnType::Boolean)});
             // The older row stays until the Elixir step; readers take the first row.
             run(db, QStringLiteral("INSERT INTO Ustawienia (Data,Wstawiany,Nowe,CzteryOdcinki,CzteryNaStronie,Szary) "
                                    "VALUES (1,0,0,1,0,0);"));
         }},
        {QStringLiteral("zlecanki"), QStringLiteral("ZUS_NrRachunku"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("zlecanki"), zusAndTaxColumns());
             run(db, QStringLiteral("UPDATE zlecanki SET ZUS_czyzus=0 WHERE ZUS_czyzus is null"));
             // Names a column that does not exist: it fails, as it always has, harmlessly.
             run(db, QStringLiteral("UPDATE zlecanki SET ZUS_czypodatki=0 WHERE ZUS_czypodatki is null"));
         }},
        {QStringLiteral("FIRMA"), QStringLiteral("NAZWA_SKROCONA"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("FIRMA"), firmIdentifierColumns());
             // Aimed at the documents table, which has no such columns: both fail harmlessly.
             run(db, QStringLiteral("UPDATE zlecanki SET TYPIDENTZUS=0 WHERE TYPIDENTZUS is null"));
             run(db, QStringLiteral("UPDATE zlecanki SET TYPIDENTPOD=0 WHERE TYPIDENTPOD is null"));
         }},
        {QStringLiteral("Ustawienia"), QStringLiteral("Eliksir"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("Ustawienia"), {typed(QStringLiteral("Eliksir"), ColumnType::Integer)});
             run(db, QStringLiteral("DELETE FROM Ustawienia"));
             run(db, QStringLiteral("INSERT INTO Ustawienia (Data,Wstawiany,Nowe,CzteryOdcinki,CzteryNaStronie,Szary,"
                                    "Eliksir) VALUES (1,0,0,1,0,0,0);"));
         }},
        {QStringLiteral("FIRMA"), QStringLiteral("BANK_NAZWA11"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("FIRMA"),
                        bankSlots(11, 40, QStringLiteral("nazwa banku"), QStringLiteral("numer konta")));
         }},
        // The references the suite's programs give their transfers, so that a call repeated
        // after a lost answer finds its document instead of paying twice. Kept apart from
        // the documents, whose columns the suite's other programs read as they are.
        {QStringLiteral("OdwolaniaSerwera"), QStringLiteral("Odwolanie"),
         [](QSqlDatabase &db) {
             run(db, QStringLiteral("CREATE TABLE IF NOT EXISTS OdwolaniaSerwera (Odwolanie TEXT PRIMARY KEY NOT NULL, "
                                    "ZlecenieId INTEGER NOT NULL)"));
         }},
        // A scheduled payment with no month of its last issue (written by an older version,
        // or brought in from another firm) fails the due check's comparison and would never
        // be listed: it gets 0, no month.
        {QStringLiteral("Cykliczne"), QStringLiteral("LASTWYSTAWM"),
         [](QSqlDatabase &db) {
             run(db, QStringLiteral("UPDATE Cykliczne SET LASTWYSTAWM=0 WHERE ") + missingMonth(db));
         },
         [](const QSqlDatabase &db) {
             return anyRow(db, QStringLiteral("SELECT 1 FROM Cykliczne WHERE ") + missingMonth(db) + QStringLiteral(" LIMIT 1"));
         }},
        {QStringLiteral("WyslaneDoBanku"), QStringLiteral("Dokument"),
         [](QSqlDatabase &db) {
             createTable(db, QStringLiteral("WyslaneDoBanku"), sentColumns());
             run(db, QStringLiteral("CREATE INDEX ") + quoted(indexName(QStringLiteral("WyslaneDoBanku"),
                                                                          QStringLiteral("Dokument"))) +
                         QStringLiteral(" ON WyslaneDoBanku (Dokument)"));
         }},
        {QStringLiteral("UstawieniaBanku"), QStringLiteral("Kodowanie"),
         [](QSqlDatabase &db) { createTable(db, QStringLiteral("UstawieniaBanku"), bankChoiceColumns()); }},
        {QStringLiteral("FIRMA"), QStringLiteral("RACHUNEK_NRS"),
         [](QSqlDatabase &db) { addColumns(db, QStringLiteral("FIRMA"), firmContributionColumns()); }},
        // "Kod QR na przelewach": the banks' payment QR code on transfer slips, on to begin with.
        {QStringLiteral("Ustawienia"), QStringLiteral("KodQR"),
         [](QSqlDatabase &db) {
             addColumns(db, QStringLiteral("Ustawienia"), {typed(QStringLiteral("KodQR"), ColumnType::Boolean)});
             run(db, QStringLiteral("UPDATE Ustawienia SET KodQR=1"));
         }},
    };
}

} // namespace

const QList<Table> &baseTables()
{
    static const QList<Table> tables = makeBaseTables();
    return tables;
}

const QList<Table> &fullTables()
{
    static const QList<Table> tables = makeFullTables();
    return tables;
}

const Column *findColumn(const QString &table, const QString &column)
{
    for (const Table &t : fullTables()) {
        if (t.name.compare(table, Qt::CaseInsensitive) != 0)
            continue;
        for (const Column &c : t.columns)
            if (c.name.compare(column, Qt::CaseInsensitive) == 0)
                return &c;
    }
    return nullptr;
}

QString quoted(const QString &identifier)
{
    QString s = identifier;
    s.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

QString quoted(const QSqlDatabase &db, const QString &identifier)
{
    return quoted(Dialect::isPostgres(db) ? identifier.toLower() : identifier);
}

QString indexName(const QString &table, const QString &index)
{
    return table.toUpper() + QLatin1Char('_') + index;
}

namespace {

// The declared type of a column: the same words on both engines where SQLite knows them,
// the server's own types (and the program's two domains) where it does not.
QString typeName(const Column &c, bool server)
{
    switch (c.type) {
    case ColumnType::Text:
        return QStringLiteral("VARCHAR(") + QString::number(c.width) + QLatin1Char(')');
    case ColumnType::Memo:
        return QStringLiteral("TEXT");
    case ColumnType::Long:
        if (!c.counter)
            return QStringLiteral("INTEGER");
        return server ? QStringLiteral("INTEGER GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")
                      : QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    case ColumnType::Integer:
        return QStringLiteral("SMALLINT");
    case ColumnType::Currency:
        return QStringLiteral("CURRENCY");
    case ColumnType::Date:
        return QStringLiteral("DATE");
    case ColumnType::Boolean:
        return server ? QStringLiteral("TAK_NIE") : QStringLiteral("BOOLEAN");
    case ColumnType::Double:
        return server ? QStringLiteral("DOUBLE PRECISION") : QStringLiteral("DOUBLE");
    }
    return QStringLiteral("TEXT");
}

} // namespace

QString columnSql(const Column &c, Dialect::Engine engine)
{
    const bool server = engine == Dialect::Engine::Postgres;
    const QString n = quoted(server ? c.name.toLower() : c.name);
    QString sql = n + QLatin1Char(' ') + typeName(c, server);
    auto check = [&](const QString &suffix, const QString &condition) {
        sql += QStringLiteral(" CONSTRAINT ") + quoted(c.name + suffix) + QStringLiteral(" CHECK (") + condition +
               QLatin1Char(')');
    };
    if (c.required)
        sql += QStringLiteral(" NOT NULL");
    if (c.defaultValue.isValid())
        sql += QStringLiteral(" DEFAULT ") + literal(c.defaultValue);
    // The server's types keep their values in range themselves; SQLite is told by checks.
    if (server)
        return sql;
    switch (c.type) {
    case ColumnType::Text:
        check(QStringLiteral("_max_") + QString::number(c.width),
              QStringLiteral("length(") + n + QStringLiteral(") <= ") + QString::number(c.width));
        break;
    case ColumnType::Integer:
        check(QStringLiteral("_zakres"), n + QStringLiteral(" BETWEEN -32768 AND 32767"));
        break;
    case ColumnType::Currency:
        check(QStringLiteral("_kwota"), QStringLiteral("typeof(") + n + QStringLiteral(") IN ('integer','null')"));
        break;
    case ColumnType::Date:
        check(QStringLiteral("_data"), n + QStringLiteral(" IS NULL OR date(") + n + QStringLiteral(") IS ") + n);
        break;
    case ColumnType::Boolean:
        check(QStringLiteral("_logiczne"), n + QStringLiteral(" IN (0,1)"));
        break;
    default:
        break;
    }
    return sql;
}

ColumnType typeOfDeclared(const QString &declaredType)
{
    const QString t = declaredType.trimmed().toUpper();
    if (t.startsWith(QLatin1String("VARCHAR")))
        return ColumnType::Text;
    if (t == QLatin1String("TEXT") || t.contains(QLatin1String("CHAR")) || t.contains(QLatin1String("CLOB")))
        return ColumnType::Memo;
    if (t == QLatin1String("SMALLINT"))
        return ColumnType::Integer;
    if (t.contains(QLatin1String("INT")))
        return ColumnType::Long;
    if (t == QLatin1String("CURRENCY"))
        return ColumnType::Currency;
    if (t.startsWith(QLatin1String("DATE")))
        return ColumnType::Date;
    if (t == QLatin1String("BOOLEAN") || t == QLatin1String("TAK_NIE"))
        return ColumnType::Boolean;
    if (t.contains(QLatin1String("DOUB")) || t.contains(QLatin1String("REAL")) || t.contains(QLatin1String("FLOA")))
        return ColumnType::Double;
    return ColumnType::Text;
}

bool beginWrite(QSqlDatabase &db, QString *error)
{
    QSqlQuery q(db);
    if (q.exec(Dialect::beginWriteSql(db)))
        return true;
    if (error)
        *error = explainError(q.lastError());
    return false;
}

bool tableExists(const QSqlDatabase &db, const QString &table)
{
    return Dialect::tableExists(db, table);
}

bool hasColumn(const QSqlDatabase &db, const QString &table, const QString &column)
{
    const auto list = Dialect::columns(db, table);
    return std::any_of(list.begin(), list.end(),
                       [&](const auto &c) { return c.first.compare(column, Qt::CaseInsensitive) == 0; });
}

bool CreateDatabase(QSqlDatabase &db, QString *error)
{
    if (!beginWrite(db, error))
        return false;
    for (const Table &t : baseTables()) {
        if (tableExists(db, t.name))
            continue;
        QString err;
        bool ok = run(db, createTableSql(db, t), &err);
        for (const Index &i : t.indexes)
            ok = ok && run(db, createIndexSql(db, t, i), &err);
        if (!ok) {
            db.rollback();
            if (error)
                *error = err;
            return false;
        }
    }
    if (!db.commit()) {
        if (error)
            *error = db.lastError().text();
        db.rollback();
        return false;
    }
    return true;
}

void UpgradeStructure(QSqlDatabase &db)
{
    // A file that cannot be written still reads its structure in one transaction.
    const bool inTransaction = beginWrite(db) || db.transaction();
    // A table's columns are read once (many steps look at the same table), and again only
    // after a step has changed the structure.
    QHash<QString, QList<QPair<QString, QString>>> known;
    for (const Step &step : upgradeSteps()) {
        const QString table = step.table.toLower();
        if (!known.contains(table))
            known.insert(table, Dialect::columns(db, step.table));
        const auto &list = known[table];
        const bool present = std::any_of(list.begin(), list.end(), [&](const auto &c) {
            return c.first.compare(step.marker, Qt::CaseInsensitive) == 0;
        });
        if (step.needed ? present && step.needed(db) : !present) {
            step.apply(db);
            known.clear();
        }
    }
    if (inTransaction && !db.commit())
        db.rollback();
}

namespace {

// Each column of a table with its type, from the table's own definition.
std::optional<QList<QPair<QString, ColumnType>>> columnsOf(const QSqlDatabase &db, const QString &table)
{
    if (!tableExists(db, table))
        return std::nullopt;
    QList<QPair<QString, ColumnType>> columns;
    for (const auto &[name, declared] : Dialect::columns(db, table))
        columns.append({name, typeOfDeclared(declared)});
    return columns;
}

} // namespace

bool FixNulls(QSqlDatabase &db, const QString &table)
{
    const auto columns = columnsOf(db, table);
    if (!columns || !beginWrite(db))
        return false;
    for (const auto &[name, type] : *columns) {
        const QString set = QStringLiteral("UPDATE ") + quoted(db, table) + QStringLiteral(" SET ") + quoted(name);
        const QString where = QStringLiteral(" WHERE ") + quoted(name) + QStringLiteral(" IS NULL");
        if (type == ColumnType::Text || type == ColumnType::Memo)
            run(db, set + QStringLiteral("=''") + where);
        else if (type != ColumnType::Date && name.toUpper() != QLatin1String("ID"))
            run(db, set + QStringLiteral("=0") + where);
    }
    return db.commit();
}

bool ZeroToNull(QSqlDatabase &db, const QString &table)
{
    const auto columns = columnsOf(db, table);
    if (!columns || !beginWrite(db))
        return false;
    for (const auto &[name, type] : *columns)
        if (type == ColumnType::Date)
            run(db, QStringLiteral("UPDATE ") + quoted(db, table) + QStringLiteral(" SET ") + quoted(name) +
                        QStringLiteral("=NULL WHERE ") + quoted(name) +
                        (Dialect::isPostgres(db) ? QStringLiteral(" = '1899-12-30'")
                                                 : QStringLiteral(" IN (0, '', '1899-12-30')")));
    return db.commit();
}

namespace {

// The server's own words for the same troubles, where it names no constraint of ours.
std::optional<QString> explainServerError(const QSqlError &error, const QString &text)
{
    // A statement on a connection the driver has already closed fails with no error at all.
    const bool closed = error.type() == QSqlError::NoError && text.trimmed().isEmpty();
    if (closed || Dialect::connectionLost(error))
        return QStringLiteral("Utracono połączenie z serwerem bazy danych firmy. Nic nie zostało zapisane. "
                              "Program połączy się ponownie, gdy serwer będzie dostępny.");
    static const QRegularExpression tooLong(QStringLiteral("value too long for type character varying\\((\\d+)\\)"));
    if (const auto m = tooLong.match(text); m.hasMatch())
        return QStringLiteral("Tekst w jednym z pól jest za długi: pole mieści najwyżej %1 znaków. "
                              "Skróć go, nic nie zostało zapisane.")
            .arg(m.captured(1));
    static const QRegularExpression duplicate(QStringLiteral("duplicate key value violates unique constraint[^\\n]*(?:\\n.*Key \\(([^)]+)\\))?"));
    if (const auto m = duplicate.match(text); m.hasMatch())
        return QStringLiteral("Wartość pola %1 już istnieje w bazie, a musi być niepowtarzalna. "
                              "Nic nie zostało zapisane.")
            .arg(m.captured(1).toUpper());
    static const QRegularExpression notNull(QStringLiteral("null value in column \"(\\w+)\""));
    if (const auto m = notNull.match(text); m.hasMatch())
        return QStringLiteral("Pole %1 nie może być puste. Nic nie zostało zapisane.").arg(m.captured(1).toUpper());
    static const QRegularExpression range(QStringLiteral("(smallint|integer|bigint) out of range|numeric field overflow"));
    if (range.match(text).hasMatch())
        return QStringLiteral("Liczba w jednym z pól jest poza zakresem. Nic nie zostało zapisane.");
    if (text.contains(QLatin1String("domain tak_nie")))
        return QStringLiteral("Pole przyjmuje tylko wartość Tak lub Nie. Nic nie zostało zapisane.");
    if (text.contains(QLatin1String("type date")) || text.contains(QLatin1String("date/time field value")))
        return QStringLiteral("Pole daty musi zawierać prawidłową datę. Nic nie zostało zapisane.");
    static const QRegularExpression noColumn(QStringLiteral("column \"(\\w+)\"(?: of relation \"(\\w+)\")? does not exist"));
    if (const auto m = noColumn.match(text); m.hasMatch())
        return QStringLiteral("W bazie firmy brakuje kolumny %1 (baza z innej wersji programu lub uszkodzona). "
                              "Nic nie zostało zapisane.")
            .arg(m.captured(2).isEmpty() ? m.captured(1) : m.captured(2) + QLatin1Char('.') + m.captured(1));
    static const QRegularExpression noTable(QStringLiteral("relation \"([\\w.]+)\" does not exist"));
    if (const auto m = noTable.match(text); m.hasMatch())
        return QStringLiteral("W bazie firmy brakuje tabeli %1 (baza z innej wersji programu lub uszkodzona). "
                              "Nic nie zostało zapisane.")
            .arg(m.captured(1));
    if (text.contains(QLatin1String("statement timeout")))
        return QStringLiteral("Polecenie bazy danych trwało za długo i zostało przerwane. Nic nie zostało zapisane.");
    if (text.contains(QLatin1String("lock timeout")) || text.contains(QLatin1String("deadlock detected")) ||
        text.contains(QLatin1String("could not serialize")))
        return QStringLiteral("Baza firmy jest zajęta przez inne stanowisko. Spróbuj ponownie za chwilę.");
    if (text.contains(QLatin1String("read-only transaction")) || text.contains(QLatin1String("permission denied")))
        return QStringLiteral("Brak uprawnień do zmiany bazy firmy na serwerze. Zmiany nie zostały zapisane.");
    return std::nullopt;
}

} // namespace

bool isOutOfRange(const QSqlError &error)
{
    static const QRegularExpression range(QStringLiteral("(smallint|integer|bigint) out of range|numeric field overflow"));
    return range.match(error.databaseText()).hasMatch();
}

QString explainError(const QSqlError &error)
{
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    if (const auto server = explainServerError(error, text + QLatin1Char('\n') + error.driverText()))
        return *server;
    static const QRegularExpression check(QStringLiteral("CHECK constraint failed: (\\S+?)_(max_(\\d+)|kwota|data|logiczne|zakres)\\b"));
    static const QRegularExpression unique(QStringLiteral("UNIQUE constraint failed: ([\\w.]+)"));
    static const QRegularExpression notNull(QStringLiteral("NOT NULL constraint failed: \\w+\\.(\\w+)"));
    if (const auto m = check.match(text); m.hasMatch()) {
        const QString col = m.captured(1);
        const QString kind = m.captured(2);
        if (kind.startsWith(QLatin1String("max_")))
            return QStringLiteral("Tekst w polu %1 jest za długi: pole mieści najwyżej %2 znaków. "
                                  "Skróć go, nic nie zostało zapisane.")
                .arg(col, m.captured(3));
        if (kind == QLatin1String("kwota"))
            return QStringLiteral("Pole %1 musi zawierać kwotę. Nic nie zostało zapisane.").arg(col);
        if (kind == QLatin1String("data"))
            return QStringLiteral("Pole %1 musi zawierać prawidłową datę. Nic nie zostało zapisane.").arg(col);
        if (kind == QLatin1String("logiczne"))
            return QStringLiteral("Pole %1 przyjmuje tylko wartość Tak lub Nie. Nic nie zostało zapisane.").arg(col);
        return QStringLiteral("Liczba w polu %1 jest poza zakresem. Nic nie zostało zapisane.").arg(col);
    }
    if (const auto m = unique.match(text); m.hasMatch()) {
        const QString col = m.captured(1).section(QLatin1Char('.'), -1);
        return QStringLiteral("Wartość pola %1 już istnieje w bazie, a musi być niepowtarzalna. "
                              "Nic nie zostało zapisane.")
            .arg(col);
    }
    if (const auto m = notNull.match(text); m.hasMatch())
        return QStringLiteral("Pole %1 nie może być puste. Nic nie zostało zapisane.").arg(m.captured(1));
    static const QRegularExpression noColumn(QStringLiteral("no such column: ([\\w.]+)|table (\\w+) has no column named (\\w+)"));
    if (const auto m = noColumn.match(text); m.hasMatch()) {
        const QString col = m.captured(1).isEmpty() ? m.captured(2) + QLatin1Char('.') + m.captured(3) : m.captured(1);
        return QStringLiteral("W pliku firmy brakuje kolumny %1 (plik z innej wersji programu lub uszkodzony). "
                              "Nic nie zostało zapisane.")
            .arg(col);
    }
    static const QRegularExpression noTable(QStringLiteral("no such table: ([\\w.]+)"));
    if (const auto m = noTable.match(text); m.hasMatch())
        return QStringLiteral("W pliku firmy brakuje tabeli %1 (plik z innej wersji programu lub uszkodzony). "
                              "Nic nie zostało zapisane.")
            .arg(m.captured(1));
    if (text.contains(QLatin1String("interrupted"), Qt::CaseInsensitive))
        return QStringLiteral("Polecenie bazy danych trwało dłużej niż %1 sekund i zostało przerwane. "
                              "Plik bazy może być uszkodzony albo celowo spreparowany.")
            .arg(FirmDatabase::StatementLimitSeconds);
    if (text.contains(QLatin1String("readonly"), Qt::CaseInsensitive) ||
        text.contains(QLatin1String("read-only"), Qt::CaseInsensitive))
        return QStringLiteral("Baza firmy jest otwarta tylko do odczytu. Zmiany nie zostały zapisane.");
    if (text.contains(QLatin1String("locked"), Qt::CaseInsensitive) ||
        text.contains(QLatin1String("busy"), Qt::CaseInsensitive))
        return  QStringLiteral("Baza firmy jest zajęta przez inny program. Spróbuj ponownie za chwilę.");
    if (text.contains(QLatin1String("disk"), Qt::CaseInsensitive) && text.contains(QLatin1String("full"), Qt::CaseInsensitive))
        return QStringLiteral("Brak miejsca na dysku. Zmiany nie zostały zapisane.");
    return QStringLiteral("Błąd bazy danych: ") + text;
}

} // namespace Structure
