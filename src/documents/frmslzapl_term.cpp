#include "frmslzapl_term.h"

#include "Dialogs.h"
#include "Firm.h"
#include "Help.h"
#include "Messages.h"
#include "WindowUtil.h"
#include "documents/Contractor.h"
#include "documents/EntryRules.h"
#include "documents/WindowFields.h"
#include "documents/frmKontrahenci.h"
#include "validation/DigitWarnings.h"
#include "validation/FieldCheck.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

const QString Table = QStringLiteral("CYKLICZNE");

} // namespace

frmslzapl_term::frmslzapl_term(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmslzapl_term"));
    setWindowTitle(QStringLiteral("Zapłaty terminowe"));
    using WindowFields::field;

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstzaplaty"));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("zakladki"));

    // First page: the payment itself.
    auto *payment = new QWidget(m_tabs);
    m_nazwaZaplaty = field(payment, QStringLiteral("txtnazwazaplaty"), Table, QStringLiteral("NAZWA"), 5);
    m_rodzaj = new QComboBox(payment);
    m_rodzaj->setObjectName(QStringLiteral("lstrodzaj"));
    for (qint16 kind = 1; kind <= 6; ++kind)
        m_rodzaj->addItem(DocumentKinds::name(kind), int(kind));
    auto *monthsGrid = new QGridLayout;
    for (int m = 0; m < 12; ++m) {
        auto *box = new QCheckBox(QLocale(QLocale::Polish).standaloneMonthName(m + 1), payment);
        box->setObjectName(QStringLiteral("chkmiesiac"));
        box->setProperty("Index", m);
        m_months << box;
        monthsGrid->addWidget(box, m / 4, m % 4);
    }
    m_dzien = field(payment, QStringLiteral("txtdzien"), Table, QStringLiteral("DZIEN_PLATNOSCI"), 1, QStringLiteral("int"));
    m_alarm = field(payment, QStringLiteral("txtalarm"), Table, QStringLiteral("DZIEN_ALARMU"), 1, QStringLiteral("int"));
    for (QLineEdit *day : {m_dzien, m_alarm}) {
        day->setMaxLength(2);
        day->installEventFilter(this);
    }
    m_bank = new QComboBox(payment);
    m_bank->setObjectName(QStringLiteral("lstbank"));
    m_bankKonto = new QLabel(payment);
    m_bankKonto->setObjectName(QStringLiteral("lblbankkonto"));
    auto *paymentForm = new QFormLayout(payment);
    paymentForm->addRow(QStringLiteral("Nazwa zapłaty:"), m_nazwaZaplaty);
    paymentForm->addRow(QStringLiteral("Rodzaj:"), m_rodzaj);
    paymentForm->addRow(QStringLiteral("Miesiące:"), monthsGrid);
    paymentForm->addRow(QStringLiteral("Dzień płatności:"), m_dzien);
    paymentForm->addRow(QStringLiteral("Dzień alarmu:"), m_alarm);
    paymentForm->addRow(QStringLiteral("Z konta:"), m_bank);
    paymentForm->addRow(QString(), m_bankKonto);
    m_tabs->addTab(payment, QStringLiteral("Zapłata"));

    // Second page: the recipient, title and amount of the documents to issue.
    auto *recipient = new QWidget(m_tabs);
    m_recipient.emplace(recipient, Table, WindowFields::RecipientFields::Columns::Recipient);
    m_zaDokument = field(recipient, QStringLiteral("txtzadokument"), Table, QStringLiteral("ZA_DOKUMENT_NAZWA"), 5);
    m_wartosc = field(recipient, QStringLiteral("txtwartosc"), Table, QStringLiteral("WARTOSC"), 0, QStringLiteral("cur"));
    WindowFields::checkOnLeave(m_wartosc);
    m_szukaj = WindowFields::button(recipient, QStringLiteral("cmdSzukaj"), QStringLiteral("&Szukaj"));
    auto *recipientForm = new QFormLayout(recipient);
    m_recipient->addRows(recipientForm);
    recipientForm->addRow(QStringLiteral("Tytułem:"), m_zaDokument);
    recipientForm->addRow(QStringLiteral("Kwota:"), m_wartosc);
    recipientForm->addRow(QString(), m_szukaj);
    m_tabs->addTab(recipient, QStringLiteral("Odbiorca"));

    m_texts = QList<QLineEdit *>{m_nazwaZaplaty, m_dzien, m_alarm} + m_recipient->all() +
              QList<QLineEdit *>{m_zaDokument, m_wartosc};

    using WindowFields::button;
    auto *nowy = button(this, QStringLiteral("cmdnowy"), Msg(5));
    auto *zmien = button(this, QStringLiteral("cmdzmien"), Msg(7));
    auto *usun = button(this, QStringLiteral("cmdusun"), Msg(8));
    m_ok = button(this, QStringLiteral("cmdok"), Msg(1));
    m_anuluj = button(this, QStringLiteral("cmdanuluj"), Msg(2));
    auto *pomoc = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *koniec = button(this, QStringLiteral("cmdkoniec"), Msg(4));
    m_browseButtons = {nowy, zmien, usun};

    auto *edit = new QHBoxLayout;
    for (QPushButton *b : {nowy, zmien, usun, m_ok, m_anuluj})
        edit->addWidget(b);
    edit->addStretch();
    edit->addWidget(pomoc);
    edit->addWidget(koniec);
    auto *top = new QHBoxLayout;
    top->addWidget(m_list, 2);
    top->addWidget(m_tabs, 3);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(edit);

    connect(m_list, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { showPayment(item->text()); });
    connect(m_list, &QListWidget::currentTextChanged, this, [this](const QString &name) {
        if (!m_editing && !name.isEmpty() && name != m_shownName)
            showPayment(name);
    });
    connect(m_bank, &QComboBox::activated, this, [this](int index) {
        m_bankKonto->setText(Accounts::accountNumber(m_bank->itemData(index).toInt()));
    });
    connect(nowy, &QPushButton::clicked, this, &frmslzapl_term::startNew);
    connect(zmien, &QPushButton::clicked, this, &frmslzapl_term::startEdit);
    connect(usun, &QPushButton::clicked, this, &frmslzapl_term::remove);
    connect(m_ok, &QPushButton::clicked, this, &frmslzapl_term::save);
    connect(m_anuluj, &QPushButton::clicked, this, &frmslzapl_term::cancel);
    connect(m_szukaj, &QPushButton::clicked, this, &frmslzapl_term::chooseRecipient);
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("zaplatyterminowe")); });
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });

    fillAccounts();
    setEditing(false);
    fillList();
    resize(700, 420);
}

