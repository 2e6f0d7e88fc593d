#include "basKONTORIAN.h"

#include "AppState.h"
#include "SettingsStore.h"
#include "db/FirmDatabase.h"

#include <QCollator>
#include <QFileInfo>

#include <algorithm>

namespace basKONTORIAN {

namespace {

QString sectionOf(const QString &code)
{
    const QString id = firmIdentifier(code);
    return id.isEmpty() ? QString() : QStringLiteral("Spl") + id;
}

bool absent(const QString &value)
{
    return value.trimmed().isEmpty() || value.trimmed() == QLatin1String("0");
}

} // namespace

QString firmIdentifier(const QString &code)
{
    return SettingsStore::get(SettingsStore::Suite, ListaFirm, QStringLiteral("Pl") + code).trimmed();
}

QString firmValue(const QString &code, const QString &key)
{
    const QString section = sectionOf(code);
    if (section.isEmpty())
        return QStringLiteral("0");
    return SettingsStore::get(SettingsStore::Suite, section, key, QStringLiteral("0"));
}

void setFirmValue(const QString &code, const QString &key, const QString &value)
{
    const QString section = sectionOf(code);
    if (!section.isEmpty())
        SettingsStore::save(SettingsStore::Suite, section, key, value);
}

QList<SuiteFirm> firms()
{
    QList<SuiteFirm> list;
    for (const QString &key : SettingsStore::keys(SettingsStore::Suite, ListaFirm)) {
        if (!key.startsWith(QLatin1String("Pl"), Qt::CaseInsensitive) || key.size() < 3)
            continue;
        SuiteFirm f;
        f.code = key.mid(2);
        f.identifier = firmIdentifier(f.code);
        if (f.identifier.isEmpty())
            continue;
        const QString name = firmValue(f.code, NameKey);
        f.name = absent(name) ? QStringLiteral("Firma ") + f.code : name.trimmed();
        const QString db = firmValue(f.code, DatabaseKey);
        f.database = absent(db) ? QString() : db.trimmed();
        list << f;
    }
    QCollator numeric;
    numeric.setNumericMode(true);
    std::sort(list.begin(), list.end(),
              [&numeric](const SuiteFirm &a, const SuiteFirm &b) { return numeric.compare(a.code, b.code) < 0; });
    return list;
}

std::optional<QString> ensureDatabase(const SuiteFirm &firm, QString *error)
{
    if (!firm.database.isEmpty() && QFileInfo(firm.database).isFile())
        return firm.database;
    QString code = firm.code;
    for (QChar &c : code)
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    const QString path = appState().bazyPath + QStringLiteral("kontorm_") + code + QLatin1Char('.') + FirmDatabase::Extension;
    if (!QFileInfo(path).isFile() && !FirmDatabase::create(path, error))
        return std::nullopt;
    setFirmValue(firm.code, DatabaseKey, path);
    return path;
}

} // namespace basKONTORIAN
