#include "ScheduledPayments.h"

#include "Contractor.h"
#include "EntryRules.h"
#include "db/Dialect.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>

namespace ScheduledPayments {

namespace {

// The columns a save writes, in the order bindFields() gives their values.
const QString SavedColumns = QStringLiteral(
    "NAZWA, RODZAJ, M1, M2, M3, M4, M5, M6, M7, M8, M9, M10, M11, M12, DZIEN_PLATNOSCI, DZIEN_ALARMU, "
    "BANK_FIRMY, KONTO_FIRMY, KLIENT_NAZWA, KLIENT_NAZWA1, KLIENT_ULICA, KLIENT_KOD, KLIENT_MIASTO, "
    "KLIENT_NIP, KLIENT_BANK, KLIENT_KONTO, ZA_DOKUMENT_NAZWA, WARTOSC");
constexpr int SavedCount = 28;

// Empty text is stored as '' rather than Null, like the other dictionaries.
QString value(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

void bindFields(QSqlQuery &q, const ScheduledPayment &p)
{
    q.addBindValue(value(p.nazwa));
    q.addBindValue(int(p.rodzaj));
    for (bool m : p.months)
        q.addBindValue(m ? 1 : 0);
    q.addBindValue(p.dzienPlatnosci);
    q.addBindValue(p.dzienAlarmu);
    for (const QString *s : {&p.bankFirmy, &p.kontoFirmy, &p.klientNazwa, &p.klientNazwa1, &p.klientUlica,
                             &p.klientKod, &p.klientMiasto, &p.klientNip, &p.klientBank, &p.klientKonto,
                             &p.zaDokumentNazwa})
        q.addBindValue(value(*s));
    q.addBindValue(p.wartosc.units());
}

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

SaveResult saveFailed(const QSqlQuery &q, QString *error)
{
    if (error)
        *error = Structure::explainError(q.lastError());
    // The name is the payment's key: the unique index refuses a second one.
    return Dialect::duplicateKey(q.lastError()) ? SaveResult::Duplicate : SaveResult::Failed;
}

QString missing(const QString &name)
{
    return QStringLiteral("Nie ma zapłaty terminowej \"%1\": mogła zostać usunięta.").arg(name);
}

} // namespace

std::optional<QStringList> names(const QSqlDatabase &db, QString *error)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT NAZWA FROM cykliczne ORDER BY NAZWA COLLATE polski"))) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    QStringList list;
    while (q.next())
        list << q.value(0).toString();
    return list;
}

std::optional<ScheduledPayment> read(const QSqlDatabase &db, const QString &name, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT ") + SavedColumns + QStringLiteral(", LASTWYSTAWM FROM cykliczne WHERE NAZWA = ?"));
    q.addBindValue(name);
    if (!q.exec()) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    if (!q.next()) {
        fail(missing(name), error);
        return std::nullopt;
    }
    ScheduledPayment p;
    int i = 0;
    p.nazwa = q.value(i++).toString();
    p.rodzaj = static_cast<qint16>(q.value(i++).toInt());
    for (bool &m : p.months)
        m = q.value(i++).toInt() != 0;
    p.dzienPlatnosci = q.value(i++).toInt();
    p.dzienAlarmu = q.value(i++).toInt();
    for (QString *s : {&p.bankFirmy, &p.kontoFirmy, &p.klientNazwa, &p.klientNazwa1, &p.klientUlica, &p.klientKod,
                       &p.klientMiasto, &p.klientNip, &p.klientBank, &p.klientKonto, &p.zaDokumentNazwa})
        *s = q.value(i++).toString();
    p.wartosc = Money::fromUnits(q.value(i++).toLongLong());
    p.lastWystAWM = q.value(i).toInt();
    return p;
}

SaveResult insert(QSqlDatabase db, const ScheduledPayment &p, QString *error)
{
    QSqlQuery q(db);
    QString marks;
    for (int i = 0; i < SavedCount; ++i)
        marks += QStringLiteral("?, ");
    q.prepare(QStringLiteral("INSERT INTO cykliczne (") + SavedColumns + QStringLiteral(", LASTWYSTAWM) VALUES (") +
              marks + QStringLiteral("0)"));
    bindFields(q, p);
    return q.exec() ? SaveResult::Saved : saveFailed(q, error);
}

SaveResult update(QSqlDatabase db, const QString &oldName, const ScheduledPayment &p, QString *error)
{
    QString sets;
    for (const QString &column : SavedColumns.split(QStringLiteral(", ")))
        sets += (sets.isEmpty() ? QString() : QStringLiteral(", ")) + column + QStringLiteral(" = ?");
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE cykliczne SET ") + sets + QStringLiteral(" WHERE NAZWA = ?"));
    bindFields(q, p);
    q.addBindValue(oldName);
    if (!q.exec())
        return saveFailed(q, error);
    if (q.numRowsAffected() < 1) {
        fail(missing(oldName), error);
        return SaveResult::Failed;
    }
    return SaveResult::Saved;
}

bool remove(QSqlDatabase db, const QString &name, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("DELETE FROM cykliczne WHERE NAZWA = ?"));
    q.addBindValue(name);
    return q.exec() || fail(Structure::explainError(q.lastError()), error);
}

