#pragma once

#include <QString>

class QLineEdit;
class QPushButton;
class QWidget;

// Building blocks shared by the entry windows of documents, contractors and firm data.
namespace WindowFields {

// A text field named `name` for `table`.`column`: it takes no more characters than the
// column holds, lets through the keys of the keystroke filter's `mode` and carries the
// check kind `kind` (none when empty).
QLineEdit *field(QWidget *parent, const QString &name, const QString &table, const QString &column, int mode,
                 const QString &kind = QString());

// Checks the field by its kind when the user leaves it, while it can be edited.
void checkOnLeave(QLineEdit *field);

QPushButton *button(QWidget *parent, const QString &name, const QString &caption);

} // namespace WindowFields
