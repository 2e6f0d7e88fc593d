#include "ServerFirms.h"

#include "AppState.h"
#include "Dialect.h"
#include "SettingsStore.h"

#include <QDir>

#include <algorithm>

namespace ServerFirms {

namespace {

const QString Section = QStringLiteral("FirmyNaSerwerze");
const QString KeyPrefix = QStringLiteral("Firma");

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

void store(const QStringList &addresses)
{
    for (const QString &key : SettingsStore::keys(SettingsStore::App, Section))
        SettingsStore::remove(SettingsStore::App, Section, key);
    for (qsizetype i = 0; i < addresses.size(); ++i)
        SettingsStore::save(SettingsStore::App, Section, KeyPrefix + QString::number(i + 1), addresses.at(i));
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
    QStringList keys = SettingsStore::keys(SettingsStore::App, Section);
    std::sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) { return keyNumber(a) < keyNumber(b); });
    QStringList out;
    for (const QString &key : std::as_const(keys)) {
        const QString address = usual(SettingsStore::get(SettingsStore::App, Section, key));
        if (Dialect::isAddress(address) && !out.contains(address))
            out << address;
    }
    return out;
}

void remember(const QString &address)
{
    if (!Dialect::isAddress(address))
        return;
    QStringList list = remembered();
    if (list.contains(usual(address)))
        return;
    list << usual(address);
    store(list);
}

void forget(const QString &address)
{
    QStringList list = remembered();
    if (list.removeAll(usual(address)) > 0)
        store(list);
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
