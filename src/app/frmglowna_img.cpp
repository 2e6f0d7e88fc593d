#include "frmglowna_img.h"

#include <QEvent>
#include <QLinearGradient>
#include <QMdiArea>
#include <QPainter>

frmglowna_img::frmglowna_img(QMdiArea *area) : QWidget(area->viewport())
{
    setObjectName(QStringLiteral("frmglowna_img"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    area->viewport()->installEventFilter(this);
    setGeometry(area->viewport()->rect());
    lower();
    show();
}

bool frmglowna_img::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        setGeometry(static_cast<QWidget *>(watched)->rect());
        lower();
    }
    return QWidget::eventFilter(watched, event);
}

void frmglowna_img::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, height());
    sky.setColorAt(0, QColor(0xe8, 0xee, 0xf4));
    sky.setColorAt(1, QColor(0xc9, 0xd6, 0xe3));
    p.fillRect(rect(), sky);

    // A transfer slip in outline, in the lower right corner.
    const int w = qMin(width() / 2, 520), h = w * 45 / 100;
    const QRectF slip(width() - w - 40, height() - h - 40, w, h);
    if (slip.left() > 0 && slip.top() > 0) {
        p.setPen(QPen(QColor(0xb0, 0x40, 0x40, 110), 2));
        p.setBrush(QColor(255, 255, 255, 90));
        p.drawRect(slip);
        const qreal row = h / 7.0, box = w / 28.0;
        for (int r = 1; r <= 5; ++r) {
            const qreal y = slip.top() + r * row;
            for (int c = 0; c < 26; ++c)
                p.drawRect(QRectF(slip.left() + box + c * box, y - row * 0.55, box, row * 0.55));
        }
    }

    QFont title = font();
    title.setPointSize(qMax(24, height() / 12));
    title.setBold(true);
    p.setFont(title);
    p.setPen(QColor(0x2c, 0x4a, 0x6e, 70));
    p.drawText(rect().adjusted(40, 30, -40, -30), Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Zlecanki"));
}
