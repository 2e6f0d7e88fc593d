#pragma once

#include <QString>

// The bank an account is kept in, named from its bank number (digits 3-5 of the account;
// four digits 3-6 for co-operative banks, whose numbers begin with 8).
namespace BankNames {

// The bank's name, or empty when the number is not in the program's table. `account`
// may be typed with "PL", blanks and dashes.
QString bankName(const QString &account);

} // namespace BankNames
