#include "frmfirma.h"

#include "Dialogs.h"
#include "Firm.h"
#include "Help.h"
#include "Messages.h"
#include "WindowUtil.h"
#include "documents/ChoiceLists.h"
#include "documents/FirmData.h"
#include "documents/WindowFields.h"
#include "validation/CheckDigits.h"
#include "validation/DigitWarnings.h"
#include "validation/FieldCheck.h"
#include "validation/Sprawdz.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

const QString Table = QStringLiteral("FIRMA");
constexpr int FirstListed = 11; // lstBank's first entry stands for this account

QString indexed(const char *name, int i)
{
    return QLatin1String(name) + QLatin1Char('_') + QString::number(i);
}

QString balanceText(Money m)
{
    return m.kwota();
}

} // namespace

frmfirma::frmfirma(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmfirma"));
    setWindowTitle(QStringLiteral("Dane firmy"));
    using WindowFields::field;

    m_nazwa = field(this, QStringLiteral("txtnazwa"), Table, QStringLiteral("NAZWA"), 5);
    m_nazwa1 = field(this, QStringLiteral("txtnazwa1"), Table, QStringLiteral("NAZWA1"), 5);
    m_ulica = field(this, QStringLiteral("txtulica"), Table, QStringLiteral("ULICA"), 5);
    m_nrDomu = field(this, QStringLiteral("txtnrdomu"), Table, QStringLiteral("NR_DOMU"), 5);
    m_nrLokalu = field(this, QStringLiteral("txtnrlokalu"), Table, QStringLiteral("NR_LOKALU"), 5);
    m_kod = field(this, QStringLiteral("txtkod"), Table, QStringLiteral("KOD"), 3, QStringLiteral("kodpoczt"));
    m_miasto = field(this, QStringLiteral("txtmiasto"), Table, QStringLiteral("MIASTO"), 5);
    m_nip = field(this, QStringLiteral("txtNIP"), Table, QStringLiteral("firma_NIP"), 3, QStringLiteral("nip"));
    m_nazwaSkrocona = field(this, QStringLiteral("txtnazwaskrocona"), Table, QStringLiteral("NAZWA_SKROCONA"), 5);
    m_nazwaSkroconaCd = field(this, QStringLiteral("txtnazwaskroconacd"), Table, QStringLiteral("NAZWA_SKROCONACD"), 5);
    m_identZus = field(this, QStringLiteral("txtIdentyfikatorZus"), Table, QStringLiteral("IDENTZUS"), 5);
    m_identPod = field(this, QStringLiteral("txtIdentyfikatorPodatki"), Table, QStringLiteral("IDENTPOD"), 5);
    m_nrs = field(this, QStringLiteral("txtRachunekNrs"), Table, QStringLiteral("RACHUNEK_NRS"), 5);
    m_typIdentZus = new QComboBox(this);
    m_typIdentZus->setObjectName(QStringLiteral("lstTypIdentZus"));
    m_typIdentZus->addItems(ChoiceLists::zusIdentifierTypes());
    m_typIdentPod = new QComboBox(this);
    m_typIdentPod->setObjectName(QStringLiteral("lstTypIdentPodatki"));
    m_typIdentPod->addItems(ChoiceLists::taxIdentifierTypes());
    for (int i = 0; i < 10; ++i) {
        const int n = i + 1;
        m_bank[i] = field(this, indexed("txtbank", i), Table, Accounts::nameColumn(n), 5);
        m_konto[i] = field(this, indexed("txtkonto", i), Table, Accounts::numberColumn(n), 5);
        m_stan[i] = field(this, indexed("txtstan", i), Table, Accounts::balanceColumn(n), 0, QStringLiteral("cur"));
    }
    m_bank11 = field(this, QStringLiteral("txtbank11"), Table, Accounts::nameColumn(FirstListed), 5);
    m_konto11 = field(this, QStringLiteral("txtkonto11"), Table, Accounts::numberColumn(FirstListed), 5);
    m_stan11 = field(this, QStringLiteral("txtstan11"), Table, Accounts::balanceColumn(FirstListed), 0,
                     QStringLiteral("cur"));
    m_texts = {m_nazwa, m_nazwa1, m_ulica, m_nrDomu, m_nrLokalu, m_kod, m_miasto, m_nip, m_nazwaSkrocona,
               m_nazwaSkroconaCd, m_identZus, m_identPod, m_bank11, m_konto11, m_stan11, m_nrs};
    for (int i = 0; i < 10; ++i)
        m_texts << m_bank[i] << m_konto[i] << m_stan[i];
    WindowFields::checkOnLeave(m_kod);
    watchDigits();
    for (QLineEdit *stan : m_stan)
        FieldCheck::normaliseAmountOnLeave(stan);
    FieldCheck::normaliseAmountOnLeave(m_stan11);

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("zakladki"));
    m_tabs->addTab(firmPage(), QStringLiteral("Firma"));
    m_tabs->addTab(identifiersPage(), QStringLiteral("Identyfikatory"));
    m_tabs->addTab(accountsPage(1, 5), QStringLiteral("Banki 1-5"));
    m_tabs->addTab(accountsPage(6, 10), QStringLiteral("Banki 6-10"));
    m_tabs->addTab(moreAccountsPage(), QStringLiteral("Banki 11-40"));

    m_zmien = WindowFields::button(this, QStringLiteral("cmdzmien"), Msg(7));
    m_ok = WindowFields::button(this, QStringLiteral("cmdok"), Msg(1));
    m_anuluj = WindowFields::button(this, QStringLiteral("cmdanuluj"), Msg(2));
    auto *koniec = WindowFields::button(this, QStringLiteral("cmdkoniec"), Msg(4));
    auto *pomoc = WindowFields::button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_zmien);
    buttons->addStretch();
    for (QPushButton *b : {m_ok, m_anuluj, koniec, pomoc})
        buttons->addWidget(b);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addLayout(buttons);

    connect(m_zmien, &QPushButton::clicked, this, &frmfirma::startEdit);
    connect(m_ok, &QPushButton::clicked, this, &frmfirma::save);
    connect(m_anuluj, &QPushButton::clicked, this, &frmfirma::cancel);
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("danefirmy")); });
    connect(m_lstBank, &QListWidget::currentRowChanged, this, &frmfirma::bankChosen);

    load();
    setEditing(false);
}

