#include "SlipAids.h"

#include "Dialogs.h"
#include "print/PaymentQr.h"
#include "print/Slip.h"
#include "documents/DocumentKinds.h"

#include <QLabel>
#include <QLineEdit>
#include <QPixmap>

namespace SlipAids {

namespace {

int room(Slip::TextCapacity c)
{
    return c.rows * c.perRow;
}

} // namespace

QLabel *titleRoom(QLineEdit *title, int kind, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("lblTytulMiejsce"));
    const Slip::TextCapacity capacity = Slip::titleCapacity(kind);
    label->setVisible(capacity.rows > 0);
    const auto update = [label, kind, capacity](const QString &text) {
        const bool fits = Slip::titleFits(kind, text);
        label->setText(QStringLiteral("%1 z %2 znaków na blankiecie (%3 wiersze po %4)%5")
                           .arg(text.simplified().size())
                           .arg(room(capacity))
                           .arg(capacity.rows)
                           .arg(capacity.perRow)
                           .arg(fits ? QString() : QStringLiteral(" – nie zmieści się!")));
        label->setStyleSheet(fits ? QString() : QStringLiteral("color: #b00000; font-weight: bold;"));
    };
    QObject::connect(title, &QLineEdit::textChanged, label, update);
    update(title->text());
    return label;
}

bool refuseTitle(QLineEdit *title, int kind)
{
    if (Slip::titleFits(kind, title->text()))
        return false;
    const Slip::TextCapacity c = Slip::titleCapacity(kind);
    title->setFocus(Qt::OtherFocusReason);
    dialogs().information(QStringLiteral("Tytuł nie zmieści się na blankiecie: mieści się %1 wiersze po %2 znaków, "
                                         "łamane między wyrazami. Skróć tytuł.")
                              .arg(c.rows)
                              .arg(c.perRow));
    return true;
}

QLabel *qrPreview(int kind, const QList<QLineEdit *> &fields, std::function<PaymentDocument()> document,
                  QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("lblKodQR"));
    label->setAlignment(Qt::AlignCenter);
    label->setVisible(kind == DocumentKinds::PrzelewBankowy);
    if (kind != DocumentKinds::PrzelewBankowy)
        return label;
    const auto update = [label, document]() {
        const PaymentDocument doc = document();
        const QImage image = PaymentQr::picture(PaymentQr::text(doc), 3);
        if (image.isNull()) {
            label->setPixmap(QPixmap());
            label->setText(PaymentQr::missingReason(doc));
            label->setToolTip(QString());
            return;
        }
        label->setPixmap(QPixmap::fromImage(image));
        label->setToolTip(PaymentQr::text(doc));
    };
    for (QLineEdit *field : fields)
        if (field)
            QObject::connect(field, &QLineEdit::textChanged, label, update);
    update();
    return label;
}

} // namespace SlipAids
