#pragma once

#include "reports/ReportCriteria.h"

#include <QList>
#include <QString>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;
class QWidget;

// The period controls of the criteria windows: three options (whole year, one month, a
// range of days), the year and month lists and the two date fields, each enabled while
// its option is chosen. The windows name the controls their own way.
class PeriodControls {
public:
    struct Names {
        QString option; // the options are option_0 to option_2
        QString year, month, first, last;
    };

    PeriodControls(QWidget *parent, const Names &names);

    QGroupBox *box() const { return m_box; }
    Reports::Period period() const;
    // Tells the user what is wrong with the period and puts the focus there; false then.
    bool check() const;

private:
    void chosen();

    QGroupBox *m_box = nullptr;
    QList<QRadioButton *> m_options;
    QComboBox *m_year = nullptr;
    QComboBox *m_month = nullptr;
    QLineEdit *m_first = nullptr;
    QLineEdit *m_last = nullptr;
};
