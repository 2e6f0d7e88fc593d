#include "frmprzelew.h"

#include "AppState.h"
#include "DateText.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/DocumentStore.h"
#include "documents/EntryRules.h"
#include "WindowFields.h"
#include "frmKontrahenci.h"
#include "exchange/Elixir.h"
#include "print/PrintEngine.h"
#include "validation/ui/FieldCheck.h"
#include "documents/FirmData.h"
#include "SplitPaymentBox.h"
#include "documents/TaxAccount.h"
#include "documents/ZusAccount.h"
#include "validation/BankNames.h"
#include "validation/ui/DigitWarnings.h"
#include "print/ui/SlipAids.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

const QString Table = QStringLiteral("ZLECANKI");

QComboBox *choice(QWidget *parent, const QString &name, const QStringList &items)
{
    auto *c = new QComboBox(parent);
    c->setObjectName(name);
    c->addItems(items);
    return c;
}

void select(QComboBox *list, int position)
{
    list->setCurrentIndex(position >= 0 && position < list->count() ? position : -1);
}

qint16 position(const QComboBox *list)
{
    return static_cast<qint16>(qMax(0, list->currentIndex()));
}

Money amountIn(const QLineEdit *field)
{
    // Checked before saving; an empty field is no amount at all.
    return Money::parse(field->text()).value_or(Money());
}

// The busy pointer for as long as issuing a document lasts, whichever way it ends.
struct BusyPointer {
    BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

} // namespace

