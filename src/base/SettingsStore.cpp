#include "SettingsStore.h"

#include <QFile>
#include <QSettings>

namespace SettingsStore {

namespace {

constexpr auto Organisation = "Kontorian";

QSettings open(const QString &app)
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QLatin1String(Organisation), app);
}

// The stored spelling of `key` in the current group, if any spelling of it is there.
std::optional<QString> storedKey(QSettings &s, const QString &key)
{
    if (s.contains(key))
        return key;
    const QStringList keys = s.childKeys();
    for (const QString &k : keys)
        if (k.compare(key, Qt::CaseInsensitive) == 0)
            return k;
    return std::nullopt;
}

} // namespace

std::optional<QString> value(const QString &app, const QString &section, const QString &key)
{
    QSettings s = open(app);
    if (s.status() != QSettings::NoError)
        return std::nullopt;
    s.beginGroup(section);
    const auto k = storedKey(s, key);
    if (!k)
        return std::nullopt;
    const QVariant v = s.value(*k);
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(QLatin1Char(','));
    return v.toString();
}

QString get(const QString &app, const QString &section, const QString &key, const QString &defaultValue)
{
    return value(app, section, key).value_or(defaultValue);
}

void save(const QString &app, const QString &section, const QString &key, const QString &value)
{
    QSettings s = open(app);
    if (s.status() == QSettings::FormatError) {
        // QSettings will not overwrite a file it cannot read. Keep the damaged file aside
        // for whoever wants to look at it and start a clean one.
        const QString path = s.fileName();
        QFile::remove(path + QStringLiteral(".uszkodzony"));
        if (QFile::rename(path, path + QStringLiteral(".uszkodzony")))
            return save(app, section, key, value);
    }
    s.beginGroup(section);
    const auto k = storedKey(s, key);
    s.setValue(k.value_or(key), value);
    s.endGroup();
    s.sync();
}

void remove(const QString &app, const QString &section, const QString &key)
{
    QSettings s = open(app);
    s.beginGroup(section);
    if (const auto k = storedKey(s, key))
        s.remove(*k);
    s.endGroup();
    s.sync();
}

QStringList keys(const QString &app, const QString &section)
{
    QSettings s = open(app);
    s.beginGroup(section);
    return s.childKeys();
}

QString boolText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

std::optional<bool> parseBool(const QString &text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || t == QLatin1String("-1") ||
        t == QLatin1String("1"))
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || t == QLatin1String("0"))
        return false;
    return std::nullopt;
}

bool getBool(const QString &app, const QString &section, const QString &key, bool defaultValue)
{
    const auto v = value(app, section, key);
    if (!v)
        return defaultValue;
    return parseBool(*v).value_or(defaultValue);
}

void saveBool(const QString &app, const QString &section, const QString &key, bool value)
{
    save(app, section, key, boolText(value));
}

std::optional<int> getInt(const QString &app, const QString &section, const QString &key)
{
    const auto v = value(app, section, key);
    if (!v)
        return std::nullopt;
    bool ok = false;
    const int n = v->trimmed().toInt(&ok);
    if (!ok)
        return std::nullopt;
    return n;
}

void saveInt(const QString &app, const QString &section, const QString &key, int value)
{
    save(app, section, key, QString::number(value));
}

QString fileName(const QString &app)
{
    return open(app).fileName();
}

} // namespace SettingsStore
