#pragma once

#include <QString>

// What a printer needs to put a form exactly on a pre-printed sheet: how far its output
// stands off (tenths of a millimetre, right and down) and how much it enlarges (per mille),
// kept in the settings store under the printer's CUPS queue name ("PDF" for files). It
// comes on top of the firm's margins.
struct PrinterCalibration {
    int offsetX = 0;
    int offsetY = 0;
    int scale = 1000;

    static constexpr int MaxOffset = 500; // 5 cm either way
    static constexpr int MinScale = 900;
    static constexpr int MaxScale = 1100;

    // The stored calibration of a printer; none for an empty name.
    static PrinterCalibration load(const QString &printer);
    // Stores it; values out of range are brought into range.
    void save(const QString &printer) const;
    bool operator==(const PrinterCalibration &) const = default;
};