frmprzelew::frmprzelew(qint16 mode, qint16 kind, qint32 id, QWidget *parent)
    : QWidget(parent), m_mode(mode), m_kind(kind), m_id(id)
{
    setObjectName(EntryRules::windowName(mode, kind, id));
    setWindowTitle(EntryRules::caption(mode));
    using WindowFields::field;

    m_lstbank = new QComboBox(this);
    m_lstbank->setObjectName(QStringLiteral("lstbank"));
    m_lblbankkonto = new QLabel(this);
    m_lblbankkonto->setObjectName(QStringLiteral("lblbankkonto"));
    m_lblrodzaj = new QLabel(DocumentKinds::name(kind), this);
    m_lblrodzaj->setObjectName(QStringLiteral("lblrodzaj"));
    QFont bold = m_lblrodzaj->font();
    bold.setBold(true);
    m_lblrodzaj->setFont(bold);

    m_recipient.emplace(this, Table, WindowFields::RecipientFields::Columns::Recipient);
    m_zaDokument = field(this, QStringLiteral("txtzadokument"), Table, QStringLiteral("ZA_DOKUMENT_NAZWA"), 5);
    m_wartosc = field(this, QStringLiteral("txtwartosc"), Table, QStringLiteral("WARTOSC"), 0, QStringLiteral("cur"));
    m_data = field(this, QStringLiteral("txtdata"), Table, QStringLiteral("DATA_DOKUMENTU"), 2, QStringLiteral("data"));

    auto *accountFrame = new QGroupBox(QStringLiteral("Z banku/ konta"), this);
    accountFrame->setObjectName(QStringLiteral("frabank"));
    auto *accountRow = new QHBoxLayout(accountFrame);
    accountRow->addWidget(m_lstbank, 1);
    // The frame's caption is what names the list to a screen reader.
    m_lstbank->setAccessibleName(accountFrame->title());
    accountRow->addWidget(m_lblbankkonto, 1);

    m_documentForm = new QFormLayout;
    m_documentForm->addRow(QStringLiteral("Tytułem:"), m_zaDokument);
    m_documentForm->addRow(QStringLiteral("Wartość:"), m_wartosc);
    m_documentForm->addRow(QStringLiteral("Data:"), m_data);
    m_documentForm->insertRow(1, QString(), SlipAids::titleRoom(m_zaDokument, kind, this));

    m_wystaw = WindowFields::button(this, QStringLiteral("cmdwystaw"), EntryRules::issueButtonText(mode));
    m_szukaj = WindowFields::button(this, QStringLiteral("cmdSzukaj"), QStringLiteral("&Szukaj (F2)"));
    auto *anuluj = WindowFields::button(this, QStringLiteral("cmdanuluj"), Msg(2));
    auto *koniec = WindowFields::button(this, QStringLiteral("cmdkoniec"), Msg(4));
    auto *pomoc = WindowFields::button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_szukaj);
    buttons->addStretch();
    for (QPushButton *b : {m_wystaw, anuluj, koniec, pomoc})
        buttons->addWidget(b);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_lblrodzaj);
    layout->addWidget(accountFrame);
    layout->addWidget(recipientPart());
    layout->addLayout(m_documentForm);
    m_mpp = new SplitPaymentBox(m_zaDokument, m_recipient->nip, this);
    m_mpp->setVisible(kind == DocumentKinds::PrzelewBankowy);
    layout->addWidget(m_mpp);
    layout->addWidget(zusBlock());
    layout->addWidget(taxBlock());
    layout->addStretch();
    layout->addLayout(buttons);

    m_texts = m_recipient->all() + QList<QLineEdit *>{m_zaDokument, m_wartosc, m_data, m_nrDekl, m_wartoscZus,
                                                      m_nrOkresu, m_symbol, m_identyfikacja, m_wartoscPod};
    layout->insertWidget(layout->count() - 2, SlipAids::qrPreview(kind, m_texts, [this] { return gather(); }, this));
    WindowFields::checkOnLeave(m_data);
    FieldCheck::normaliseDateOnLeave(m_data);
    for (QLineEdit *amount : {m_wartosc, m_wartoscZus, m_wartoscPod}) {
        WindowFields::checkOnLeave(amount);
        FieldCheck::normaliseAmountOnLeave(amount);
    }

    // Each kind shows the amount field it is paid from, and the recipient's bank only
    // where its slip prints one.
    m_frmZus->setVisible(kind == DocumentKinds::PrzelewZus);
    m_frmPodatki->setVisible(kind == DocumentKinds::PrzelewPodatki);
    m_documentForm->setRowVisible(m_wartosc, EntryRules::usesGeneralAmount(kind));
    m_recipientForm->setRowVisible(m_recipient->bank, EntryRules::recipientBankInUse(kind));
    m_recipientForm->setRowVisible(m_recipient->konto, EntryRules::recipientBankInUse(kind));
    m_recipientForm->setRowVisible(m_recipient->bankOfAccount, EntryRules::recipientBankInUse(kind));

    connect(m_lstbank, &QComboBox::currentIndexChanged, this, &frmprzelew::accountChosen);
    connect(&FirmEvents::instance(), &FirmEvents::accountsChanged, this, &frmprzelew::followAccounts);
    connect(m_wystaw, &QPushButton::clicked, this, &frmprzelew::issue);
    connect(m_szukaj, &QPushButton::clicked, this, &frmprzelew::chooseContractor);
    connect(anuluj, &QPushButton::clicked, this, &frmprzelew::abandon);
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("wystawianiedokumentow")); });

    if (mode == EntryRules::New) {
        startNew();
    } else {
        load();
        if (mode == EntryRules::Viewing)
            setViewing();
    }
}

QWidget *frmprzelew::recipientPart()
{
    auto *part = new QWidget(this);
    m_recipientForm = new QFormLayout(part);
    m_recipientForm->setContentsMargins(0, 0, 0, 0);
    m_recipientForm->addRow(QStringLiteral("Nazwa:"), m_recipient->nazwa);
    m_recipientForm->addRow(QStringLiteral("Nazwa cd:"), m_recipient->nazwa1);
    m_recipientForm->addRow(QStringLiteral("Ulica:"), m_recipient->ulica);
    auto *town = new QHBoxLayout;
    town->addWidget(m_recipient->kod);
    town->addWidget(WindowFields::label(part, QStringLiteral("Miasto:"), m_recipient->miasto));
    town->addWidget(m_recipient->miasto, 1);
    m_recipientForm->addRow(WindowFields::label(part, QStringLiteral("Kod:"), m_recipient->kod), town);
    m_recipientForm->addRow(QStringLiteral("NIP:"), m_recipient->nip);
    m_recipientForm->addRow(QStringLiteral("Bank:"), m_recipient->bank);
    m_recipientForm->addRow(QStringLiteral("Konto:"), m_recipient->konto);
    m_recipientForm->addRow(QString(), m_recipient->bankOfAccount);
    return part;
}

