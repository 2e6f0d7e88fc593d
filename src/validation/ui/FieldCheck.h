#pragma once

#include <QList>
#include <QString>

class QLineEdit;
class QWidget;

// Checking a window's fields before saving. Each field's kind word is held in its dynamic
// property "Tag" (see Sprawdz); a field without it is not checked. Fields are walked in
// the window's tab order, those on tab pages not in view included. A failure is told to
// the user through the dialogs, the field's page is brought forward, the focus is put
// back into the field and its text selected. A field that passes is shown as leaving it
// would show it, so that what is saved is what the window shows.
namespace FieldCheck {

void setKind(QWidget *field, const QString &kind);
QString kind(const QWidget *field);
// The text of a line edit, editable combo box or text edit; empty for anything else.
QString text(const QWidget *field);

// Checks every field of `window` that is not hidden by the window itself: the length of
// a text against its limit, then the kind of a tagged field. True when a field failed
// (the user was told and only the first failure is reported), false when all passed.
bool SprawdzPola(QWidget *window);
// Checks one field by its kind; true when it is correct (and then normalised).
bool SprawdzPole(QWidget *field);
// The required-field check: true when one of `fields` is empty ("To pole nie może być
// puste", focus in that field).
bool SprawdzPuste(const QList<QWidget *> &fields);
// The validation error flag: set by the last failed check, cleared by the last passed one.
bool validationError();

// Filters the keys typed into `field` with the keystroke filter's `mode` (0-5).
void installKeyFilter(QWidget *field, int mode);
// When the user leaves the field (and when the window's fields are checked), a correct
// date is shown again as "dd-mm-yyyy".
void normaliseDateOnLeave(QLineEdit *field);
// The same for an amount, shown again as "### ### ##0.00".
void normaliseAmountOnLeave(QLineEdit *field);
// Shows a correct value of a normalised field as leaving it would.
void normalise(QWidget *field);

// The number of characters the field's column holds: typing stops there, and a longer
// text put in whole is refused when the window's fields are checked. 0: no limit.
void setLimit(QLineEdit *field, int limit);
int limit(const QWidget *field);
// Puts `text` into the field whole, even past its limit, so that nothing is cut unseen.
// True when it is longer than the limit (the field stays open to the full text until
// the user shortens it).
bool putWhole(QLineEdit *field, const QString &text);
// "Tekst w polu Nazwa jest za długi: pole mieści najwyżej 40 znaków." for a field whose
// text is longer than its limit; empty otherwise.
QString tooLongMessage(const QWidget *field);
// What the user reads beside the field: its label without "&" and ":", else its name.
QString caption(const QWidget *field);
// Brings forward every tab page (or stacked page) that holds `field`.
void showPageOf(QWidget *field);

} // namespace FieldCheck
