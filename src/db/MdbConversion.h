#pragma once

#include "OldDatabase.h"

#include <QList>
#include <QPair>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

// Turns a firm database of the earlier Windows version (an Access ".mdb" file) into a firm
// database of ours. The new database gets the base structure, then the columns and tables
// the old file had already gained by its upgrades, then the old rows (counters keep their
// numbers), and last the structure upgrade, which does to the converted firm exactly what
// opening the old file would have done: columns it never had are added as Null, and a
// settings table older than the Elixir step is reset to its defaults.
//
// The firm's tables and their columns are matched without regard to letter case; columns
// this program does not know are left out. Any other table of the old file is copied as
// it is, under its own name, so nothing the file held is lost.
namespace MdbConversion {

struct Result {
    bool ok = false;
    QString error;                       // Polish, for the user, when not ok
    QStringList warnings;                // things done to fit the data (texts cut short, tables left out)
    QList<QPair<QString, qint64>> rows;  // rows copied, per old table, in the file's order
    bool firmTables = false;             // the old file had the firm's documents or firm data table
};

// Converts `source` into `db`, an open and empty SQLite database. Nothing is left half
// done: on failure the copied rows are rolled back.
Result convert(OldDatabase::Source &source, QSqlDatabase &db);

// Converts the Access file `mdbPath` into the new firm file `newPath` (refused when it
// exists; removed again when the conversion fails). The old file is only read.
Result convertFile(const QString &mdbPath, const QString &newPath);

// The firm file a conversion of `mdbPath` writes: beside it, same name, our extension.
QString convertedPath(const QString &mdbPath);

// Opening an Access file as a firm: asks, converts it into a firm database beside it (or
// offers the one converted before) and gives that file's path; empty when the user said
// no or the conversion failed, which has been told.
QString convertForOpening(const QString &mdbPath);

// A message for an old file that holds none of a firm's tables.
QString notAFirmMessage(const QString &path);

} // namespace MdbConversion
