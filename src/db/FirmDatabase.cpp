#include "FirmDatabase.h"

#include "Dialect.h"
#include "Structure.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <sqlite3.h>

#include <chrono>
#include <thread>

namespace FirmDatabase {

namespace {

bool writable(const QFileInfo &fi)
{
    // The permission bits decide, also for root: a file marked read-only stays read-only.
    if (!fi.isWritable() || !(fi.permissions() & QFileDevice::WriteOwner))
        return false;
    // SQLite writes its journal beside the file.
    const QFileInfo dir(fi.absolutePath());
    return dir.isWritable() && (dir.permissions() & QFileDevice::WriteOwner);
}

QString textOf(sqlite3_value *value)
{
    // sqlite3_value_text before sqlite3_value_bytes: the byte count is that of the UTF-8 text.
    const auto *data = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return QString::fromUtf8(data, sqlite3_value_bytes(value));
}

// zawiera(text, part): 1 when `part` stands anywhere in `text`, letter case ignored for
// every letter, Polish ones included ("łódź" finds "ŁÓDŹ"), which SQLite's LIKE and lower()
// cannot do (they fold ASCII only). No character of `part` is a wildcard. Null gives 0.
void containsIgnoringCase(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    if (argc != 2 || sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_int(context, 0);
        return;
    }
    const QString text = textOf(argv[0]).toCaseFolded();
    const QString part = textOf(argv[1]).toCaseFolded();
    sqlite3_result_int(context, text.contains(part) ? 1 : 0);
}

// jednakowe(text, other): 1 when both are the same text apart from letter case (Polish
// letters included) and blanks at their ends, the way names of contractors are matched.
// Null gives 0.
void sameIgnoringCase(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    if (argc != 2 || sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_int(context, 0);
        return;
    }
    const QString text = textOf(argv[0]).trimmed().toCaseFolded();
    const QString other = textOf(argv[1]).trimmed().toCaseFolded();
    sqlite3_result_int(context, text == other ? 1 : 0);
}

// The collation "polski": names in the order of the Polish alphabet ("Łódź" after "Lublin",
// not after "Zabrze" as byte order would have it).
int comparePolish(void *, int leftLength, const void *left, int rightLength, const void *right)
{
    static const QCollator collator{QLocale(QLocale::Polish, QLocale::Poland)};
    const int order = collator.compare(QString::fromUtf8(static_cast<const char *>(left), leftLength),
                                       QString::fromUtf8(static_cast<const char *>(right), rightLength));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

using Clock = std::chrono::steady_clock;

// The work time of the statement running now. Statements of one thread never overlap in
// SQLite's engine, so one clock per thread serves every connection.
struct StatementClock {
    Clock::time_point last;
    Clock::duration spent{};
};
thread_local StatementClock statementClock;

int statementStarted(unsigned, void *, void *, void *)
{
    statementClock = {Clock::now(), {}};
    return 0;
}

// Called every thousand steps of the engine. A longer pause between two calls is the program
// working between two rows of the result, which the statement is not to be charged for.
int statementProgress(void *)
{
    const auto now = Clock::now();
    const auto gap = now - statementClock.last;
    statementClock.last = now;
    if (gap < std::chrono::milliseconds(100))
        statementClock.spent += gap;
    return statementClock.spent > std::chrono::seconds(StatementLimitSeconds) ? 1 : 0;
}

// Waits for another program's write lock, trying every millisecond: SQLite's own waiting
// sleeps longer and longer, so a writer that commits many times in a row would keep the
// lock at each try and the other one would give up.
int waitForLock(void *, int tries)
{
    thread_local Clock::time_point start;
    const auto now = Clock::now();
    if (tries == 0)
        start = now;
    if (now - start > std::chrono::seconds(10))
        return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 1;
}

// Gives an open connection the function and collation the program's queries use, and the
// guards against files made elsewhere.
void registerFunctions(const QSqlDatabase &db)
{
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return;
    sqlite3 *sqlite = *static_cast<sqlite3 *const *>(handle.constData());
    if (!sqlite)
        return;
    // Functions named in a file's schema (views, triggers, defaults) run only if harmless.
    sqlite3_exec(sqlite, "PRAGMA trusted_schema=OFF", nullptr, nullptr, nullptr);
    sqlite3_trace_v2(sqlite, SQLITE_TRACE_STMT, statementStarted, nullptr);
    sqlite3_progress_handler(sqlite, 1000, statementProgress, nullptr);
    sqlite3_busy_handler(sqlite, waitForLock, nullptr);
    sqlite3_create_function_v2(sqlite, "zawiera", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                               containsIgnoringCase, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(sqlite, "jednakowe", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                               sameIgnoringCase, nullptr, nullptr, nullptr);
    sqlite3_create_collation_v2(sqlite, "polski", SQLITE_UTF8, nullptr, comparePolish, nullptr);
}

bool programTable(const QString &name)
{
    for (const Structure::Table &t : Structure::fullTables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QSqlDatabase addConnection(const QString &path, const QString &connection, bool readOnly)
{
    if (QSqlDatabase::contains(connection))
        close(connection);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=3000");
    if (readOnly)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    db.setConnectOptions(options);
    return db;
}

// A firm in a schema of a database server: the schema must hold the program's tables and
// nothing that could change their data behind the program's back.
std::optional<QSqlDatabase> openOnServer(const QString &address, const QString &connection, bool *readOnly,
                                         QString *error)
{
    auto fail = [&](const QString &message) -> std::optional<QSqlDatabase> {
        close(connection);
        if (error)
            *error = message;
        return std::nullopt;
    };
    const auto a = Dialect::parseAddress(address, error);
    if (!a)
        return std::nullopt;
    const QString shown = Dialect::addressText(*a);
    QString why;
    if (!Dialect::connect(*a, connection, &why))
        return fail(why);
    // Checks in a scope of their own: a connection can be removed only when no handle is left.
    const QString problem = [&]() -> QString {
        QSqlDatabase db = QSqlDatabase::database(connection, false);
        if (!Structure::tableExists(db, QStringLiteral("ZLECANKI")) || !Structure::tableExists(db, QStringLiteral("FIRMA")))
            return QStringLiteral("Pod tym adresem nie ma bazy danych firmy programu Zlecanki:\n") + shown;
        if (const QString foreign = foreignObjects(db, a->schema); !foreign.isEmpty())
            return foreign + QLatin1Char('\n') + shown;
        if (!Dialect::definePostgresHelpers(db, &why))
            return QStringLiteral("Nie można przygotować bazy danych firmy na serwerze:\n") + shown + QLatin1Char('\n') + why;
        if (readOnly) {
            QSqlQuery q(db);
            *readOnly = !(q.exec(QStringLiteral("SELECT has_table_privilege('zlecanki', 'INSERT,UPDATE') AND "
                                                 "has_table_privilege('firma', 'UPDATE')")) &&
                          q.next() && q.value(0).toBool());
        }
        return {};
    }();
    if (!problem.isEmpty())
        return fail(problem);
    return QSqlDatabase::database(connection, false);
}

bool createOnServer(const QString &address, QString *error)
{
    const auto a = Dialect::parseAddress(address, error);
    if (!a)
        return false;
    const QString shown = Dialect::addressText(*a);
    const QString connection = QStringLiteral("zlecanki-create-") + shown;
    auto fail = [&](const QString &message) {
        if (error)
            *error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + shown + QLatin1Char('\n') + message;
        return false;
    };
    QString why;
    bool ok = false;
    if (!Dialect::connect(*a, connection, &why)) {
        close(connection);
        if (error)
            *error = why;
        return false;
    }
    {
        QSqlDatabase db = QSqlDatabase::database(connection, false);
        QSqlQuery q(db);
        q.prepare(QStringLiteral("SELECT 1 FROM information_schema.schemata WHERE schema_name = ?"));
        q.addBindValue(a->schema);
        const bool schemaThere = q.exec() && q.next();
        if (schemaThere && Structure::tableExists(db, QStringLiteral("ZLECANKI"))) {
            why = QStringLiteral("Firma już istnieje pod tym adresem, nie zostanie nadpisana.");
        } else if (!schemaThere && !q.exec(QStringLiteral("CREATE SCHEMA \"") + a->schema + QLatin1Char('"'))) {
            why = q.lastError().text();
        } else if (Dialect::definePostgresHelpers(db, &why) && Structure::CreateDatabase(db, &why)) {
            Structure::UpgradeStructure(db);
            ok = Structure::tableExists(db, QStringLiteral("OdwolaniaSerwera"));
            if (!ok)
                why = QStringLiteral("Nie udało się uzupełnić struktury bazy.");
        }
        // Nothing half-built stays behind: a schema made here goes whole, in a schema that
        // was there only the program's tables go.
        if (!ok && !schemaThere) {
            q.exec(QStringLiteral("DROP SCHEMA IF EXISTS \"") + a->schema + QStringLiteral("\" CASCADE"));
        } else if (!ok && why != QStringLiteral("Firma już istnieje pod tym adresem, nie zostanie nadpisana.")) {
            for (const Structure::Table &t : Structure::fullTables())
                q.exec(QStringLiteral("DROP TABLE IF EXISTS ") + Structure::quoted(db, t.name));
            q.exec(QStringLiteral("DROP TABLE IF EXISTS odwolaniaserwera"));
        }
    }
    close(connection);
    return ok || fail(why);
}

} // namespace

std::optional<QSqlDatabase> open(const QString &path, const QString &connection, bool *readOnly, QString *error)
{
    if (Dialect::isAddress(path))
        return openOnServer(path, connection, readOnly, error);
    auto fail = [&](const QString &message) -> std::optional<QSqlDatabase> {
        if (error)
            *error = message;
        return std::nullopt;
    };
    const QFileInfo fi(path);
    const QString shown = QDir::toNativeSeparators(fi.absoluteFilePath());
    if (path.isEmpty() || !fi.exists())
        return fail(QStringLiteral("Nie ma pliku bazy danych firmy:\n") + shown);
    if (fi.isDir())
        return fail(QStringLiteral("Wskazano folder, a nie plik bazy danych firmy:\n") + shown);
    if (!fi.isReadable())
        return fail(QStringLiteral("Brak uprawnień do odczytu pliku bazy danych firmy:\n") + shown);

    const bool ro = !writable(fi);
    // Checks in a scope of their own: a connection can be removed only when no handle is left.
    const QString problem = [&]() -> QString {
        QSqlDatabase db = addConnection(fi.absoluteFilePath(), connection, ro);
        if (!db.open())
            return QStringLiteral("Nie można otworzyć bazy danych firmy:\n") + shown + QLatin1Char('\n') +
                   db.lastError().text();
        registerFunctions(db);
        QSqlQuery q(db);
        if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")))
            return QStringLiteral("Plik nie jest bazą danych firmy (uszkodzony albo innego rodzaju):\n") + shown;
        if (const QString foreign = foreignObjects(db); !foreign.isEmpty())
            return foreign + QLatin1Char('\n') + shown;
        if (!Structure::tableExists(db, QStringLiteral("ZLECANKI")) || !Structure::tableExists(db, QStringLiteral("FIRMA")))
            return QStringLiteral("Plik nie jest bazą danych firmy programu Zlecanki:\n") + shown;
        return {};
    }();
    if (!problem.isEmpty()) {
        close(connection);
        return fail(problem);
    }
    if (readOnly)
        *readOnly = ro;
    return QSqlDatabase::database(connection, false);
}

std::optional<QSqlDatabase> openFileToRead(const QString &path, const QString &connection, QString *error)
{
    QString problem;
    {
        QSqlDatabase db = addConnection(QFileInfo(path).absoluteFilePath(), connection, true);
        if (db.open()) {
            registerFunctions(db);
            // The engine reads the file's header only on the first statement.
            QSqlQuery q(db);
            if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")))
                problem = q.lastError().text();
        } else {
            problem = db.lastError().text();
        }
    }
    if (!problem.isEmpty()) {
        close(connection);
        if (error)
            *error = problem;
        return std::nullopt;
    }
    return QSqlDatabase::database(connection, false);
}

QString foreignObjects(const QSqlDatabase &db, const QString &schema)
{
    QString why;
    const auto objects = Dialect::schemaObjects(db, schema, &why);
    if (!objects)
        return QStringLiteral("Nie można odczytać spisu tabel bazy danych: ") + why;
    QStringList found;
    for (const Dialect::SchemaObject &o : *objects) {
        if (o.kind == QLatin1String("view")) {
            if (programTable(o.name))
                found << QStringLiteral("widok %1 w miejscu tabeli programu").arg(o.name);
        } else if (programTable(o.table)) {
            found << (o.kind == QLatin1String("rule") ? QStringLiteral("reguła %1 na tabeli %2")
                                                      : QStringLiteral("wyzwalacz %1 na tabeli %2"))
                         .arg(o.name, o.table);
        }
    }
    if (found.isEmpty())
        return {};
    return QStringLiteral("Baza danych zawiera obiekty, które mogłyby zmieniać albo podmieniać dane programu, "
                          "i nie zostanie użyta:\n") +
           found.join(QLatin1Char('\n'));
}

void close(const QString &connection)
{
    {
        QSqlDatabase db = QSqlDatabase::database(connection, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

bool create(const QString &path, QString *error)
{
    if (Dialect::isAddress(path))
        return createOnServer(path, error);
    const QFileInfo fi(path);
    if (fi.exists()) {
        if (error)
            *error = QStringLiteral("Plik już istnieje, nie zostanie nadpisany:\n") +
                     QDir::toNativeSeparators(fi.absoluteFilePath());
        return false;
    }
    if (!QDir().mkpath(fi.absolutePath())) {
        if (error)
            *error = QStringLiteral("Nie można utworzyć folderu:\n") + QDir::toNativeSeparators(fi.absolutePath());
        return false;
    }
    const QString connection = QStringLiteral("zlecanki-create-") + fi.absoluteFilePath();
    bool ok = false;
    {
        QSqlDatabase db = addConnection(fi.absoluteFilePath(), connection, false);
        if (!db.open()) {
            if (error)
                *error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") +
                         QDir::toNativeSeparators(fi.absoluteFilePath()) + QLatin1Char('\n') + db.lastError().text();
        } else {
            registerFunctions(db);
            QString why;
            ok = Structure::CreateDatabase(db, &why);
            if (ok)
                Structure::UpgradeStructure(db);
            else if (error)
                *error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + why;
        }
    }
    close(connection);
    if (!ok)
        QFile::remove(fi.absoluteFilePath());
    return ok;
}

} // namespace FirmDatabase