bool markIssued(QSqlDatabase db, const QString &name, int month, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE cykliczne SET LASTWYSTAWM = ? WHERE NAZWA = ?"));
    q.addBindValue(month);
    q.addBindValue(name);
    if (!q.exec())
        return fail(Structure::explainError(q.lastError()), error);
    return q.numRowsAffected() > 0 || fail(missing(name), error);
}

std::optional<bool> claimIssue(QSqlDatabase db, const QString &name, int month, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE cykliczne SET LASTWYSTAWM = ? WHERE NAZWA = ? AND (LASTWYSTAWM IS NULL OR LASTWYSTAWM <> ?)"));
    q.addBindValue(month);
    q.addBindValue(name);
    q.addBindValue(month);
    if (!q.exec()) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    if (q.numRowsAffected() > 0)
        return true;
    QSqlQuery there(db);
    there.prepare(QStringLiteral("SELECT 1 FROM cykliczne WHERE NAZWA = ?"));
    there.addBindValue(name);
    if (!there.exec() || !there.next()) {
        fail(missing(name), error);
        return std::nullopt;
    }
    return false;
}

std::optional<QList<DuePayment>> due(const QSqlDatabase &db, const QDate &today, QString *error)
{
    const int month = today.month();
    QList<DuePayment> list;
    if (month < 1 || month > 12)
        return list;
    // The month's flag column is named after the month number, which is no user text.
    // A Null LASTWYSTAWM fails the comparison, so such a row is never listed.
    QSqlQuery q(db);
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT NAZWA, DZIEN_PLATNOSCI FROM cykliczne WHERE M%1 <> 0 AND DZIEN_ALARMU <= ? "
                             "AND LASTWYSTAWM <> ? ORDER BY DZIEN_PLATNOSCI, NAZWA")
                  .arg(month));
    q.addBindValue(today.day());
    q.addBindValue(month);
    if (!q.exec()) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    while (q.next())
        list.append({q.value(1).toInt(), q.value(0).toString()});
    return list;
}

QString alarmLine(const DuePayment &p)
{
    return QString::number(p.dzienPlatnosci) + QStringLiteral(" - ") + p.nazwa;
}

QString nameFromAlarmLine(const QString &line)
{
    const qsizetype dash = line.indexOf(QLatin1Char('-'));
    return dash < 0 ? QString() : line.mid(dash + 2);
}

PaymentDocument issueDocument(const ScheduledPayment &p, const QDate &today, const Accounts::List &accounts)
{
    const qint16 kind = DocumentKinds::name(p.rodzaj).isEmpty() ? qint16(DocumentKinds::PrzelewBankowy) : p.rodzaj;
    PaymentDocument doc = PaymentDocument::newDocument(kind, today);
    // The payment's own account: the entry with its bank and number, else with its bank.
    // When the firm no longer has it, the account is left to be chosen (0).
    const QList<int> offered = EntryRules::offeredAccounts(accounts);
    doc.banknr = 0;
    for (int n : offered) {
        if (accounts[n - 1].bankName == p.bankFirmy && accounts[n - 1].number == p.kontoFirmy) {
            doc.banknr = static_cast<qint16>(n);
            break;
        }
    }
    for (int n : offered) {
        if (doc.banknr == 0 && accounts[n - 1].bankName == p.bankFirmy)
            doc.banknr = static_cast<qint16>(n);
    }
    // A payment with no account of its own (none stored) pays from the first one.
    if (doc.banknr == 0 && p.bankFirmy.isEmpty() && !offered.isEmpty())
        doc.banknr = static_cast<qint16>(offered.first());
    doc.bankFirmy = p.bankFirmy;
    doc.kontoFirmy = p.kontoFirmy;
    // The NIP stays with the template: an issued document starts without it.
    Contractor recipient = recipientOf(p);
    recipient.nip.clear();
    setRecipient(doc, recipient);
    doc.zaDokumentNazwa = p.zaDokumentNazwa;
    doc.wartosc = p.wartosc;
    return doc;
}

} // namespace ScheduledPayments