void frmslzapl_term::fillList()
{
    m_list->clear();
    if (!isFirmOpen())
        return;
    QString error;
    const auto names = ScheduledPayments::names(Db(), &error);
    if (!names) {
        ErrorReport(error);
        return;
    }
    const QSignalBlocker block(m_list);
    m_list->addItems(*names);
    const auto found = m_list->findItems(m_shownName, Qt::MatchExactly);
    m_list->setCurrentItem(found.isEmpty() ? nullptr : found.first());
}

void frmslzapl_term::fillAccounts()
{
    m_bank->clear();
    for (int n : EntryRules::offeredAccounts(Accounts::list()))
        m_bank->addItem(Accounts::list()[n - 1].bankName, n);
}

bool frmslzapl_term::showPayment(const QString &name)
{
    if (m_editing || !isFirmOpen()) {
        dialogs().beep();
        return false;
    }
    const auto p = ScheduledPayments::read(Db(), name);
    if (!p) {
        dialogs().beep();
        return false;
    }
    m_shownName = p->nazwa;
    showFields(*p);
    const QSignalBlocker block(m_list);
    const auto found = m_list->findItems(m_shownName, Qt::MatchExactly);
    if (!found.isEmpty())
        m_list->setCurrentItem(found.first());
    return true;
}

void frmslzapl_term::showFields(const ScheduledPayment &p)
{
    m_nazwaZaplaty->setText(p.nazwa);
    m_rodzaj->setCurrentIndex(std::max(0, m_rodzaj->findData(int(p.rodzaj))));
    for (int m = 0; m < 12; ++m)
        m_months[m]->setChecked(p.months[size_t(m)]);
    m_dzien->setText(p.dzienPlatnosci > 0 ? QString::number(p.dzienPlatnosci) : QString());
    m_alarm->setText(p.dzienAlarmu > 0 ? QString::number(p.dzienAlarmu) : QString());
    // An account since renamed in the firm data is still shown as the payment holds it.
    int index = m_bank->findText(p.bankFirmy);
    if (index < 0 && !p.bankFirmy.isEmpty()) {
        m_bank->addItem(p.bankFirmy, 0);
        index = m_bank->count() - 1;
    }
    m_bank->setCurrentIndex(index);
    m_bankKonto->setText(p.kontoFirmy);
    m_recipient->show(recipientOf(p));
    m_zaDokument->setText(p.zaDokumentNazwa);
    m_wartosc->setText(p.nazwa.isEmpty() ? QString() : Kwota(p.wartosc));
}

ScheduledPayment frmslzapl_term::gather() const
{
    ScheduledPayment p;
    p.nazwa = m_nazwaZaplaty->text();
    p.rodzaj = static_cast<qint16>(m_rodzaj->currentData().toInt());
    for (int m = 0; m < 12; ++m)
        p.months[size_t(m)] = m_months[m]->isChecked();
    p.dzienPlatnosci = m_dzien->text().trimmed().toInt();
    p.dzienAlarmu = m_alarm->text().trimmed().toInt();
    p.bankFirmy = m_bank->currentText();
    p.kontoFirmy = m_bankKonto->text();
    setRecipient(p, m_recipient->values());
    p.zaDokumentNazwa = m_zaDokument->text();
    p.wartosc = Money::parse(m_wartosc->text()).value_or(Money());
    return p;
}