void frmfirma::watchDigits()
{
    DigitWarnings::watchNip(m_nip);
    // The supplementary identifiers are checked as the type chosen beside them says.
    auto byType = [](QComboBox *type, int nip, int regon, int pesel) {
        return [=](const QString &text) -> std::optional<QString> {
            const int t = type->currentIndex();
            if (t == nip)
                return CheckDigits::nipProblem(text);
            if (t == regon)
                return CheckDigits::regonProblem(text);
            if (t == pesel)
                return CheckDigits::peselProblem(text);
            return std::nullopt;
        };
    };
    DigitWarnings::watch(m_identZus, byType(m_typIdentZus, -1, 0, 1));
    DigitWarnings::watch(m_identPod, byType(m_typIdentPod, 0, 1, 2));
    DigitWarnings::watch(m_nrs, [this](const QString &text) { return CheckDigits::nrsProblem(text, m_nip->text()); });
    connect(m_typIdentZus, &QComboBox::currentIndexChanged, this, [this] { DigitWarnings::recheck(m_identZus); });
    connect(m_typIdentPod, &QComboBox::currentIndexChanged, this, [this] { DigitWarnings::recheck(m_identPod); });
    connect(m_nip, &QLineEdit::textChanged, this, [this] { DigitWarnings::recheck(m_nrs); });
    m_watched = {m_nip, m_identZus, m_identPod, m_nrs};
    for (QLineEdit *konto : m_konto)
        m_watched << konto;
    m_watched << m_konto11;
    for (int i = 0; i < 10; ++i)
        DigitWarnings::watchAccount(m_konto[i], bankLabel(indexed("lblbankkonta", i)), m_bank[i]);
    DigitWarnings::watchAccount(m_konto11, bankLabel(QStringLiteral("lblbankkonta11")), m_bank11);
}

QLabel *frmfirma::bankLabel(const QString &name)
{
    auto *label = new QLabel(this);
    label->setObjectName(name);
    m_bankLabels.insert(name, label);
    return label;
}

QLayout *frmfirma::withBank(QLineEdit *konto)
{
    // The label was named after the field's position: find it by the field's suffix.
    const QString suffix = konto->objectName().mid(QStringLiteral("txtkonto").size());
    auto *row = new QHBoxLayout;
    row->addWidget(konto, 2);
    row->addWidget(m_bankLabels.value(QStringLiteral("lblbankkonta") + suffix), 1);
    return row;
}

QWidget *frmfirma::firmPage()
{
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    form->addRow(QStringLiteral("Nazwa:"), m_nazwa);
    form->addRow(QStringLiteral("Nazwa cd:"), m_nazwa1);
    form->addRow(QStringLiteral("Ulica:"), m_ulica);
    auto *house = new QHBoxLayout;
    house->addWidget(m_nrDomu);
    house->addWidget(new QLabel(QStringLiteral("Nr mieszk."), page));
    house->addWidget(m_nrLokalu);
    form->addRow(QStringLiteral("Nr domu:"), house);
    auto *town = new QHBoxLayout;
    town->addWidget(m_kod);
    town->addWidget(new QLabel(QStringLiteral("Miasto:"), page));
    town->addWidget(m_miasto, 1);
    form->addRow(QStringLiteral("Kod:"), town);
    form->addRow(QStringLiteral("NIP:"), m_nip);
    return page;
}

