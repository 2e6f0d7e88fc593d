#pragma once

#include "documents/ScheduledPayments.h"
#include "WindowFields.h"

#include <QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;
struct Contractor;

// "Zapłaty terminowe": the dictionary of scheduled payments. The list shows the names;
// the tab strip holds the payment (name, kind, months, days, firm account) and its
// recipient, title and amount. Fields are editable only between cmdnowy/cmdzmien and
// cmdok/cmdanuluj.
class frmslzapl_term : public QWidget {
    Q_OBJECT
public:
    explicit frmslzapl_term(QWidget *parent = nullptr);

    // Shows the payment named `name`; false (with a beep) while editing or when there is none.
    bool showPayment(const QString &name);
    bool isEditing() const { return m_editing; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillList();
    void fillAccounts();
    void followAccounts();
    void showFields(const ScheduledPayment &p);
    ScheduledPayment gather() const;
    void setEditing(bool on);
    void startNew();
    void startEdit();
    void save();
    void cancel();
    void remove();
    void chooseRecipient();
    void takeRecipient(const Contractor &c);
    bool dayLeft(QLineEdit *day);

    QListWidget *m_list = nullptr;
    QTabWidget *m_tabs = nullptr;
    QLineEdit *m_nazwaZaplaty = nullptr;
    QComboBox *m_rodzaj = nullptr;
    QList<QCheckBox *> m_months;
    QLineEdit *m_dzien = nullptr;
    QLineEdit *m_alarm = nullptr;
    QComboBox *m_bank = nullptr;
    QLabel *m_bankKonto = nullptr;
    std::optional<WindowFields::RecipientFields> m_recipient;
    QLineEdit *m_zaDokument = nullptr;
    QLineEdit *m_wartosc = nullptr;
    QList<QLineEdit *> m_texts;
    QList<QPushButton *> m_browseButtons; // usable while no edit is in progress
    QPushButton *m_ok = nullptr;
    QPushButton *m_anuluj = nullptr;
    QPushButton *m_szukaj = nullptr;

    QString m_shownName;  // the payment shown; empty for none
    QString m_editedName; // the payment being edited; empty for a new one
    bool m_editing = false;
    bool m_checkingDay = false;
};
