#include "frmPrintkopie.h"

#include "Messages.h"
#include "SettingsStore.h"
#include "validation/ui/FieldCheck.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmPrintkopie::frmPrintkopie(int copies, bool preview, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPrintkopie"));
    setWindowTitle(QStringLiteral("Wydruk"));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    m_copies = new QLineEdit(QString::number(copies), this);
    m_copies->setObjectName(QStringLiteral("txtkopie"));
    m_copies->setValidator(new QIntValidator(1, 255, m_copies));
    FieldCheck::installKeyFilter(m_copies, 4);
    form->addRow(QStringLiteral("Kopie:"), m_copies);
    layout->addLayout(form);
    m_preview = new QCheckBox(QStringLiteral("Podgląd przed wydrukiem"), this);
    m_preview->setObjectName(QStringLiteral("chkpodglad"));
    m_preview->setChecked(preview);
    layout->addWidget(m_preview);

    auto *buttons = new QHBoxLayout;
    auto *ok = new QPushButton(Msg(1), this);
    ok->setObjectName(QStringLiteral("cmdok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(Msg(2), this);
    cancel->setObjectName(QStringLiteral("cmdanuluj"));
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_copies, &QLineEdit::textEdited, this, [this] {
        SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), this->copies());
    });
    m_copies->selectAll();
}

int frmPrintkopie::copies() const
{
    return qBound(1, m_copies->text().toInt(), 255);
}

bool frmPrintkopie::preview() const
{
    return m_preview->isChecked();
}
