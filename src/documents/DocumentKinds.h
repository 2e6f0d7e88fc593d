#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

// The six kinds of payment document, by the code stored in zlecanki.Rodzaj.
namespace DocumentKinds {

enum Code : qint16 {
    PrzelewBankowy = 1,
    BankowyDowodWplaty = 2,
    PrzekazPocztowy = 3,
    PrzekazImienny = 4,
    PrzelewZus = 5,
    PrzelewPodatki = 6,
};

// The kind's name as captions, lists and printouts show it; empty for any other code.
QString name(qint16 code);
// The kind's name in the browse filter list; empty for any other code.
QString pluralName(qint16 code);

// The browse filter's first entry, standing for every kind.
inline const QString AllKinds = QStringLiteral("- Wszystkie -");
// The browse filter list: AllKinds, then the plural names of kinds 1 to 6.
QStringList browseFilterItems();

} // namespace DocumentKinds
