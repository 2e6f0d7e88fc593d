// The forms paid in cash at a post office or a bank counter: the postal order to an
// account, the named postal order and the bank deposit slip.
#include "DocumentSlips.h"

#include "AppState.h"
#include "PrintEngine.h"
#include "SlipLayouts.h"

using namespace SlipLayouts;
using Slip::Pen;

namespace {

// The post office's forms write the flat first: "12 / Długa 5".
QString flatFirst(const FirmData &f)
{
    QString line = Slip::streetLine(f.ulica, f.nrDomu, QString());
    if (!f.nrLokalu.trimmed().isEmpty())
        line = f.nrLokalu.trimmed() + QStringLiteral(" / ") + line;
    return line;
}

QStringList firmLines(const SlipRecords &r)
{
    return {r.payerName().join(QLatin1Char(' ')), flatFirst(r.firm),
            Slip::townLine(r.firm.kod, r.firm.miasto)};
}

QStringList recipientLines(const SlipRecords &r, bool twoNameLines)
{
    QStringList lines;
    if (twoNameLines)
        lines << r.doc.klientNazwa.trimmed() << r.doc.klientNazwa1.trimmed();
    else
        lines << r.recipientName().join(QLatin1Char(' '));
    lines << r.recipientAddress();
    lines.removeAll(QString());
    return lines;
}

QString amountOrNothing(const Pen &pen, const SlipRecords &r)
{
    return pen.withAmount ? Slip::amountText(r.doc.wartosc) : QString();
}

void drawPostalPart(const Pen &pen, const SlipRecords &r, const QString &partLabel)
{
    const PostalOrderForm &L = PostalOrder;
    pen.frame(L.part);
    pen.caption(partLabel, L.partLabel.x, L.partLabel.y, L.partLabel.size, true);
    pen.frame(L.amountFrame);
    pen.text(amountOrNothing(pen, r), L.amountX, L.amountY, 11, true);
    pen.label(L.words);
    pen.words(r.doc.wartosc, L.wordsX, L.wordsY, L.wordsWidth, L.wordsHeight);
    pen.label(L.recipient);
    pen.block(recipientLines(r, false), L.recipientX, L.recipientY, L.lineWidth, L.recipientHeight, 9);
    pen.label(L.bank);
    pen.block({r.doc.klientBank}, L.bankX, L.bankY, L.bankWidth, L.bankHeight, 9);
    pen.block({Slip::groupedAccount(r.doc.klientKonto)}, L.bankX, L.accountY, L.bankWidth, L.accountHeight, 10);
    pen.label(L.payer);
    pen.block(firmLines(r), L.payerX, L.payerY, L.lineWidth, L.payerHeight, 9);
    pen.frame(L.stamp);
    for (const Label &l : {L.stampCaption, L.stampDots, L.fee, L.feeDots, L.signatureDots, L.signature})
        pen.label(l);
}

void drawNamedOrderFront(const Pen &pen, const SlipRecords &r)
{
    const NamedOrderForm &L = NamedOrder;
    const QString amount = amountOrNothing(pen, r);
    for (const Frame &f :
         {L.receipt, L.order, L.coupon, L.receiptStamp, L.services, L.districtStamp, L.sendingDay})
        pen.frame(f);

    // the receipt
    for (const Label &l :
         {L.receiptTitle, L.receiptTitle2, L.receiptAddressee, L.receiptFee, L.receiptNumber, L.keep})
        pen.label(l);
    pen.captioned(L.receiptAmount, amount, 9, true);
    pen.block(recipientLines(r, false), L.receiptTextX, L.receiptAddresseeY, L.receiptWidth,
              L.receiptAddresseeHeight, 8);

    // the order
    for (const Label &l : {L.title1, L.title2, L.words, L.sender, L.addressee, L.fee, L.feeDots, L.number,
                           L.acceptedBy, L.checkedBy})
        pen.label(l);
    pen.captioned(L.amount, amount, 11, true);
    pen.words(r.doc.wartosc, L.wordsX, L.wordsY, L.wordsWidth, L.wordsHeight);
    pen.block(firmLines(r), L.orderTextX, L.senderY, L.orderTextWidth, L.senderHeight, 9);
    pen.block(recipientLines(r, true), L.orderTextX, L.addresseeY, L.orderTextWidth, L.addresseeHeight, 10,
              true);

    // the addressee's coupon, with the title as the message to the addressee
    for (const Label &l : {L.couponTitle, L.couponSender, L.place1, L.place2})
        pen.label(l);
    pen.captioned(L.couponAmount, amount, 9, true);
    pen.block(firmLines(r), L.couponTextX, L.couponSenderY, L.couponWidth, L.couponSenderHeight, 8);
    pen.block({r.doc.zaDokumentNazwa}, L.couponTextX, L.correspondenceY, L.couponWidth, L.correspondenceHeight,
              8);
}

void drawNamedOrderBack(const Pen &pen)
{
    const NamedOrderBackForm &L = NamedOrderBack;
    for (const Frame &f : {L.order, L.receipt, L.payoutDay})
        pen.frame(f);
    for (const Label &l : L.texts)
        pen.label(l);
}

void drawDepositCopy(const Pen &pen, const SlipRecords &r, const QString &copyNumber)
{
    const DepositSlipForm &L = DepositSlip;
    PrintEngine &e = pen.engine;
    pen.frame(L.copy);
    pen.label(L.title);
    pen.caption(copyNumber, L.copyNumberX, L.copyNumberY, L.copyNumberSize, true);
    for (const Label &l : {L.recipient, L.account, L.title2, L.payer, L.amount, L.plan1, L.plan2, L.words})
        pen.label(l);
    pen.block(recipientLines(r, true), L.leftX, L.recipientY, L.leftWidth, L.recipientHeight, 9);
    pen.block({Slip::groupedAccount(r.doc.klientKonto)}, L.leftX, L.accountY, L.leftWidth, L.accountHeight, 10);
    // The bank's name after its caption, measured even when the form is pre-printed.
    pen.label(L.bank);
    e.UstawCzcionke(L.bank.size, false, false, QStringLiteral("Arial CE"));
    const qreal bankX = L.bank.x + e.textWidth(QString::fromUtf8(L.bank.text));
    pen.block({r.doc.klientBank}, bankX, L.bankY, L.leftX + L.leftWidth - bankX, L.bankHeight, 9);
    pen.block({r.doc.zaDokumentNazwa}, L.leftX, L.titleY, L.leftWidth, L.titleHeight, 9);
    pen.block(firmLines(r), L.leftX, L.payerY, L.leftWidth, L.payerHeight, 9);
    pen.frame(L.amountFrame);
    pen.text(amountOrNothing(pen, r), L.amountX, L.amountY, 12, true);
    pen.frame(L.planFrame);
    pen.words(r.doc.wartosc, L.wordsX, L.wordsY, L.wordsWidth, L.wordsHeight);
    pen.frame(L.stamp);
    pen.label(L.stampCaption);
}

} // namespace

