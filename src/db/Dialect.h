#pragma once

#include <QList>
#include <QPair>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>

#include <optional>

// A firm lives either in a SQLite file (the default) or in a schema of a PostgreSQL
// database shared by an office. Everything the two engines spell differently is here, so
// that the rest of the program writes its SQL once.
namespace Dialect {

enum class Engine { Sqlite, Postgres };

Engine engineOf(const QSqlDatabase &db);
inline bool isPostgres(const QSqlDatabase &db) { return engineOf(db) == Engine::Postgres; }

// A firm on a server: postgresql://[user@]host[:port]/database[?schema=NAME][&host=/socket/dir]
// The password comes from ~/.pgpass or the libpq environment; the program never keeps one.
struct Address {
    QString host;     // a name, an address, or a socket folder (starting with '/')
    int port = 0;     // 0: libpq's default
    QString database;
    QString user;     // empty: libpq's default (the login name)
    QString schema = QStringLiteral("public");
};

// True when `name` is meant as a server address rather than a file.
bool isAddress(const QString &name);
// The address's parts; a Polish message when it cannot be one.
std::optional<Address> parseAddress(const QString &text, QString *error = nullptr);
// The address written back in its usual form.
QString addressText(const Address &address);

// Opens a connection to a firm's server under `connection` (replacing one of that name),
// with the firm's schema as the search path and the program's limits set.
bool connect(const Address &address, const QString &connection, QString *error);

// Makes the connection of `db` again after the server was lost (the same QSqlDatabase, so
// queries and models holding it go on), with the session set as connect() sets it.
bool reconnect(QSqlDatabase &db, const Address &address, QString *error);

// The first statement of a write transaction: it takes SQLite's write lock at once; on the
// server rows are locked as they are written.
QString beginWriteSql(const QSqlDatabase &db);
// The Id the counter gave the row `q` has just inserted.
qint64 insertedId(const QSqlQuery &q, const QSqlDatabase &db);
// A condition true when integer arithmetic `expression` stayed exact: SQLite turns an
// overflowing sum into a floating-point number, the server stops the statement instead.
QString exactInteger(const QSqlDatabase &db, const QString &expression);

// Holds, until the transaction ends, a lock named `key` within the firm, so that two
// workstations adding the same thing (a contractor of one name) do it one after the other.
// Nothing on SQLite, whose write transaction keeps every other writer out already.
bool lockKey(QSqlDatabase &db, const QString &key, QSqlError *error = nullptr);

// The catalogue: whether a table (any letter case) exists, and its columns with their
// declared types (a server's domain name where the column has one).
bool tableExists(const QSqlDatabase &db, const QString &table, const QString &schema = QString());
QList<QPair<QString, QString>> columns(const QSqlDatabase &db, const QString &table, const QString &schema = QString());
// Views and triggers (and, on the server, rewrite rules): kind ("view", "trigger", "rule"),
// name, and the table it belongs to.
struct SchemaObject {
    QString kind;
    QString name;
    QString table;
};
std::optional<QList<SchemaObject>> schemaObjects(const QSqlDatabase &db, const QString &schema, QString *error);

// The functions and collation the program's queries use, defined in the firm's schema on a
// server (on SQLite they are registered with the connection instead).
bool definePostgresHelpers(QSqlDatabase &db, QString *error);

// True when an error says the server went away (the connection is to be made again).
bool connectionLost(const QSqlError &error);
// True when a write was refused because a unique key (a name, a reference) is taken.
bool duplicateKey(const QSqlError &error);
// True when the server connection of `db` is known to be broken (or was closed by the driver).
bool broken(const QSqlDatabase &db);

// The channel on which the workstations of one firm tell each other that data changed.
QString changeChannel(const QSqlDatabase &db);

} // namespace Dialect
