#pragma once

#include "print/PrintSurface.h"

#include <QPrinter>

// A printer of the system (CUPS): the one chosen in the settings, a named queue, or the
// default printer.
class PrinterSurface : public PrintSurface {
public:
    // `queue` empty: the printer at the settings' list position "Drukarka" (-1: default).
    explicit PrinterSurface(const QString &queue = QString());
    bool isValid() const { return m_printer.isValid(); }
    bool begin(QPainter &painter) override;
    bool newPage(QPainter &painter) override;
    bool nextCopy(QPainter &painter) override;
    bool end(QPainter &painter) override;
    QSizeF pageSizeTwips() const override;
    bool setCopyCount(int copies) override;
    bool setOrientation(QPageLayout::Orientation orientation) override;
    QString calibrationName() const override { return m_printer.printerName(); }
    bool endJob(QPainter &painter) override;

    // The installed printers in the order the settings store positions of.
    static QStringList printerNames();

private:
    QPrinter m_printer;
};
