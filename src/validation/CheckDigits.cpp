#include "CheckDigits.h"

#include <array>

namespace CheckDigits {

namespace {

bool allDigits(const QString &s)
{
    for (QChar c : s)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return !s.isEmpty();
}

int digit(const QString &s, qsizetype i)
{
    return s.at(i).unicode() - '0';
}

// Remainder of a long decimal number by 97, taken piecewise so 30 digits fit.
int mod97(const QString &digits)
{
    int r = 0;
    for (QChar c : digits)
        r = (r * 10 + (c.unicode() - '0')) % 97;
    return r;
}

template <std::size_t N> int weightedSum(const QString &digits, const std::array<int, N> &weights)
{
    int sum = 0;
    for (std::size_t i = 0; i < N; ++i)
        sum += digit(digits, qsizetype(i)) * weights[i];
    return sum;
}

// The common part of the identifier checks: digits only and one of the allowed lengths.
std::optional<QString> shapeProblem(const QString &digits, const QString &name,
                                    std::initializer_list<int> lengths, const QString &lengthText)
{
    if (digits.isEmpty())
        return QStringLiteral("Brak numeru %1.").arg(name);
    if (!allDigits(digits))
        return QStringLiteral("Numer %1 może zawierać tylko cyfry.").arg(name);
    for (int n : lengths)
        if (digits.size() == n)
            return std::nullopt;
    return QStringLiteral("Numer %1 ma %2 cyfr zamiast %3.").arg(name).arg(digits.size()).arg(lengthText);
}

} // namespace

QString accountDigits(const QString &typed)
{
    QString t = typed.trimmed();
    if (t.startsWith(QLatin1String("PL"), Qt::CaseInsensitive))
        t.remove(0, 2);
    t.remove(QLatin1Char(' ')).remove(QLatin1Char('-')).remove(QChar(0xa0));
    return t;
}

QString identifierDigits(const QString &typed)
{
    QString t = typed.trimmed();
    t.remove(QLatin1Char(' ')).remove(QLatin1Char('-'));
    return t;
}

QString accountWarning()
{
    return QStringLiteral("Numer rachunku ma błędne cyfry kontrolne - sprawdź go.");
}

std::optional<QString> sortCodeProblem(const QString &digits8)
{
    if (digits8.size() != 8 || !allDigits(digits8))
        return QStringLiteral("Numer rozliczeniowy banku musi mieć 8 cyfr.");
    const int sum = weightedSum(digits8, std::array{3, 9, 7, 1, 3, 9, 7});
    if ((10 - sum % 10) % 10 != digit(digits8, 7))
        return QStringLiteral(
                   "Numer rozliczeniowy banku %1 ma błędną cyfrę kontrolną - sprawdź numer rachunku.")
            .arg(digits8);
    return std::nullopt;
}

std::optional<QString> nrbProblem(const QString &typed)
{
    const QString d = accountDigits(typed);
    if (d.isEmpty())
        return QStringLiteral("Brak numeru rachunku.");
    if (!allDigits(d))
        return QStringLiteral("Numer rachunku może zawierać tylko cyfry (oraz PL, spacje i myślniki).");
    if (d.size() != 26)
        return QStringLiteral("Numer rachunku ma %1 cyfr zamiast 26.").arg(d.size());
    // "PL" stands as 25 21 behind the number, the check digits after it.
    if (mod97(d.mid(2) + QLatin1String("2521") + d.left(2)) != 1)
        return accountWarning();
    return sortCodeProblem(d.mid(2, 8));
}

std::optional<QString> nipProblem(const QString &typed)
{
    const QString d =
        identifierDigits(typed.startsWith(QLatin1String("PL"), Qt::CaseInsensitive) ? typed.mid(2) : typed);
    if (auto p = shapeProblem(d, QStringLiteral("NIP"), {10}, QStringLiteral("10")))
        return p;
    const int check = weightedSum(d, std::array{6, 5, 7, 2, 3, 4, 5, 6, 7}) % 11;
    if (check == 10)
        return QStringLiteral("Taki NIP nie istnieje: suma kontrolna daje 10 - sprawdź go.");
    if (check != digit(d, 9))
        return QStringLiteral("NIP ma błędną cyfrę kontrolną - sprawdź go.");
    return std::nullopt;
}

std::optional<QString> peselProblem(const QString &typed)
{
    const QString d = identifierDigits(typed);
    if (auto p = shapeProblem(d, QStringLiteral("PESEL"), {11}, QStringLiteral("11")))
        return p;
    const int sum = weightedSum(d, std::array{1, 3, 7, 9, 1, 3, 7, 9, 1, 3});
    if ((10 - sum % 10) % 10 != digit(d, 10))
        return QStringLiteral("PESEL ma błędną cyfrę kontrolną - sprawdź go.");
    return std::nullopt;
}

std::optional<QString> regonProblem(const QString &typed)
{
    const QString d = identifierDigits(typed);
    if (auto p = shapeProblem(d, QStringLiteral("REGON"), {9, 14}, QStringLiteral("9 lub 14")))
        return p;
    const int sum = d.size() == 9 ? weightedSum(d, std::array{8, 9, 2, 3, 4, 5, 6, 7})
                                  : weightedSum(d, std::array{2, 4, 8, 5, 0, 9, 7, 3, 6, 1, 2, 4, 8});
    if (sum % 11 % 10 != digit(d, d.size() - 1))
        return QStringLiteral("REGON ma błędną cyfrę kontrolną - sprawdź go.");
    return std::nullopt;
}

std::optional<QString> taxMicroAccount(const QString &identifier, bool isPesel)
{
    const QString id = identifierDigits(identifier);
    if (isPesel ? peselProblem(id) : nipProblem(id))
        return std::nullopt;
    const QString body = QLatin1String("10100071") + QLatin1String("222") + QLatin1Char(isPesel ? '1' : '2') +
                         id.leftJustified(12, QLatin1Char('0'));
    const int check = 98 - mod97(body + QLatin1String("252100"));
    return QStringLiteral("%1").arg(check, 2, 10, QLatin1Char('0')) + body;
}

std::optional<QString> nrsProblem(const QString &typed, const QString &firmNip)
{
    const QString d = accountDigits(typed);
    if (auto p = nrbProblem(d)) {
        if (*p == accountWarning())
            return QStringLiteral("Rachunek składkowy ZUS ma błędne cyfry kontrolne - sprawdź go.");
        return p;
    }
    if (d.mid(2, 11) != QStringView(NrsPrefix))
        return QStringLiteral("Rachunek składkowy ZUS ma po cyfrach kontrolnych cyfry 60000002026 (numer ZUS "
                              "i 026) - sprawdź go.");
    const QString nip = identifierDigits(firmNip);
    if (!nip.isEmpty() && d.right(10) != nip)
        return QStringLiteral("Ostatnie dziesięć cyfr rachunku składkowego to nie NIP firmy - sprawdź go "
                              "(płatnik bez NIP-u ma inne końcowe cyfry).");
    return std::nullopt;
}

QString groupAccount(const QString &digits26)
{
    QString out = digits26.left(2);
    for (qsizetype i = 2; i < digits26.size(); i += 4)
        out += QLatin1Char(' ') + digits26.mid(i, 4);
    return out;
}

} // namespace CheckDigits
