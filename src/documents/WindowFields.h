#pragma once

#include "documents/Contractor.h"

#include <QList>
#include <QString>

class QFormLayout;
class QLabel;
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

// The recipient's eight fields as the contractor, scheduled payment and document windows
// all have them: txtnazwa, txtnazwa1, txtulica, txtkod, txtmiasto, txtNIP, txtbank and
// txtkonto, with their columns' limits, key filters and checks. The account and the NIP
// are watched for their check digits; leaving the account with the bank name empty names
// the bank.
class RecipientFields {
public:
    enum class Columns {
        Contractor, // NAZWA, ..., BANK_NAZWA, BANK_KONTO of the dictionary
        Recipient,  // KLIENT_NAZWA, ..., KLIENT_KONTO of documents and scheduled payments
    };
    RecipientFields(QWidget *parent, const QString &table, Columns columns);

    QList<QLineEdit *> all() const;
    void show(const Contractor &c) const;
    // The values as typed; postal code and NIP without surrounding spaces.
    Contractor values() const;
    // One labelled row for each field.
    void addRows(QFormLayout *form) const;

    QLineEdit *nazwa;
    QLineEdit *nazwa1;
    QLineEdit *ulica;
    QLineEdit *kod;
    QLineEdit *miasto;
    QLineEdit *nip;
    QLineEdit *bank;
    QLineEdit *konto;
    // The bank named by the account number, shown beside it (lblbankkonta).
    QLabel *bankOfAccount;
};

} // namespace WindowFields
