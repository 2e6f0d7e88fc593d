#pragma once

#include <QWidget>

class QComboBox;
class QSpinBox;

// The settings dialog's page for calibrating each printer (and PDF files) to pre-printed
// forms: offsets in tenths of a millimetre and a scale in per mille, kept per printer as
// soon as they change, and a calibration page to print.
class CalibrationTab : public QWidget {
    Q_OBJECT
public:
    explicit CalibrationTab(QWidget *parent = nullptr);

private:
    void showPrinter();
    void store();
    void printPage();

    QComboBox *m_printer = nullptr;
    QSpinBox *m_x = nullptr;
    QSpinBox *m_y = nullptr;
    QSpinBox *m_scale = nullptr;
    bool m_showing = false;
};