void DrukPrzekazuNaKonto(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    const PostalOrderForm &L = PostalOrder;
    const QStringList labels = {
        QStringLiteral("Odcinek dla Poczty(Banku)"), QStringLiteral("Odcinek dla Poczty"),
        QStringLiteral("Odcinek dla posiadacza rachunku"), QStringLiteral("Potwierdzenie dla wpłacającego")};
    engine.UstawOrientacje(QPageLayout::Portrait);
    const QRectF content(L.part.x, L.top + L.part.y, L.part.w, (labels.size() - 1) * L.pitch + L.part.h);
    engine.setSheetContent(pen.wholeForm ? content : QRectF());
    for (int part = 0; part < labels.size(); ++part) {
        engine.UstawPoczatek(0, L.top + part * L.pitch);
        drawPostalPart(pen, r, labels.at(part));
    }
    engine.turnOver(QStringLiteral("Przełóż kartkę na drugą stronę i naciśnij dowolny klawisz"));
    // The back of the account holder's part: what the money is for.
    engine.UstawPoczatek(0, L.top + L.backPart * L.pitch);
    pen.label(L.kind);
    pen.block(Slip::titleLines(r.doc.zaDokumentNazwa, Slip::titleCapacity(DocumentKinds::PrzekazPocztowy)),
              L.kindX, L.kindY, L.kindWidth, L.kindHeight, 10);
    engine.KoniecStrony();
}

void DrukPrzekazu(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    const NamedOrderForm &L = NamedOrder;
    engine.UstawOrientacje(QPageLayout::Portrait);
    engine.setSheetContent(pen.wholeForm ? QRectF(L.receipt.x, L.top, L.coupon.x + L.coupon.w - L.receipt.x,
                                                  L.receipt.h)
                                         : QRectF());
    engine.UstawPoczatek(0, L.top);
    drawNamedOrderFront(pen, r);
    if (!pen.wholeForm) {
        // Only the values, for the post office's own form.
        pen.text(QString::fromUtf8(L.fieldsOnly.text), L.fieldsOnly.x, L.fieldsOnly.y, L.fieldsOnly.size);
        engine.KoniecStrony();
        return;
    }
    engine.turnOver();
    engine.UstawPoczatek(0, L.top);
    drawNamedOrderBack(pen);
    engine.KoniecStrony();
}

void DrukDowoduWplaty(PrintEngine &engine, const SlipRecords &r)
{
    const Pen pen(engine);
    const DepositSlipForm &L = DepositSlip;
    engine.UstawOrientacje(QPageLayout::Portrait);
    const QRectF content(L.copy.x, L.top + L.copy.y, L.copy.w,
                         (DepositCopies.size() - 1) * L.pitch + L.copy.h);
    engine.setSheetContent(pen.wholeForm ? content : QRectF());
    for (int copy = 0; copy < DepositCopies.size(); ++copy) {
        engine.UstawPoczatek(0, L.top + copy * L.pitch);
        drawDepositCopy(pen, r, DepositCopies.at(copy));
    }
    engine.KoniecStrony();
}
