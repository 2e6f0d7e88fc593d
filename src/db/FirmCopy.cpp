#include "FirmCopy.h"

#include "Dialect.h"
#include "FirmDatabase.h"
#include "MdbConversion.h"
#include "Structure.h"
#include "Transaction.h"

#include <QDate>
#include <QDateTime>
#include <QSqlQuery>

#include <cmath>
#include <limits>

namespace FirmCopy {

namespace {

using Structure::ColumnType;

// Whether the rows of a table carry a row number the program orders by: SQLite's own rowid,
// or on the server the column of that name a table without Id has.
bool hasRowNumber(const QSqlDatabase &db, const QString &table)
{
    if (!Dialect::isPostgres(db))
        return true;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT 1 FROM information_schema.columns WHERE table_schema = current_schema() "
                             "AND table_name = lower(?) AND column_name = 'rowid'"));
    q.addBindValue(table);
    return q.exec() && q.next();
}

// How far the source's counter of `column` has gone (Ids of rows deleted at the end are not
// to be given again); 0 when it has none.
qint64 counterPosition(const QSqlDatabase &db, const QString &table, const QString &column)
{
    QSqlQuery q(db);
    if (!Dialect::isPostgres(db)) {
        q.prepare(QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = ? COLLATE NOCASE"));
        q.addBindValue(table);
        return q.exec() && q.next() ? q.value(0).toLongLong() : 0;
    }
    q.prepare(QStringLiteral("SELECT pg_get_serial_sequence(?, ?)"));
    q.addBindValue(table.toLower());
    q.addBindValue(column.toLower());
    if (!q.exec() || !q.next() || q.isNull(0))
        return 0;
    // The name comes from the server's catalogue, quoted by the server.
    const QString sequence = q.value(0).toString();
    QSqlQuery s(db);
    return s.exec(QStringLiteral("SELECT CASE WHEN is_called THEN last_value ELSE last_value - 1 END FROM ") + sequence) && s.next()
               ? s.value(0).toLongLong()
               : 0;
}

// After rows came with their Ids, the target's counters give the next Id after the highest
// one (and after `floor`), so the next document saved does not collide with a copied one.
bool moveCounters(QSqlDatabase &target, const QString &table, const QString &counter, qint64 floor, QString *error)
{
    QSqlQuery q(target);
    if (!Dialect::isPostgres(target)) {
        // SQLite's counter follows inserted Ids by itself; only a higher source position is set.
        if (counter.isEmpty() || floor <= 0)
            return true;
        q.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"));
        q.addBindValue(table);
        if (!q.exec() || !q.next())
            return true;
        const QString name = q.value(0).toString();
        q.prepare(QStringLiteral("SELECT 1 FROM sqlite_sequence WHERE name = ?"));
        q.addBindValue(name);
        const bool there = q.exec() && q.next();
        q.prepare(there ? QStringLiteral("UPDATE sqlite_sequence SET seq = max(seq, ?) WHERE name = ?")
                        : QStringLiteral("INSERT INTO sqlite_sequence (seq, name) VALUES (?, ?)"));
        q.addBindValue(floor);
        q.addBindValue(name);
        if (q.exec())
            return true;
        if (error)
            *error = q.lastError().text();
        return false;
    }
    q.prepare(QStringLiteral("SELECT column_name FROM information_schema.columns WHERE table_schema = current_schema() "
                             "AND table_name = lower(?) AND is_identity = 'YES'"));
    q.addBindValue(table);
    QStringList identities;
    if (q.exec())
        while (q.next())
            identities << q.value(0).toString();
    for (const QString &column : std::as_const(identities)) {
        QSqlQuery set(target);
        set.prepare(QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), greatest(coalesce(max(%1), 0), ?) + 1, false) "
                                   "FROM %2")
                        .arg(Structure::quoted(target, column), Structure::quoted(target, table)));
        set.addBindValue(table.toLower());
        set.addBindValue(column);
        set.addBindValue(column.compare(counter, Qt::CaseInsensitive) == 0 ? floor : qint64(0));
        if (!set.exec()) {
            if (error)
                *error = set.lastError().text();
            return false;
        }
    }
    return true;
}

