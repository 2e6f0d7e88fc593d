#pragma once

#include <QList>
#include <QString>

#include <optional>

// The Kontorian suite's shared list of firms, kept in the settings store under the
// application "KontorM": section "ListaFirm" names each firm's settings identifier under
// the key "Pl" + the firm's code in the suite, and section "Spl" + that identifier holds
// the firm's values. Zlecanki reads the firm's name ("Nazwa") and keeps the file of its
// own database for the firm there ("BazaZlecanki").
namespace basKONTORIAN {

inline const QString ListaFirm = QStringLiteral("ListaFirm");
inline const QString NameKey = QStringLiteral("Nazwa");
inline const QString DatabaseKey = QStringLiteral("BazaZlecanki");

// The identifier of the firm with `code`; empty when the suite does not list it.
QString firmIdentifier(const QString &code);
// The firm's value under `key`; "0" when absent (as the suite writes it for nothing).
QString firmValue(const QString &code, const QString &key);
void setFirmValue(const QString &code, const QString &key, const QString &value);

struct SuiteFirm {
    QString code;
    QString identifier;
    QString name;     // the suite's name of the firm, or "Firma " + code when it has none
    QString database; // this program's database of the firm; empty while it has none
};
// Every firm of the suite's list, in the order of codes.
QList<SuiteFirm> firms();

// The firm's database, created in the databases folder (and noted in the suite's list)
// when it has none yet. Nothing, with a Polish message, when it cannot be made.
std::optional<QString> ensureDatabase(const SuiteFirm &firm, QString *error = nullptr);

} // namespace basKONTORIAN