QWidget *frmfirma::identifiersPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *names = new QFormLayout;
    names->addRow(QStringLiteral("Nazwa skrócona"), m_nazwaSkrocona);
    names->addRow(QStringLiteral("Nazwa skrócona cd."), m_nazwaSkroconaCd);
    layout->addLayout(names);
    auto frame = [&](const QString &name, const QString &title, QComboBox *type, QLineEdit *value) {
        auto *box = new QGroupBox(title, page);
        box->setObjectName(name);
        auto *form = new QFormLayout(box);
        form->addRow(QStringLiteral("Typ identyfikatora uzupełniającego"), type);
        form->addRow(QStringLiteral("Identyfikator"), value);
        layout->addWidget(box);
    };
    frame(QStringLiteral("fraZus"), QStringLiteral("ZUS"), m_typIdentZus, m_identZus);
    frame(QStringLiteral("fraPodatki"), QStringLiteral("Podatki"), m_typIdentPod, m_identPod);
    auto *contributions = new QFormLayout;
    contributions->addRow(QStringLiteral("Rachunek składkowy ZUS (NRS)"), m_nrs);
    layout->addLayout(contributions);
    layout->addStretch();
    return page;
}

QWidget *frmfirma::accountsPage(int first, int last)
{
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    for (int n = first; n <= last; ++n) {
        form->addRow(QStringLiteral("Nazwa banku %1:").arg(n), m_bank[n - 1]);
        form->addRow(QStringLiteral("Konto %1:").arg(n), withBank(m_konto[n - 1]));
        form->addRow(QStringLiteral("Stan konta:"), m_stan[n - 1]);
    }
    return page;
}

QWidget *frmfirma::moreAccountsPage()
{
    auto *page = new QWidget;
    auto *layout = new QHBoxLayout(page);
    m_lstBank = new QListWidget(page);
    m_lstBank->setObjectName(QStringLiteral("lstBank"));
    for (int n = FirstListed; n <= Accounts::Count; ++n)
        m_lstBank->addItem(QStringLiteral("Bank %1").arg(n));
    m_lstBank->setMaximumWidth(120);
    layout->addWidget(m_lstBank);
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Nazwa banku:"), m_bank11);
    form->addRow(QStringLiteral("Konto:"), withBank(m_konto11));
    form->addRow(QStringLiteral("Stan konta:"), m_stan11);
    layout->addLayout(form, 1);
    return page;
}

void frmfirma::load()
{
    QString error;
    const std::optional<FirmData> stored = isFirmOpen() ? FirmStore::read(Db(), &error) : std::nullopt;
    if (!error.isEmpty())
        dialogs().exclamation(error, Msg(51));
    // A firm without its row yet shows empty fields; the first save adds the row.
    const FirmData d = stored.value_or(FirmData{});
    m_nazwa->setText(d.nazwa);
    m_nazwa1->setText(d.nazwa1);
    m_ulica->setText(d.ulica);
    m_nrDomu->setText(d.nrDomu);
    m_nrLokalu->setText(d.nrLokalu);
    m_kod->setText(d.kod);
    m_miasto->setText(d.miasto);
    m_nip->setText(d.nip);
    m_nazwaSkrocona->setText(d.nazwaSkrocona);
    m_nazwaSkroconaCd->setText(d.nazwaSkroconaCd);
    m_typIdentZus->setCurrentIndex(d.typIdentZus < m_typIdentZus->count() ? d.typIdentZus : -1);
    m_identZus->setText(d.identZus);
    m_typIdentPod->setCurrentIndex(d.typIdentPod < m_typIdentPod->count() ? d.typIdentPod : -1);
    m_identPod->setText(d.identPod);
    m_nrs->setText(d.nrs);
    for (int i = 0; i < Accounts::Count; ++i) {
        const BankAccount &a = d.accounts[i];
        m_accounts[i] = {a.bankName, a.number, balanceText(a.balance)};
        m_shownBalance[i] = m_accounts[i].balance;
        if (i < 10) {
            m_bank[i]->setText(a.bankName);
            m_konto[i]->setText(a.number);
            m_stan[i]->setText(m_accounts[i].balance);
        }
    }
    m_shownRow = -1;
    const int row = m_lstBank->currentRow() < 0 ? 0 : m_lstBank->currentRow();
    {
        const QSignalBlocker block(m_lstBank);
        m_lstBank->setCurrentRow(row);
    }
    bankChosen(row);
}