// A stored value in the form the target's column keeps it, or nothing (with the reason)
// when it cannot be kept without changing its meaning.
std::optional<QVariant> converted(const QVariant &value, bool null, ColumnType type, bool toServer, QString *why)
{
    if (null)
        return QVariant();
    const int id = value.typeId();
    const bool text = id == QMetaType::QString || id == QMetaType::QByteArray;
    // An empty text where a number or a date belongs (left by older versions) means none.
    const bool blank = text && value.toString().trimmed().isEmpty();
    switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo:
        return value.toString();
    case ColumnType::Date: {
        if (blank)
            return QVariant();
        QDate day;
        if (id == QMetaType::QDate)
            day = value.toDate();
        else if (id == QMetaType::QDateTime)
            day = value.toDateTime().date();
        else if (text)
            day = QDate::fromString(value.toString().trimmed().left(10), Qt::ISODate);
        if (!day.isValid()) {
            *why = QStringLiteral("to nie jest data");
            return std::nullopt;
        }
        // SQLite keeps a day as ISO text, the server as its own date.
        return toServer ? QVariant(day) : QVariant(day.toString(Qt::ISODate));
    }
    case ColumnType::Double: {
        if (blank)
            return QVariant();
        bool ok = false;
        const double d = value.toDouble(&ok);
        if (!ok) {
            *why = QStringLiteral("to nie jest liczba");
            return std::nullopt;
        }
        return d;
    }
    case ColumnType::Long:
    case ColumnType::Integer:
    case ColumnType::Currency:
    case ColumnType::Boolean: {
        if (blank)
            return QVariant();
        qint64 n = 0;
        if (id == QMetaType::Bool) {
            n = value.toBool() ? 1 : 0;
        } else if (id == QMetaType::Double || id == QMetaType::Float) {
            // A fraction would be rounded away: an amount is an exact count of ten-thousandths.
            const double d = value.toDouble();
            if (!std::isfinite(d) || d != std::trunc(d) || std::fabs(d) > 9.0e15) {
                *why = type == ColumnType::Currency ? QStringLiteral("kwota nie jest całkowitą liczbą dziesięciotysięcznych złotego")
                                                    : QStringLiteral("to nie jest liczba całkowita");
                return std::nullopt;
            }
            n = qint64(d);
        } else {
            bool ok = false;
            n = value.toLongLong(&ok);
            if (!ok) {
                *why = QStringLiteral("to nie jest liczba całkowita");
                return std::nullopt;
            }
        }
        // Yes is any non-zero value (the old engine's -1 among them); stored as 1.
        if (type == ColumnType::Boolean)
            return QVariant(n != 0 ? 1 : 0);
        return QVariant(qlonglong(n));
    }
    }
    return value;
}

// On the server a failed statement spoils the transaction until it is rolled back, and the
// copy's statements could not be freed in it: the copy has a savepoint of its own, rolled
// back (or released) before its statements are let go.
class Savepoint {
public:
    Savepoint(const QSqlDatabase &db, const bool &done) : m_db(db), m_done(done)
    {
        m_active = Dialect::isPostgres(m_db) && QSqlQuery(m_db).exec(QStringLiteral("SAVEPOINT zlecanki_kopia"));
    }
    ~Savepoint()
    {
        if (m_active)
            QSqlQuery(m_db).exec(m_done ? QStringLiteral("RELEASE SAVEPOINT zlecanki_kopia")
                                        : QStringLiteral("ROLLBACK TO SAVEPOINT zlecanki_kopia"));
    }
    Savepoint(const Savepoint &) = delete;
    Savepoint &operator=(const Savepoint &) = delete;

private:
    QSqlDatabase m_db;
    const bool &m_done;
    bool m_active = false;
};

QString shownValue(const QVariant &value)
{
    const QString s = value.toString();
    return s.size() > 60 ? s.left(60) + QStringLiteral("…") : s;
}

} // namespace

const QStringList &firmTables()
{
    static const QStringList names = [] {
        QStringList list;
        for (const Structure::Table &t : Structure::fullTables())
            list << t.name;
        list << QStringLiteral("OdwolaniaSerwera");
        return list;
    }();
    return names;
}

