#include "Accounts.h"

#include "db/Transaction.h"
#include "Firm.h"
#include "db/Dialect.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace Accounts {

namespace {

List &loaded()
{
    static List accounts;
    return accounts;
}

QString column(const char *prefix, int n)
{
    return isValid(n) ? QLatin1String(prefix) + QString::number(n) : QString();
}

void setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

} // namespace

bool isValid(int n)
{
    return n >= 1 && n <= Count;
}

QString boundsError(int n)
{
    return QStringLiteral("Nie ma konta bankowego numer %1: konta firmy mają numery od 1 do %2.").arg(n).arg(Count);
}

QString nameColumn(int n)
{
    return column("BANK_NAZWA", n);
}

QString numberColumn(int n)
{
    return column("BANK_KONTO", n);
}

QString balanceColumn(int n)
{
    return column("STAN_KONTA", n);
}

namespace {

void read(const QSqlDatabase &db)
{
    List &accounts = loaded();
    accounts.fill(BankAccount{});
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT * FROM firma ORDER BY rowid LIMIT 1")) || !q.next())
        return;
    const QSqlRecord r = q.record();
    for (int n = 1; n <= Count; ++n) {
        const int name = r.indexOf(nameColumn(n));
        const int number = r.indexOf(numberColumn(n));
        const int balance = r.indexOf(balanceColumn(n));
        // An older firm file lacks the later slots; what it has is kept.
        if (name < 0 || number < 0 || balance < 0)
            return;
        accounts[n - 1] = BankAccount{q.value(name).toString(), q.value(number).toString(),
                                      Money::fromUnits(q.value(balance).toLongLong())};
    }
}

} // namespace

void load(const QSqlDatabase &db)
{
    read(db);
    Q_EMIT FirmEvents::instance().accountsChanged();
}

const List &list()
{
    return loaded();
}

std::optional<BankAccount> account(int n, QString *error)
{
    if (!isValid(n)) {
        setError(error, boundsError(n));
        return std::nullopt;
    }
    return loaded()[n - 1];
}

QString accountNumber(int n)
{
    return isValid(n) ? loaded()[n - 1].number : QString();
}

bool ensureFirmRow(QSqlDatabase &db, QString *error)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT count(*) FROM firma"))) {
        setError(error, Structure::explainError(q.lastError()));
        return false;
    }
    if (q.next() && q.value(0).toLongLong() > 0)
        return true;
    if (!q.exec(QStringLiteral("INSERT INTO firma DEFAULT VALUES"))) {
        setError(error, Structure::explainError(q.lastError()));
        return false;
    }
    return true;
}

bool chargeStored(QSqlDatabase &db, int n, Money amount, QString *error)
{
    if (!isValid(n)) {
        setError(error, boundsError(n));
        return false;
    }
    if (!ensureFirmRow(db, error))
        return false;
    // The column name comes from a checked number; the amount is bound, in exact units.
    // One statement reads and writes the balance, so two workstations charging one account
    // at the same moment both count. An overflow is refused rather than stored: SQLite would
    // quietly turn the sum into a floating-point number, the server stops with an error.
    const QString col = balanceColumn(n);
    const QString balance = QStringLiteral("COALESCE(") + col + QStringLiteral(", 0) - ?");
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE firma SET ") + col + QStringLiteral(" = ") + balance +
              QStringLiteral(" WHERE rowid = (SELECT min(rowid) FROM firma) AND ") + Dialect::exactInteger(db, balance));
    q.addBindValue(amount.units());
    if (!Dialect::isPostgres(db))
        q.addBindValue(amount.units());
    const bool done = q.exec();
    if (!done && !Structure::isOutOfRange(q.lastError())) {
        setError(error, Structure::explainError(q.lastError()));
        return false;
    }
    if (!done || q.numRowsAffected() != 1) {
        setError(error, QStringLiteral("Stan rachunku nr %1 wyszedłby poza zakres kwot, które program może "
                                       "zapisać. Nic nie zostało zapisane.")
                            .arg(n));
        return false;
    }
    return true;
}

void chargeListed(int n, Money amount)
{
    if (isValid(n))
        loaded()[n - 1].balance -= amount;
}

bool charge(QSqlDatabase db, int n, Money amount, QString *error)
{
    if (!isValid(n)) {
        setError(error, boundsError(n));
        return false;
    }
    Transaction t(db);
    if (!t.isActive()) {
        setError(error, t.error());
        return false;
    }
    if (!chargeStored(db, n, amount, error))
        return false;
    if (!t.commit()) {
        setError(error, t.error());
        return false;
    }
    chargeListed(n, amount);
    return true;
}

} // namespace Accounts
