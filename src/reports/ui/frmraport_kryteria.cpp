#include "frmraport_kryteria.h"

#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "PeriodControls.h"
#include "base/ui/WindowUtil.h"
#include "documents/ContractorStore.h"
#include "documents/ui/WindowFields.h"
#include "base/ui/WindowHost.h"
#include "frmraport.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QVBoxLayout>

frmraport_kryteria::frmraport_kryteria(int kindIndex, QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmraport_kryteria"));
    using WindowFields::button;
    m_period = std::make_unique<PeriodControls>(
        this, PeriodControls::Names{QStringLiteral("optdaty"), QStringLiteral("lstrok"), QStringLiteral("lstmiesiac"),
                                    QStringLiteral("txtdata_od"), QStringLiteral("txtdata_do")});

    auto *contractorBox = new QGroupBox(QStringLiteral("Kontrahenci"), this);
    auto *choice = new QButtonGroup(contractorBox);
    // The options keep the positions of their choices (see ContractorChoice).
    m_all = new QRadioButton(QStringLiteral("Wszyscy"), contractorBox);
    m_all->setObjectName(QStringLiteral("optkontrahenci_0"));
    m_ticked = new QRadioButton(QStringLiteral("Zaznaczeni na liście"), contractorBox);
    m_ticked->setObjectName(QStringLiteral("optkontrahenci_2"));
    choice->addButton(m_all, 0);
    choice->addButton(m_ticked, 2);
    m_contractors = new QListWidget(contractorBox);
    m_contractors->setObjectName(QStringLiteral("lstKOntrahenci"));
    auto *contractorLayout = new QVBoxLayout(contractorBox);
    contractorLayout->addWidget(m_all);
    contractorLayout->addWidget(m_ticked);
    contractorLayout->addWidget(m_contractors);

    auto *ok = button(this, QStringLiteral("cmdok"), Msg(1));
    auto *cancel = button(this, QStringLiteral("cmdanuluj"), Msg(2));
    auto *help = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *close = button(this, QStringLiteral("cmdkoniec"), Msg(4));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addStretch();
    buttons->addWidget(help);
    buttons->addWidget(close);
    auto *left = new QVBoxLayout;
    left->addWidget(m_period->box());
    left->addStretch();
    auto *top = new QHBoxLayout;
    top->addLayout(left);
    top->addWidget(contractorBox, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    m_all->setChecked(true);
    contractorsChosen();
    fillContractors();
    setReportKind(kindIndex);

    connect(choice, &QButtonGroup::idClicked, this, &frmraport_kryteria::contractorsChosen);
    connect(&ContractorEvents::instance(), &ContractorEvents::changed, this, &frmraport_kryteria::fillContractors);
    connect(ok, &QPushButton::clicked, this, &frmraport_kryteria::accept);
    connect(cancel, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(close, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(help, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("raporty")); });
    resize(620, 360);
}

frmraport_kryteria::~frmraport_kryteria() = default;

void frmraport_kryteria::setReportKind(int kindIndex)
{
    m_kindIndex = kindIndex;
    setWindowTitle(QStringLiteral("Kryteria raportu - ") + Reports::reportName(kindIndex));
}

void frmraport_kryteria::fillContractors()
{
    // A refill keeps the ticks of the contractors still there.
    const QList<qint32> ids = tickedIds();
    const QSet<qint32> ticked(ids.cbegin(), ids.cend());
    m_contractors->clear();
    if (!isFirmOpen())
        return;
    QString error;
    const auto names = ContractorStore::list(Db(), &error);
    if (!names) {
        ErrorReport(error);
        return;
    }
    for (const ContractorName &c : *names) {
        auto *item = new QListWidgetItem(c.nazwa, m_contractors);
        item->setData(Qt::UserRole, c.id);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(ticked.contains(c.id) ? Qt::Checked : Qt::Unchecked);
    }
}

void frmraport_kryteria::contractorsChosen()
{
    m_contractors->setEnabled(m_ticked->isChecked());
}

QList<qint32> frmraport_kryteria::tickedIds() const
{
    QList<qint32> ids;
    for (int i = 0; i < m_contractors->count(); ++i)
        if (m_contractors->item(i)->checkState() == Qt::Checked)
            ids << m_contractors->item(i)->data(Qt::UserRole).toInt();
    return ids;
}

Reports::Criteria frmraport_kryteria::criteria() const
{
    Reports::Criteria c;
    c.kindIndex = m_kindIndex;
    c.period = m_period->period();
    c.contractors = m_ticked->isChecked() ? Reports::ContractorChoice::Ticked : Reports::ContractorChoice::All;
    if (c.contractors == Reports::ContractorChoice::Ticked)
        for (int i = 0; i < m_contractors->count(); ++i)
            if (m_contractors->item(i)->checkState() == Qt::Checked)
                c.tickedNames << m_contractors->item(i)->text();
    return c;
}

void frmraport_kryteria::accept()
{
    if (!isFirmOpen() || !m_period->check())
        return;
    Reports::Criteria c = criteria();
    const QList<qint32> ids = tickedIds();
    if (c.contractors == Reports::ContractorChoice::Ticked && ids.isEmpty()) {
        dialogs().exclamation(QStringLiteral("Zaznacz na liście kontrahentów, dla których ma powstać raport."),
                              Msg(54));
        m_contractors->setFocus();
        return;
    }
    QString error;
    // A firm that cannot be written is reported on all the same, the choice held here.
    c.choiceInMemory = firmReadOnly();
    c.tickedIds = ids;
    if (!c.choiceInMemory && !Reports::MarkChosenContractors(Db(), c.contractors, ids, &error)) {
        ErrorReport(error);
        return;
    }
    auto *report = qobject_cast<frmraport *>(WindowHost::open(this, new frmraport));
    report->make(c);
}
