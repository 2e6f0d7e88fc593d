#include "frmSzukaj.h"

#include "Dialogs.h"
#include "documents/Firm.h"
#include "Messages.h"
#include "documents/ContractorStore.h"
#include "WindowFields.h"
#include "frmKontrahenci.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmSzukaj::frmSzukaj(frmKontrahenci *dictionary) : QWidget(dictionary, Qt::Tool), m_dictionary(dictionary)
{
    setObjectName(QStringLiteral("frmSzukaj"));
    setWindowTitle(QStringLiteral("Szukaj"));
    setAttribute(Qt::WA_DeleteOnClose);

    // Searching is by bound value, so quotes are as good as any other character here.
    m_text = new QLineEdit(this);
    m_text->setObjectName(QStringLiteral("txtSzukaj"));
    auto *box = new QGroupBox(QStringLiteral("Szukaj według"), this);
    auto *options = new QVBoxLayout(box);
    m_criteria = new QButtonGroup(this);
    const QStringList captions{QStringLiteral("&Nazwa"), QStringLiteral("&Ulica"), QStringLiteral("&Miasto"),
                               QStringLiteral("N&IP")};
    for (int i = 0; i < captions.size(); ++i) {
        auto *option = new QRadioButton(captions.at(i), box);
        option->setObjectName(QStringLiteral("optkryterium_") + QString::number(i));
        m_criteria->addButton(option, i);
        options->addWidget(option);
    }
    m_criteria->button(0)->setChecked(true);
    auto *next = WindowFields::button(this, QStringLiteral("cmdnastepny"), QStringLiteral("&Następny"));
    next->setDefault(true);
    auto *koniec = WindowFields::button(this, QStringLiteral("cmdkoniec"), Msg(4));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(WindowFields::label(this, QStringLiteral("Szukany tekst:"), m_text));
    layout->addWidget(m_text);
    layout->addWidget(box);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(next);
    buttons->addWidget(koniec);
    layout->addLayout(buttons);

    // Another text or criterion starts again from the first match.
    connect(m_text, &QLineEdit::textChanged, this, [this] { m_searched = false; });
    connect(m_criteria, &QButtonGroup::idToggled, this, [this] { m_searched = false; });
    connect(m_text, &QLineEdit::returnPressed, this, &frmSzukaj::findNext);
    connect(next, &QPushButton::clicked, this, &frmSzukaj::findNext);
    connect(koniec, &QPushButton::clicked, this, &QWidget::close);
}

void frmSzukaj::findNext()
{
    if (!m_dictionary || !isFirmOpen()) {
        close();
        return;
    }
    if (!m_searched) {
        const auto by = static_cast<ContractorStore::SearchBy>(qMax(0, m_criteria->checkedId()));
        const auto found = ContractorStore::search(Db(), by, m_text->text());
        if (!found)
            return; // a failed search just ends
        m_found = *found;
        m_next = 0;
        m_searched = true;
    }
    if (m_next >= m_found.size()) {
        // Past the last match: the next press begins from the first one again.
        m_searched = false;
        dialogs().information(QStringLiteral("Brak szukanego tekstu"), windowTitle());
        return;
    }
    m_dictionary->showContractor(m_found.at(m_next++));
}
