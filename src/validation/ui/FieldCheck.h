#pragma once

#include <QList>
#include <QString>

class QLineEdit;
class QWidget;

// Checking a window's fields before saving. Each field's kind word is held in its dynamic
// property "Tag" (see Sprawdz); a field without it is not checked. Fields are walked in
// the window's tab order. A failure is told to the user through the dialogs, the focus is
// put back into the field and its text selected.
namespace FieldCheck {

void setKind(QWidget *field, const QString &kind);
QString kind(const QWidget *field);
// The text of a line edit, editable combo box or text edit; empty for anything else.
QString text(const QWidget *field);

// Checks every tagged field of `window`; true when a field failed (the user was told and
// only the first failure is reported), false when all passed.
bool SprawdzPola(QWidget *window);
// Checks one field by its kind; true when it is correct.
bool SprawdzPole(QWidget *field);
// The required-field check: true when one of `fields` is empty ("To pole nie może być
// puste", focus in that field).
bool SprawdzPuste(const QList<QWidget *> &fields);
// The validation error flag: set by the last failed check, cleared by the last passed one.
bool validationError();

// Filters the keys typed into `field` with the keystroke filter's `mode` (0-5).
void installKeyFilter(QWidget *field, int mode);
// When the user leaves the field, a correct date is shown again as "dd-mm-yyyy".
void normaliseDateOnLeave(QLineEdit *field);
// When the user leaves the field, a correct amount is shown again as "### ### ##0.00".
void normaliseAmountOnLeave(QLineEdit *field);

} // namespace FieldCheck
