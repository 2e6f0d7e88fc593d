#include "ReportPrintout.h"

#include "DateText.h"
#include "print/PrintEngine.h"
#include "ReportRegister.h"

namespace {

const QString Arial = QStringLiteral("Arial CE");
constexpr qreal Margin = 850; // 15 mm all round
constexpr qreal FontSize = 9;

// Column positions, twips from the left margin; the number and the amount are set flush
// right against their edges.
struct Columns {
    qreal lpRight = 450;
    qreal date = 600;
    qreal contractor = 1900;
    qreal title = 5500;
    qreal amountRight = 0; // the printable width
    qreal amountWidth = 1700;

    qreal contractorWidth() const { return title - contractor - 150; }
    qreal titleWidth() const { return amountRight - amountWidth - title; }
};

// The text cut to fit `width`, ending in "..." when cut.
QString fit(const PrintEngine &engine, const QString &text, qreal width)
{
    if (engine.textWidth(text) <= width)
        return text;
    const QString dots = QStringLiteral("...");
    qsizetype low = 0, high = text.size();
    while (low < high) {
        const qsizetype mid = (low + high + 1) / 2;
        if (engine.textWidth(text.left(mid) + dots) <= width)
            low = mid;
        else
            high = mid - 1;
    }
    return text.left(low) + dots;
}

void right(PrintEngine &engine, const QString &text, qreal edge, qreal y)
{
    engine.DrukTekst(text, edge - engine.textWidth(text), y);
}

qreal printHeading(PrintEngine &engine, const Reports::Heading &h, qreal width)
{
    qreal y = 0;
    engine.UstawCzcionke(11, true, false, Arial);
    engine.DrukTekst(h.firmName, 0, y);
    y += engine.WysokoscWiersza();
    engine.UstawCzcionke(FontSize, false, false, Arial);
    for (const QString &line : h.firmAddress) {
        engine.DrukTekst(line, 0, y);
        y += engine.WysokoscWiersza();
    }
    right(engine, h.dateLine(), width, 0);
    y += engine.WysokoscWiersza();
    engine.UstawCzcionke(14, true, false, Arial);
    engine.DrukTekst(h.title(), width / 2, y, true);
    y += engine.WysokoscWiersza() * 1.5;
    engine.UstawCzcionke(FontSize, true, false, Arial);
    engine.DrukTekst(QStringLiteral("KRYTERIA"), 0, y);
    y += engine.WysokoscWiersza();
    engine.UstawCzcionke(FontSize, false, false, Arial);
    for (const QString &line : h.criteriaLines()) {
        engine.DrukTekst(fit(engine, line, width), 0, y);
        y += engine.WysokoscWiersza();
    }
    return y + engine.WysokoscWiersza();
}

qreal printCaptions(PrintEngine &engine, const Columns &c, qreal y)
{
    engine.UstawCzcionke(FontSize, true, false, Arial);
    right(engine, QStringLiteral("LP"), c.lpRight, y);
    engine.DrukTekst(QStringLiteral("Data"), c.date, y);
    engine.DrukTekst(QStringLiteral("Kontrahent"), c.contractor, y);
    engine.DrukTekst(QStringLiteral("Treść"), c.title, y);
    right(engine, QStringLiteral("Wartość"), c.amountRight, y);
    const qreal line = engine.WysokoscWiersza();
    engine.Linia(0, y + line + 20, c.amountRight, y + line + 20, 10);
    engine.UstawCzcionke(FontSize, false, false, Arial);
    return y + line + 60;
}

void printFooter(PrintEngine &engine, int page, qreal y, qreal width)
{
    engine.UstawCzcionke(FontSize, false, false, Arial);
    engine.DrukTekst(QStringLiteral("strona nr: ") + QString::number(page), width / 2, y, true);
}

} // namespace

void DrukRaportu(PrintEngine &engine)
{
    const Reports::Report report = engine.job().parameter.value<Reports::Report>();
    engine.UstawOrientacje(QPageLayout::Portrait);
    engine.UstawPoczatek(Margin, Margin);
    Columns c;
    c.amountRight = engine.SzerokoscStrony();
    engine.UstawCzcionke(FontSize, false, false, Arial);
    const qreal line = engine.WysokoscWiersza();
    const qreal footer = engine.WysokoscStrony() - Margin;
    const qreal last = footer - line; // no row starts below this

    int page = 1;
    qreal y = printCaptions(engine, c, printHeading(engine, report.heading, c.amountRight));
    const auto room = [&](qreal needed) {
        if (y + needed <= last)
            return;
        printFooter(engine, page++, footer, c.amountRight);
        engine.KoniecStrony();
        y = printCaptions(engine, c, 0);
    };
    qsizetype lp = 0;
    for (const Reports::ReportRow &r : report.list.rows) {
        room(line);
        right(engine, QString::number(++lp), c.lpRight, y);
        engine.DrukTekst(DateText::format(r.date), c.date, y);
        engine.DrukTekst(fit(engine, r.contractor, c.contractorWidth()), c.contractor, y);
        engine.DrukTekst(fit(engine, r.title, c.titleWidth()), c.title, y);
        right(engine, Kwota(r.amount), c.amountRight, y);
        y += line;
    }
    room(line + 60);
    engine.Linia(0, y + 20, c.amountRight, y + 20, 10);
    y += 60;
    engine.UstawCzcionke(FontSize, true, false, Arial);
    engine.DrukTekst(Reports::TotalCaption, c.date, y);
    right(engine, Kwota(report.list.total), c.amountRight, y);
    printFooter(engine, page, footer, c.amountRight);
    engine.KoniecStrony();
}
