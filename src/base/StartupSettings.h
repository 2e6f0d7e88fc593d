#pragma once

#include <QRect>

#include <optional>

// The settings read when the main window loads, and its placement saved at quit.
namespace StartupSettings {

// Rewrites the plain font names to their central-European variants, fills the three font
// keys on the first run, then reads the fonts, "DrukZlGr" and "DrukDaty" into the state.
void loadFontsAndPrintOptions();

// Twips per screen pixel, as placements are stored.
constexpr int TwipsPerPixel = 15;

enum class WindowState { Normal, Maximised, Minimised };
// Writes the main window's placement: in the normal state "Left", "Top", "Width",
// "Height" (twips) and "WinState" "0"; maximised only "WinState" "2"; minimised nothing.
void savePlacement(WindowState state, const QRect &pixels);

struct Placement {
    std::optional<QRect> normal; // pixels, when a normal placement was stored
    bool maximised = false;
};
Placement loadPlacement();

} // namespace StartupSettings
