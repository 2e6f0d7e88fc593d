#pragma once

#include "Accounts.h"
#include "Money.h"
#include "PaymentDocument.h"

#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

// One scheduled payment: a named template of a payment document that falls due on a
// fixed day of the months it is flagged for (a row of cykliczne).
struct ScheduledPayment {
    QString nazwa;
    qint16 rodzaj = DocumentKinds::PrzelewBankowy;
    std::array<bool, 12> months{}; // January .. December
    int dzienPlatnosci = 0;
    int dzienAlarmu = 0;
    // The month (1..12) of the last document issued from the alarm list; 0 for none.
    int lastWystAWM = 0;
    QString bankFirmy;
    QString kontoFirmy;
    QString klientNazwa;
    QString klientNazwa1;
    QString klientUlica;
    QString klientKod;
    QString klientMiasto;
    QString klientNip;
    QString klientBank;
    QString klientKonto;
    QString zaDokumentNazwa;
    Money wartosc;
};

// A payment whose alarm day has come: what one line of the alarm list shows.
struct DuePayment {
    int dzienPlatnosci = 0;
    QString nazwa;
};

// The scheduled payments of the open firm and their due check. Failures come back as
// nothing or false with a Polish message in `error`.
namespace ScheduledPayments {

// The highest day a day field takes: no month is longer, and no month's length is checked.
constexpr int MaxDay = 31;

// Every payment's name, in the Polish alphabetical order.
std::optional<QStringList> names(const QSqlDatabase &db, QString *error = nullptr);
std::optional<ScheduledPayment> read(const QSqlDatabase &db, const QString &name, QString *error = nullptr);

enum class SaveResult { Saved, Duplicate, Failed };
// Adds a payment. Its LastWystAWM starts at 0, no month, so that the due check (which
// passes over rows without a number there) lists it from the start.
SaveResult insert(QSqlDatabase db, const ScheduledPayment &p, QString *error = nullptr);
// Rewrites the payment stored as `oldName` (possibly renamed); LastWystAWM is left alone.
SaveResult update(QSqlDatabase db, const QString &oldName, const ScheduledPayment &p, QString *error = nullptr);
bool remove(QSqlDatabase db, const QString &name, QString *error = nullptr);
// Marks the payment as issued in `month`: it then drops out of the alarm for that month.
bool markIssued(QSqlDatabase db, const QString &name, int month, QString *error = nullptr);
// Marks the payment as issued in `month` unless it already is: true when this call set the
// mark, false when it was set before (on another workstation of a shared firm, say), nothing
// on an error. The check and the mark are one statement, so two workstations cannot both win.
std::optional<bool> claimIssue(QSqlDatabase db, const QString &name, int month, QString *error = nullptr);

// The payments due on `today`: flagged for its month, alarm day reached, not issued from
// the alarm in this month number; ordered by the payment day.
std::optional<QList<DuePayment>> due(const QSqlDatabase &db, const QDate &today, QString *error = nullptr);

// "10 - Czynsz": the alarm list's line of a due payment.
QString alarmLine(const DuePayment &p);
// The payment's name in an alarm line: the text from two characters after its first "-",
// which follows the day number, so names holding "-" themselves come back whole.
QString nameFromAlarmLine(const QString &line);

// A new document issued from `p` on `today`: kind, firm account (the entry of `accounts`
// with the template's bank and number, else the first with its bank; 0, to be chosen, when
// the firm has no such account any more), recipient without the NIP, title and amount.
PaymentDocument issueDocument(const ScheduledPayment &p, const QDate &today, const Accounts::List &accounts);

} // namespace ScheduledPayments
