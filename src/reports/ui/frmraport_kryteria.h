#pragma once

#include "reports/ReportRegister.h"

#include <QWidget>

#include <memory>

class PeriodControls;
class QListWidget;
class QRadioButton;

// The criteria of a report: the period and the contractors (all, or those ticked in the
// list). "OK" marks the chosen contractors and shows the register in the report window.
class frmraport_kryteria : public QWidget {
    Q_OBJECT
public:
    explicit frmraport_kryteria(int kindIndex = 0, QWidget *parent = nullptr);
    ~frmraport_kryteria() override;

    // Which of the four lists "OK" makes (the window is one, whichever command opened it).
    void setReportKind(int kindIndex);
    Reports::Criteria criteria() const;

private:
    void fillContractors();
    void contractorsChosen();
    void accept();
    QList<qint32> tickedIds() const;

    int m_kindIndex = 0;
    std::unique_ptr<PeriodControls> m_period;
    QRadioButton *m_all = nullptr;
    QRadioButton *m_ticked = nullptr;
    QListWidget *m_contractors = nullptr;
};
