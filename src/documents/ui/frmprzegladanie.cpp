#include "frmprzegladanie.h"

#include "DateText.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/DocumentKinds.h"
#include "documents/DocumentStore.h"
#include "documents/EntryRules.h"
#include "WindowFields.h"
#include "frmKontrahenci.h"
#include "frmprzelew.h"
#include "base/ui/WindowHost.h"
#include "SentMarks.h"
#include "frmDoBanku.h"
#include "print/PrintEngine.h"
#include "validation/ui/FieldCheck.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QHeaderView>
#include <QTreeView>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QString AllContractors = QStringLiteral("-Wszyscy-");
const QString AllAccounts = QStringLiteral("-Wszystkie-");

// The busy pointer while a query or a print job runs.
class BusyPointer {
public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

} // namespace

frmprzegladanie::frmprzegladanie(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmprzegladanie"));
    setWindowTitle(QStringLiteral("Przeglądanie dokumentów"));
    using WindowFields::button;
    const QDate today = ChoiceLists::workingDate();

    auto *periods = new QButtonGroup(this);
    const QStringList periodLabels = {QStringLiteral("Rok:"), QStringLiteral("Miesiąc:"),
                                      QStringLiteral("Dzień od - do:")};
    for (int i = 0; i < periodLabels.size(); ++i) {
        auto *option = new QRadioButton(periodLabels[i], this);
        option->setObjectName(QStringLiteral("optdata_%1").arg(i));
        periods->addButton(option, i);
        m_optdata << option;
    }
    m_lstrok = new QComboBox(this);
    m_lstrok->setObjectName(QStringLiteral("lstrok"));
    for (int year = 1995; year <= today.year() + 1; ++year)
        m_lstrok->addItem(QString::number(year), year);
    m_lstrok->setCurrentIndex(m_lstrok->findData(today.year()));
    m_lstmies = new QComboBox(this);
    m_lstmies->setObjectName(QStringLiteral("lstmies"));
    m_lstmies->addItems(ChoiceLists::months());
    m_lstmies->setCurrentIndex(today.month() - 1);
    const QDate days[2] = {QDate(today.year(), today.month(), 1), today};
    for (int i = 0; i < 2; ++i) {
        auto *field = WindowFields::field(this, QStringLiteral("txtdata_%1").arg(i), QStringLiteral("ZLECANKI"),
                                          QStringLiteral("DATA_DOKUMENTU"), 2, QStringLiteral("data"));
        field->setText(DateText::format(days[i]));
        WindowFields::checkOnLeave(field);
        FieldCheck::normaliseDateOnLeave(field);
        m_txtdata << field;
    }

    m_lstrodzaj = new QComboBox(this);
    m_lstrodzaj->setObjectName(QStringLiteral("lstrodzaj"));
    m_lstrodzaj->addItems(DocumentKinds::browseFilterItems());

    m_lblkontrahentid = new QLabel(this);
    m_lblkontrahentid->setObjectName(QStringLiteral("lblkontrahentid"));
    m_lblkontrahentid->hide(); // the filter's value; the name is what the user reads
    m_lblkontrahent = new QLabel(AllContractors, this);
    m_lblkontrahent->setObjectName(QStringLiteral("lblkontrahent"));
    auto *szukaj = button(this, QStringLiteral("cmdSzukaj"), QStringLiteral("&Szukaj"));
    auto *wszyscy = button(this, QStringLiteral("cmdwszyscy"), QStringLiteral("&Wszyscy"));

    m_lstbank = new QComboBox(this);
    m_lstbank->setObjectName(QStringLiteral("lstbank"));
    m_lstbank->addItem(AllAccounts, 0);
    WindowFields::accountList(m_lstbank, 1, [this] {
        accountChosen(m_lstbank->currentIndex());
        refresh();
    });
    m_lblbankkonto = new QLabel(this);
    m_lblbankkonto->setObjectName(QStringLiteral("lblbankkonto"));

    m_model = new Browse::Model(this);
    m_lstwynik = new QTreeView(this);
    m_lstwynik->setObjectName(QStringLiteral("lstwynik"));
    m_lstwynik->setRootIsDecorated(false);
    m_lstwynik->setUniformRowHeights(true); // keeps a long list from measuring every line
    m_lstwynik->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_lstwynik->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lstwynik->setModel(m_model);
    // Documents already sent to the bank carry a tick.
    m_sentMarks = new SentMarks(m_model, Browse::Model::IdRole, this);
    m_lstwynik->setModel(m_sentMarks);
    // Every column as wide as its text: nothing is cut, the list scrolls sideways instead.
    m_lstwynik->header()->setStretchLastSection(false);
    m_lstwynik->header()->setSectionResizeMode(QHeaderView::ResizeToContents);

    auto *pokaz = button(this, QStringLiteral("cmdpokaz"), QStringLiteral("P&okaż"));
    auto *zmien = button(this, QStringLiteral("cmdzmien"), Msg(7));
    auto *usun = button(this, QStringLiteral("cmdusun"), Msg(8));
    auto *drukuj = button(this, QStringLiteral("cmddrukuj"), QStringLiteral("&Drukuj"));
    auto *drukgrupe = button(this, QStringLiteral("cmddrukgrupe"), QStringLiteral("Drukuj &grupę"));
    auto *pomoc = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *koniec = button(this, QStringLiteral("cmdkoniec"), Msg(4));

    auto *period = new QGridLayout;
    period->addWidget(m_optdata[0], 0, 0);
    period->addWidget(m_lstrok, 0, 1, 1, 2);
    period->addWidget(m_optdata[1], 1, 0);
    period->addWidget(m_lstmies, 1, 1, 1, 2);
    period->addWidget(m_optdata[2], 2, 0);
    period->addWidget(m_txtdata[0], 2, 1);
    period->addWidget(m_txtdata[1], 2, 2);
    auto *periodBox = new QGroupBox(QStringLiteral("Okres"), this);
    periodBox->setLayout(period);

    auto *rest = new QGridLayout;
    rest->addWidget(WindowFields::label(this, QStringLiteral("Rodzaj dokumentów:"), m_lstrodzaj), 0, 0);
    rest->addWidget(m_lstrodzaj, 0, 1, 1, 3);
    rest->addWidget(new QLabel(QStringLiteral("Kontrahent:"), this), 1, 0);
    rest->addWidget(m_lblkontrahent, 1, 1);
    rest->addWidget(szukaj, 1, 2);
    rest->addWidget(wszyscy, 1, 3);
    rest->addWidget(WindowFields::label(this, QStringLiteral("Bank/konto:"), m_lstbank), 2, 0);
    rest->addWidget(m_lstbank, 2, 1, 1, 3);
    rest->addWidget(m_lblbankkonto, 3, 1, 1, 3);

    auto *filters = new QVBoxLayout;
    filters->addWidget(periodBox);
    filters->addLayout(rest);
    filters->addStretch();
    auto *top = new QHBoxLayout;
    top->addLayout(filters, 2);
    top->addWidget(m_lstwynik, 3);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {pokaz, zmien, usun, drukuj, drukgrupe})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(pomoc);
    buttons->addWidget(koniec);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    m_optdata[0]->setChecked(true);
    periodChosen();

    // Every change of the filter shows its documents at once: the list fetches only the
    // lines it shows, so even a year of a large firm costs little.
    connect(periods, &QButtonGroup::idClicked, this, [this] {
        periodChosen();
        refresh();
    });
    connect(m_lstrok, &QComboBox::currentIndexChanged, this, &frmprzegladanie::refresh);
    connect(m_lstmies, &QComboBox::currentIndexChanged, this, &frmprzegladanie::refresh);
    for (QLineEdit *field : m_txtdata)
        connect(field, &QLineEdit::editingFinished, this, [this] {
            if (m_optdata[2]->isChecked())
                refresh();
        });
    connect(m_lstrodzaj, &QComboBox::currentIndexChanged, this, &frmprzegladanie::refresh);
    connect(m_lstbank, &QComboBox::currentIndexChanged, this, [this](int index) {
        accountChosen(index);
        refresh();
    });
    connect(szukaj, &QPushButton::clicked, this, &frmprzegladanie::chooseContractor);
    connect(wszyscy, &QPushButton::clicked, this, &frmprzegladanie::allContractors);
    connect(m_lstwynik, &QTreeView::doubleClicked, this, [this] { open(EntryRules::Viewing); });
    connect(pokaz, &QPushButton::clicked, this, [this] { open(EntryRules::Viewing); });
    connect(zmien, &QPushButton::clicked, this, [this] { open(EntryRules::Correction); });
    connect(usun, &QPushButton::clicked, this, &frmprzegladanie::remove);
    connect(drukuj, &QPushButton::clicked, this, &frmprzegladanie::print);
    connect(drukgrupe, &QPushButton::clicked, this, &frmprzegladanie::printGroup);
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("Przegladanieikorektadokumentow")); });
    auto *doBanku = button(this, QStringLiteral("cmdDoBanku"), QStringLiteral("Do &banku..."));
    buttons->insertWidget(5, doBanku);
    connect(doBanku, &QPushButton::clicked, this, &frmprzegladanie::sendToBank);
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    // Documents written on another workstation of a shared firm appear here too.
    connect(&FirmEvents::instance(), &FirmEvents::changedElsewhere, this, &frmprzegladanie::refresh);

    refresh();
    resize(760, 420);
}

