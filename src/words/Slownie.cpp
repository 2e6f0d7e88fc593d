#include "Slownie.h"

#include "Dialogs.h"

#include <array>

namespace {

constexpr qint64 LimitZlote = 999999999999;

struct Table {
    std::array<QString, 22> units;
    std::array<QString, 10> tens;
    std::array<QString, 10> hundreds;
    // The magnitude words by form: [0] the many-form, [1] 2-4, [2] the singular.
    std::array<std::array<QString, 3>, 5> forms; // grosze, złote, thousands, millions, thousand-millions
};

const Table &table()
{
    static const Table words = [] {
        Table t;
        const char *units[] = {"", "jeden", "dwa", "trzy", "cztery", "pięć", "sześć", "siedem", "osiem", "dziewięć", "dziesięć"};
        for (int i = 0; i <= 10; ++i)
            t.units[i] = QString::fromUtf8(units[i]);
        const char *stems[] = {"jede", "dwa", "trzy", "czter", "pięt", "szes", "siedem", "osiem", "dziewięt"};
        for (int i = 11; i <= 19; ++i)
            t.units[i] = QString::fromUtf8(stems[i - 11]) + QStringLiteral("naście");
        t.units[20] = QStringLiteral("zero");
        t.units[21] = QStringLiteral("jeden");
        t.tens[1] = QStringLiteral("dziesięć");
        t.tens[2] = QStringLiteral("dwadzieścia");
        t.tens[3] = QStringLiteral("trzydzieści");
        t.tens[4] = QStringLiteral("czterdzieści");
        for (int i = 5; i <= 9; ++i)
            t.tens[i] = t.units[i] + QStringLiteral("dziesiąt");
        const char *hundreds[] = {"", "sto", "dwieście", "trzysta", "czterysta", "pięćset", "sześćset", "siedemset", "osiemset", "dziewięćset"};
        for (int i = 0; i <= 9; ++i)
            t.hundreds[i] = QString::fromUtf8(hundreds[i]);
        t.forms[0] = {QStringLiteral("groszy"), QStringLiteral("grosze"), QStringLiteral("grosz")};
        t.forms[1] = {QStringLiteral("złotych"), QStringLiteral("złote"), QStringLiteral("złoty")};
        t.forms[2] = {QStringLiteral("tysięcy"), QStringLiteral("tysiące"), QStringLiteral("tysiąc")};
        t.forms[3] = {QStringLiteral("milionów"), QStringLiteral("miliony"), QStringLiteral("milion")};
        t.forms[4] = {QStringLiteral("miliardów"), QStringLiteral("miliardy"), QStringLiteral("miliard")};
        return t;
    }();
    return words;
}

// Appends a part with one blank between non-empty parts (so no blank ever doubles or leads).
void join(QString &out, const QString &part)
{
    if (part.isEmpty())
        return;
    if (!out.isEmpty())
        out += QLatin1Char(' ');
    out += part;
}

// The number words of a group of up to three digits.
void groupWords(QString &out, int v)
{
    const Table &t = table();
    join(out, t.hundreds[v / 100]);
    const int r = v % 100;
    if (r >= 20) {
        join(out, t.tens[r / 10]);
        join(out, t.units[r % 10]);
    } else {
        join(out, t.units[r]);
    }
}

// The form code of a group: 20 for nothing, 21 for one, the value below twenty, else its
// last digit alone.
int formCode(int v)
{
    if (v < 2)
        return v + 20;
    if (v < 20)
        return v;
    return v % 10;
}

} // namespace

QString Slowo(int kind, int code)
{
    const Table &t = table();
    switch (kind) {
    case 0:
        return code >= 0 && code <= 21 ? t.units[code] : QString();
    case 1:
        return code >= 0 && code <= 9 ? t.tens[code] : QString();
    case 2:
        return code >= 0 && code <= 9 ? t.hundreds[code] : QString();
    case 3:
    case 4:
    case 5:
    case 6:
    case 7: {
        if (code < 0 || code > 21)
            return {};
        const auto &forms = t.forms[kind - 3];
        if (code == 21)
            return forms[2];
        if (code >= 2 && code <= 4)
            return forms[1];
        // 20 means "no such group": the magnitudes are left out, złote and grosze are not.
        if (code == 20 && kind >= 5)
            return {};
        return forms[0];
    }
    default:
        return {};
    }
}

QString plainDigits(Money amount)
{
    return amount.abs().exactText().replace(QLatin1Char('.'), QLatin1Char(','));
}

QString overLimitMessage(Money amount)
{
    return QStringLiteral("Kwota - ") + plainDigits(amount) +
           QStringLiteral(" - jest za duża. Nie potrafię przedstawić jej słownie");
}

Wording wordingOf(Money amount)
{
    const qint64 a = amount.abs().units();
    if ((a + 50) / Money::Scale > LimitZlote)
        return {plainDigits(amount), true};

    const qint64 grosze = (a + 50) / Money::GroszScale;
    const qint64 zlote = grosze / 100;
    const int groups[4] = {int(zlote / 1000000000), int(zlote / 1000000 % 1000), int(zlote / 1000 % 1000),
                           int(zlote % 1000)};
    const int gr = int(grosze % 100);

    QString out;
    out.reserve(160);
    for (int i = 0; i < 3; ++i) { // thousand-millions, millions, thousands
        if (groups[i] == 0)
            continue;
        groupWords(out, groups[i]);
        join(out, Slowo(7 - i, formCode(groups[i])));
    }
    groupWords(out, groups[3]);
    if (!out.isEmpty())
        join(out, Slowo(4, formCode(groups[3])));
    if (gr != 0) {
        groupWords(out, gr);
        join(out, Slowo(3, formCode(gr)));
    }
    return {out, false};
}

QString Slownie(Money amount)
{
    Wording w = wordingOf(amount);
    if (w.overLimit)
        dialogs().information(overLimitMessage(amount), QStringLiteral("Przekroczony zakres"));
    return w.text;
}

WrappedWording wrapWording(const QString &text, const std::function<qreal(const QString &)> &width, qreal boxWidth)
{
    WrappedWording out;
    if (text.isEmpty())
        return out;
    const qreal full = width(text);
    qsizetype perLine = full > 0 ? qsizetype(text.size() * boxWidth / full) : text.size();
    perLine = qMax<qsizetype>(perLine, 1);

    QString rest = text;
    for (int line = 0; line < 5 && !rest.isEmpty(); ++line) {
        if (rest.size() > perLine) {
            const qsizetype blank = rest.lastIndexOf(QLatin1Char(' '), perLine);
            if (blank > 0) {
                out.lines << rest.left(blank);
                rest = rest.mid(blank + 1);
            } else {
                out.lines << rest.left(perLine);
                rest = rest.mid(perLine);
            }
        } else {
            out.lines << rest;
            rest.clear();
        }
    }
    if (!rest.isEmpty())
        out.message = QStringLiteral("Druk słownie - Za mało wierszy!");
    return out;
}