QGroupBox *frmprzelew::zusBlock()
{
    m_frmZus = new QGroupBox(QStringLiteral("Należność z tytułu składek"), this);
    m_frmZus->setObjectName(QStringLiteral("frmZus"));
    m_nrZus = choice(m_frmZus, QStringLiteral("lstNrZus"), ChoiceLists::zusAccounts());
    m_typWpl = choice(m_frmZus, QStringLiteral("lstTypWpl"), ChoiceLists::zusPaymentTypes());
    m_rok = choice(m_frmZus, QStringLiteral("lstrok"), ChoiceLists::zusYears());
    m_miesiac = choice(m_frmZus, QStringLiteral("lstmiesiac"), ChoiceLists::months());
    m_nrDekl = WindowFields::field(m_frmZus, QStringLiteral("txtNrDekl"), Table, QStringLiteral("ZUS_NrDeklaracji"), 4);
    m_wartoscZus = WindowFields::field(m_frmZus, QStringLiteral("txtWartoscZus"), Table, QStringLiteral("WARTOSC"), 0,
                                       QStringLiteral("cur"));
    auto *form = new QFormLayout(m_frmZus);
    form->addRow(QStringLiteral("Nr rachunku ZUS:"), m_nrZus);
    auto *declaration = new QHBoxLayout;
    declaration->addWidget(m_typWpl, 1);
    declaration->addWidget(m_rok);
    declaration->addWidget(m_miesiac);
    form->addRow(WindowFields::label(m_frmZus, QStringLiteral("Deklaracja:"), m_typWpl), declaration);
    form->addRow(QStringLiteral("Nr deklaracji:"), m_nrDekl);
    form->addRow(QStringLiteral("Kwota:"), m_wartoscZus);
    return m_frmZus;
}

QGroupBox *frmprzelew::taxBlock()
{
    m_frmPodatki = new QGroupBox(QStringLiteral("Należność z tytułu podatków"), this);
    m_frmPodatki->setObjectName(QStringLiteral("frmPodatki"));
    m_okresRok = choice(m_frmPodatki, QStringLiteral("lstOkresRok"), ChoiceLists::taxYears());
    m_typOkresu = choice(m_frmPodatki, QStringLiteral("lstTypOkresu"), ChoiceLists::taxPeriodTypes());
    using WindowFields::field;
    m_nrOkresu = field(m_frmPodatki, QStringLiteral("txtNrOkresu"), Table, QStringLiteral("POD_NrOkresu"), 4);
    m_symbol = field(m_frmPodatki, QStringLiteral("txtsymbol"), Table, QStringLiteral("POD_Symbol"), 5);
    m_identyfikacja =
        field(m_frmPodatki, QStringLiteral("txtidentyfikacja"), Table, QStringLiteral("POD_Identyfikacja"), 5);
    m_wartoscPod = field(m_frmPodatki, QStringLiteral("txtWartoscPod"), Table, QStringLiteral("WARTOSC"), 0,
                         QStringLiteral("cur"));
    auto *form = new QFormLayout(m_frmPodatki);
    form->addRow(QStringLiteral("Deklaracja za rok:"), m_okresRok);
    form->addRow(QStringLiteral("Typ okresu:"), m_typOkresu);
    form->addRow(QStringLiteral("Nr okresu:"), m_nrOkresu);
    form->addRow(QStringLiteral("Symbol formularza:"), m_symbol);
    form->addRow(QStringLiteral("Ident. zobowiązania:"), m_identyfikacja);
    form->addRow(QStringLiteral("Kwota:"), m_wartoscPod);
    m_mikrorachunek = WindowFields::button(m_frmPodatki, QStringLiteral("cmdMikrorachunek"),
                                           QStringLiteral("&Mikrorachunek podatkowy"));
    form->addRow(QString(), m_mikrorachunek);
    connect(m_mikrorachunek, &QPushButton::clicked, this, &frmprzelew::fillMicroAccount);
    return m_frmPodatki;
}

