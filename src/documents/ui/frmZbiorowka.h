#pragma once

#include "Money.h"

#include <QDate>
#include <QWidget>

#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

// "Zbiorówka": one day's transfers from one account, a working copy the user may amend
// (editing it never touches a stored document), printed as the collective statement.
class frmZbiorowka : public QWidget {
    Q_OBJECT
public:
    explicit frmZbiorowka(QWidget *parent = nullptr);
    ~frmZbiorowka() override;

    // Fills the list again from the stored documents of the day and account shown.
    void refill();

private:
    void addLine();
    void changeLine();
    void removeLine();
    void print();
    void accountChosen();
    // Checks the date and, when it names another day, fills the list anew; false when wrong.
    bool dateLeft();
    // cmdDoBanku: the day's transfers of the account to a file for the bank.
    void sendToBank();
    std::optional<Money> askAmount(const QString &prompt, const QString &value);
    void updateTotal();
    struct CollectiveStatement statement() const;

    QLineEdit *m_data = nullptr;
    QComboBox *m_bank = nullptr;
    QLabel *m_konto = nullptr;
    QListWidget *m_kwoty = nullptr;
    QLineEdit *m_razem = nullptr;
    QDate m_shownDay;
};
