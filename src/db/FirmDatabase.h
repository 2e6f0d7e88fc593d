#pragma once

#include <QSqlDatabase>
#include <QString>

#include <optional>

// Firm databases: one SQLite file per firm, or a schema of a PostgreSQL database named by an
// address (postgresql://host:port/database?schema=NAME) for an office whose workstations
// share their firms. Opening checks that the file (or schema) is there, readable, a firm's
// database with nothing foreign in it, and falls back to read-only when it may not be
// written, so a firm on a write-protected medium can be viewed.
namespace FirmDatabase {

inline const QString Extension = QStringLiteral("zlc");
inline const QString FileFilter = QStringLiteral("Bazy przelewów (*.zlc);;Wszystkie pliki (*)");

struct OpenError {
    QString message; // Polish, for the user
};

// Opens `path` under the connection name `connection` (replacing a connection of that name).
// On success the database is open; `readOnly` tells whether saving is impossible.
std::optional<QSqlDatabase> open(const QString &path, const QString &connection, bool *readOnly, QString *error);
// A connection only to read another firm's file (the source of a copy or an import): opened
// read-only, with the guards every firm connection has but none of open()'s checks, so the
// caller words its own refusals. Empty, with the engine's message, when it cannot be opened.
std::optional<QSqlDatabase> openFileToRead(const QString &path, const QString &connection, QString *error);
// Closes and forgets a connection; every query on it must be gone.
void close(const QString &connection);
// Creates a new firm (file or schema on a server) with the full, current structure.
// Refuses an existing file or a schema that already holds a firm.
bool create(const QString &path, QString *error);

// A file made elsewhere is not trusted: the program's tables may not carry triggers and
// their names may not be views. Empty when `schema` (of a database open on `db`) is clean,
// else a Polish list of what is there.
QString foreignObjects(const QSqlDatabase &db, const QString &schema = QStringLiteral("main"));
// How long one statement may run before it is stopped (a recursive view in a crafted
// file would otherwise hang the program).
inline constexpr int StatementLimitSeconds = 5;

} // namespace FirmDatabase