void frmprzelew::fillAccounts(int keep)
{
    const QSignalBlocker block(m_lstbank);
    m_lstbank->clear();
    // Every entry carries its account's number, which is what the document stores.
    for (int n : EntryRules::offeredAccounts(Accounts::list(), keep))
        m_lstbank->addItem(Accounts::list()[n - 1].bankName, n);
    // A firm whose accounts are not filled in yet has nothing to pay from: say where to fill them.
    m_lstbank->setPlaceholderText(m_lstbank->count() == 0 ? QStringLiteral("brak kont - wpisz je w: System, Dane firmy")
                                                          : QString());
}

void frmprzelew::accountChosen(int index)
{
    // The bank's name and the number always come from one entry of the firm's accounts,
    // also when the entry shown carried the name a stored document was printed with.
    const int n = index < 0 ? 0 : m_lstbank->itemData(index).toInt();
    if (Accounts::isValid(n))
        m_lstbank->setItemText(index, Accounts::list()[n - 1].bankName);
    m_lblbankkonto->setText(Accounts::isValid(n) ? Accounts::accountNumber(n) : QString());
}

void frmprzelew::followAccounts()
{
    // The account shown stays chosen. A new document takes its name and number as the firm
    // has them now; a stored one keeps the pair it was printed with until another is chosen.
    const int n = m_lstbank->currentData().toInt();
    const QString name = m_lstbank->currentText();
    const QString number = m_lblbankkonto->text();
    fillAccounts(m_mode == EntryRules::New ? 0 : n);
    const int index = m_lstbank->findData(n);
    {
        const QSignalBlocker block(m_lstbank);
        m_lstbank->setCurrentIndex(index);
    }
    if (m_mode != EntryRules::New && index >= 0) {
        m_lstbank->setItemText(index, name);
        m_lblbankkonto->setText(number);
    } else {
        accountChosen(index);
    }
}

void frmprzelew::showDocument(const PaymentDocument &doc)
{
    const bool stored = doc.id != 0;
    fillAccounts(stored ? doc.banknr : 0);
    // Account 0 is one still to be chosen (a scheduled payment's account that is gone).
    int index = m_lstbank->findData(int(doc.banknr));
    if (index < 0 && doc.banknr != 0 && m_lstbank->count() > 0)
        index = 0;
    {
        const QSignalBlocker block(m_lstbank);
        m_lstbank->setCurrentIndex(index);
    }
    if (stored && index >= 0 && !doc.bankFirmy.isEmpty())
        m_lstbank->setItemText(index, doc.bankFirmy);
    // A stored document shows the account number it was printed with.
    if (stored)
        m_lblbankkonto->setText(doc.kontoFirmy);
    else
        accountChosen(index);

    m_recipient->show(recipientOf(doc));
    m_zaDokument->setText(doc.zaDokumentNazwa);
    m_mpp->showTitle(doc.zaDokumentNazwa);
    m_data->setText(DateText::format(doc.dataDokumentu));
    // A new document's amount starts empty, so that forgetting it is caught as a missing field.
    const bool amountGiven = stored || !doc.wartosc.isZero();
    m_wartosc->setText(EntryRules::usesGeneralAmount(m_kind) && amountGiven ? Kwota(doc.wartosc) : QString());
    showBlocks(doc.zus, doc.pod);
    m_wartoscZus->setText(Kwota(m_kind == DocumentKinds::PrzelewZus ? doc.wartosc : Money()));
    m_wartoscPod->setText(Kwota(m_kind == DocumentKinds::PrzelewPodatki ? doc.wartosc : Money()));
}

