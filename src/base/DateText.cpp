#include "DateText.h"

namespace DateText {

namespace {

// Reads 1..maxLen ASCII digits; fails on anything else.
std::optional<int> number(QStringView s, int minLen, int maxLen)
{
    if (s.size() < minLen || s.size() > maxLen)
        return std::nullopt;
    int v = 0;
    for (QChar c : s) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return std::nullopt;
        v = v * 10 + (c.unicode() - '0');
    }
    return v;
}

QString twoDigits(int v)
{
    return v < 10 ? QLatin1Char('0') + QString::number(v) : QString::number(v);
}

} // namespace

QString format(const QDate &date)
{
    if (!date.isValid())
        return {};
    return twoDigits(date.day()) + QLatin1Char('-') + twoDigits(date.month()) + QLatin1Char('-') +
           QString::number(date.year()).rightJustified(4, QLatin1Char('0'));
}

std::optional<QDate> parse(QStringView text)
{
    const QStringView s = text.trimmed();
    QChar sep;
    for (QChar c : s) {
        if (c == QLatin1Char('-') || c == QLatin1Char('/') || c == QLatin1Char('.')) {
            sep = c;
            break;
        }
    }
    if (sep.isNull())
        return std::nullopt;
    const auto parts = s.split(sep);
    if (parts.size() != 3)
        return std::nullopt;
    const auto d = number(parts[0], 1, 2);
    const auto m = number(parts[1], 1, 2);
    const auto y = number(parts[2], 4, 4);
    if (!d || !m || !y || *y < 1)
        return std::nullopt;
    const QDate date(*y, *m, *d);
    if (!date.isValid())
        return std::nullopt;
    return date;
}

QString toIso(const QDate &date)
{
    if (!date.isValid())
        return {};
    return QString::number(date.year()).rightJustified(4, QLatin1Char('0')) + QLatin1Char('-') +
           twoDigits(date.month()) + QLatin1Char('-') + twoDigits(date.day());
}

std::optional<QDate> fromIso(QStringView text)
{
    const QStringView s = text.trimmed();
    if (s.size() < 10 || s[4] != QLatin1Char('-') || s[7] != QLatin1Char('-'))
        return std::nullopt;
    const auto y = number(s.mid(0, 4), 4, 4);
    const auto m = number(s.mid(5, 2), 2, 2);
    const auto d = number(s.mid(8, 2), 2, 2);
    if (!y || !m || !d)
        return std::nullopt;
    const QDate date(*y, *m, *d);
    if (!date.isValid())
        return std::nullopt;
    return date;
}

} // namespace DateText
