#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <optional>

// A database of the earlier Windows version of the program, as the conversion reads it:
// its tables, their columns with the old engine's types, and their rows as text. The
// .mdb reader (MdbReader) is one; tests give others of their own.
namespace OldDatabase {

// The old engine's column types.
enum class Type { Boolean, Byte, Integer, Long, Currency, Single, Double, Date, Binary, Text, Ole, Memo, Guid, Numeric, Other };

struct Column {
    QString name;
    Type type = Type::Text;
    bool counter = false;
};

struct Table {
    QString name;
    QList<Column> columns;
};

// One row: a value per column, nothing for Null. Values are text: integers and booleans
// ("1"/"0") in decimal, currency with its four decimals ("1995.5000"), dates as
// "yyyy-MM-dd HH:mm:ss", text as it was. Binary and OLE columns always come as Null.
using Row = QList<std::optional<QString>>;
// Gets each row in turn; returning false stops the reading.
using RowSink = std::function<bool(const Row &row)>;

class Source {
public:
    virtual ~Source() = default;
    // The user tables (system tables left out), in the file's order.
    virtual QList<Table> tables() const = 0;
    // Reads every row of `table` (an entry of tables()). False with `error` set when the
    // file could not be read.
    virtual bool readRows(const Table &table, const RowSink &sink, QString *error) = 0;
};

} // namespace OldDatabase
