// The bank transfer / cash deposit form, the simplified slip and the tax transfer form.
#include "DocumentSlips.h"

#include "AppState.h"
#include "PaymentQr.h"
#include "PrintEngine.h"
#include "SlipLayouts.h"
#include "documents/ChoiceLists.h"

using namespace SlipLayouts;
using Slip::Align;
using Slip::Pen;

namespace {

constexpr int RowBoxes = 27;

int partCount()
{
    return appState().czteryOdcinki != 0 ? 4 : 2;
}

QStringList nameRows(const QStringList &name, const QStringList &address)
{
    return Slip::boxRows(
        RowBoxes, [&](int width, bool *fits) { return Slip::nameAndAddress(name, address, width, fits); });
}

// The parts of the form: its title, the part's label and the frame to cut along.
void partHeader(const Pen &pen, const SlipRecords &r, const QString &partLabel, qreal right, qreal labelY)
{
    pen.border(0, 0, Slip::PartWidth, Slip::PartHeight);
    const Label &title = Bank.title;
    pen.caption(r.cashDeposit() ? QStringLiteral("Wpłata gotówkowa") : QStringLiteral("Polecenie przelewu"),
                title.x, title.y, title.size, title.bold);
    pen.captionRight(partLabel, right, labelY);
}

// The amount row: W/P, currency and the amount in its boxes.
void amountRow(const Pen &pen, const SlipRecords &r, qreal wpY, const Boxes &currency, const Boxes &amount)
{
    pen.wpMarks(Left, wpY, Slip::NumberRowBox, r.cashDeposit());
    pen.boxed(currency, QStringLiteral("PLN"));
    pen.boxes(amount);
    if (pen.withAmount)
        pen.fill(amount, Slip::boxAmount(r.doc.wartosc), Align::Right);
}

} // namespace

void payerAccountOrWords(const Pen &pen, const SlipRecords &r, const Boxes &row, const Label &wordsCaption)
{
    pen.boxes(row, AccountGroups);
    pen.label(wordsCaption);
    if (!r.cashDeposit()) {
        pen.fill(row, Slip::accountDigits(r.doc.kontoFirmy));
        return;
    }
    const qreal width = (row.count - 1) * Slip::BoxPitch + Slip::BoxWidth;
    pen.words(r.doc.wartosc, row.x + 20, row.y + 10, width - 40, row.height - 20);
}