void frmprzelew::showBlocks(const ZusBlock &zus, const TaxBlock &tax)
{
    select(m_nrZus, zus.nrRachunku);
    select(m_typWpl, zus.typWplaty);
    select(m_rok, zus.rok);
    select(m_miesiac, zus.miesiac);
    m_nrDekl->setText(zus.nrDeklaracji);
    select(m_okresRok, tax.rok);
    select(m_typOkresu, tax.typOkresu);
    m_nrOkresu->setText(tax.nrOkresu);
    m_symbol->setText(tax.symbol);
    m_identyfikacja->setText(tax.identyfikacja);
}

PaymentDocument frmprzelew::gather() const
{
    PaymentDocument d;
    d.id = m_id;
    d.rodzaj = m_kind;
    d.banknr = static_cast<qint16>(m_lstbank->currentData().toInt());
    d.bankFirmy = m_lstbank->currentText();
    d.kontoFirmy = m_lblbankkonto->text();
    setRecipient(d, m_recipient->values());
    d.zaDokumentNazwa = m_zaDokument->text();
    d.wartosc = amountIn(amountField());
    d.dataDokumentu = DateText::parse(m_data->text()).value_or(QDate());
    d.zus.nrRachunku = position(m_nrZus);
    d.zus.typWplaty = position(m_typWpl);
    d.zus.rok = position(m_rok);
    d.zus.miesiac = position(m_miesiac);
    d.zus.nrDeklaracji = m_nrDekl->text();
    d.pod.rok = position(m_okresRok);
    d.pod.typOkresu = position(m_typOkresu);
    d.pod.nrOkresu = m_nrOkresu->text();
    d.pod.symbol = m_symbol->text();
    d.pod.identyfikacja = m_identyfikacja->text();
    return d;
}

bool frmprzelew::accountMissing()
{
    if (m_lstbank->currentIndex() >= 0)
        return false;
    m_lstbank->setFocus(Qt::OtherFocusReason);
    dialogs().information(QStringLiteral("To pole nie może być puste"));
    return true;
}

bool frmprzelew::save()
{
    if (m_mode == EntryRules::Viewing || refuseWhenReadOnly())
        return false;
    // The bank file is opened before anything of the document is looked at.
    if (!Elixir::issueStep(Db(), firmFile(), appState().eliksir))
        return false;
    if (FieldCheck::SprawdzPola(this) || accountMissing() || !DigitWarnings::confirmSave(this))
        return false;
    QList<QWidget *> required;
    for (const QString &name : EntryRules::requiredFields(m_kind))
        required << findChild<QWidget *>(name);
    if (FieldCheck::SprawdzPuste(required))
        return false;
    if (SlipAids::refuseTitle(m_zaDokument, m_kind))
        return false;
    if (const QString split = m_mpp->problem(amountIn(m_wartosc)); !split.isEmpty()) {
        m_mpp->firstField()->setFocus(Qt::OtherFocusReason);
        dialogs().exclamation(split, Msg(51));
        return false;
    }

    PaymentDocument doc = gather();
    if (doc.wartosc <= Money()) {
        QLineEdit *amount = amountField();
        amount->setFocus(Qt::OtherFocusReason);
        amount->selectAll();
        dialogs().exclamation(QStringLiteral("Kwota musi być większa od zera."), Msg(53));
        return false;
    }
    // A correction charges only the account now chosen, with the change of the amount:
    // the account the document was paid from keeps its charge.
    if (m_mode == EntryRules::Correction && m_storedAccount > 0 && doc.banknr != m_storedAccount)
        dialogs().exclamation(QStringLiteral("Dokument przechodzi z konta %1 na konto %2. Stan konta %1 nie zostanie "
                                             "przywrócony (kwota dokumentu nie wróci na to konto), a konto %2 zostanie "
                                             "obciążone tylko różnicą kwot.")
                                  .arg(m_storedBankName, doc.bankFirmy),
                              Msg(53));
    QString error;
    const bool stored = m_mode == EntryRules::New ? DocumentStore::insert(Db(), doc, &error).has_value()
                                                  : DocumentStore::update(Db(), doc, &error);
    if (!stored) {
        ErrorReport(error);
        return false;
    }
    m_id = doc.id;
    m_storedAccount = doc.banknr;
    m_storedBankName = doc.bankFirmy;
    Q_EMIT saved(m_id);
    return true;
}