std::optional<QSqlDatabase> openSource(const QString &location, const QString &shown, const QString &connection,
                                       QString *error)
{
    auto fail = [&](const QString &message) -> std::optional<QSqlDatabase> {
        FirmDatabase::close(connection);
        if (error)
            *error = message;
        return std::nullopt;
    };
    QString schema = QStringLiteral("main");
    QString why;
    const bool onServer = Dialect::isAddress(location);
    if (onServer) {
        const auto address = Dialect::parseAddress(location, &why);
        if (!address)
            return fail(why);
        if (!Dialect::connect(*address, connection, &why))
            return fail(why);
        schema = address->schema;
        // The source is only read: the server refuses any write on this connection.
        QSqlQuery(QSqlDatabase::database(connection, false))
            .exec(QStringLiteral("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY"));
    } else if (!FirmDatabase::openFileToRead(location, connection, &why)) {
        return fail(QStringLiteral("Nie można otworzyć bazy danych:\n") + shown + QLatin1Char('\n') + why);
    }
    const QString problem = [&]() -> QString {
        const QSqlDatabase db = QSqlDatabase::database(connection, false);
        if (const QString foreign = FirmDatabase::foreignObjects(db, schema); !foreign.isEmpty())
            return foreign + QLatin1Char('\n') + shown;
        if (!Dialect::tableExists(db, QStringLiteral("ZLECANKI")) || !Dialect::tableExists(db, QStringLiteral("FIRMA")))
            return onServer ? QStringLiteral("Pod tym adresem nie ma bazy danych firmy programu Zlecanki:\n") + shown
                            : MdbConversion::notAFirmMessage(shown);
        return {};
    }();
    if (!problem.isEmpty())
        return fail(problem);
    return QSqlDatabase::database(connection, false);
}

