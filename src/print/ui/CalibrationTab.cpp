#include "CalibrationTab.h"

#include "print/CalibrationPage.h"
#include "Dialogs.h"
#include "print/PrintEngine.h"
#include "print/PrinterCalibration.h"
#include "PrinterSurface.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace {

const QString Pdf = QStringLiteral("PDF");

QSpinBox *spin(QWidget *parent, const char *name, int min, int max, const QString &suffix)
{
    auto *s = new QSpinBox(parent);
    s->setObjectName(QLatin1String(name));
    s->setRange(min, max);
    s->setSuffix(suffix);
    return s;
}

} // namespace

CalibrationTab::CalibrationTab(QWidget *parent) : QWidget(parent)
{
    m_printer = new QComboBox(this);
    m_printer->setObjectName(QStringLiteral("lstKalibracjaDrukarka"));
    m_printer->addItems(PrinterSurface::printerNames());
    m_printer->addItem(Pdf);
    m_x = spin(this, "txtKalibracjaX", -PrinterCalibration::MaxOffset, PrinterCalibration::MaxOffset,
               QStringLiteral(" × 0,1 mm"));
    m_y = spin(this, "txtKalibracjaY", -PrinterCalibration::MaxOffset, PrinterCalibration::MaxOffset,
               QStringLiteral(" × 0,1 mm"));
    m_scale = spin(this, "txtKalibracjaSkala", PrinterCalibration::MinScale, PrinterCalibration::MaxScale,
                   QStringLiteral(" ‰"));
    auto *print = new QPushButton(QStringLiteral("Drukuj stronę &kalibracji"), this);
    print->setObjectName(QStringLiteral("cmdKalibracja"));

    auto *form = new QFormLayout(this);
    auto *hint = new QLabel(QStringLiteral("Przesunięcie i skala wydruku dla każdej drukarki, dodawane do "
                                           "marginesów firmy. Wydrukuj stronę kalibracji, przyłóż ją do "
                                           "czerwonego blankietu pod światło i zmierz, o ile pola się rozchodzą."),
                            this);
    hint->setWordWrap(true);
    form->addRow(hint);
    form->addRow(QStringLiteral("&Drukarka:"), m_printer);
    form->addRow(QStringLiteral("W &prawo:"), m_x);
    form->addRow(QStringLiteral("W &dół:"), m_y);
    form->addRow(QStringLiteral("&Skala:"), m_scale);
    form->addRow(print);
    for (QWidget *w : {static_cast<QWidget *>(m_printer), static_cast<QWidget *>(m_x), static_cast<QWidget *>(m_y),
                       static_cast<QWidget *>(m_scale)})
        if (auto *label = qobject_cast<QLabel *>(form->labelForField(w)))
            label->setBuddy(w);

    connect(m_printer, &QComboBox::currentIndexChanged, this, &CalibrationTab::showPrinter);
    for (QSpinBox *s : {m_x, m_y, m_scale})
        connect(s, &QSpinBox::valueChanged, this, &CalibrationTab::store);
    connect(print, &QPushButton::clicked, this, &CalibrationTab::printPage);
    showPrinter();
}

void CalibrationTab::showPrinter()
{
    const PrinterCalibration c = PrinterCalibration::load(m_printer->currentText());
    m_showing = true;
    m_x->setValue(c.offsetX);
    m_y->setValue(c.offsetY);
    m_scale->setValue(c.scale);
    m_showing = false;
}

void CalibrationTab::store()
{
    if (m_showing)
        return;
    PrinterCalibration{m_x->value(), m_y->value(), m_scale->value()}.save(m_printer->currentText());
}

void CalibrationTab::printPage()
{
    const QString printer = m_printer->currentText();
    QString file;
    if (printer == Pdf) {
        file = dialogs().saveFileName(QStringLiteral("Strona kalibracji"), QStringLiteral("kalibracja.pdf"),
                                      QStringLiteral("PDF (*.pdf)"));
        if (file.isEmpty())
            return;
    }
    PrintEngine &engine = PrintEngine::instance();
    engine.setDriver(QStringLiteral("kalibracja"), DrukKalibracji);
    const PrintEngine::SurfaceFactory previous = engine.printerFactory();
    engine.setPrinterFactory([printer, file]() -> std::unique_ptr<PrintSurface> {
        if (!file.isEmpty())
            return std::make_unique<PdfSurface>(file, SafeOutput::Existing::Replace, QStringLiteral("Strona kalibracji"));
        auto surface = std::make_unique<PrinterSurface>(printer);
        if (!surface->isValid())
            return nullptr;
        return surface;
    });
    engine.setNextCopies(1);
    Drukuj(QStringLiteral("kalibracja"), printer, QPageLayout::Portrait, false, QStringLiteral("kalibracja"));
    engine.setPrinterFactory(previous);
}
