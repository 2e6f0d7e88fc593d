#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "db/Dialect.h"

// The firm database: every table, column, width and index, how a new database is built
// and how an older one is brought up to date on each opening.
//
// Storage in SQLite, chosen so that other tools read a firm file plainly:
//   Text N   VARCHAR(N), longer values refused by a named CHECK ("<COLUMN>_max_<N>")
//   Memo     TEXT
//   Long     INTEGER (a counter is INTEGER PRIMARY KEY AUTOINCREMENT)
//   Integer  SMALLINT, 16-bit range checked
//   Currency CURRENCY, an integer count of ten-thousandths of a złoty (1234.50 zł = 12345000)
//   Date     DATE, ISO text "YYYY-MM-DD" or NULL, checked to be a real date
//   Boolean  BOOLEAN, 0 or 1
//   Double   DOUBLE
// Index names carry their table's name, since SQLite keeps one namespace for indexes.
//
// On a PostgreSQL server the same columns take the server's types: VARCHAR(N), TEXT, INTEGER
// (a counter is an identity column), SMALLINT, the domain CURRENCY over BIGINT, DATE, the
// domain TAK_NIE (0 or 1) and DOUBLE PRECISION; names are in lower case, and a table without
// a counter has a column "rowid", the row number SQLite keeps without one.
namespace Structure {

enum class ColumnType { Text, Long, Integer, Currency, Date, Boolean, Memo, Double };

struct Column {
    QString name;
    ColumnType type = ColumnType::Text;
    int width = 0;          // Text only
    bool counter = false;   // Long only
    bool required = false;  // NOT NULL
    QVariant defaultValue;  // invalid: no default
};

struct Index {
    QString name; // as the table knows it ("PrimaryKey", "DATA_DOKUMENTU")
    QStringList columns;
    bool unique = false;
};

struct Table {
    QString name;
    QList<Column> columns;
    QList<Index> indexes;
};

// The base structure, in the order the tables are created.
const QList<Table> &baseTables();
// Every table a fully upgraded firm database has, with every column (base and upgrade).
const QList<Table> &fullTables();
// The definition of one column of the full structure (names without regard to case).
const Column *findColumn(const QString &table, const QString &column);

// The SQLite name of an index of a table.
QString indexName(const QString &table, const QString &index);
// The column's definition as it stands in CREATE TABLE / ADD COLUMN.
QString columnSql(const Column &column, Dialect::Engine engine = Dialect::Engine::Sqlite);
// The column type behind a declared SQLite type of ours (Text for anything unknown).
ColumnType typeOfDeclared(const QString &declaredType);
// Identifier quoted for SQL text, letter case kept (for SQLite, which ignores it).
QString quoted(const QString &identifier);
// A table or column name quoted for the engine of `db`: on the server, names are in lower
// case, as unquoted names in queries are read.
QString quoted(const QSqlDatabase &db, const QString &identifier);

// Begins a transaction that takes the write lock at once, so a second writer waits for it
// (within the busy timeout) instead of failing when it turns from reading to writing.
bool beginWrite(QSqlDatabase &db, QString *error = nullptr);

bool tableExists(const QSqlDatabase &db, const QString &table);
bool hasColumn(const QSqlDatabase &db, const QString &table, const QString &column);

// Builds the base structure in `db`. Existing tables are left alone. One transaction.
bool CreateDatabase(QSqlDatabase &db, QString *error = nullptr);
// Brings `db` up to date. Every step is guarded by its marker column and runs with its
// errors ignored, so any older database reaches the same final structure and a second
// run changes nothing.
void UpgradeStructure(QSqlDatabase &db);
// Replaces Nulls by '' (text) or 0 (others, but never ID); dates are left alone.
bool FixNulls(QSqlDatabase &db, const QString &table);
// Turns zero dates (the old engine's day zero, 30-12-1899, or a stored 0) back into Null.
bool ZeroToNull(QSqlDatabase &db, const QString &table);

// A clear Polish message for a failed statement on a firm database: too long text,
// not an amount, not a date, a duplicate key, a read-only or busy file.
QString explainError(const QSqlError &error);
// True when a statement failed because a number went beyond its column's range.
bool isOutOfRange(const QSqlError &error);

} // namespace Structure
