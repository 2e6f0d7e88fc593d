#include "Slip.h"

#include "AppState.h"
#include "DateText.h"
#include "Dialogs.h"
#include "PrintEngine.h"
#include "documents/DocumentKinds.h"
#include "words/Slownie.h"

#include <QFontMetricsF>
#include <QHash>

#include <cmath>

namespace Slip {

namespace {

const QString Courier = QStringLiteral("Courier New CE");
const QString Arial = QStringLiteral("Arial CE");
// The largest free text in a row of boxes: its capitals about as tall as the boxed ones.
constexpr qreal RowFontSize = 10;

// Metrics of a face at a size, kept: slips ask for the same few many times a page.
const QFontMetricsF &metricsOf(const QString &face, qreal size)
{
    static QHash<QPair<QString, int>, QFontMetricsF> cache;
    const int pixels = qMax(1, qRound(size * 20));
    const auto key = qMakePair(face, pixels);
    auto it = cache.find(key);
    if (it == cache.end()) {
        QFont font(PrintEngine::fontFamily(face));
        font.setPixelSize(pixels);
        it = cache.insert(key, QFontMetricsF(font));
    }
    return *it;
}

// Where the top of a box text goes so that its capitals sit in the middle of the box.
qreal textTopInBox(qreal boxY, qreal boxHeight, qreal size)
{
    const QFontMetricsF &fm = metricsOf(Courier, size);
    return boxY + boxHeight / 2 - (fm.ascent() - fm.capHeight() / 2);
}

// The distance from line to line of the engine's text in that face and size.
qreal lineHeight(const QString &face, qreal size)
{
    return metricsOf(face, size).height();
}

QString joined(const QStringList &parts, const QString &separator)
{
    QStringList kept;
    for (const QString &p : parts)
        if (!p.trimmed().isEmpty())
            kept << p.trimmed();
    return kept.join(separator);
}

} // namespace

Pen::Pen(PrintEngine &e)
    : engine(e), wholeForm(appState().wstawiany == 0), grey(appState().szary != 0),
      withAmount(e.job().withAmount)
{
}

void Pen::caption(const QString &text, qreal x, qreal y, qreal size, bool bold, bool italic) const
{
    if (!wholeForm || text.isEmpty())
        return;
    engine.UstawCzcionke(size, bold, italic, Arial);
    engine.DrukTekst(text, x, y);
}

void Pen::captionRight(const QString &text, qreal right, qreal y, qreal size) const
{
    if (!wholeForm || text.isEmpty())
        return;
    engine.UstawCzcionke(size, false, true, Arial);
    engine.DrukTekst(text, right - engine.textWidth(text), y);
}

void Pen::label(const Label &l) const
{
    caption(QString::fromUtf8(l.text), l.x, l.y, l.size, l.bold);
}

void Pen::rule(qreal x1, qreal y1, qreal x2, qreal y2, qreal width) const
{
    if (wholeForm)
        engine.Linia(x1, y1, x2, y2, width);
}

void Pen::border(qreal x, qreal y, qreal w, qreal h) const
{
    if (wholeForm)
        engine.Prostokat(x, y, w, h, false, 5);
}

void Pen::boxes(const Boxes &b, const QList<int> &thickAfter) const
{
    if (!wholeForm)
        return;
    if (b.caption)
        caption(QString::fromUtf8(b.caption), b.captionX < 0 ? b.x : b.captionX, b.y - 130);
    for (int i = 0; i < b.count; ++i)
        engine.Prostokat(boxX(b.x, i), b.y, BoxWidth, b.height, grey, 8);
    // The thicker separators of an account number: after the check digits, then every four.
    for (int after : thickAfter) {
        const qreal x = boxX(b.x, after) + BoxWidth + (BoxPitch - BoxWidth) / 2;
        engine.Linia(x, b.y - 30, x, b.y + b.height + 30, 24);
    }
}

void Pen::frame(const Frame &f) const
{
    if (!wholeForm)
        return;
    engine.Prostokat(f.x, f.y, f.w, f.h, grey, 8);
    if (f.caption)
        caption(QString::fromUtf8(f.caption), f.x, f.captionBelow ? f.y + f.h + 20 : f.y - 150, 6);
}

void Pen::fill(const Boxes &b, const QString &value, Align align) const
{
    const QString text = value.simplified();
    if (text.isEmpty() || b.count <= 0)
        return;
    const qsizetype length = text.size();
    if (length <= b.count) {
        engine.UstawCzcionke(BoxFontSize, false, false, Courier);
        const qreal top = textTopInBox(b.y, b.height, BoxFontSize);
        const qreal inset = (BoxWidth - engine.textWidth(QStringLiteral("0"))) / 2;
        const qsizetype first = align == Align::Right ? b.count - length : 0;
        for (qsizetype i = 0; i < length; ++i)
            engine.DrukTekst(QString(text.at(i)), boxX(b.x, int(first + i)) + inset, top);
        return;
    }
    // Free text across the whole row, as large as the row's width and height allow.
    const qreal rowWidth = (b.count - 1) * BoxPitch + BoxWidth - 40;
    qreal size = RowFontSize;
    engine.UstawCzcionke(size, false, false, Arial);
    const qreal width = engine.textWidth(text);
    if (width > rowWidth)
        size = std::floor(size * rowWidth / width * 10) / 10;
    engine.UstawCzcionke(size, false, false, Arial);
    const qreal x = align == Align::Right ? b.x + rowWidth + 20 - engine.textWidth(text) : b.x + 20;
    engine.DrukTekst(text, x, b.y + (b.height - lineHeight(Arial, size)) / 2);
}

qreal Pen::block(const QStringList &paragraphs, qreal x, qreal y, qreal width, qreal height, qreal size,
                 bool boldFirst) const
{
    QStringList kept;
    for (const QString &p : paragraphs)
        if (!p.trimmed().isEmpty())
            kept << p.simplified();
    if (kept.isEmpty())
        return y;
    // Every paragraph broken at its measured width; a size that leaves no line too wide
    // and the lines within the height, else smaller.
    QList<QStringList> broken;
    // A first guess from the area the text covers, so that a long text needs few tries.
    engine.UstawCzcionke(size, boldFirst, false, Arial);
    const qreal covered = engine.textWidth(kept.join(QLatin1Char(' '))) * lineHeight(Arial, size);
    if (covered > 0 && covered > width * height)
        size = qMax<qreal>(3, std::floor(size * std::sqrt(width * height / covered) * 4) / 4 + 0.75);
    for (;; size -= 0.25) {
        broken.clear();
        qreal total = 0;
        bool tooWide = false;
        for (qsizetype i = 0; i < kept.size(); ++i) {
            engine.UstawCzcionke(size, boldFirst && i == 0, false, Arial);
            QStringList lines = wrap(engine, kept.at(i), width, 1000);
            for (const QString &line : lines)
                tooWide = tooWide || engine.textWidth(line) > width;
            total += lines.size() * lineHeight(Arial, size);
            broken << lines;
        }
        if ((!tooWide && total <= height) || size <= 3)
            break;
    }
    const qreal advance = lineHeight(Arial, size);
    for (qsizetype i = 0; i < broken.size(); ++i) {
        engine.UstawCzcionke(size, boldFirst && i == 0, false, Arial);
        for (const QString &line : broken.at(i)) {
            engine.DrukTekst(line, x, y);
            y += advance;
        }
    }
    return y;
}

void Pen::text(const QString &value, qreal x, qreal y, qreal size, bool bold, bool mono) const
{
    if (value.isEmpty())
        return;
    engine.UstawCzcionke(size, bold, false, mono ? Courier : Arial);
    engine.DrukTekst(value, x, y);
}

void Pen::captioned(const Label &l, const QString &value, qreal valueSize, bool bold) const
{
    const QString captionText = QString::fromUtf8(l.text);
    caption(captionText, l.x, l.y, l.size, l.bold);
    // The value follows the caption (measured even when the form is pre-printed, so the
    // value lands in the same place) and shares its baseline.
    engine.UstawCzcionke(l.size, l.bold, false, Arial);
    const qreal valueX = l.x + engine.textWidth(captionText);
    text(value, valueX, l.y - (valueSize - l.size) * 20 * 0.9, valueSize, bold);
}

void Pen::words(Money amount, qreal x, qreal y, qreal width, qreal height, qreal size) const
{
    if (!withAmount)
        return;
    const QString wording = wordingOf(amount).text;
    for (; size > 5; size -= 0.5) {
        engine.UstawCzcionke(size, false, false, Arial);
        const WrappedWording w = wrapWording(
            wording, [this](const QString &s) { return engine.textWidth(s); }, width);
        if (w.message.isEmpty() && w.lines.size() * lineHeight(Arial, size) <= height)
            break;
    }
    engine.UstawCzcionke(qMax<qreal>(size, 5), false, false, Arial);
    qreal top = y;
    engine.DrukSlownie(amount, x, top, width);
}

void Pen::wpMarks(qreal x, qreal y, qreal height, bool cashDeposit) const
{
    const char *marks[] = {"W", "P"};
    for (int i = 0; i < 2; ++i) {
        const qreal bx = boxX(x, i);
        if (wholeForm) {
            engine.Prostokat(bx, y, BoxWidth, height, grey, 8);
            engine.UstawCzcionke(9, true, false, Arial);
            engine.DrukTekst(QLatin1String(marks[i]), bx + BoxWidth / 2, y + (height - 210) / 2, true);
        }
    }
    // The unused letter is struck out: W for a transfer, P for a cash deposit.
    const qreal struck = boxX(x, cashDeposit ? 1 : 0);
    engine.Linia(struck - 30, y + height - 40, struck + BoxWidth + 30, y + 40, 25);
}

QString boxAmount(Money amount)
{
    return amount.plain(QLatin1Char(','));
}

QString amountText(Money amount, int format)
{
    const QString digits = Kwota(amount);
    switch (format) {
    case 1:
        return digits + QStringLiteral(" zł");
    case 2: {
        const qsizetype comma = digits.lastIndexOf(QLatin1Char(','));
        return digits.left(comma) + QStringLiteral(" zł ") + digits.mid(comma + 1) + QStringLiteral(" gr");
    }
    default:
        return digits;
    }
}

QString amountText(Money amount)
{
    return amountText(amount, appState().drukZlGr);
}

QString issueDate(const QDate &date)
{
    const AppState &s = appState();
    return s.data != 0 && s.drukDaty != 0 ? DateText::format(date) : QString();
}

QString accountDigits(const QString &account)
{
    QString text = account.trimmed();
    if (text.startsWith(QLatin1String("PL"), Qt::CaseInsensitive))
        text.remove(0, 2);
    return digitsOnly(text);
}

QString groupedAccount(const QString &account)
{
    const QString digits = accountDigits(account);
    if (digits.isEmpty())
        return account.simplified(); // not a Polish number: as it was typed
    QString grouped = digits.left(2);
    for (qsizetype i = 2; i < digits.size(); i += 4)
        grouped += QLatin1Char(' ') + digits.mid(i, 4);
    return grouped;
}

QString digitsOnly(const QString &text)
{
    QString out;
    for (const QChar c : text)
        if (c.isDigit())
            out += c;
    return out;
}

QStringList packRows(const QStringList &texts, int rows, int width, const QString &separator, bool *fits)
{
    if (fits)
        *fits = true;
    QStringList out;
    QString current;
    for (const QString &raw : texts) {
        const QString t = raw.trimmed();
        if (t.isEmpty())
            continue;
        if (current.isEmpty())
            current = t;
        else if (current.size() + separator.size() + t.size() <= width)
            current += separator + t;
        else {
            out << current;
            current = t;
        }
    }
    if (!current.isEmpty())
        out << current;
    while (out.size() > rows && rows > 0)
        out[rows - 1] += separator + out.takeAt(rows);
    for (const QString &line : out)
        if (line.size() > width && fits)
            *fits = false;
    return out;
}

QStringList boxRows(int boxes, const std::function<QStringList(int width, bool *fits)> &pack)
{
    QStringList rows;
    for (int times = 1; times <= 4; ++times) {
        bool fits = false;
        rows = pack(times * boxes, &fits);
        if (fits)
            return rows;
    }
    return rows; // longer still: the rows shrink to hold it
}

TextCapacity titleCapacity(int kind)
{
    switch (kind) {
    case DocumentKinds::PrzelewBankowy:
    case DocumentKinds::BankowyDowodWplaty:
        return {2, 54}; // two rows, machine-filled
    case DocumentKinds::PrzekazPocztowy:
        return {3, 60}; // the back of the account holder's part
    case DocumentKinds::PrzekazImienny:
        return {6, 30}; // the addressee's coupon, "na korespondencję"
    default:
        return {};
    }
}

QStringList titleLines(const QString &title, TextCapacity capacity, bool *fits)
{
    const QStringList words = title.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    bool ok = true;
    QStringList lines = packRows(words, qMax(capacity.rows, 1), qMax(capacity.perRow, 1),
                                 QStringLiteral(" "), &ok);
    if (fits)
        *fits = ok && (capacity.rows > 0 || words.isEmpty());
    return lines;
}

bool titleFits(int kind, const QString &title)
{
    const TextCapacity c = titleCapacity(kind);
    if (c.rows == 0)
        return true; // printed nowhere: nothing to cut
    bool fits = false;
    titleLines(title, c, &fits);
    return fits;
}

QStringList nameAndAddress(const QStringList &name, const QStringList &address, int width, bool *fits)
{
    const QString n = joined(name, QStringLiteral(" "));
    const QString a = joined(address, QStringLiteral(", "));
    if (!n.isEmpty() && n.size() <= width && a.size() <= width) {
        if (fits)
            *fits = true;
        return a.isEmpty() ? QStringList{n} : QStringList{n, a};
    }
    return packRows(name + address, 2, width, QStringLiteral(", "), fits);
}

QStringList wrap(const PrintEngine &engine, const QString &text, qreal width, int rows)
{
    QStringList out;
    QString current;
    const QStringList words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        const QString candidate = current.isEmpty() ? word : current + QLatin1Char(' ') + word;
        if (current.isEmpty() || engine.textWidth(candidate) <= width) {
            current = candidate;
            continue;
        }
        out << current;
        current = word;
    }
    if (!current.isEmpty())
        out << current;
    while (out.size() > rows && rows > 0)
        out[rows - 1] += QLatin1Char(' ') + out.takeAt(rows);
    return out;
}

