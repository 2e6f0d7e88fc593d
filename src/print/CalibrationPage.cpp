#include "CalibrationPage.h"

#include "AppState.h"
#include "PrintEngine.h"
#include "SlipLayouts.h"

namespace {

constexpr qreal Millimetre = 56.7;

} // namespace

void DrukKalibracji(PrintEngine &engine)
{
    using namespace SlipLayouts;
    engine.UstawOrientacje(QPageLayout::Portrait);
    engine.setSheetContent(QRectF()); // measured from the paper itself
    const AppState &s = appState();
    engine.UstawPoczatek(-s.margLewy * Millimetre, -s.margPrawy * Millimetre);
    const int width = 210, height = 297;
    for (int mm = 0; mm <= width; ++mm)
        engine.Linia(mm * Millimetre, 0, mm * Millimetre, height * Millimetre, mm % 10 == 0 ? 8 : mm % 5 == 0 ? 4 : 1.5);
    for (int mm = 0; mm <= height; ++mm)
        engine.Linia(0, mm * Millimetre, width * Millimetre, mm * Millimetre, mm % 10 == 0 ? 8 : mm % 5 == 0 ? 4 : 1.5);
    engine.UstawCzcionke(6, false, false, QStringLiteral("Arial CE"));
    for (int cm = 1; cm * 10 < width; ++cm)
        engine.DrukTekst(QString::number(cm * 10), cm * 10 * Millimetre + 20, 10 * Millimetre + 20);
    for (int cm = 2; cm * 10 < height; ++cm)
        engine.DrukTekst(QString::number(cm * 10), 10 * Millimetre + 20, cm * 10 * Millimetre + 20);

    // The transfer form's value rows where a pre-printed form has them (the firm's margins
    // included), thick so that they show through a red form.
    engine.UstawPoczatek(0, 0);
    const Slip::Boxes rows[] = {Bank.recipient, Bank.recipientCd, Bank.recipientAccount, Bank.amount,
                                Bank.payerAccount, Bank.payer, Bank.payerCd, Bank.title1, Bank.title2};
    for (const Slip::Boxes &b : rows)
        for (int i = 0; i < b.count; ++i)
            engine.Prostokat(Slip::boxX(b.x, i), b.y, Slip::BoxWidth, b.height, false, 12);
    engine.UstawCzcionke(9, true, false, QStringLiteral("Arial CE"));
    engine.DrukTekst(QStringLiteral("Strona kalibracji: siatka milimetrowa i pola przelewu"), 3000,
                     Slip::PartHeight + 300);
    engine.KoniecStrony();
}
