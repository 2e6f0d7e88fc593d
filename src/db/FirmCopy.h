#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>

#include <optional>

// Copying a firm's rows between two open connections, whichever engine each is on (a SQLite
// file, a schema of a PostgreSQL server). Columns go by name, over those both sides have, so
// a source of an older layout gives what it has. Values are read and written through bound
// parameters and converted by the kind of the target column: amounts stay exact counts of
// ten-thousandths, dates stay the same day, yes/no stays 0 or 1; a value that would change
// its meaning stops the copy instead.
namespace FirmCopy {

// Every table a firm keeps: the program's full structure and the references of server calls.
const QStringList &firmTables();

// Opens a firm to copy from: a file read-only, a server firm through its address. It must be
// a firm's database with nothing foreign in it. `shown` names it in the messages (an Access
// file converted first is told by its own name). Empty with a Polish message otherwise.
std::optional<QSqlDatabase> openSource(const QString &location, const QString &shown, const QString &connection,
                                       QString *error);

struct TableCopy {
    bool ok = false;
    qint64 rows = 0;
    QString error;      // Polish, when not ok
    QSqlError failure;  // the statement's own error, when one failed
};

// Copies every row of `table` from `source` into `target`, inside whatever transaction the
// target has open. Ids are kept; with `keepRowOrder` the row numbers of a table without Id
// too (the first row is the one the program reads). The target's counters are moved past
// the copied Ids and, with `counterFloor`, past the source's own counter.
TableCopy copyTable(const QSqlDatabase &source, QSqlDatabase &target, const QString &table, bool keepRowOrder,
                    bool counterFloor);

// The rows of a table, or nothing when it cannot be counted.
std::optional<qint64> rowCount(const QSqlDatabase &db, const QString &table);

struct TableCount {
    QString table;
    qint64 source = -1;
    qint64 target = -1;
};

struct FirmCopyResult {
    bool ok = false;
    QString error; // Polish, when not ok
    QList<TableCount> counts;
};

// Makes every firm table of `target` hold the rows of `source`: the target's rows go first,
// all in one transaction on the target. Afterwards the rows are counted on both sides and
// compared; a difference is a failure. A table the source does not have is left as it is.
FirmCopyResult copyFirm(const QSqlDatabase &source, QSqlDatabase &target);

} // namespace FirmCopy