Browse::Filter frmprzegladanie::filter() const
{
    Browse::Filter f;
    for (int i = 0; i < m_optdata.size(); ++i)
        if (m_optdata[i]->isChecked())
            f.period = Browse::Period(i);
    f.year = m_lstrok->currentData().toInt();
    f.month = m_lstmies->currentIndex() + 1;
    f.first = DateText::parse(m_txtdata[0]->text()).value_or(QDate());
    f.last = DateText::parse(m_txtdata[1]->text()).value_or(QDate());
    f.kind = qMax(0, m_lstrodzaj->currentIndex());
    if (!m_lblkontrahentid->text().isEmpty())
        f.contractorId = m_lblkontrahentid->text().toInt();
    if (m_lstbank->currentIndex() > 0)
        f.bankName = m_lstbank->currentText();
    return f;
}

void frmprzegladanie::refresh()
{
    if (!isFirmOpen()) {
        m_model->clear();
        return;
    }
    BusyPointer busy;
    QString error;
    if (!m_model->refresh(Db(), filter(), &error))
        ErrorReport(error);
}

void frmprzegladanie::setContractor(qint32 id, const QString &name)
{
    m_lblkontrahentid->setText(QString::number(id));
    m_lblkontrahent->setText(name);
    refresh();
}

void frmprzegladanie::allContractors()
{
    m_lblkontrahentid->clear();
    m_lblkontrahent->setText(AllContractors);
    refresh();
}