QString streetLine(const QString &ulica, const QString &nrDomu, const QString &nrLokalu)
{
    QString line = joined({ulica, nrDomu}, QStringLiteral(" "));
    if (!nrLokalu.trimmed().isEmpty())
        line += QStringLiteral(" / ") + nrLokalu.trimmed();
    return line;
}

QString townLine(const QString &kod, const QString &miasto)
{
    return joined({kod, miasto}, QStringLiteral(" "));
}

QList<Sheet> arrangeParts(PrintEngine &engine, int parts)
{
    const QPointF top(0, 0), bottom(0, StackedPitch);
    if (parts <= 2)
        return {Sheet{QPageLayout::Portrait, QList<QPointF>{top, bottom}.mid(0, qMax(parts, 1))}};
    const QList<Sheet> twoSheets = {Sheet{QPageLayout::Portrait, {top, bottom}},
                                    Sheet{QPageLayout::Portrait, {top, bottom}}};
    if (appState().czteryNaStronie == 0)
        return twoSheets;
    const QString key = QStringLiteral("odcinki");
    QString order = engine.answer(key).toString();
    if (order.isEmpty()) {
        if (dialogs().question(QStringLiteral("Czy drukować odcinki w pionie ?"), QStringLiteral("Wydruk")))
            order = QStringLiteral("pion");
        else if (dialogs().question(QStringLiteral("Czy drukować odcinki w poziomie ?"),
                                    QStringLiteral("Wydruk")))
            order = QStringLiteral("poziom");
        else
            order = QStringLiteral("arkusze");
        engine.setAnswer(key, order);
    }
    const QPointF topLeft(0, 0), bottomLeft(0, GridRow), topRight(GridColumn, 0),
        bottomRight(GridColumn, GridRow);
    if (order == QLatin1String("pion")) // down the left column first
        return {Sheet{QPageLayout::Landscape, {topLeft, bottomLeft, topRight, bottomRight}}};
    if (order == QLatin1String("poziom")) // along the top row first
        return {Sheet{QPageLayout::Landscape, {topLeft, topRight, bottomLeft, bottomRight}}};
    return twoSheets;
}

void printParts(PrintEngine &engine, int parts,
                const std::function<void(int part, int sheet, int sheets)> &drawPart)
{
    const QList<Sheet> sheets = arrangeParts(engine, parts);
    int part = 0;
    const bool wholeForm = appState().wstawiany == 0;
    for (int s = 0; s < sheets.size(); ++s) {
        engine.UstawOrientacje(sheets.at(s).orientation);
        QRectF content;
        for (const QPointF &corner : sheets.at(s).corners)
            content = content.united(QRectF(corner, QSizeF(PartWidth, PartHeight)));
        engine.setSheetContent(wholeForm ? content : QRectF());
        for (const QPointF &corner : sheets.at(s).corners) {
            engine.UstawPoczatek(corner.x(), corner.y());
            drawPart(part++, s, int(sheets.size()));
        }
        engine.KoniecStrony();
    }
}

} // namespace Slip
