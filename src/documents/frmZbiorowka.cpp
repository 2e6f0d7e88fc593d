#include "frmZbiorowka.h"

#include "TransfersOfDay.h"
#include "Accounts.h"
#include "AppState.h"
#include "DateText.h"
#include "Dialogs.h"
#include "EntryRules.h"
#include "Firm.h"
#include "Help.h"
#include "Messages.h"
#include "WindowUtil.h"
#include "exchange/BankFile.h"
#include "exchange/frmDoBanku.h"
#include "print/CollectiveStatement.h"
#include "print/PrintEngine.h"
#include "validation/FieldCheck.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace {

const QString Title = QStringLiteral("Zbiorówka");

} // namespace

frmZbiorowka::frmZbiorowka(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmZbiorowka"));
    setWindowTitle(Title);
    auto *layout = new QGridLayout(this);

    auto *form = new QFormLayout;
    m_data = new QLineEdit(DateText::format(appState().today), this);
    m_data->setObjectName(QStringLiteral("txtData"));
    FieldCheck::setKind(m_data, QStringLiteral("data"));
    FieldCheck::installKeyFilter(m_data, 2);
    form->addRow(QStringLiteral("Kwoty z przelewów z dnia:"), m_data);
    m_bank = new QComboBox(this);
    m_bank->setObjectName(QStringLiteral("lstbank"));
    for (int n : EntryRules::offeredAccounts(Accounts::list()))
        m_bank->addItem(Accounts::list()[n - 1].bankName, n);
    form->addRow(QStringLiteral("Bank/konto:"), m_bank);
    m_konto = new QLabel(this);
    m_konto->setObjectName(QStringLiteral("lblbankkonto"));
    form->addRow(QString(), m_konto);
    layout->addLayout(form, 0, 0, 1, 2);

    m_kwoty = new QListWidget(this);
    m_kwoty->setObjectName(QStringLiteral("lstkwoty"));
    layout->addWidget(m_kwoty, 1, 0, 6, 1);
    const auto button = [this](const char *name, const QString &caption) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        return b;
    };
    QPushButton *nowa = button("cmdnowa", Msg(5));
    QPushButton *zmien = button("cmdzmien", Msg(7));
    QPushButton *usun = button("cmdusun", Msg(8));
    QPushButton *zeruj = button("cmdZeruj", QStringLiteral("Zeruj listę"));
    int row = 1;
    for (QPushButton *b : {nowa, zmien, usun, zeruj})
        layout->addWidget(b, row++, 1);

    auto *total = new QFormLayout;
    m_razem = new QLineEdit(this);
    m_razem->setObjectName(QStringLiteral("txtrazem"));
    m_razem->setReadOnly(true);
    m_razem->setAlignment(Qt::AlignRight);
    auto *razemLabel = new QLabel(QStringLiteral("Razem"), this);
    razemLabel->setObjectName(QStringLiteral("lblrazem"));
    total->addRow(razemLabel, m_razem);
    layout->addLayout(total, 7, 0);

    auto *buttons = new QHBoxLayout;
    QPushButton *wystaw = button("cmdwystaw", QStringLiteral("&Wystaw"));
    QPushButton *pomoc = button("cmdpomoc", Msg(3));
    QPushButton *koniec = button("cmdkoniec", Msg(4));
    buttons->addStretch();
    for (QPushButton *b : {wystaw, pomoc, koniec})
        buttons->addWidget(b);
    layout->addLayout(buttons, 8, 0, 1, 2);
    auto *doBanku = button("cmdDoBanku", QStringLiteral("Do &banku..."));
    buttons->insertWidget(2, doBanku);
    connect(doBanku, &QPushButton::clicked, this, &frmZbiorowka::sendToBank);

    connect(nowa, &QPushButton::clicked, this, &frmZbiorowka::addLine);
    connect(zmien, &QPushButton::clicked, this, &frmZbiorowka::changeLine);
    connect(usun, &QPushButton::clicked, this, &frmZbiorowka::removeLine);
    connect(zeruj, &QPushButton::clicked, this, [this] {
        m_kwoty->clear();
        updateTotal();
    });
    connect(wystaw, &QPushButton::clicked, this, &frmZbiorowka::print);
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("zbiorowka")); });
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(m_bank, &QComboBox::currentIndexChanged, this, &frmZbiorowka::accountChosen);
    connect(m_data, &QLineEdit::editingFinished, this, &frmZbiorowka::dateLeft);

    accountChosen();
    resize(460, 380);
}

