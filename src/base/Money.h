#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <compare>
#include <optional>

// An amount of money in exact fixed point: a count of ten-thousandths of a złoty,
// the same four decimals and range as the old database currency type. No floating
// point is used anywhere in parsing, arithmetic or formatting.
class Money {
public:
    static constexpr qint64 Scale = 10000;    // units in one złoty
    static constexpr qint64 GroszScale = 100; // units in one grosz
    // The largest amount the program takes in and can spell in words: 999 999 999 999,99.
    static constexpr qint64 MaxUnits = 99'999'999'999'999LL * GroszScale;

    constexpr Money() = default;
    static constexpr Money fromUnits(qint64 units) { return Money(units); }
    static constexpr Money fromGrosze(qint64 grosze) { return Money(grosze * GroszScale); }
    static constexpr Money fromZlote(qint64 zlote) { return Money(zlote * Scale); }

    constexpr qint64 units() const { return m_units; }
    constexpr bool isZero() const { return m_units == 0; }
    constexpr bool isNegative() const { return m_units < 0; }

    // Whole grosze, rounded half away from zero (the way amounts are shown).
    qint64 toGrosze() const;
    Money roundedToGrosze() const { return fromGrosze(toGrosze()); }
    Money abs() const { return Money(m_units < 0 ? -m_units : m_units); }

    // Parses an amount as a Polish user types it: "1 234,56", "1234,56", "1234.56",
    // "-5", "0,5", "1.234.567,89". Spaces group thousands; the last of "," or "." is the
    // decimal separator and the other one, if present, may only group thousands.
    // At most four decimals. Returns nothing for anything else (including empty text).
    static std::optional<Money> parse(QStringView text);
    // An amount handed in from outside the windows (automation, export file, command line):
    // as parse(), but at most two decimals and not above MaxUnits either way. Nothing,
    // with the Polish reason in `error`, otherwise.
    static std::optional<Money> parseAmount(QStringView text, QString *error = nullptr);
    // Whether the amount is whole grosze within MaxUnits.
    bool isAcceptedAmount() const;

    // Sums that may not wrap: nothing when the result cannot be held.
    std::optional<Money> checkedAdd(Money o) const;
    std::optional<Money> checkedSub(Money o) const;

    // "### ### ##0.00": blank-grouped thousands, decimal comma, two decimals.
    QString kwota() const;
    // "########0.00": no grouping, two decimals, the given decimal separator.
    QString plain(QChar decimalSeparator = QLatin1Char(',')) const;
    // All four decimals, trailing zeros dropped ("12.5", "-0.0001", "7"): for storage and logs.
    QString exactText() const;

    constexpr Money operator-() const { return Money(-m_units); }
    constexpr Money operator+(Money o) const { return Money(m_units + o.m_units); }
    constexpr Money operator-(Money o) const { return Money(m_units - o.m_units); }
    constexpr Money &operator+=(Money o)
    {
        m_units += o.m_units;
        return *this;
    }
    constexpr Money &operator-=(Money o)
    {
        m_units -= o.m_units;
        return *this;
    }
    constexpr auto operator<=>(const Money &) const = default;

private:
    constexpr explicit Money(qint64 units) : m_units(units) {}
    qint64 m_units = 0;
};

// The program's money format for amounts shown in digits.
inline QString Kwota(Money value)
{
    return value.kwota();
}