void frmfirma::setEditing(bool on)
{
    m_editing = on;
    for (QLineEdit *f : std::as_const(m_texts))
        f->setReadOnly(!on);
    m_typIdentZus->setEnabled(on);
    m_typIdentPod->setEnabled(on);
    m_zmien->setEnabled(!on);
    m_ok->setEnabled(on);
    m_anuluj->setEnabled(on);
}

void frmfirma::startEdit()
{
    if (m_editing || refuseWhenReadOnly())
        return;
    // Fresh from the database: balances change with every document issued meanwhile.
    load();
    setEditing(true);
    m_nazwa->setFocus();
}

void frmfirma::cancel()
{
    setEditing(false);
    load();
}

void frmfirma::bankChosen(int row)
{
    if (row == m_shownRow)
        return;
    if (m_editing && m_shownRow >= 0 && !keepShownAccount()) {
        const QSignalBlocker block(m_lstBank);
        m_lstBank->setCurrentRow(m_shownRow);
        return;
    }
    m_shownRow = row;
    const AccountTexts a = row >= 0 ? m_accounts[FirstListed - 1 + row] : AccountTexts{};
    m_bank11->setText(a.bankName);
    m_konto11->setText(a.number);
    m_stan11->setText(a.balance);
}

bool frmfirma::fieldWrong(QLineEdit *field)
{
    if (Sprawdz::check(FieldCheck::kind(field), field->text()).ok)
        return false;
    // A field on a page not in view is told about on its page.
    for (int page = 0; page < m_tabs->count(); ++page)
        if (m_tabs->widget(page)->isAncestorOf(field))
            m_tabs->setCurrentIndex(page);
    FieldCheck::SprawdzPole(field);
    return true;
}

bool frmfirma::keepShownAccount()
{
    if (m_shownRow < 0)
        return true;
    if (fieldWrong(m_stan11))
        return false;
    m_accounts[FirstListed - 1 + m_shownRow] = {m_bank11->text(), m_konto11->text(), m_stan11->text()};
    return true;
}

bool frmfirma::fieldsWrong()
{
    // Every page's fields, not only those in view, in the order of the pages.
    QList<QLineEdit *> checked{m_kod, m_nip};
    for (QLineEdit *stan : m_stan)
        checked << stan;
    checked << m_stan11;
    for (QLineEdit *f : std::as_const(checked))
        if (fieldWrong(f))
            return true;
    return false;
}

FirmData frmfirma::gather(std::bitset<Accounts::Count> *changedBalances) const
{
    FirmData d;
    d.nazwa = m_nazwa->text();
    d.nazwa1 = m_nazwa1->text();
    d.ulica = m_ulica->text();
    d.nrDomu = m_nrDomu->text();
    d.nrLokalu = m_nrLokalu->text();
    d.kod = m_kod->text().trimmed();
    d.miasto = m_miasto->text();
    d.nip = m_nip->text().trimmed();
    d.nazwaSkrocona = m_nazwaSkrocona->text();
    d.nazwaSkroconaCd = m_nazwaSkroconaCd->text();
    d.typIdentZus = m_typIdentZus->currentIndex();
    d.identZus = m_identZus->text();
    d.typIdentPod = m_typIdentPod->currentIndex();
    d.identPod = m_identPod->text();
    d.nrs = m_nrs->text().trimmed();
    for (int i = 0; i < Accounts::Count; ++i) {
        const AccountTexts a = i < 10 ? AccountTexts{m_bank[i]->text(), m_konto[i]->text(), m_stan[i]->text()}
                                      : m_accounts[i];
        // Checked before: an empty balance is zero.
        d.accounts[i] = BankAccount{a.bankName, a.number, Money::parse(a.balance).value_or(Money())};
        // A balance left as shown keeps what is stored, which may have moved since.
        changedBalances->set(i, a.balance.trimmed() != m_shownBalance[i].trimmed());
    }
    return d;
}

void frmfirma::save()
{
    if (!m_editing) {
        dialogs().beep();
        return;
    }
    if (!keepShownAccount() || fieldsWrong())
        return;
    if (!DigitWarnings::confirmSave(QList<QWidget *>(m_watched.begin(), m_watched.end()))) {
        for (int page = 0; page < m_tabs->count(); ++page)
            if (m_tabs->widget(page)->isAncestorOf(focusWidget()))
                m_tabs->setCurrentIndex(page);
        return;
    }
    std::bitset<Accounts::Count> changed;
    const FirmData d = gather(&changed);
    QString error;
    if (!FirmStore::save(Db(), d, changed, &error)) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    setEditing(false);
    load();
    Q_EMIT saved();
}
