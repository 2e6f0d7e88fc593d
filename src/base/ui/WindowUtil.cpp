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

#include <QIcon>
#include <QPainter>
#include <QPixmap>

QIcon programIcon()
{
    QIcon icon;
    for (int size : {16, 32, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        const qreal u = size / 16.0;
        p.setPen(QPen(QColor(0xa0, 0x30, 0x30), qMax(1.0, u * 0.8)));
        p.setBrush(QColor(0xfd, 0xf6, 0xf0));
        p.drawRoundedRect(QRectF(u * 0.5, u * 2.5, u * 15, u * 11), u, u);
        p.setPen(QPen(QColor(0xa0, 0x30, 0x30), qMax(1.0, u * 0.5)));
        for (int row = 0; row < 3; ++row)
            p.drawLine(QPointF(u * 2.5, u * (5.5 + row * 2.5)), QPointF(u * 13.5, u * (5.5 + row * 2.5)));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x2c, 0x4a, 0x6e));
        p.drawEllipse(QPointF(u * 12.5, u * 11.5), u * 1.6, u * 1.6);
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