TableCopy copyTable(const QSqlDatabase &source, QSqlDatabase &target, const QString &table, bool keepRowOrder,
                    bool counterFloor)
{
    TableCopy r;
    QSqlQuery read(source);
    QSqlQuery write(target);
    const Savepoint savepoint(target, r.ok);
    struct Col {
        QString source, target;
        ColumnType type;
    };
    QList<Col> cols;
    qsizetype counter = -1;
    const auto sourceColumns = Dialect::columns(source, table);
    for (const auto &[name, declared] : Dialect::columns(target, table)) {
        for (const auto &[sourceName, sourceDeclared] : sourceColumns) {
            if (sourceName.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            const Structure::Column *def = Structure::findColumn(table, name);
            if (def && def->counter)
                counter = cols.size();
            cols.append({sourceName, name, Structure::typeOfDeclared(declared)});
            break;
        }
    }
    if (cols.isEmpty()) {
        r.error = QStringLiteral("Tabela %1 źródła nie ma żadnej kolumny tabeli celu.").arg(table);
        return r;
    }
    const bool sourceNumbered = hasRowNumber(source, table);
    const bool rowNumbers = keepRowOrder && counter < 0 && sourceNumbered && hasRowNumber(target, table);
    QStringList selected, inserted, marks;
    for (const Col &c : std::as_const(cols)) {
        selected << Structure::quoted(source, c.source);
        inserted << Structure::quoted(target, c.target);
        marks << QStringLiteral("?");
    }
    if (rowNumbers) {
        selected << QStringLiteral("rowid");
        inserted << QStringLiteral("rowid");
        marks << QStringLiteral("?");
    }
    // The rows in the order the program reads them, so that "the first row" stays the first.
    const QString order = counter >= 0 ? selected.at(counter) : sourceNumbered ? QStringLiteral("rowid") : QString();
    read.setForwardOnly(true);
    if (!read.exec(QStringLiteral("SELECT ") + selected.join(QLatin1Char(',')) + QStringLiteral(" FROM ") +
                   Structure::quoted(source, table) + (order.isEmpty() ? QString() : QStringLiteral(" ORDER BY ") + order))) {
        r.failure = read.lastError();
        r.error = QStringLiteral("Nie można odczytać tabeli %1 źródła:\n").arg(table) + Structure::explainError(r.failure);
        return r;
    }
    if (!write.prepare(QStringLiteral("INSERT INTO ") + Structure::quoted(target, table) + QStringLiteral(" (") +
                       inserted.join(QLatin1Char(',')) + QStringLiteral(") VALUES (") + marks.join(QLatin1Char(',')) +
                       QLatin1Char(')'))) {
        r.failure = write.lastError();
        r.error = QStringLiteral("Nie można zapisać tabeli %1 celu:\n").arg(table) + Structure::explainError(r.failure);
        return r;
    }
    const bool toServer = Dialect::isPostgres(target);
    while (read.next()) {
        for (qsizetype i = 0; i < cols.size(); ++i) {
            QString why;
            const auto value = converted(read.value(int(i)), read.isNull(int(i)), cols.at(i).type, toServer, &why);
            if (!value) {
                r.error = QStringLiteral("Wartość \"%1\" w kolumnie %2 tabeli %3 nie może zostać przeniesiona bez zmiany "
                                         "znaczenia: %4.")
                              .arg(shownValue(read.value(int(i))), cols.at(i).source, table, why);
                return r;
            }
            write.bindValue(int(i), *value);
        }
        if (rowNumbers)
            write.bindValue(int(cols.size()), read.value(int(cols.size())).toLongLong());
        if (!write.exec()) {
            r.failure = write.lastError();
            r.error = Structure::explainError(r.failure) + QStringLiteral("\nTabela: ") + table;
            return r;
        }
        ++r.rows;
    }
    if (read.lastError().type() != QSqlError::NoError) {
        r.failure = read.lastError();
        r.error = QStringLiteral("Nie można odczytać tabeli %1 źródła:\n").arg(table) + Structure::explainError(r.failure);
        return r;
    }
    const QString counterName = counter >= 0 ? cols.at(counter).target : QString();
    const qint64 floor = counterFloor && counter >= 0 ? counterPosition(source, table, cols.at(counter).source) : 0;
    QString why;
    if (!moveCounters(target, table, counterName, floor, &why)) {
        r.error = QStringLiteral("Nie można ustawić licznika tabeli %1:\n").arg(table) + why;
        return r;
    }
    r.ok = true;
    return r;
}

std::optional<qint64> rowCount(const QSqlDatabase &db, const QString &table)
{
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT count(*) FROM ") + Structure::quoted(db, table)) && q.next())
        return q.value(0).toLongLong();
    return std::nullopt;
}

FirmCopyResult copyFirm(const QSqlDatabase &source, QSqlDatabase &target)
{
    FirmCopyResult r;
    QStringList copied;
    {
        Transaction t(target);
        if (!t.isActive()) {
            r.error = t.error();
            return r;
        }
        for (const QString &table : firmTables()) {
            if (!Dialect::tableExists(source, table))
                continue;
            if (!Dialect::tableExists(target, table)) {
                r.error = QStringLiteral("W bazie docelowej nie ma tabeli %1.").arg(table);
                return r;
            }
            QSqlQuery empty(target);
            if (!empty.exec(QStringLiteral("DELETE FROM ") + Structure::quoted(target, table))) {
                r.error = Structure::explainError(empty.lastError()) + QStringLiteral("\nTabela: ") + table;
                return r;
            }
            const TableCopy copy = copyTable(source, target, table, true, true);
            if (!copy.ok) {
                r.error = copy.error;
                return r;
            }
            copied << table;
        }
        if (!t.commit()) {
            r.error = t.error();
            return r;
        }
    }
    QStringList differing;
    for (const QString &table : std::as_const(copied)) {
        TableCount c{table, rowCount(source, table).value_or(-1), rowCount(target, table).value_or(-1)};
        if (c.source < 0 || c.source != c.target)
            differing << QStringLiteral("%1 (źródło %2, cel %3)").arg(table).arg(c.source).arg(c.target);
        r.counts << c;
    }
    if (!differing.isEmpty()) {
        r.error = QStringLiteral("Liczby wierszy w źródle i w celu różnią się:\n") + differing.join(QLatin1Char('\n'));
        return r;
    }
    r.ok = true;
    return r;
}

} // namespace FirmCopy
