#pragma once

#include "documents/FirmData.h"
#include "documents/PaymentDocument.h"

#include <QString>
#include <QStringList>

class PrintEngine;

// The slips of the payment documents. Each layout draws one document through the print
// engine with the firm as the payer, honours the settings that shape printouts (whole
// form or values only, old forms, two or four parts, grey boxes, the issue date, the
// amount format) and whether the amount is printed at all, and ends its pages.
struct SlipRecords {
    PaymentDocument doc;
    FirmData firm;
    bool shortName = false; // "dprzelewZus": the payer is the firm's short name
    bool qr = false;        // the banks' payment QR code on the customer's copy of a transfer

    // The payer's name lines: the firm's name, or its short name (the name when it has none).
    QStringList payerName() const;
    // The payer's address: "Długa 5 / 12" and "00-950 Warszawa".
    QStringList payerAddress() const;
    QStringList recipientName() const;
    QStringList recipientAddress() const;
    // A blank payer account: the money is paid in cash.
    bool cashDeposit() const;
};

// Bank transfer / cash deposit on the standard form, two or four parts.
void DrukPrzelewu(PrintEngine &engine, const SlipRecords &r);
// A bank transfer on the simplified slip (the old forms).
void DrukUproszczony(PrintEngine &engine, const SlipRecords &r);
// Tax transfer on its own form; with the old forms, on the bank form with the tax fields.
void DrukPodatku(PrintEngine &engine, const SlipRecords &r);
// ZUS transfer: the whole form, or only its fields for a pre-printed one.
void DrukZus(PrintEngine &engine, const SlipRecords &r);
void DrukPolZus(PrintEngine &engine, const SlipRecords &r);
// Postal order to an account (four parts, the message for the account holder on the back).
void DrukPrzekazuNaKonto(PrintEngine &engine, const SlipRecords &r);
// Named postal order: the whole form with its back, or only the fields ("Przekaz Pocztowy").
void DrukPrzekazu(PrintEngine &engine, const SlipRecords &r);
// Bank deposit slip, four numbered copies.
void DrukDowoduWplaty(PrintEngine &engine, const SlipRecords &r);

// The slip of the document's kind, as the settings choose it.
void printDocumentSlip(PrintEngine &engine, const SlipRecords &r);

namespace Slip {
class Pen;
struct Boxes;
struct Label;
}
// The row shared by the payer's account (a transfer) and the amount in words (a cash
// deposit): both captions, and the one value that applies.
void payerAccountOrWords(const Slip::Pen &pen, const SlipRecords &r, const Slip::Boxes &row,
                         const Slip::Label &wordsCaption);

// The part labels of the bank and tax forms.
QStringList partLabels(int parts);
