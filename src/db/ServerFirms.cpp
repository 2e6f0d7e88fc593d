#include "ServerFirms.h"

#include "AppState.h"
#include "Dialect.h"
#include "SettingsStore.h"

#include <QDir>
#include <QList>

#include <algorithm>

namespace ServerFirms {

namespace {

const QString Section = QStringLiteral("FirmyNaSerwerze");
const QString KeyPrefix = QStringLiteral("Firma");
const QString NamePrefix = QStringLiteral("Nazwa");

// The usual form of an address, so that one firm typed twice is listed once.
QString usual(const QString &name)
{
    if (const auto address = Dialect::parseAddress(name))
        return Dialect::addressText(*address);
    return name.trimmed();
}

int keyNumber(const QString &key)
{
    return key.mid(KeyPrefix.size()).toInt();
}

struct Listed {
    QString address;
    QString name;
};

// The list as stored: addresses in their usual form, each once, with the name kept beside it.
QList<Listed> stored()
{
    QStringList keys = SettingsStore::keys(SettingsStore::App, Section);
    keys.removeIf([](const QString &key) { return !key.startsWith(KeyPrefix); });
    std::sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) { return keyNumber(a) < keyNumber(b); });
    QList<Listed> out;
    for (const QString &key : std::as_const(keys)) {
        const QString address = usual(SettingsStore::get(SettingsStore::App, Section, key));
        const bool listed = std::any_of(out.cbegin(), out.cend(), [&](const Listed &l) { return l.address == address; });
        if (Dialect::isAddress(address) && !listed)
            out.append({address, SettingsStore::get(SettingsStore::App, Section,
                                                    NamePrefix + QString::number(keyNumber(key)))});
    }
    return out;
}

void store(const QList<Listed> &list)
{
    for (const QString &key : SettingsStore::keys(SettingsStore::App, Section))
        SettingsStore::remove(SettingsStore::App, Section, key);
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString number = QString::number(i + 1);
        SettingsStore::save(SettingsStore::App, Section, KeyPrefix + number, list.at(i).address);
        if (!list.at(i).name.isEmpty())
            SettingsStore::save(SettingsStore::App, Section, NamePrefix + number, list.at(i).name);
    }
}

// A folder name made of the address's parts: letters, digits and a few safe signs only.
QString folderName(const Dialect::Address &a)
{
    QString name = a.host.isEmpty() ? QStringLiteral("localhost") : a.host;
    if (a.port)
        name += QLatin1Char('_') + QString::number(a.port);
    name += QLatin1Char('_') + a.database + QLatin1Char('_') + a.schema;
    for (QChar &c : name)
        if (!c.isLetterOrNumber() && c != QLatin1Char('-') && c != QLatin1Char('.'))
            c = QLatin1Char('_');
    while (name.startsWith(QLatin1Char('.')) || name.startsWith(QLatin1Char('_')))
        name.remove(0, 1);
    return name;
}

} // namespace

QStringList remembered()
{
    QStringList out;
    for (const Listed &l : stored())
        out << l.address;
    return out;
}

void remember(const QString &address)
{
    if (!Dialect::isAddress(address))
        return;
    QList<Listed> list = stored();
    const QString key = usual(address);
    if (std::any_of(list.cbegin(), list.cend(), [&](const Listed &l) { return l.address == key; }))
        return;
    list.append({key, QString()});
    store(list);
}

void forget(const QString &address)
{
    QList<Listed> list = stored();
    const QString key = usual(address);
    if (list.removeIf([&](const Listed &l) { return l.address == key; }) > 0)
        store(list);
}

QString rememberedName(const QString &address)
{
    const QString key = usual(address);
    for (const Listed &l : stored())
        if (l.address == key)
            return l.name;
    return {};
}

void rememberName(const QString &address, const QString &name)
{
    QList<Listed> list = stored();
    const QString key = usual(address);
    for (Listed &l : list) {
        if (l.address == key && l.name != name) {
            l.name = name;
            store(list);
            return;
        }
    }
}

bool same(const QString &a, const QString &b)
{
    if (Dialect::isAddress(a) != Dialect::isAddress(b))
        return false;
    return usual(a) == usual(b);
}

QString localFolder(const QString &firm)
{
    if (!Dialect::isAddress(firm)) {
        const qsizetype slash = firm.lastIndexOf(QLatin1Char('/'));
        return slash < 0 ? QString() : firm.left(slash + 1);
    }
    const auto address = Dialect::parseAddress(firm);
    QString folder = appState().bazyPath + QStringLiteral("serwer/");
    if (address)
        folder += folderName(*address) + QLatin1Char('/');
    QDir().mkpath(folder);
    return folder;
}

QString shown(const QString &firm)
{
    return Dialect::isAddress(firm) ? firm.trimmed() : QDir::toNativeSeparators(firm);
}

} // namespace ServerFirms
