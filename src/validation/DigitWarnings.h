#pragma once

#include <QString>

#include <functional>
#include <optional>

class QLabel;
class QLineEdit;
class QWidget;

// Check-digit warnings of entry fields. They only warn: a field whose number fails is
// marked (property "bledneCyfry", red frame) and told about when the user leaves it,
// and the window asks once before saving, but the number may always be saved as typed.
namespace DigitWarnings {

using Check = std::function<std::optional<QString>(const QString &)>;

// Watches `field` with `check` (applied only to a non-empty text).
void watch(QLineEdit *field, Check check);
// An account number meant as a Polish one (digits only, at least 20 of them): fails with
// "Numer rachunku ma błędne cyfry kontrolne - sprawdź go." or a wrong length; `bankLabel`, when given, shows
// the bank named by the number, and `bankField` is filled with it when the user leaves the account with it
// empty.
void watchAccount(QLineEdit *field, QLabel *bankLabel = nullptr, QLineEdit *bankField = nullptr);
void watchNip(QLineEdit *field);

// Marks the field again after something its check depends on changed.
void recheck(QLineEdit *field);

// The field's problem now; nothing when it passes, is empty or is not watched.
std::optional<QString> problem(const QWidget *field);

// Asks once, before a save, whether to save although watched fields of `window` in view
// fail their checks; true to go on (also when none fails). On No the focus goes to the
// first such field.
bool confirmSave(QWidget *window);
// The same over the fields given, whether in view or not (fields on other tab pages).
bool confirmSave(const QList<QWidget *> &fields);

} // namespace DigitWarnings
