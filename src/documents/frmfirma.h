#pragma once

#include "documents/Accounts.h"

#include <QHash>
#include <QList>
#include <QWidget>

#include <array>
#include <bitset>

class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;
struct FirmData;

// "Dane firmy": the firm's name, address, NIP, short name, the supplementary identifiers
// of ZUS and tax slips and the forty bank accounts with their balances. Accounts 1 to 10
// stand on the tab pages; 11 to 40 share one set of fields chosen in the list lstBank.
class frmfirma : public QWidget {
    Q_OBJECT
public:
    explicit frmfirma(QWidget *parent = nullptr);
    bool isEditing() const { return m_editing; }

Q_SIGNALS:
    // The firm data was stored (the firm's name in captions may have changed).
    void saved();

private:
    // What the fields of one account hold, as text.
    struct AccountTexts {
        QString bankName;
        QString number;
        QString balance;
    };

    QWidget *firmPage();
    QWidget *identifiersPage();
    QWidget *accountsPage(int first, int last);
    QWidget *moreAccountsPage();
    // Check-digit warnings of the NIP, identifiers, NRS and accounts; each account shows
    // its bank beside it.
    void watchDigits();
    QLabel *bankLabel(const QString &name);
    QLayout *withBank(QLineEdit *konto);

    void load();
    void setEditing(bool on);
    void startEdit();
    void save();
    void cancel();
    void bankChosen(int row);
    // Takes the account shown in the list's fields into m_accounts; false (the user told)
    // when its balance is not an amount.
    bool keepShownAccount();
    // Checks a field by its kind; when wrong, shows its page and tells the user.
    bool fieldWrong(QLineEdit *field);
    bool fieldsWrong();
    FirmData gather(std::bitset<Accounts::Count> *changedBalances) const;

    QTabWidget *m_tabs = nullptr;
    QLineEdit *m_nazwa = nullptr;
    QLineEdit *m_nazwa1 = nullptr;
    QLineEdit *m_ulica = nullptr;
    QLineEdit *m_nrDomu = nullptr;
    QLineEdit *m_nrLokalu = nullptr;
    QLineEdit *m_kod = nullptr;
    QLineEdit *m_miasto = nullptr;
    QLineEdit *m_nip = nullptr;
    QLineEdit *m_nazwaSkrocona = nullptr;
    QLineEdit *m_nazwaSkroconaCd = nullptr;
    QComboBox *m_typIdentZus = nullptr;
    QLineEdit *m_identZus = nullptr;
    QComboBox *m_typIdentPod = nullptr;
    QLineEdit *m_identPod = nullptr;
    QLineEdit *m_nrs = nullptr;
    QList<QLineEdit *> m_watched; // fields with check digits, asked about before saving
    QHash<QString, QLabel *> m_bankLabels;
    std::array<QLineEdit *, 10> m_bank{};
    std::array<QLineEdit *, 10> m_konto{};
    std::array<QLineEdit *, 10> m_stan{};
    QListWidget *m_lstBank = nullptr;
    QLineEdit *m_bank11 = nullptr;
    QLineEdit *m_konto11 = nullptr;
    QLineEdit *m_stan11 = nullptr;
    QPushButton *m_zmien = nullptr;
    QPushButton *m_ok = nullptr;
    QPushButton *m_anuluj = nullptr;
    QList<QLineEdit *> m_texts; // every text field, for switching editing on and off

    // Accounts 11 to 40 (at n - 1) as edited so far, and every balance as it was shown.
    std::array<AccountTexts, Accounts::Count> m_accounts;
    std::array<QString, Accounts::Count> m_shownBalance;
    int m_shownRow = -1;
    bool m_editing = false;
};
