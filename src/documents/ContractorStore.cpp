#include "ContractorStore.h"

#include "db/Dialect.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>

// The firm connection provides two things SQLite lacks (see FirmDatabase): the function
// zawiera(text, part), a substring test blind to letter case for Polish letters too, and
// the collation "polski", the Polish alphabetical order.

ContractorEvents &ContractorEvents::instance()
{
    static ContractorEvents events;
    return events;
}

namespace ContractorStore {

namespace {

// Empty text is stored as '' rather than Null, as the old program did.
QString value(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

void bindFields(QSqlQuery &q, const Contractor &c)
{
    for (const QString *s : {&c.nazwa, &c.nazwa1, &c.ulica, &c.kod, &c.miasto, &c.nip, &c.bankNazwa, &c.bankKonto})
        q.addBindValue(value(*s));
}

template <typename T>
std::optional<T> failed(const QSqlQuery &q, QString *error)
{
    if (error)
        *error = Structure::explainError(q.lastError());
    return std::nullopt;
}

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

std::optional<qint32> insertRow(QSqlDatabase &db, const Contractor &c, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("INSERT INTO kontrahenci (NAZWA, NAZWA1, ULICA, KOD, MIASTO, NIP, BANK_NAZWA, BANK_KONTO, "
                             "WYBRANY) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 0)"));
    bindFields(q, c);
    if (!q.exec())
        return failed<qint32>(q, error);
    return static_cast<qint32>(Dialect::insertedId(q, db));
}

} // namespace

std::optional<QList<ContractorName>> list(const QSqlDatabase &db, QString *error)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT ID, NAZWA FROM kontrahenci ORDER BY NAZWA COLLATE polski, ID")))
        return failed<QList<ContractorName>>(q, error);
    QList<ContractorName> names;
    while (q.next())
        names.append({static_cast<qint32>(q.value(0).toLongLong()), q.value(1).toString()});
    return names;
}

std::optional<Contractor> read(const QSqlDatabase &db, qint32 id, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT ID, NAZWA, NAZWA1, ULICA, KOD, MIASTO, NIP, BANK_NAZWA, BANK_KONTO "
                             "FROM kontrahenci WHERE ID = ?"));
    q.addBindValue(id);
    if (!q.exec())
        return failed<Contractor>(q, error);
    if (!q.next()) {
        if (error)
            *error = QStringLiteral("Nie ma kontrahenta numer %1: mógł zostać usunięty.").arg(id);
        return std::nullopt;
    }
    Contractor c;
    c.id = static_cast<qint32>(q.value(0).toLongLong());
    QString *fields[] = {&c.nazwa, &c.nazwa1, &c.ulica, &c.kod, &c.miasto, &c.nip, &c.bankNazwa, &c.bankKonto};
    for (int i = 0; i < 8; ++i)
        *fields[i] = q.value(i + 1).toString();
    return c;
}

std::optional<qint32> insert(QSqlDatabase db, const Contractor &contractor, QString *error)
{
    const auto id = insertRow(db, contractor, error);
    if (id)
        Q_EMIT ContractorEvents::instance().changed();
    return id;
}

bool update(QSqlDatabase db, const Contractor &contractor, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE kontrahenci SET NAZWA = ?, NAZWA1 = ?, ULICA = ?, KOD = ?, MIASTO = ?, NIP = ?, "
                             "BANK_NAZWA = ?, BANK_KONTO = ? WHERE ID = ?"));
    bindFields(q, contractor);
    q.addBindValue(contractor.id);
    if (!q.exec())
        return fail(Structure::explainError(q.lastError()), error);
    if (q.numRowsAffected() < 1)
        return fail(QStringLiteral("Nie ma kontrahenta numer %1: mógł zostać usunięty.").arg(contractor.id), error);
    Q_EMIT ContractorEvents::instance().changed();
    return true;
}

bool remove(QSqlDatabase db, qint32 id, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("DELETE FROM kontrahenci WHERE ID = ?"));
    q.addBindValue(id);
    if (!q.exec())
        return fail(Structure::explainError(q.lastError()), error);
    Q_EMIT ContractorEvents::instance().changed();
    return true;
}

std::optional<QList<qint32>> search(const QSqlDatabase &db, SearchBy by, const QString &text, QString *error)
{
    QString where;
    switch (by) {
    case SearchBy::Name:
        where = QStringLiteral("zawiera(NAZWA, ?) OR zawiera(NAZWA1, ?)");
        break;
    case SearchBy::Street:
        where = QStringLiteral("zawiera(ULICA, ?)");
        break;
    case SearchBy::Town:
        where = QStringLiteral("zawiera(MIASTO, ?)");
        break;
    case SearchBy::Nip:
        where = QStringLiteral("zawiera(NIP, ?)");
        break;
    }
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT ID FROM kontrahenci WHERE ") + where +
              QStringLiteral(" ORDER BY NAZWA COLLATE polski, ID"));
    const QString part = text.trimmed();
    q.addBindValue(part);
    if (by == SearchBy::Name)
        q.addBindValue(part);
    if (!q.exec())
        return failed<QList<qint32>>(q, error);
    QList<qint32> ids;
    while (q.next())
        ids.append(static_cast<qint32>(q.value(0).toLongLong()));
    return ids;
}

std::optional<qint32> idForName(QSqlDatabase &db, const Contractor &recipient, bool *added, QString *error)
{
    if (added)
        *added = false;
    // Another workstation adding the same recipient at this moment adds it first.
    if (QSqlError why; !Dialect::lockKey(db, QStringLiteral("kontrahent:") + recipient.nazwa.trimmed().toLower(), &why)) {
        if (error)
            *error = Structure::explainError(why);
        return std::nullopt;
    }
    QSqlQuery q(db);
    // "HURTOWNIA GĘŚLA " is the contractor "Hurtownia Gęśla" already in the dictionary.
    q.prepare(QStringLiteral("SELECT ID FROM kontrahenci WHERE jednakowe(NAZWA, ?) ORDER BY ID LIMIT 1"));
    q.addBindValue(value(recipient.nazwa));
    if (!q.exec())
        return failed<qint32>(q, error);
    if (q.next())
        return static_cast<qint32>(q.value(0).toLongLong());
    const auto id = insertRow(db, recipient, error);
    if (id && added)
        *added = true;
    return id;
}

} // namespace ContractorStore
