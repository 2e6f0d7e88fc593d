#include "Money.h"

#include <limits>

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QChar(0x00A0) || c == QChar(0x202F) || c == QChar(0x2009);
}

// Accumulates value = value*10 + d, refusing overflow.
bool pushDigit(qint64 &value, int d)
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    if (value > (max - d) / 10)
        return false;
    value = value * 10 + d;
    return true;
}

// Checks that a run of integer digits is grouped correctly by `sep`: the first group
// has 1-3 digits and every later group exactly 3. With no separator any length is fine.
bool groupedCorrectly(QStringView intPart, QChar sep, bool sepIsBlank)
{
    int groupLen = 0;
    bool seenSep = false;
    for (QChar c : intPart) {
        const bool isSep = sepIsBlank ? isBlank(c) : c == sep;
        if (isSep) {
            if (groupLen == 0 || (!seenSep && groupLen > 3) || (seenSep && groupLen != 3))
                return false;
            seenSep = true;
            groupLen = 0;
        } else {
            ++groupLen;
        }
    }
    return !seenSep || groupLen == 3;
}

} // namespace

qint64 Money::toGrosze() const
{
    const qint64 q = m_units / GroszScale;
    const qint64 r = m_units % GroszScale;
    if (r >= GroszScale / 2)
        return q + 1;
    if (r <= -GroszScale / 2)
        return q - 1;
    return q;
}

std::optional<Money> Money::parse(QStringView text)
{
    qsizetype b = 0, e = text.size();
    while (b < e && (isBlank(text[b]) || text[b].isSpace()))
        ++b;
    while (e > b && (isBlank(text[e - 1]) || text[e - 1].isSpace()))
        --e;
    QStringView s = text.mid(b, e - b);
    if (s.isEmpty())
        return std::nullopt;

    bool negative = false;
    if (s.front() == QLatin1Char('-') || s.front() == QLatin1Char('+')) {
        negative = s.front() == QLatin1Char('-');
        s = s.mid(1);
        while (!s.isEmpty() && isBlank(s.front()))
            s = s.mid(1);
    }
    if (s.isEmpty())
        return std::nullopt;

    // Every character must be a digit, a blank, "," or ".".
    for (QChar c : s) {
        if (!(c.isDigit() && c.unicode() < 128) && !isBlank(c) && c != QLatin1Char(',') &&
            c != QLatin1Char('.'))
            return std::nullopt;
    }

    const qsizetype lastComma = s.lastIndexOf(QLatin1Char(','));
    const qsizetype lastDot = s.lastIndexOf(QLatin1Char('.'));
    const qsizetype decPos = std::max(lastComma, lastDot);
    QStringView intPart = decPos >= 0 ? s.left(decPos) : s;
    QStringView fracPart = decPos >= 0 ? s.mid(decPos + 1) : QStringView();

    if (decPos >= 0) {
        const QChar decSep = s[decPos];
        const QChar groupSep = decSep == QLatin1Char(',') ? QLatin1Char('.') : QLatin1Char(',');
        if (intPart.contains(decSep))
            return std::nullopt; // "12,34,5"
        if (fracPart.contains(groupSep) || fracPart.contains(QLatin1Char(' ')))
            return std::nullopt; // "1.234.567,8.9"
        for (QChar c : fracPart)
            if (isBlank(c))
                return std::nullopt;
        if (intPart.contains(groupSep)) {
            if (intPart.contains(QLatin1Char(' ')) || !groupedCorrectly(intPart, groupSep, false))
                return std::nullopt;
        }
    }
    bool hasBlank = false;
    for (QChar c : intPart)
        hasBlank = hasBlank || isBlank(c);
    if (hasBlank && !groupedCorrectly(intPart, QLatin1Char(' '), true))
        return std::nullopt;

    if (fracPart.size() > 4)
        return std::nullopt;

    qint64 units = 0;
    int intDigits = 0;
    for (QChar c : intPart) {
        if (!c.isDigit())
            continue;
        ++intDigits;
        if (!pushDigit(units, c.digitValue()))
            return std::nullopt;
    }
    if (intDigits == 0 && fracPart.isEmpty())
        return std::nullopt; // "-", ",", "."
    for (int i = 0; i < 4; ++i) {
        const int d = i < fracPart.size() ? fracPart[i].digitValue() : 0;
        if (!pushDigit(units, d))
            return std::nullopt;
    }
    return Money(negative ? -units : units);
}

std::optional<Money> Money::parseAmount(QStringView text, QString *error)
{
    const auto m = parse(text);
    const auto refuse = [error](const QString &why) -> std::optional<Money> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    if (!m)
        return refuse(QStringLiteral("to nie jest kwota"));
    if (m->m_units % GroszScale != 0)
        return refuse(QStringLiteral("kwota może mieć najwyżej dwa miejsca po przecinku"));
    if (m->abs().m_units > MaxUnits)
        return refuse(QStringLiteral("kwota nie może przekraczać 999 999 999 999,99"));
    return m;
}

bool Money::isAcceptedAmount() const
{
    return m_units % GroszScale == 0 && m_units <= MaxUnits && m_units >= -MaxUnits;
}

std::optional<Money> Money::checkedAdd(Money o) const
{
    qint64 r = 0;
    if (__builtin_add_overflow(m_units, o.m_units, &r))
        return std::nullopt;
    return Money(r);
}

std::optional<Money> Money::checkedSub(Money o) const
{
    qint64 r = 0;
    if (__builtin_sub_overflow(m_units, o.m_units, &r))
        return std::nullopt;
    return Money(r);
}

namespace {

// Sign, whole złote and grosze of an amount rounded to the grosz; `group` puts a blank
// between every three digits of the złote.
QString formatGrosze(qint64 g, QChar decimalSeparator, bool group)
{
    const qint64 a = g < 0 ? -g : g;
    const QString whole = QString::number(a / 100);
    QString out;
    out.reserve(whole.size() + whole.size() / 3 + 5);
    if (g < 0)
        out += QLatin1Char('-');
    const qsizetype n = whole.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (group && i > 0 && (n - i) % 3 == 0)
            out += QLatin1Char(' ');
        out += whole[i];
    }
    out += decimalSeparator;
    const qint64 f = a % 100;
    if (f < 10)
        out += QLatin1Char('0');
    out += QString::number(f);
    return out;
}

} // namespace

QString Money::plain(QChar decimalSeparator) const
{
    return formatGrosze(toGrosze(), decimalSeparator, false);
}

QString Money::kwota() const
{
    return formatGrosze(toGrosze(), QLatin1Char(','), true);
}

QString Money::exactText() const
{
    const qint64 a = m_units < 0 ? -m_units : m_units;
    QString out;
    if (m_units < 0)
        out += QLatin1Char('-');
    out += QString::number(a / Scale);
    qint64 f = a % Scale;
    if (f != 0) {
        QString frac = QString::number(f).rightJustified(4, QLatin1Char('0'));
        while (frac.endsWith(QLatin1Char('0')))
            frac.chop(1);
        out += QLatin1Char('.') + frac;
    }
    return out;
}
