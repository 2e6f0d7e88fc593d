#include "BankNames.h"

#include "CheckDigits.h"

#include <QHash>

namespace BankNames {

namespace {

// Bank numbers of the banks that keep most firms' accounts, as the public register of sort
// codes kept by Narodowy Bank Polski publishes them (EWIB, https://ewib.nbp.pl/, file
// plewibnra.txt). Written down on 23-11-2026 from the numbers the larger banks publish, not
// converted from a copy of that file: compare it with a current copy when it is next changed. A bank taken over by another keeps its number in the register
// under the new owner, hence the names in brackets. Co-operative banks (four-digit numbers
// from 8) are too many to list; their accounts are left for the user to name.
const QHash<QString, QString> &table()
{
    static const QHash<QString, QString> banks = {
        {QStringLiteral("101"), QStringLiteral("Narodowy Bank Polski")},
        {QStringLiteral("102"), QStringLiteral("PKO Bank Polski")},
        {QStringLiteral("103"), QStringLiteral("Bank Handlowy w Warszawie (Citi Handlowy)")},
        {QStringLiteral("105"), QStringLiteral("ING Bank Śląski")},
        {QStringLiteral("109"), QStringLiteral("Santander Bank Polska")},
        {QStringLiteral("113"), QStringLiteral("Bank Gospodarstwa Krajowego")},
        {QStringLiteral("114"), QStringLiteral("mBank")},
        {QStringLiteral("116"), QStringLiteral("Bank Millennium")},
        {QStringLiteral("124"), QStringLiteral("Bank Pekao")},
        {QStringLiteral("128"), QStringLiteral("HSBC Continental Europe Oddział w Polsce")},
        {QStringLiteral("132"), QStringLiteral("Bank Pocztowy")},
        {QStringLiteral("144"), QStringLiteral("PKO Bank Polski (dawny Nordea Bank Polska)")},
        {QStringLiteral("150"), QStringLiteral("Santander Bank Polska (dawny Kredyt Bank)")},
        {QStringLiteral("154"), QStringLiteral("Bank Ochrony Środowiska")},
        {QStringLiteral("156"), QStringLiteral("VeloBank (dawny Getin Noble Bank)")},
        {QStringLiteral("160"), QStringLiteral("BNP Paribas Bank Polska")},
        {QStringLiteral("161"), QStringLiteral("SGB-Bank")},
        {QStringLiteral("168"), QStringLiteral("PLUS BANK")},
        {QStringLiteral("175"), QStringLiteral("BNP Paribas Bank Polska (dawny Raiffeisen Polbank)")},
        {QStringLiteral("187"), QStringLiteral("Nest Bank")},
        {QStringLiteral("188"), QStringLiteral("Deutsche Bank Polska")},
        {QStringLiteral("191"), QStringLiteral("Deutsche Bank Polska")},
        {QStringLiteral("193"), QStringLiteral("Bank Polskiej Spółdzielczości")},
        {QStringLiteral("194"), QStringLiteral("Credit Agricole Bank Polska")},
        {QStringLiteral("195"), QStringLiteral("Bank Pekao (dawny Idea Bank)")},
        {QStringLiteral("203"), QStringLiteral("BNP Paribas Bank Polska (dawny Bank BGŻ)")},
        {QStringLiteral("212"), QStringLiteral("Santander Consumer Bank")},
        {QStringLiteral("248"), QStringLiteral("VeloBank (dawny Getin Noble Bank)")},
        {QStringLiteral("249"), QStringLiteral("Alior Bank")},
        {QStringLiteral("600"), QStringLiteral("Zakład Ubezpieczeń Społecznych")},
    };
    return banks;
}

} // namespace

QString bankName(const QString &account)
{
    const QString d = CheckDigits::accountDigits(account);
    if (d.size() < 6)
        return {};
    for (QChar c : QStringView(d).left(6))
        if (!c.isDigit())
            return {};
    return table().value(d.mid(2, d.at(2) == QLatin1Char('8') ? 4 : 3));
}

} // namespace BankNames
