#include "WindowUtil.h"

#include <QMdiSubWindow>
#include <QWidget>

void closeWindow(QWidget *window)
{
    if (auto *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget()))
        frame->close();
    else
        window->close();
}
