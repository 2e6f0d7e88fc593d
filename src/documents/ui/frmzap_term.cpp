#include "frmzap_term.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "documents/EntryRules.h"
#include "documents/FirmData.h"
#include "documents/ScheduledPayments.h"
#include "WindowFields.h"
#include "frmprzelew.h"
#include "base/ui/WindowHost.h"
#include "documents/ZusAccount.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmzap_term::frmzap_term(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmzap_term"));
    setWindowTitle(QStringLiteral("Zapłaty terminowe"));

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstzaplaty"));
    using WindowFields::button;
    auto *wystaw = button(this, QStringLiteral("cmdwystaw"), QStringLiteral("&Wystaw"));
    auto *pomoc = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *koniec = button(this, QStringLiteral("cmdkoniec"), Msg(4));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(wystaw);
    buttons->addStretch();
    buttons->addWidget(pomoc);
    buttons->addWidget(koniec);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addLayout(buttons);

    connect(wystaw, &QPushButton::clicked, this, &frmzap_term::issue);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &frmzap_term::issue);
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("zaplatyterminowe")); });
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });

    fillList();
    resize(420, 300);
}

void frmzap_term::fillList()
{
    m_list->clear();
    if (!isFirmOpen())
        return;
    QString error;
    const auto due = ScheduledPayments::due(Db(), appState().today, &error);
    if (!due) {
        ErrorReport(error);
        return;
    }
    for (const DuePayment &p : *due)
        m_list->addItem(ScheduledPayments::alarmLine(p));
}

frmprzelew *frmzap_term::issue()
{
    // A line merely current (the list took the focus) was not chosen by the user.
    const QListWidgetItem *item = m_list->currentItem();
    if (!item || !item->isSelected() || !isFirmOpen()) {
        dialogs().beep();
        return nullptr;
    }
    QString error;
    const QString name = ScheduledPayments::nameFromAlarmLine(item->text());
    const auto payment = ScheduledPayments::read(Db(), name, &error);
    if (!payment) {
        ErrorReport(error);
        fillList();
        return nullptr;
    }
    const QDate today = appState().today;
    // The mark is set as the window is filled, before the user saves: the payment counts
    // as issued for this month even when the document is abandoned. Set only when not set
    // yet, so a payment issued meanwhile on another workstation is not issued twice.
    if (!firmReadOnly()) {
        const auto claimed = ScheduledPayments::claimIssue(Db(), name, today.month(), &error);
        if (!claimed || !*claimed) {
            if (claimed)
                dialogs().information(QStringLiteral("Zapłata „%1” została już wystawiona w tym miesiącu "
                                                     "(na innym stanowisku).")
                                          .arg(name));
            else
                ErrorReport(error);
            fillList();
            return nullptr;
        }
    }
    PaymentDocument doc = ScheduledPayments::issueDocument(*payment, today, Accounts::list());
    if (doc.banknr == 0 && !payment->bankFirmy.isEmpty())
        dialogs().information(QStringLiteral("Konta „%1” tej zapłaty nie ma już wśród kont firmy. "
                                             "Wybierz konto, z którego zapłacić.")
                                  .arg(payment->bankFirmy));
    // A scheduled ZUS payment goes to the firm's own contribution account when it has one.
    if (doc.rodzaj == DocumentKinds::PrzelewZus)
        doc.zus.nrRachunku = ZusAccount::startingAccount(FirmStore::read(Db()).value_or(FirmData{}));

    auto *entry = qobject_cast<frmprzelew *>(WindowHost::open(this, new frmprzelew(EntryRules::New, doc.rodzaj)));
    entry->showDocument(doc);
    fillList();
    return entry;
}
