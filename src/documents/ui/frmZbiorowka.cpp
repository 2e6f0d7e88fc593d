#include "frmZbiorowka.h"

#include "documents/TransfersOfDay.h"
#include "documents/Accounts.h"
#include "AppState.h"
#include "DateText.h"
#include "Dialogs.h"
#include "documents/EntryRules.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "WindowFields.h"
#include "exchange/BankFile.h"
#include "frmDoBanku.h"
#include "print/CollectiveStatement.h"
#include "print/PrintEngine.h"
#include "validation/ui/FieldCheck.h"

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
    WindowFields::accountList(m_bank, 0, [this] { accountChosen(); });
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

frmZbiorowka::~frmZbiorowka()
{
    // Closing the window takes the focus from the date field, whose "left" signal must not
    // reach a window that is half destroyed.
    m_data->disconnect(this);
}

bool frmZbiorowka::dateLeft()
{
    // A wrong date is told and the list stays as it was.
    if (!FieldCheck::SprawdzPole(m_data))
        return false;
    const auto day = DateText::parse(m_data->text());
    if (!day)
        return false;
    m_data->setText(DateText::format(*day));
    if (*day != m_shownDay)
        refill();
    return true;
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
    if (!amount || !amount->isAcceptedAmount()) {
        dialogs().exclamation(amount ? QStringLiteral("Kwota może mieć najwyżej dwa miejsca po przecinku i nie może "
                                                      "przekraczać 999 999 999 999,99.")
                                     : QStringLiteral("To nie jest kwota"),
                              Title);
        return std::nullopt;
    }
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
    m_razem->setText(statement().total() ? Kwota(*statement().total()) : QStringLiteral("poza zakresem"));
}

void frmZbiorowka::print()
{
    // The statement is of the day the window shows, taken as leaving the field takes it.
    if (FieldCheck::SprawdzPuste({m_data}) || !dateLeft())
        return;
    if (m_kwoty->count() == 0) {
        dialogs().beep();
        return;
    }
    const CollectiveStatement s = statement();
    if (!s.total()) {
        dialogs().exclamation(QStringLiteral("Suma kwot zestawienia jest za duża, by ją zapisać. Usuń część kwot."), Title);
        return;
    }
    PrintEngine::instance().Drukuj(QStringLiteral("zbiorowka"), QVariant::fromValue(s));
}

CollectiveStatement frmZbiorowka::statement() const
{
    CollectiveStatement s;
    s.bankName = m_bank->currentText();
    s.accountNumber = m_konto->text();
    s.date = DateText::parse(m_data->text()).value_or(appState().today);
    for (int i = 0; i < m_kwoty->count(); ++i)
        s.amounts << Money::parse(m_kwoty->item(i)->text()).value_or(Money());
    return s;
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
