#include "ReportPrintout.h"

#include "DateText.h"
#include "print/PrintEngine.h"
#include "ReportRegister.h"

#include <QHash>

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

// Widths of texts in the table's font, summed from each character's advance: a long
// register measures every cell, and shaping each one again would cost as much as
// printing it. Kerning is left out, which errs on the wide side.
class Widths {
public:
    explicit Widths(const PrintEngine &engine) : m_engine(engine) {}

    qreal of(const QString &text)
    {
        qreal sum = 0;
        for (const QChar ch : text) {
            auto it = m_advance.constFind(ch.unicode());
            if (it == m_advance.constEnd())
                it = m_advance.insert(ch.unicode(), m_engine.textWidth(QString(ch)));
            sum += *it;
        }
        return sum;
    }

    // The text cut to fit `width`, ending in "..." when cut.
    QString fit(const QString &text, qreal width)
    {
        if (of(text) <= width)
            return text;
        const QString dots = QStringLiteral("...");
        width -= of(dots);
        qreal used = 0;
        qsizetype n = 0;
        for (; n < text.size(); ++n) {
            used += of(QString(text.at(n)));
            if (used > width)
                break;
        }
        return text.left(n) + dots;
    }

private:
    const PrintEngine &m_engine;
    QHash<char16_t, qreal> m_advance;
};

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
        engine.DrukTekst(line, 0, y);
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
    // The rows of a page are gathered and drawn at once when the page is full.
    QList<PrintEngine::PlacedText> cells;
    const auto flush = [&] {
        engine.DrukTeksty(cells);
        cells.clear();
    };
    const auto room = [&](qreal needed) {
        if (y + needed <= last)
            return;
        flush();
        printFooter(engine, page++, footer, c.amountRight);
        engine.KoniecStrony();
        y = printCaptions(engine, c, 0);
    };
    Widths widths(engine);
    qsizetype lp = 0;
    for (const Reports::ReportRow &r : report.list.rows) {
        room(line);
        cells.append({QString::number(++lp), c.lpRight, y, true});
        cells.append({DateText::format(r.date), c.date, y});
        cells.append({widths.fit(r.contractor, c.contractorWidth()), c.contractor, y});
        cells.append({widths.fit(r.title, c.titleWidth()), c.title, y});
        cells.append({Kwota(r.amount), c.amountRight, y, true});
        y += line;
    }
    flush();
    room(line + 60);
    engine.Linia(0, y + 20, c.amountRight, y + 20, 10);
    y += 60;
    engine.UstawCzcionke(FontSize, true, false, Arial);
    engine.DrukTekst(Reports::TotalCaption, c.date, y);
    right(engine, Kwota(report.list.total), c.amountRight, y);
    printFooter(engine, page, footer, c.amountRight);
    engine.KoniecStrony();
}

void registerReportDriver()
{
    PrintEngine::instance().setDriver(QStringLiteral("raport"), DrukRaportu);
}
