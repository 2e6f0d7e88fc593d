#pragma once

#include "reports/ReportRegister.h"

#include <QWidget>

class QLabel;
class QTableView;
class QTabWidget;

// The report: the heading with the criteria, the register in the grid "Lista" with the
// "Ogółem" row, printing ("raport") and saving as a spreadsheet workbook.
class frmraport : public QWidget {
    Q_OBJECT
public:
    explicit frmraport(QWidget *parent = nullptr);

    // Builds the register of `criteria` (the contractors were marked by the criteria
    // window) and shows it; false when the database failed (the user was told).
    bool make(const Reports::Criteria &criteria);
    const Reports::Report &report() const { return m_report; }

    // CmdExcel: the workbook in the firm's folder under the list's name; its path, or
    // empty text when it was not saved.
    QString saveWorkbook();

private:
    void print();

    Reports::Criteria m_criteria;
    Reports::Report m_report;
    QLabel *m_heading = nullptr;
    QTabWidget *m_zakladki = nullptr;
    QTableView *m_lista = nullptr;
    Reports::RegisterModel *m_model = nullptr;
};