void frmprzegladanie::periodChosen()
{
    m_lstrok->setEnabled(m_optdata[0]->isChecked());
    m_lstmies->setEnabled(m_optdata[1]->isChecked());
    for (QLineEdit *field : m_txtdata)
        field->setEnabled(m_optdata[2]->isChecked());
}

void frmprzegladanie::accountChosen(int index)
{
    m_lblbankkonto->setText(index > 0 ? Accounts::accountNumber(m_lstbank->itemData(index).toInt()) : QString());
}

void frmprzegladanie::chooseContractor()
{
    frmKontrahenci::openForChoosing(this, [this](const Contractor &c) { setContractor(c.id, c.nazwa); });
}

int frmprzegladanie::selectedRow()
{
    const QModelIndex current = m_lstwynik->currentIndex();
    if (!current.isValid() || !m_lstwynik->selectionModel()->isSelected(current)) {
        dialogs().beep();
        return -1;
    }
    return current.row();
}

void frmprzegladanie::open(qint16 mode)
{
    const int row = selectedRow();
    if (row < 0)
        return;
    auto *window = new frmprzelew(mode, m_model->kindAt(row), m_model->idAt(row));
    QWidget *shown = WindowHost::open(this, window);
    if (mode == EntryRules::Correction && shown == window) {
        // The corrected line may have left the filter or changed its amount.
        connect(window, &frmprzelew::saved, this, &frmprzegladanie::refresh);
        connect(window, &QObject::destroyed, this, &frmprzegladanie::refresh);
    }
}

void frmprzegladanie::remove()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    if (!dialogs().question(Msg(56) + m_model->data(m_model->index(row, 0)).toString() + QLatin1Char('?'), Msg(53)))
        return;
    QString error;
    if (!DocumentStore::remove(Db(), m_model->idAt(row), &error)) {
        ErrorReport(error);
        return;
    }
    refresh();
}

void frmprzegladanie::print()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    // A single document prints as it was issued (the ZUS driver for ZUS, tax slips lying).
    const auto route = EntryRules::printRoute(EntryRules::Correction, m_model->kindAt(row));
    BusyPointer busy;
    Drukuj(route.procedure, m_model->idAt(row), route.orientation, false, QString());
}

void frmprzegladanie::printGroup()
{
    // The list shows only the line column, so that is the column a selection covers.
    QList<int> rows;
    for (const QModelIndex &index : m_lstwynik->selectionModel()->selectedIndexes())
        if (index.column() == 0)
            rows << index.row();
    std::sort(rows.begin(), rows.end()); // from the first line to the last
    if (rows.isEmpty()) {
        dialogs().beep();
        return;
    }
    // A group prints as viewed documents do, every slip with the stored copies and no
    // window between them.
    BusyPointer busy;
    for (int row : rows) {
        const auto route = EntryRules::printRoute(EntryRules::Viewing, m_model->kindAt(row));
        Drukuj(route.procedure, m_model->idAt(row), route.orientation, false, QStringLiteral("Cmd"));
    }
}

void frmprzegladanie::sendToBank()
{
    QList<int> rows;
    for (const QModelIndex &index : m_lstwynik->selectionModel()->selectedIndexes())
        if (index.column() == 0)
            rows << index.row();
    std::sort(rows.begin(), rows.end());
    QList<qint32> ids;
    for (int row : rows)
        ids << m_model->idAt(row);
    if (auto *w = openBankFileWindow(ids, this))
        connect(w, &frmDoBanku::sent, this, &frmprzegladanie::refresh);
}
