#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The per-user settings store: text values addressed by application, section and key.
// Each application is one file, ~/.config/Kontorian/<application>.conf (XDG_CONFIG_HOME
// moves it), each section a group in it. Keys are matched without regard to letter case,
// as the suite's other programs expect. Booleans are stored as "True"/"False", numbers as
// decimal text. A damaged file reads as empty, so every value falls back to its default.
namespace SettingsStore {

inline const QString App = QStringLiteral("Zlecanki");
inline const QString Load = QStringLiteral("Load");
inline const QString Print = QStringLiteral("PRINT");
inline const QString Suite = QStringLiteral("KontorM");

std::optional<QString> value(const QString &app, const QString &section, const QString &key);
QString get(const QString &app, const QString &section, const QString &key,
            const QString &defaultValue = QString());
void save(const QString &app, const QString &section, const QString &key, const QString &value);
void remove(const QString &app, const QString &section, const QString &key);
// The keys of a section, as stored.
QStringList keys(const QString &app, const QString &section);

// "True"/"False" (also "-1"/"1"/"0", any case); anything else gives the default.
bool getBool(const QString &app, const QString &section, const QString &key, bool defaultValue);
void saveBool(const QString &app, const QString &section, const QString &key, bool value);
// Decimal text; nothing when missing or not a whole number.
std::optional<int> getInt(const QString &app, const QString &section, const QString &key);
void saveInt(const QString &app, const QString &section, const QString &key, int value);

// The full path of an application's file.
QString fileName(const QString &app);

// Shorthands for the program's own section "Zlecanki"/"Load".
inline QString loadGet(const QString &key, const QString &def = QString())
{
    return get(App, Load, key, def);
}
inline void loadSave(const QString &key, const QString &value)
{
    save(App, Load, key, value);
}
inline bool loadBool(const QString &key, bool def)
{
    return getBool(App, Load, key, def);
}
inline void loadSaveBool(const QString &key, bool value)
{
    saveBool(App, Load, key, value);
}

QString boolText(bool value);
std::optional<bool> parseBool(const QString &text);

} // namespace SettingsStore
