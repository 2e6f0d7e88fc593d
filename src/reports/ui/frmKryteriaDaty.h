#pragma once

#include "reports/ReportCriteria.h"

#include <QDialog>

#include <memory>
#include <optional>

class PeriodControls;

// Asks for a period alone, where a report needs no choice of contractors.
class frmKryteriaDaty : public QDialog {
    Q_OBJECT
public:
    explicit frmKryteriaDaty(QWidget *parent = nullptr);
    ~frmKryteriaDaty() override;

    // The period chosen; nothing when the window was cancelled or has not been accepted.
    std::optional<Reports::Period> period() const { return m_period; }
    // Shows the window modally and returns what it returns.
    static std::optional<Reports::Period> ask(QWidget *parent);

private:
    void accept() override;

    std::unique_ptr<PeriodControls> m_controls;
    std::optional<Reports::Period> m_period;
};
