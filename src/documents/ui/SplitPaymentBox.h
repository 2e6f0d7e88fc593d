#pragma once

#include "Money.h"
#include "documents/PaymentTitles.h"

#include <QGroupBox>

class QLineEdit;

// "Mechanizm podzielonej płatności" of a bank transfer: ticked, its four fields make the
// document's title (the one title column keeps it), and a stored split-payment title comes
// back into them when the document is shown again.
class SplitPaymentBox : public QGroupBox {
    Q_OBJECT
public:
    // `title` is the window's title field, `recipientNip` its recipient's NIP, offered as
    // the IDC when the box is ticked with that field empty.
    SplitPaymentBox(QLineEdit *title, QLineEdit *recipientNip, QWidget *parent);

    // Ticks the box and fills it when `title` is a split-payment title, clears it otherwise.
    void showTitle(const QString &title);
    // What stops the document of `amount` from being stored; empty when the box is not
    // ticked or its fields are right.
    QString problem(Money amount) const;
    // The field to put the focus in when problem() is not empty.
    QLineEdit *firstField() const { return m_vat; }
    void setViewing();

private:
    void rebuildTitle();
    PaymentTitles::SplitPayment parts() const;

    QLineEdit *m_title;
    QLineEdit *m_nip;
    QLineEdit *m_vat;
    QLineEdit *m_idc;
    QLineEdit *m_inv;
    QLineEdit *m_txt;
    bool m_showing = false;
};
