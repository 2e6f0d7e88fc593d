#include "WindowHost.h"

#include <QWidget>

WindowHost *WindowHost::of(const QWidget *widget)
{
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        if (auto *host = dynamic_cast<WindowHost *>(const_cast<QWidget *>(w)))
            return host;
    }
    return nullptr;
}

QWidget *WindowHost::open(const QWidget *opener, QWidget *window)
{
    if (WindowHost *host = of(opener))
        return host->showChild(window);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return window;
}
