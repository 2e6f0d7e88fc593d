#include "PrinterSurface.h"

#include "SettingsStore.h"

#include <QPainter>
#include <QPrinterInfo>

PrinterSurface::PrinterSurface(const QString &queue) : m_printer(QPrinter::HighResolution)
{
    m_printer.setFullPage(true);
    m_printer.setDocName(QStringLiteral("Zlecanki"));
    QString name = queue;
    if (name.isEmpty()) {
        const int position =
            SettingsStore::getInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("Drukarka")).value_or(-1);
        const QStringList names = printerNames();
        if (position >= 0 && position < names.size())
            name = names.at(position);
    }
    if (!name.isEmpty())
        m_printer.setPrinterName(name);
}

QStringList PrinterSurface::printerNames()
{
    return QPrinterInfo::availablePrinterNames();
}

bool PrinterSurface::begin(QPainter &painter)
{
    if (!painter.begin(&m_printer))
        return false;
    useTwips(painter, m_printer.logicalDpiX(), m_printer.logicalDpiY());
    return true;
}

bool PrinterSurface::newPage(QPainter &)
{
    return m_printer.newPage();
}

bool PrinterSurface::nextCopy(QPainter &painter)
{
    // Each copy a job of its own, as a printer that cannot count copies expects.
    painter.end();
    return begin(painter);
}

bool PrinterSurface::endJob(QPainter &painter)
{
    return painter.end();
}

bool PrinterSurface::end(QPainter &painter)
{
    return painter.end();
}

QSizeF PrinterSurface::pageSizeTwips() const
{
    return m_printer.pageLayout().fullRect(QPageLayout::Point).size() * 20.0;
}

bool PrinterSurface::setCopyCount(int copies)
{
    m_printer.setCopyCount(copies);
    return m_printer.supportsMultipleCopies() && m_printer.copyCount() == copies;
}

bool PrinterSurface::setOrientation(QPageLayout::Orientation orientation)
{
    return m_printer.setPageOrientation(orientation);
}
