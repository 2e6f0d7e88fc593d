#include "CollectiveStatement.h"

#include "DateText.h"
#include "documents/Firm.h"
#include "PrintEngine.h"
#include "SlipLayouts.h"
#include "documents/FirmData.h"

using SlipLayouts::Statement;

namespace {

const QString Arial = QStringLiteral("Arial CE");
constexpr qreal FontSize = 10;

// The firm's name lines and address, the flat (when there is one) before the street.
QStringList firmLines()
{
    const FirmData f = FirmStore::read(Db()).value_or(FirmData{});
    QStringList lines;
    for (const QString &name : {f.nazwa, f.nazwa1})
        if (!name.trimmed().isEmpty())
            lines << name.trimmed();
    QString street = QStringLiteral("ul. ") + Slip::streetLine(f.ulica, f.nrDomu, QString());
    if (!f.nrLokalu.trimmed().isEmpty())
        street = f.nrLokalu.trimmed() + QStringLiteral(" / ") + street;
    lines << street << Slip::townLine(f.kod, f.miasto);
    return lines;
}

struct ListArea {
    qreal firstRow, bottom;
    int rows, columns;
    qsizetype capacity() const { return qsizetype(rows) * columns; }
};

// Where the amounts of a copy `height` high go: columns across the width, rows from under
// "Zestawienie kwot: " down to the totals, which keep their distance from the band's end.
ListArea listArea(PrintEngine &engine, qreal height)
{
    engine.UstawCzcionke(FontSize, false, false, Arial);
    const qreal line = engine.WysokoscWiersza();
    ListArea a;
    a.firstRow = Statement.amountsFirstRow;
    a.bottom = height - (Statement.band - Statement.amountsBottom);
    a.rows = qMax(1, int((a.bottom - a.firstRow) / line));
    a.columns = qMax(1, int(engine.SzerokoscStrony() / Statement.columnWidth));
    return a;
}

} // namespace

std::optional<Money> CollectiveStatement::total() const
{
    std::optional<Money> sum = Money();
    for (const Money &m : amounts) {
        sum = sum->checkedAdd(m);
        if (!sum)
            break;
    }
    return sum;
}

qsizetype DrukZestawienia(PrintEngine &engine, const CollectiveStatement &statement, qreal top, qreal left,
                          const QString &mark, qreal height, qsizetype first)
{
    const auto &L = Statement;
    const qreal width = engine.SzerokoscStrony();
    const ListArea area = listArea(engine, height);
    const qreal line = engine.WysokoscWiersza();

    engine.UstawCzcionke(12, true, false, Arial);
    engine.DrukTekst(QStringLiteral("ZBIORCZE ZESTAWIENIE PRZELEWÓW"), left + width / 2, top + L.title, true);
    engine.DrukTekst(mark, left + width - engine.textWidth(mark), top + L.markY);

    engine.UstawCzcionke(FontSize, false, false, Arial);
    engine.DrukTekst(QStringLiteral("W CIĘŻAR RACHUNKU FIRMY:"), left, top + L.firm);
    qreal y = top + L.firm;
    for (const QString &l : firmLines()) {
        engine.DrukTekst(l, left + L.firmValueX, y);
        y += line;
    }
    engine.DrukTekst(QStringLiteral("w (Banku): "), left, top + L.bank);
    engine.DrukTekst(statement.bankName, left + L.valueIndent, top + L.bankValue);
    engine.DrukTekst(QStringLiteral("Nr r-ku: "), left, top + L.account);
    engine.DrukTekst(statement.accountNumber, left + L.valueIndent, top + L.accountValue);
    engine.DrukTekst(QStringLiteral("Zestawienie kwot: "), left, top + L.amounts);

    const qsizetype count = qMin(area.capacity(), statement.amounts.size() - first);
    for (qsizetype i = 0; i < count; ++i) {
        const QString amount = Kwota(statement.amounts.at(first + i));
        const qreal columnX = left + L.valueIndent + int(i / area.rows) * L.columnWidth;
        engine.DrukTekst(amount, columnX + L.amountRight - engine.textWidth(amount),
                         top + area.firstRow + int(i % area.rows) * line);
    }
    if (first + count < statement.amounts.size())
        return count; // the totals come with the last amounts

    const qreal footer = top + height - L.band;
    engine.DrukTekst(QStringLiteral("Data: ") + DateText::format(statement.date), left, footer + L.date);
    engine.DrukTekst(QStringLiteral("Razem:  ") + (statement.total() ? Kwota(*statement.total()) : QStringLiteral("poza zakresem")), left, footer + L.total);
    engine.DrukTekst(QStringLiteral("Ilość przelewów: ") + QString::number(statement.amounts.size()), left,
                     footer + L.count);
    const QString dots = QStringLiteral("................................");
    engine.DrukTekst(dots, left + L.signatureX, footer + L.signature);
    engine.UstawCzcionke(8, false, false, Arial);
    engine.DrukTekst(QStringLiteral("(pieczęć zleceniodawcy i podpis)"),
                     left + L.signatureX + engine.textWidth(dots) * 0.5, footer + L.signatureCaption, true);
    return count;
}

void DrukZbiorowki(PrintEngine &engine)
{
    const CollectiveStatement statement = engine.job().parameter.value<CollectiveStatement>();
    const auto &L = Statement;
    engine.UstawOrientacje(QPageLayout::Portrait);
    engine.UstawPoczatek(L.left, L.top);
    if (statement.amounts.size() <= listArea(engine, L.band).capacity()) {
        DrukZestawienia(engine, statement, 0, 0, QStringLiteral("A"), L.band);
        DrukZestawienia(engine, statement, L.band, 0, QStringLiteral("D"), L.band);
        engine.KoniecStrony();
        return;
    }
    const qreal page = engine.WysokoscStrony();
    for (const QString &mark : {QStringLiteral("A"), QStringLiteral("D")}) {
        qsizetype first = 0;
        do {
            first += DrukZestawienia(engine, statement, 0, 0, mark, page, first);
            engine.KoniecStrony();
        } while (first < statement.amounts.size());
    }
}
