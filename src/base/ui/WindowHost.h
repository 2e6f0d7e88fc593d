#pragma once

#include <QString>

class QWidget;

// Where windows live: the main window's work area. A window that opens another one asks
// its host instead of knowing the main window; without a host (a window tested on its own,
// or shown by a command) the new window stands alone and is deleted when closed.
class WindowHost {
public:
    virtual ~WindowHost() = default;

    // Shows a child window. A window of the same name already open is brought forward
    // instead and `window` is deleted. Returns the window shown.
    virtual QWidget *showChild(QWidget *window) = 0;
    // An open child window by its name, or nullptr.
    virtual QWidget *childWindow(const QString &name) const = 0;

    // The host of the window that holds `widget`, or nullptr.
    static WindowHost *of(const QWidget *widget);
    // Shows `window` through the host of `opener`, or on its own when there is none.
    static QWidget *open(const QWidget *opener, QWidget *window);
};