QLineEdit *frmprzelew::amountField() const
{
    if (m_kind == DocumentKinds::PrzelewZus)
        return m_wartoscZus;
    if (m_kind == DocumentKinds::PrzelewPodatki)
        return m_wartoscPod;
    return m_wartosc;
}

void frmprzelew::issue()
{
    const bool withAmount = dialogs().question(QStringLiteral("Czy drukowac kwotę?"), QStringLiteral("Druk kwoty"));
    BusyPointer busy;
    if (m_mode != EntryRules::Viewing && !save())
        return;
    if (m_id == 0)
        return;
    const EntryRules::PrintRoute route = EntryRules::printRoute(m_mode, m_kind);
    PrintEngine::instance().setAmountPrinted(withAmount);
    Drukuj(route.procedure, m_id, route.orientation, false, QString());
    if (m_mode == EntryRules::New)
        startNew();
}

void frmprzelew::abandon()
{
    if (m_mode == EntryRules::New)
        startNew();
    else
        load();
}

void frmprzelew::startNew()
{
    // The paying account and the date stay for the next document of a run.
    const int account = m_lstbank->currentData().toInt();
    const QString date = m_data->text();
    PaymentDocument doc = PaymentDocument::newDocument(m_kind, ChoiceLists::workingDate());
    if (account > 0)
        doc.banknr = static_cast<qint16>(account);
    if (m_kind == DocumentKinds::PrzelewZus && isFirmOpen())
        doc.zus.nrRachunku = ZusAccount::startingAccount(FirmStore::read(Db()).value_or(FirmData{}));
    showDocument(doc);
    if (!date.isEmpty())
        m_data->setText(date);
    m_recipient->nazwa->setFocus(Qt::OtherFocusReason);
}

void frmprzelew::load()
{
    QString error;
    const std::optional<PaymentDocument> doc = DocumentStore::read(Db(), m_id, &error);
    if (!doc) {
        ErrorReport(error);
        return;
    }
    m_storedAccount = doc->banknr;
    m_storedBankName = doc->bankFirmy;
    showDocument(*doc);
}

void frmprzelew::setViewing()
{
    for (QLineEdit *f : std::as_const(m_texts))
        f->setReadOnly(true);
    for (QComboBox *c : {m_lstbank, m_nrZus, m_typWpl, m_rok, m_miesiac, m_okresRok, m_typOkresu})
        c->setEnabled(false);
    m_szukaj->setEnabled(false);
    m_mpp->setViewing();
    m_mikrorachunek->setEnabled(false);
}

void frmprzelew::fillMicroAccount()
{
    QString error;
    const FirmData firm = isFirmOpen() ? FirmStore::read(Db(), &error).value_or(FirmData{}) : FirmData{};
    const TaxAccount::MicroAccount micro = TaxAccount::forFirm(firm);
    if (micro.account.isEmpty()) {
        dialogs().exclamation(error.isEmpty() ? micro.problem : error, QStringLiteral("Mikrorachunek podatkowy"));
        return;
    }
    m_recipient->konto->setText(micro.account);
    if (m_recipient->bank->text().trimmed().isEmpty())
        m_recipient->bank->setText(BankNames::bankName(micro.account));
    if (m_recipient->nazwa->text().trimmed().isEmpty())
        m_recipient->nazwa->setText(TaxAccount::RecipientName);
}

void frmprzelew::chooseContractor()
{
    if (m_mode == EntryRules::Viewing) {
        dialogs().beep();
        return;
    }
    frmKontrahenci::openForChoosing(this, [this](const Contractor &c) { takeContractor(c); });
}

void frmprzelew::takeContractor(const Contractor &c)
{
    m_recipient->show(c);
    m_zaDokument->setFocus(Qt::OtherFocusReason);
}

void frmprzelew::keyPressEvent(QKeyEvent *event)
{
    // Fields leave these keys to the window.
    switch (event->key()) {
    case Qt::Key_F2:
        chooseContractor();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto *button = qobject_cast<QPushButton *>(focusWidget()))
            button->click();
        else
            focusNextChild();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}
