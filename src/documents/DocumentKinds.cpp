#include "DocumentKinds.h"

namespace DocumentKinds {

QString name(qint16 code)
{
    switch (code) {
    case PrzelewBankowy:
        return QStringLiteral("Przelew bankowy");
    case BankowyDowodWplaty:
        // Without the Polish letter in "dowod": slips and lists have always shown it so.
        return QStringLiteral("Bankowy dowod wpłaty");
    case PrzekazPocztowy:
        return QStringLiteral("Przekaz pocztowy na konto");
    case PrzekazImienny:
        return QStringLiteral("Przekaz imienny");
    case PrzelewZus:
        return QStringLiteral("Przelew na konto ZUS");
    case PrzelewPodatki:
        return QStringLiteral("Przelew na podatki");
    }
    return {};
}

QString pluralName(qint16 code)
{
    switch (code) {
    case PrzelewBankowy:
        return QStringLiteral("Zlecanki Bankowe");
    case BankowyDowodWplaty:
        return QStringLiteral("Bankowe Dowody Wpłaty");
    case PrzekazPocztowy:
        return QStringLiteral("Przekazy Pocztowe na konto");
    case PrzekazImienny:
        return QStringLiteral("Przekazy Imienne");
    case PrzelewZus:
        return QStringLiteral("Zlecanki na konto ZUS");
    case PrzelewPodatki:
        return QStringLiteral("Zlecanki na podatki");
    }
    return {};
}

QStringList browseFilterItems()
{
    QStringList items{AllKinds};
    for (qint16 code = PrzelewBankowy; code <= PrzelewPodatki; ++code)
        items << pluralName(code);
    return items;
}

} // namespace DocumentKinds
