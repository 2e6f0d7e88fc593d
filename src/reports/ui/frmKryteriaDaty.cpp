#include "frmKryteriaDaty.h"

#include "Messages.h"
#include "PeriodControls.h"
#include "documents/ui/WindowFields.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

frmKryteriaDaty::frmKryteriaDaty(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmKryteriaDaty"));
    setWindowTitle(QStringLiteral("Okres"));
    m_controls = std::make_unique<PeriodControls>(
        this, PeriodControls::Names{QStringLiteral("optdata"), QStringLiteral("lstrok"), QStringLiteral("lstmies"),
                                    QStringLiteral("txtdata_0"), QStringLiteral("txtdata_1")});
    auto *ok = WindowFields::button(this, QStringLiteral("cmdok"), Msg(1));
    auto *cancel = WindowFields::button(this, QStringLiteral("cmdanuluj"), Msg(2));
    ok->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_controls->box());
    layout->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmKryteriaDaty::accept);
    connect(cancel, &QPushButton::clicked, this, &frmKryteriaDaty::reject);
}

frmKryteriaDaty::~frmKryteriaDaty() = default;

void frmKryteriaDaty::accept()
{
    if (!m_controls->check())
        return;
    m_period = m_controls->period();
    QDialog::accept();
}

std::optional<Reports::Period> frmKryteriaDaty::ask(QWidget *parent)
{
    frmKryteriaDaty window(parent);
    window.exec();
    return window.period();
}
