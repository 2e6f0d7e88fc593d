#pragma once

#include "documents/PaymentDocument.h"

#include <QImage>
#include <QString>

class PrintEngine;
class QSqlDatabase;

// The banks' payment QR code: "NIP|PL|ACCOUNT|AMOUNT|NAME|TITLE|||" (the recipient's NIP or
// nothing, the country, the 26-digit account, the amount in grosze as at least six digits,
// the recipient's name cut to 20 and the title to 32 characters, three reserved fields),
// error correction L. A phone's banking app fills a transfer from it.
namespace PaymentQr {

// The smallest printed code the banks' apps are sure to read: 18 x 18 mm; slips print 19.4 mm.
constexpr qreal MinimumSize = 1021; // twips
constexpr qreal PrintedSize = 1100;
// The clear margin a scanner needs around the code: four modules of the largest code a
// payment text makes (version 8, 49 modules), in twips.
constexpr qreal quietZone(qreal size)
{
    return size * 4 / 49;
}

// The code's text; empty when the recipient's account is not 26 digits (no code then).
QString text(const PaymentDocument &doc);
// Why a document has no code ("nr rachunku odbiorcy nie ma 26 cyfr"); empty when it has one.
QString missingReason(const PaymentDocument &doc);
// The code's modules, one pixel each (black on white), with no quiet zone; null for an
// empty text or one too long to encode.
QImage modules(const QString &text);
// A picture for the screen: `pixelsPerModule` pixels a module, with the quiet zone.
QImage picture(const QString &text, int pixelsPerModule = 4);
// Draws the code's modules with their top left at (x, y), `size` twips square; the caller
// keeps a quiet zone of QuietZone(size) around it clear. False when there is nothing to draw.
bool draw(PrintEngine &engine, const QString &text, qreal x, qreal y, qreal size);

// The firm's setting "Kod QR na przelewach" (Ustawienia.KodQR), on unless turned off.
bool firmSetting(const QSqlDatabase &db);
bool saveFirmSetting(const QSqlDatabase &db, bool on);

} // namespace PaymentQr
