#pragma once

#include <QString>

#include <optional>

// Check digits of Polish account numbers and identifiers. Every check answers with the
// reason in Polish when the number is wrong and nothing when it is right; the windows
// only warn with it, a number that fails is still saved (banks and offices sometimes
// hand out numbers the user must copy as they are).
namespace CheckDigits {

// The text an account is typed as with a leading "PL", blanks and dashes dropped; a
// well-formed account leaves 26 digits.
QString accountDigits(const QString &typed);
// The identifier with blanks and dashes dropped.
QString identifierDigits(const QString &typed);

// The warning the windows give for an account that fails its check digits.
QString accountWarning();

// An account number (NRB): 26 digits, the ISO 13616 check (mod 97) and the check digit
// of its eight-digit sort code (digits 3-10).
std::optional<QString> nrbProblem(const QString &typed);
// An eight-digit sort code: weights 3 9 7 1 3 9 7, the eighth digit closes the sum to a
// multiple of ten.
std::optional<QString> sortCodeProblem(const QString &digits8);
std::optional<QString> nipProblem(const QString &typed);
std::optional<QString> peselProblem(const QString &typed);
// REGON of 9 or 14 digits.
std::optional<QString> regonProblem(const QString &typed);

// The tax micro-account of a NIP (isPesel false) or PESEL: 26 digits, nothing when the
// identifier itself fails its check.
std::optional<QString> taxMicroAccount(const QString &identifier, bool isPesel);

// A firm's individual ZUS contribution account (NRS): a valid account whose digits 3-13
// are ZUS's "60000002" and "026", whose last ten digits are normally the firm's NIP.
// `firmNip` may be empty (then the tail is not compared).
std::optional<QString> nrsProblem(const QString &typed, const QString &firmNip);
// ZUS's sort code and constant that open every NRS after its check digits.
inline constexpr char16_t NrsPrefix[] = u"60000002026";

// Digits as printed on forms: two, then groups of four ("56 1010 0071 2222 7831 9163 6600").
QString groupAccount(const QString &digits26);

} // namespace CheckDigits