void frmslzapl_term::setEditing(bool on)
{
    m_editing = on;
    for (QLineEdit *f : std::as_const(m_texts))
        f->setReadOnly(!on);
    for (QCheckBox *box : std::as_const(m_months))
        box->setEnabled(on);
    m_rodzaj->setEnabled(on);
    m_bank->setEnabled(on);
    m_szukaj->setEnabled(on);
    // Moving in the list would drop the edit in hand.
    m_list->setEnabled(!on);
    for (QPushButton *b : std::as_const(m_browseButtons))
        b->setEnabled(!on);
    m_ok->setEnabled(on);
    m_anuluj->setEnabled(on);
}

void frmslzapl_term::startNew()
{
    if (m_editing || !isFirmOpen() || refuseWhenReadOnly())
        return;
    m_editedName.clear();
    ScheduledPayment fresh;
    showFields(fresh);
    if (m_bank->count() > 0) {
        m_bank->setCurrentIndex(0);
        m_bankKonto->setText(Accounts::accountNumber(m_bank->itemData(0).toInt()));
    }
    setEditing(true);
    m_tabs->setCurrentIndex(0);
    m_nazwaZaplaty->setFocus();
}

void frmslzapl_term::startEdit()
{
    if (m_editing)
        return;
    if (m_shownName.isEmpty()) {
        dialogs().beep();
        return;
    }
    if (refuseWhenReadOnly())
        return;
    m_editedName = m_shownName;
    setEditing(true);
    m_nazwaZaplaty->setFocus();
}

bool frmslzapl_term::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && m_editing && !m_checkingDay && (watched == m_dzien || watched == m_alarm))
        dayLeft(static_cast<QLineEdit *>(watched));
    return QWidget::eventFilter(watched, event);
}

bool frmslzapl_term::dayLeft(QLineEdit *day)
{
    // The boxes below take the focus from the field once more; that leave is not checked.
    m_checkingDay = true;
    bool ok = FieldCheck::SprawdzPole(day);
    if (ok && day->text().trimmed().toInt() > ScheduledPayments::MaxDay) {
        dialogs().beep();
        dialogs().exclamation(QStringLiteral("Miesiąc ma tylko 31 dni"), Msg(53));
        day->setFocus();
        ok = false;
    }
    m_checkingDay = false;
    return ok;
}

void frmslzapl_term::save()
{
    if (!m_editing) {
        dialogs().beep();
        return;
    }
    if (FieldCheck::SprawdzPola(this))
        return;
    if (m_nazwaZaplaty->text().trimmed().isEmpty() || m_dzien->text().trimmed().isEmpty() ||
        m_alarm->text().trimmed().isEmpty()) {
        dialogs().exclamation(QStringLiteral("Wypełnij pola nazwa, dzień alarmu i płatności"), Msg(50));
        return;
    }
    for (QLineEdit *day : {m_dzien, m_alarm})
        if (!dayLeft(day)) {
            m_tabs->setCurrentIndex(0);
            return;
        }
    if (!DigitWarnings::confirmSave({m_recipient->nip, m_recipient->konto})) {
        m_tabs->setCurrentIndex(1);
        return;
    }
    const ScheduledPayment p = gather();
    QString error;
    const auto result = m_editedName.isEmpty() ? ScheduledPayments::insert(Db(), p, &error)
                                               : ScheduledPayments::update(Db(), m_editedName, p, &error);
    if (result == ScheduledPayments::SaveResult::Duplicate) {
        dialogs().exclamation(QStringLiteral("Taka zapłata już istnieje"), Msg(53));
        m_tabs->setCurrentIndex(0);
        m_nazwaZaplaty->setFocus();
        return;
    }
    if (result == ScheduledPayments::SaveResult::Failed) {
        ErrorReport(error);
        return;
    }
    setEditing(false);
    m_shownName = p.nazwa;
    fillList();
    showPayment(p.nazwa);
}

void frmslzapl_term::cancel()
{
    if (!m_editing)
        return;
    setEditing(false);
    if (m_shownName.isEmpty() || !showPayment(m_shownName))
        showFields(ScheduledPayment{});
}

void frmslzapl_term::remove()
{
    if (m_editing || m_shownName.isEmpty()) {
        dialogs().beep();
        return;
    }
    if (refuseWhenReadOnly())
        return;
    if (!dialogs().question(Msg(56) + m_shownName + QLatin1Char('?'), Msg(53)))
        return;
    QString error;
    if (!ScheduledPayments::remove(Db(), m_shownName, &error)) {
        ErrorReport(error);
        return;
    }
    m_shownName.clear();
    showFields(ScheduledPayment{});
    fillList();
}

void frmslzapl_term::chooseRecipient()
{
    if (!m_editing) {
        dialogs().beep();
        return;
    }
    frmKontrahenci::openForChoosing(this, [this](const Contractor &c) { takeRecipient(c); });
}

void frmslzapl_term::takeRecipient(const Contractor &c)
{
    if (!m_editing)
        return;
    m_recipient->show(c);
}