namespace {

struct TaxFields {
    QString identifier, identifierType, period, symbol, identification;
};

// The tax liability as the tax form prints it: the firm's identifier (its NIP when it has
// named no other) and the period as year, type and number ("23M01").
TaxFields taxFields(const SlipRecords &r)
{
    TaxFields f;
    f.identifier = r.firm.identPod.trimmed();
    f.identifierType = ChoiceLists::letterAt(ChoiceLists::taxIdentifierTypes(), r.firm.typIdentPod);
    if (f.identifier.isEmpty() && (f.identifierType.isEmpty() || f.identifierType == QLatin1String("N"))) {
        f.identifier = Slip::digitsOnly(r.firm.nip);
        if (!f.identifier.isEmpty())
            f.identifierType = QStringLiteral("N");
    }
    const QString year = ChoiceLists::itemAt(ChoiceLists::taxYears(), r.doc.pod.rok).right(2);
    QString number = r.doc.pod.nrOkresu.trimmed();
    if (number.size() == 1 && number.at(0).isDigit())
        number.prepend(QLatin1Char('0'));
    f.period = year + ChoiceLists::letterAt(ChoiceLists::taxPeriodTypes(), r.doc.pod.typOkresu) + number;
    f.symbol = r.doc.pod.symbol.trimmed();
    f.identification = r.doc.pod.identyfikacja.trimmed();
    return f;
}

void drawTaxFieldBlock(const Pen &pen, const SlipRecords &r)
{
    const TaxFields f = taxFields(r);
    pen.boxed(TaxFieldsOnBank.identifier, f.identifier);
    pen.boxed(TaxFieldsOnBank.identifierType, f.identifierType);
    pen.boxed(TaxFieldsOnBank.period, f.period);
    pen.boxed(TaxFieldsOnBank.symbol, f.symbol);
    pen.boxed(TaxFieldsOnBank.identification, f.identification);
}

// The payment QR code at (x, y), or in the preview a note why it is missing.
void drawQr(const Pen &pen, const SlipRecords &r, qreal x, qreal y)
{
    if (PaymentQr::draw(pen.engine, PaymentQr::text(r.doc), x, y, PaymentQr::PrintedSize))
        return;
    if (pen.engine.job().output == PrintEngine::Output::Preview)
        pen.block({PaymentQr::missingReason(r.doc)}, x, y, PaymentQr::PrintedSize, PaymentQr::PrintedSize, 7);
}

// One part of the bank form; with `taxBlock` the tax fields take the title rows.
void drawBankPart(const Pen &pen, const SlipRecords &r, const QString &partLabel, bool taxBlock, bool qr = false)
{
    const BankForm &L = Bank;
    partHeader(pen, r, partLabel, L.partLabelRight, L.partLabelY);
    const QStringList recipient = nameRows(r.recipientName(), r.recipientAddress());
    pen.boxed(L.recipient, recipient.value(0));
    pen.boxed(L.recipientCd, recipient.value(1));
    pen.label(L.checkDigits);
    pen.boxed(L.recipientAccount, Slip::accountDigits(r.doc.klientKonto), Align::Left, AccountGroups);
    amountRow(pen, r, L.wpY, L.currency, L.amount);
    payerAccountOrWords(pen, r, L.payerAccount, L.wordsCaption);
    const QStringList payer = nameRows(r.payerName(), r.payerAddress());
    pen.boxed(L.payer, payer.value(0));
    pen.boxed(L.payerCd, payer.value(1));
    if (taxBlock) {
        drawTaxFieldBlock(pen, r);
    } else {
        // One character to a box when the two rows hold it so, else machine-filled.
        const QStringList words = r.doc.zaDokumentNazwa.simplified().split(QLatin1Char(' '));
        const QStringList title = Slip::boxRows(RowBoxes, [&](int width, bool *fits) {
            return Slip::packRows(words, 2, width, QStringLiteral(" "), fits);
        });
        pen.boxed(L.title1, title.value(0));
        pen.boxed(L.title2, title.value(1));
    }
    pen.frame(L.fee);
    Frame signature = L.signature;
    if (qr) {
        signature.w = L.signatureBesideQr;
        drawQr(pen, r, L.qrX, L.qrY);
    }
    pen.frame(signature);
    pen.text(Slip::issueDate(r.doc.dataDokumentu), L.dateX, L.dateY, 10, false, true);
}

void drawTaxPart(const Pen &pen, const SlipRecords &r, const QString &partLabel, const char *signature)
{
    const TaxForm &L = Tax;
    partHeader(pen, r, partLabel, L.partLabelRight, L.partLabelY);
    pen.boxed(L.office, r.doc.klientNazwa);
    pen.boxed(L.officeCd, r.doc.klientNazwa1);
    pen.boxed(L.officeAccount, Slip::accountDigits(r.doc.klientKonto), Align::Left, AccountGroups);
    amountRow(pen, r, L.wpY, L.currency, L.amount);
    payerAccountOrWords(pen, r, L.payerAccount, L.wordsCaption);
    const QStringList payer = nameRows(r.payerName(), r.payerAddress());
    pen.boxed(L.payer, payer.value(0));
    pen.boxed(L.payerCd, payer.value(1));
    const TaxFields f = taxFields(r);
    pen.boxed(L.identifier, f.identifier);
    pen.boxed(L.identifierType, f.identifierType);
    pen.boxed(L.period, f.period);
    pen.boxed(L.symbol, f.symbol);
    pen.boxed(L.identification, f.identification);
    pen.frame(L.fee);
    Frame sign = L.signature;
    sign.caption = signature;
    pen.frame(sign);
    pen.text(Slip::issueDate(r.doc.dataDokumentu), L.dateX, L.dateY, 10, false, true);
}

void drawSimplified(const Pen &pen, const SlipRecords &r)
{
    const SimplifiedSlip &S = Simplified;
    const qreal top = S.top;
    const auto valueY = [&](qreal row) { return top + row + S.valueBelowRule; };
    pen.border(0, 0, Slip::PartWidth, Slip::PartHeight);
    pen.rule(S.captionX, top, S.rightX, top);
    // The rule between the amount and its words stops short of the QR code beside them.
    const bool qr = r.qr && !PaymentQr::text(r.doc).isEmpty();
    for (qreal rule : S.rules)
        pen.rule(S.captionX, top + rule, qr && rule == S.words ? S.qrX - 150 : S.rightX, top + rule);
    pen.rule(S.captionX, top + S.bottom, S.rightX, top + S.bottom);
    const struct {
        const char *text;
        qreal row;
    } captions[] = {{"numer rachunku odbiorcy", S.account},
                    {"numer rachunku odbiorcy cd.", S.accountCd},
                    {"odbiorca:", S.name},
                    {"kwota:", S.amount},
                    {"słownie:", S.words},
                    {"tytułem:", S.title},
                    {"opłata:", S.fee}};
    for (const auto &c : captions)
        pen.caption(QString::fromUtf8(c.text), S.captionX, valueY(c.row) + 20, 7);

    // The account in its usual groups ("45 1140 2004 ..."); a longer one goes on in the next row.
    const qreal width = S.rightX - S.valueX;
    pen.block({Slip::groupedAccount(r.doc.klientKonto)}, S.valueX, valueY(S.account), width, 2 * S.row - S.valueBelowRule - 20, 10);

    const qreal rowRoom = S.row - S.valueBelowRule - 20;
    pen.block({r.recipientName().join(QLatin1Char(' '))}, S.valueX, valueY(S.name), width, rowRoom, 10, true);
    pen.block({r.recipientAddress().join(QStringLiteral(", "))}, S.valueX, valueY(S.address), width, rowRoom,
              10);
    if (pen.withAmount)
        pen.text(Slip::amountText(r.doc.wartosc), S.valueX, valueY(S.amount), 11, true);
    pen.words(r.doc.wartosc, S.valueX, valueY(S.words), S.wordsWidth, S.wordsHeight, 9);
    pen.block(Slip::titleLines(r.doc.zaDokumentNazwa, Slip::titleCapacity(DocumentKinds::PrzelewBankowy)),
              S.valueX, valueY(S.title), width, rowRoom, 9);
    pen.text(Slip::issueDate(r.doc.dataDokumentu), S.dateX, valueY(S.fee), 10, false, true);
    if (r.qr)
        drawQr(pen, r, S.qrX, top + S.qrY);
}

} // namespace

