#include "PrinterCalibration.h"

#include "SettingsStore.h"

#include <QtGlobal>

namespace {

// One section per printer, so that printers never share a value by accident.
QString section(const QString &printer)
{
    return QStringLiteral("Kalibracja %1").arg(printer);
}

} // namespace

PrinterCalibration PrinterCalibration::load(const QString &printer)
{
    PrinterCalibration c;
    if (printer.isEmpty())
        return c;
    const QString s = section(printer);
    using namespace SettingsStore;
    c.offsetX = qBound(-MaxOffset, getInt(App, s, QStringLiteral("X")).value_or(0), MaxOffset);
    c.offsetY = qBound(-MaxOffset, getInt(App, s, QStringLiteral("Y")).value_or(0), MaxOffset);
    c.scale = qBound(MinScale, getInt(App, s, QStringLiteral("Skala")).value_or(1000), MaxScale);
    return c;
}

void PrinterCalibration::save(const QString &printer) const
{
    if (printer.isEmpty())
        return;
    const QString s = section(printer);
    using namespace SettingsStore;
    saveInt(App, s, QStringLiteral("X"), qBound(-MaxOffset, offsetX, MaxOffset));
    saveInt(App, s, QStringLiteral("Y"), qBound(-MaxOffset, offsetY, MaxOffset));
    saveInt(App, s, QStringLiteral("Skala"), qBound(MinScale, scale, MaxScale));
}
