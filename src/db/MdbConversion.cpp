#include "MdbConversion.h"

#include "Dialogs.h"
#include "FirmDatabase.h"
#include "MdbProcess.h"
#include "MdbReader.h"
#include "Messages.h"
#include "Money.h"
#include "Structure.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryFile>

#include <atomic>

namespace MdbConversion {

namespace {

using OldDatabase::Type;
using Structure::ColumnType;

// Counts of values changed to fit, per table and column, told once per column at the end.
struct Adjustments {
    QMap<QString, qint64> unreadable; // "TABLE.COLUMN"
    QMap<QString, qint64> shortened;

    QStringList warnings() const
    {
        QStringList out;
        for (auto it = unreadable.cbegin(); it != unreadable.cend(); ++it)
            out << QStringLiteral("%1: %2 wartości nie dało się odczytać, zapisano je jako puste.").arg(it.key()).arg(it.value());
        for (auto it = shortened.cbegin(); it != shortened.cend(); ++it)
            out << QStringLiteral("%1: %2 tekstów było za długich, skrócono je.").arg(it.key()).arg(it.value());
        return out;
    }
};

std::optional<qint64> integerOf(const QString &text)
{
    bool ok = false;
    const qint64 v = text.trimmed().toLongLong(&ok);
    if (ok)
        return v;
    // A whole amount or a number with zero decimals ("12.0000") is still an integer.
    if (const auto m = Money::parse(text); m && m->units() % Money::Scale == 0)
        return m->units() / Money::Scale;
    return std::nullopt;
}

std::optional<double> doubleOf(const QString &text)
{
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.')); // libmdb writes numbers in the process's locale
    bool ok = false;
    const double v = t.toDouble(&ok);
    return ok ? std::optional<double>(v) : std::nullopt;
}

// "yyyy-MM-dd HH:mm:ss" as libmdb writes dates; out-of-range dates come as day 0 and fail.
std::optional<QDateTime> dateTimeOf(const QString &text)
{
    const QString t = text.trimmed();
    QDateTime dt = QDateTime::fromString(t, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!dt.isValid()) {
        const QDate d = QDate::fromString(t.left(10), QStringLiteral("yyyy-MM-dd"));
        if (!d.isValid())
            return std::nullopt;
        dt = QDateTime(d, QTime(0, 0));
    }
    return dt;
}

// A value of an old column as a column of this program's firm structure stores it.
QVariant firmValue(const QString &text, const Structure::Column &target, const QString &where, Adjustments &adj)
{
    auto unreadable = [&] {
        ++adj.unreadable[where];
        return QVariant();
    };
    switch (target.type) {
    case ColumnType::Text:
        if (text.size() > target.width) {
            ++adj.shortened[where];
            return text.left(target.width);
        }
        return text;
    case ColumnType::Memo:
        return text;
    case ColumnType::Long:
    case ColumnType::Integer: {
        const auto v = integerOf(text);
        if (!v || (target.type == ColumnType::Integer && (*v < -32768 || *v > 32767)))
            return unreadable();
        return *v;
    }
    case ColumnType::Boolean: {
        const auto v = integerOf(text);
        return v ? QVariant(*v != 0 ? 1 : 0) : unreadable();
    }
    case ColumnType::Currency: {
        const auto m = Money::parse(text);
        return m ? QVariant(m->units()) : unreadable();
    }
    case ColumnType::Date: {
        const auto dt = dateTimeOf(text);
        return dt ? QVariant(dt->date().toString(Qt::ISODate)) : unreadable();
    }
    case ColumnType::Double: {
        const auto v = doubleOf(text);
        return v ? QVariant(*v) : unreadable();
    }
    }
    return unreadable();
}

// A table the firm structure does not know keeps the old types as closely as SQLite can.
QString declaredType(Type t)
{
    switch (t) {
    case Type::Boolean: return QStringLiteral("BOOLEAN");
    case Type::Byte:
    case Type::Integer: return QStringLiteral("SMALLINT");
    case Type::Long: return QStringLiteral("INTEGER");
    case Type::Currency: return QStringLiteral("CURRENCY");
    case Type::Single:
    case Type::Double: return QStringLiteral("DOUBLE");
    case Type::Date: return QStringLiteral("DATE");
    case Type::Text:
    case Type::Memo:
    case Type::Guid:
    case Type::Numeric: return QStringLiteral("TEXT");
    default: return QStringLiteral("BLOB");
    }
}

QVariant plainValue(const QString &text, Type t, const QString &where, Adjustments &adj)
{
    auto unreadable = [&] {
        ++adj.unreadable[where];
        return QVariant();
    };
    switch (t) {
    case Type::Boolean:
    case Type::Byte:
    case Type::Integer:
    case Type::Long: {
        const auto v = integerOf(text);
        return v ? QVariant(*v) : unreadable();
    }
    case Type::Currency: {
        const auto m = Money::parse(text);
        return m ? QVariant(m->units()) : unreadable();
    }
    case Type::Single:
    case Type::Double: {
        const auto v = doubleOf(text);
        return v ? QVariant(*v) : unreadable();
    }
    case Type::Date: {
        const auto dt = dateTimeOf(text);
        if (!dt)
            return unreadable();
        return dt->time() == QTime(0, 0) ? dt->date().toString(Qt::ISODate)
                                         : dt->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    case Type::Text:
    case Type::Memo:
    case Type::Guid:
    case Type::Numeric: return text;
    default: return QVariant();
    }
}

// Where a column of the old table goes: its position in the old row and how it is stored.
struct Target {
    qsizetype from = 0;
    QString name;
    std::function<QVariant(const QString &)> convert;
};

QString insertSql(const QString &table, const QList<Target> &targets)
{
    QStringList names, marks;
    for (const Target &t : targets) {
        names << Structure::quoted(t.name);
        marks << QStringLiteral("?");
    }
    return QStringLiteral("INSERT INTO ") + Structure::quoted(table) + QStringLiteral(" (") +
           names.join(QLatin1Char(',')) + QStringLiteral(") VALUES (") + marks.join(QLatin1Char(',')) + QLatin1Char(')');
}

// Copies every row of `old` into `table`; nothing on success, else the reason.
std::optional<QString> copyRows(OldDatabase::Source &source, const OldDatabase::Table &old, const QString &table,
                                const QList<Target> &targets, QSqlDatabase &db, qint64 *count)
{
    *count = 0;
    QSqlQuery insert(db);
    if (!targets.isEmpty() && !insert.prepare(insertSql(table, targets)))
        return Structure::explainError(insert.lastError());
    std::optional<QString> failure;
    QString readError;
    const bool read = source.readRows(old, [&](const OldDatabase::Row &row) {
        if (!targets.isEmpty()) {
            for (qsizetype i = 0; i < targets.size(); ++i) {
                const Target &t = targets.at(i);
                const auto &value = t.from < row.size() ? row.at(t.from) : std::nullopt;
                insert.bindValue(int(i), value ? t.convert(*value) : QVariant());
            }
            if (!insert.exec()) {
                failure = QStringLiteral("Wiersz %1 tabeli %2: %3")
                              .arg(*count + 1)
                              .arg(old.name, Structure::explainError(insert.lastError()));
                return false;
            }
        }
        ++*count;
        return true;
    }, &readError);
    if (failure)
        return failure;
    if (!read)
        return readError;
    return std::nullopt;
}

bool run(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    return q.exec(sql);
}

const Structure::Table *firmTable(const QString &name)
{
    for (const Structure::Table &t : Structure::fullTables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

// Brings the new firm's table to the columns the old one had reached and lists where each
// known old column goes.
QList<Target> prepareFirmTable(QSqlDatabase &db, const Structure::Table &table, const OldDatabase::Table &old,
                               Adjustments &adj)
{
    QList<Target> targets;
    QList<Structure::Column> missing;
    QStringList taken;
    for (qsizetype i = 0; i < old.columns.size(); ++i) {
        const Structure::Column *c = Structure::findColumn(table.name, old.columns.at(i).name);
        if (!c || taken.contains(c->name))
            continue;
        taken << c->name;
        const Structure::Column column = *c;
        const QString where = table.name + QLatin1Char('.') + column.name;
        targets.append({i, column.name, [column, where, &adj](const QString &text) {
                            return firmValue(text, column, where, adj);
                        }});
        if (!Structure::hasColumn(db, table.name, column.name))
            missing << column;
    }
    if (!Structure::tableExists(db, table.name)) {
        QStringList defs;
        for (const Structure::Column &c : std::as_const(missing))
            defs << Structure::columnSql(c);
        if (defs.isEmpty() ||
            !run(db, QStringLiteral("CREATE TABLE ") + Structure::quoted(table.name) + QStringLiteral(" (") +
                         defs.join(QLatin1Char(',')) + QLatin1Char(')')))
            return {};
        return targets;
    }
    for (const Structure::Column &c : std::as_const(missing)) {
        if (!run(db, QStringLiteral("ALTER TABLE ") + Structure::quoted(table.name) + QStringLiteral(" ADD COLUMN ") +
                         Structure::columnSql(c)))
            targets.removeIf([&](const Target &t) { return t.name == c.name; });
    }
    return targets;
}

// A table the firm does not know, created as the old file had it; nothing when impossible.
std::optional<QList<Target>> preparePlainTable(QSqlDatabase &db, const OldDatabase::Table &old, Adjustments &adj)
{
    QList<Target> targets;
    QStringList defs;
    for (qsizetype i = 0; i < old.columns.size(); ++i) {
        const OldDatabase::Column c = old.columns.at(i);
        defs << Structure::quoted(c.name) + QLatin1Char(' ') + declaredType(c.type);
        const QString where = old.name + QLatin1Char('.') + c.name;
        targets.append({i, c.name, [c, where, &adj](const QString &text) { return plainValue(text, c.type, where, adj); }});
    }
    if (defs.isEmpty() || !run(db, QStringLiteral("CREATE TABLE ") + Structure::quoted(old.name) + QStringLiteral(" (") +
                                           defs.join(QLatin1Char(',')) + QLatin1Char(')')))
        return std::nullopt;
    return targets;
}

} // namespace

QString convertedPath(const QString &mdbPath)
{
    const QFileInfo fi(mdbPath);
    return fi.absoluteDir().filePath(fi.completeBaseName() + QLatin1Char('.') + FirmDatabase::Extension);
}

QString notAFirmMessage(const QString &path)
{
    return QStringLiteral("Plik nie jest bazą firmy programu Zlecanki (nie ma w nim tabel ZLECANKI ani FIRMA):\n") +
           QDir::toNativeSeparators(path);
}

Result convert(OldDatabase::Source &source, QSqlDatabase &db)
{
    Result result;
    QString error;
    if (!Structure::CreateDatabase(db, &error)) {
        result.error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + error;
        return result;
    }
    if (!Structure::beginWrite(db, &result.error))
        return result;
    Adjustments adj;
    QStringList matched;
    for (const OldDatabase::Table &old : source.tables()) {
        const Structure::Table *firm = firmTable(old.name);
        if (firm && matched.contains(firm->name))
            firm = nullptr; // a second table of the same name in other letter case
        QList<Target> targets;
        QString table = old.name;
        if (firm) {
            matched << firm->name;
            table = firm->name;
            targets = prepareFirmTable(db, *firm, old, adj);
            const QString upper = firm->name.toUpper();
            result.firmTables = result.firmTables || upper == QLatin1String("ZLECANKI") || upper == QLatin1String("FIRMA");
        } else if (const auto plain = preparePlainTable(db, old, adj)) {
            targets = *plain;
        } else {
            result.warnings << QStringLiteral("Tabeli %1 nie można przenieść, pominięto ją.").arg(old.name);
            continue;
        }
        qint64 count = 0;
        if (const auto failure = copyRows(source, old, table, targets, db, &count)) {
            db.rollback();
            result.error = QStringLiteral("Nie można przenieść danych z pliku Access.\n") + *failure;
            return result;
        }
        result.rows.append({old.name, count});
    }
    if (!db.commit()) {
        result.error = Structure::explainError(db.lastError());
        db.rollback();
        return result;
    }
    Structure::UpgradeStructure(db);
    result.warnings << adj.warnings();
    result.ok = true;
    return result;
}

Result convertFile(const QString &mdbPath, const QString &newPath)
{
    Result result;
    const QFileInfo target(newPath);
    const QString shownTarget = QDir::toNativeSeparators(target.absoluteFilePath());
    if (target.exists()) {
        result.error = QStringLiteral("Plik już istnieje, nie zostanie nadpisany:\n") + shownTarget;
        return result;
    }
    QString error;
    auto reader = MdbProcess::open(mdbPath, &error);
    if (!reader) {
        result.error = error + QLatin1Char('\n') + QDir::toNativeSeparators(QFileInfo(mdbPath).absoluteFilePath());
        return result;
    }
    if (!QDir().mkpath(target.absolutePath())) {
        result.error = QStringLiteral("Nie można utworzyć folderu:\n") + QDir::toNativeSeparators(target.absolutePath());
        return result;
    }
    // The firm is built under another name and takes its own only when complete: a
    // conversion cut short leaves no file that opens as the converted firm.
    QTemporaryFile temp(target.absolutePath() + QStringLiteral("/.") + target.fileName() + QStringLiteral(".XXXXXX"));
    if (!temp.open()) {
        result.error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + shownTarget + QLatin1Char('\n') +
                       temp.errorString();
        return result;
    }
    temp.close();
    static std::atomic<int> serial{0};
    const QString connection = QStringLiteral("zlecanki-mdb-") + QString::number(++serial);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(temp.fileName());
        if (!db.open())
            result.error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + shownTarget + QLatin1Char('\n') +
                           db.lastError().text();
        else
            result = convert(*reader, db);
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    if (result.ok && !QFile::rename(temp.fileName(), target.absoluteFilePath())) {
        result.ok = false;
        result.error = QStringLiteral("Nie można zapisać bazy danych firmy:\n") + shownTarget;
    }
    return result;
}

QString convertForOpening(const QString &mdbPath)
{
    const QString target = convertedPath(mdbPath);
    const QString shown = QDir::toNativeSeparators(QFileInfo(mdbPath).absoluteFilePath());
    const QString shownTarget = QDir::toNativeSeparators(target);
    if (QFileInfo::exists(target))
        return dialogs().question(QStringLiteral("Plik %1 jest bazą firmy z poprzedniej wersji programu.\n"
                                                 "Obok leży już przeniesiona z niego baza %2.\nOtworzyć ją?")
                                      .arg(shown, shownTarget),
                                  Msg(53))
                   ? target
                   : QString();
    if (!dialogs().question(QStringLiteral("Plik %1 jest bazą firmy z poprzedniej wersji programu.\n"
                                           "Przenieść firmę do nowej bazy %2? Stary plik pozostanie bez zmian.")
                                .arg(shown, shownTarget),
                            Msg(53)))
        return {};
    const Result r = convertFile(mdbPath, target);
    if (!r.ok) {
        dialogs().exclamation(r.error, Msg(51));
        return {};
    }
    if (!r.firmTables) {
        QFile::remove(target);
        dialogs().exclamation(notAFirmMessage(mdbPath), Msg(51));
        return {};
    }
    if (!r.warnings.isEmpty())
        dialogs().information(QStringLiteral("Firmę przeniesiono do bazy %1.\nUwagi:\n").arg(shownTarget) +
                                  r.warnings.join(QLatin1Char('\n')),
                              Msg(53));
    return target;
}

} // namespace MdbConversion
