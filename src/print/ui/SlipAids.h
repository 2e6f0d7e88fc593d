#pragma once

#include "documents/PaymentDocument.h"

#include <QList>

#include <functional>

class QLabel;
class QLineEdit;
class QWidget;

// What the document window shows about the slip while the user types: how much of the
// title the slip of the kind holds, and the payment QR code a phone can scan from the screen.
namespace SlipAids {

// "lblTytulMiejsce": the title's length against what the slip holds, marked when it is too
// long. Hidden for kinds whose slip prints no title.
QLabel *titleRoom(QLineEdit *title, int kind, QWidget *parent);
// At saving: true (told to the user, the focus in the title) when the slip cannot carry it.
bool refuseTitle(QLineEdit *title, int kind);
// "lblKodQR": the payment QR code of the document, redrawn whenever one of `fields` changes;
// shown for bank transfers only.
QLabel *qrPreview(int kind, const QList<QLineEdit *> &fields, std::function<PaymentDocument()> document,
                  QWidget *parent);

} // namespace SlipAids
