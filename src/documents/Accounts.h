#pragma once

#include "Money.h"

#include <QSqlDatabase>
#include <QString>

#include <array>
#include <optional>

// One of the firm's bank accounts as the firm row holds it.
struct BankAccount {
    QString bankName;
    QString number;
    Money balance;
};

// The firm's forty bank accounts, numbered 1 to 40, and the in-memory list that mirrors
// them for the open firm. The list is rebuilt when a firm is loaded and after every
// save of the firm data; charging an account changes the stored balance and the list.
namespace Accounts {

constexpr int Count = 40;
using List = std::array<BankAccount, Count>;

bool isValid(int n);
// The message for an account number outside 1..40.
QString boundsError(int n);

// Column names of account n (1..40): "BANK_NAZWA7", "BANK_KONTO7", "STAN_KONTA7".
// Empty for an invalid n, so that no other text can ever reach the SQL.
QString nameColumn(int n);
QString numberColumn(int n);
QString balanceColumn(int n);

// Rebuilds the list from the first firm row: empty entries where there is none or a
// column is Null. A failing read keeps what was read so far.
void load(const QSqlDatabase &db);
const List &list();
// Account n of the list; nothing outside 1..40 (`error` then says so).
std::optional<BankAccount> account(int n, QString *error = nullptr);
// The number of account n, shown beside a chosen account; empty outside 1..40.
QString accountNumber(int n);

// Lowers the balance of account n by `amount` in the database and in the list (a negative
// amount raises it). A database without a firm row gets one. False, with a Polish
// message and nothing changed, for n outside 1..40 or a failed write.
bool charge(QSqlDatabase db, int n, Money amount, QString *error = nullptr);

// The two halves of charge() for a save that holds its own transaction: the stored
// balance inside it, the list once the transaction is committed.
bool chargeStored(QSqlDatabase &db, int n, Money amount, QString *error);
void chargeListed(int n, Money amount);

// Adds the firm row when the database has none yet; true when there is one now.
bool ensureFirmRow(QSqlDatabase &db, QString *error);

} // namespace Accounts