void frmZbiorowka::accountChosen()
{
    const int account = m_bank->currentData().toInt();
    m_konto->setText(account > 0 ? Accounts::accountNumber(account) : QString());
    refill();
}

void frmZbiorowka::dateLeft()
{
    // A wrong date is told and the list stays as it was.
    if (!FieldCheck::SprawdzPole(m_data))
        return;
    const auto day = DateText::parse(m_data->text());
    if (!day)
        return;
    m_data->setText(DateText::format(*day));
    if (*day != m_shownDay)
        refill();
}

void frmZbiorowka::refill()
{
    m_kwoty->clear();
    const auto day = DateText::parse(m_data->text());
    const int account = m_bank->currentData().toInt();
    m_shownDay = day.value_or(QDate());
    if (day && account > 0 && isFirmOpen()) {
        QString error;
        const QList<Money> amounts = transfersOfDay(Db(), account, *day, &error);
        if (!error.isEmpty())
            ErrorReport(error);
        for (const Money &m : amounts)
            m_kwoty->addItem(Kwota(m));
    }
    updateTotal();
}

std::optional<Money> frmZbiorowka::askAmount(const QString &prompt, const QString &value)
{
    const auto answer = dialogs().input(prompt, Title, value);
    if (!answer || answer->trimmed().isEmpty())
        return std::nullopt;
    const auto amount = Money::parse(*answer);
    if (!amount)
        dialogs().exclamation(QStringLiteral("To nie jest kwota"), Title);
    return amount;
}

void frmZbiorowka::addLine()
{
    if (const auto amount = askAmount(QStringLiteral("Podaj nową kwotę"), QString())) {
        m_kwoty->addItem(Kwota(*amount));
        updateTotal();
    }
}

void frmZbiorowka::changeLine()
{
    QListWidgetItem *item = m_kwoty->currentItem();
    if (!item) {
        dialogs().beep();
        return;
    }
    if (const auto amount = askAmount(QStringLiteral("Podaj nową wartość kwoty"), item->text())) {
        item->setText(Kwota(*amount));
        updateTotal();
    }
}

void frmZbiorowka::removeLine()
{
    QListWidgetItem *item = m_kwoty->currentItem();
    if (!item) {
        dialogs().beep();
        return;
    }
    if (dialogs().question(Msg(56) + item->text() + QLatin1Char('?'), Title)) {
        delete item;
        updateTotal();
    }
}

void frmZbiorowka::updateTotal()
{
    Money total;
    for (int i = 0; i < m_kwoty->count(); ++i)
        total += Money::parse(m_kwoty->item(i)->text()).value_or(Money());
    m_razem->setText(Kwota(total));
}

void frmZbiorowka::print()
{
    if (m_kwoty->count() == 0) {
        dialogs().beep();
        return;
    }
    CollectiveStatement statement;
    statement.bankName = m_bank->currentText();
    statement.accountNumber = m_konto->text();
    statement.date = DateText::parse(m_data->text()).value_or(appState().today);
    for (int i = 0; i < m_kwoty->count(); ++i)
        statement.amounts << Money::parse(m_kwoty->item(i)->text()).value_or(Money());
    PrintEngine::instance().Drukuj(QStringLiteral("zbiorowka"), QVariant::fromValue(statement));
}

void frmZbiorowka::sendToBank()
{
    // The stored transfers of the day go, not the amended working list.
    const auto day = DateText::parse(m_data->text());
    const int account = m_bank->currentData().toInt();
    if (!day || account <= 0 || !isFirmOpen()) {
        dialogs().beep();
        return;
    }
    QString error;
    const QList<qint32> ids = BankFile::transfersOfDay(Db(), *day, account, &error);
    if (!error.isEmpty()) {
        ErrorReport(error);
        return;
    }
    openBankFileWindow(ids, this);
}
