#include "PeriodControls.h"

#include "DateText.h"
#include "Dialogs.h"
#include "Messages.h"
#include "documents/ChoiceLists.h"
#include "validation/ui/FieldCheck.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>

PeriodControls::PeriodControls(QWidget *parent, const Names &names)
{
    const QDate today = ChoiceLists::workingDate();
    m_box = new QGroupBox(QStringLiteral("Okres"), parent);
    auto *group = new QButtonGroup(m_box);
    const QStringList labels = {QStringLiteral("Rok:"), QStringLiteral("Miesiąc:"), QStringLiteral("Od - do:")};
    for (int i = 0; i < labels.size(); ++i) {
        auto *option = new QRadioButton(labels[i], m_box);
        option->setObjectName(names.option + QLatin1Char('_') + QString::number(i));
        group->addButton(option, i);
        m_options << option;
    }
    m_year = new QComboBox(m_box);
    m_year->setObjectName(names.year);
    for (int year = 1995; year <= today.year() + 1; ++year)
        m_year->addItem(QString::number(year), year);
    m_year->setCurrentIndex(m_year->findData(today.year()));
    m_month = new QComboBox(m_box);
    m_month->setObjectName(names.month);
    m_month->addItems(ChoiceLists::months());
    m_month->setCurrentIndex(today.month() - 1);
    const auto dateField = [this](const QString &name, const QDate &day) {
        auto *field = new QLineEdit(DateText::format(day), m_box);
        field->setObjectName(name);
        FieldCheck::setKind(field, QStringLiteral("data"));
        FieldCheck::installKeyFilter(field, 2);
        FieldCheck::normaliseDateOnLeave(field);
        return field;
    };
    m_first = dateField(names.first, QDate(today.year(), today.month(), 1));
    m_last = dateField(names.last, today);

    auto *grid = new QGridLayout(m_box);
    grid->addWidget(m_options[0], 0, 0);
    grid->addWidget(m_year, 0, 1, 1, 2);
    grid->addWidget(m_options[1], 1, 0);
    grid->addWidget(m_month, 1, 1, 1, 2);
    grid->addWidget(m_options[2], 2, 0);
    grid->addWidget(m_first, 2, 1);
    grid->addWidget(m_last, 2, 2);

    m_options[0]->setChecked(true);
    QObject::connect(group, &QButtonGroup::idClicked, m_box, [this] { chosen(); });
    chosen();
}

void PeriodControls::chosen()
{
    m_year->setEnabled(m_options[0]->isChecked());
    m_month->setEnabled(m_options[1]->isChecked());
    m_first->setEnabled(m_options[2]->isChecked());
    m_last->setEnabled(m_options[2]->isChecked());
}

Reports::Period PeriodControls::period() const
{
    Reports::Period p;
    for (int i = 0; i < m_options.size(); ++i)
        if (m_options[i]->isChecked())
            p.kind = Reports::PeriodKind(i);
    p.year = m_year->currentData().toInt();
    p.month = m_month->currentIndex() + 1;
    p.firstText = m_first->text().trimmed();
    p.lastText = m_last->text().trimmed();
    return p;
}

bool PeriodControls::check() const
{
    const Reports::Period p = period();
    const QString fault = Reports::periodFault(p);
    if (fault.isEmpty())
        return true;
    dialogs().exclamation(fault, Msg(50));
    QLineEdit *field = p.first() ? m_last : m_first;
    field->setFocus();
    field->selectAll();
    return false;
}
