// The ZUS transfer form: whole, or only its fields for a pre-printed form.
#include "DocumentSlips.h"

#include "PrintEngine.h"
#include "SlipLayouts.h"
#include "documents/ChoiceLists.h"

using namespace SlipLayouts;
using Slip::Align;
using Slip::Pen;

namespace {

// The insurer's four accounts in the order of the entry window's list (ZUS_NrRachunku).
const QStringList ZusAccounts = {
    QStringLiteral("83101010230000261395100000"), QStringLiteral("78101010230000261395200000"),
    QStringLiteral("73101010230000261395300000"), QStringLiteral("68101010230000261395400000")};

// The letters each form has boxes for; a letter the form does not know is left out.
struct Variant {
    QString paymentTypes;
    QString identifierTypes;
};
const Variant WholeForm{QStringLiteral("SMUTDEA"), QStringLiteral("R12")};
const Variant PrePrinted{QStringLiteral("SMUTDEK"), QStringLiteral("RP")};

QString accepted(const QString &letter, const QString &letters)
{
    return letter.size() == 1 && letters.contains(letter) ? letter : QString();
}

void drawZusPart(const Pen &pen, const SlipRecords &r, const QString &partLabel, const Variant &variant)
{
    const ZusForm &L = Zus;
    const PaymentDocument &d = r.doc;
    pen.border(0, 0, Slip::PartWidth, Slip::PartHeight);
    pen.label(L.insurer);
    pen.label(L.subject);
    pen.captionRight(partLabel, L.partLabelRight, L.partLabelY);

    // The check digits go in the "l.k." boxes of a pre-printed form, the rest after them.
    const QString account = ZusAccounts.value(d.zus.nrRachunku);
    pen.boxes(L.account, AccountGroups);
    Boxes checkDigits = L.account;
    checkDigits.count = 2;
    Boxes rest = L.account;
    rest.x = Slip::boxX(L.account.x, 2);
    rest.count = L.account.count - 2;
    pen.fill(checkDigits, account.left(2));
    pen.fill(rest, account.mid(2));

    pen.boxed(L.wp, r.cashDeposit() ? QStringLiteral("W") : QStringLiteral("P"));
    pen.boxed(L.currency, QStringLiteral("PLN"));
    pen.boxes(L.amount);
    if (pen.withAmount)
        pen.fill(L.amount, Slip::boxAmount(d.wartosc), Align::Right);
    payerAccountOrWords(pen, r, L.payerAccount, L.wordsCaption);

    SlipRecords shortName = r;
    shortName.shortName = true;
    const QStringList payer = shortName.payerName();
    pen.boxed(L.payer, payer.value(0));
    pen.boxed(L.payerCd, payer.value(1));
    pen.boxed(L.nip, Slip::digitsOnly(r.firm.nip));
    pen.boxed(L.identifierType,
              accepted(ChoiceLists::letterAt(ChoiceLists::zusIdentifierTypes(), r.firm.typIdentZus),
                       variant.identifierTypes));
    pen.boxed(L.identifier, r.firm.identZus.trimmed());
    pen.boxed(L.paymentType, accepted(ChoiceLists::letterAt(ChoiceLists::zusPaymentTypes(), d.zus.typWplaty),
                                      variant.paymentTypes));
    pen.boxed(L.declarationNumber, d.zus.nrDeklaracji.trimmed());
    // The declaration's month and year: "012024".
    const QString year = ChoiceLists::itemAt(ChoiceLists::zusYears(), d.zus.rok);
    const QString month = d.zus.miesiac >= 0 && d.zus.miesiac < 12
                              ? QStringLiteral("%1").arg(d.zus.miesiac + 1, 2, 10, QLatin1Char('0'))
                              : QString();
    pen.boxed(L.declaration, year.isEmpty() || month.isEmpty() ? QString() : month + year);
    pen.boxes(L.decision);
    pen.frame(L.fee);
    pen.frame(L.signature);
    pen.text(Slip::issueDate(d.dataDokumentu), L.dateX, L.dateY, 10, false, true);
}

void printZus(PrintEngine &engine, const SlipRecords &r, const Variant &variant)
{
    Pen pen(engine);
    pen.wholeForm = &variant == &WholeForm;
    const QStringList labels = {QStringLiteral("odcinek dla banku"), QStringLiteral("odcinek dla płatnika")};
    Slip::printParts(engine, int(labels.size()),
                     [&](int part, int, int) { drawZusPart(pen, r, labels.at(part), variant); });
}

} // namespace

void DrukZus(PrintEngine &engine, const SlipRecords &r)
{
    printZus(engine, r, WholeForm);
}

void DrukPolZus(PrintEngine &engine, const SlipRecords &r)
{
    printZus(engine, r, PrePrinted);
}