QStringList partLabels(int parts)
{
    if (parts == 4)
        return {QStringLiteral("odcinek dla banku odbiorcy"), QStringLiteral("odcinek dla odbiorcy"),
                QStringLiteral("odcinek dla zleceniodawcy"),
                QStringLiteral("odcinek dla banku zleceniodawcy")};
    return {QStringLiteral("odcinek dla banku zleceniodawcy"), QStringLiteral("odcinek dla zleceniodawcy")};
}

void DrukPrzelewu(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    const QStringList labels = partLabels(partCount());
    // The code is for the payer's phone: on the payer's own copy only.
    Slip::printParts(engine, int(labels.size()), [&](int part, int, int) {
        const QString &label = labels.at(part);
        drawBankPart(pen, r, label, false, r.qr && label == QLatin1String("odcinek dla zleceniodawcy"));
    });
}

void DrukUproszczony(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    Slip::printParts(engine, partCount(), [&](int, int, int) { drawSimplified(pen, r); });
}

void DrukPodatku(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    const QStringList labels = partLabels(partCount());
    if (appState().nowe != 0) {
        Slip::printParts(engine, int(labels.size()),
                         [&](int part, int, int) { drawBankPart(pen, r, labels.at(part), true); });
        return;
    }
    Slip::printParts(engine, int(labels.size()), [&](int part, int sheet, int sheets) {
        const char *signature = Tax.signature.caption;
        if (sheets > 1)
            signature = sheet == 0 ? TaxFirstSheetSignature : TaxLastSheetSignature;
        drawTaxPart(pen, r, labels.at(part), signature);
    });
}
