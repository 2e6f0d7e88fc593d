#include "Help.h"

#include "Dialogs.h"
#include "SettingsStore.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>

namespace Help {

namespace {

void open(const QUrl &url)
{
    switch (dialogs().openUrl(url)) {
    case Dialogs::UrlResult::Opened:
        return;
    case Dialogs::UrlResult::NoBrowser:
        dialogs().exclamation(QStringLiteral("Could not find your Browser"), QStringLiteral("Browser Not Found"));
        return;
    case Dialogs::UrlResult::Failed:
        dialogs().exclamation(QStringLiteral("Web Page Not Opened"), QStringLiteral("URL Failed"));
        return;
    }
}

} // namespace

QString pagePath()
{
    const QString dir = QCoreApplication::applicationDirPath();
    const QString candidates[] = {
        dir + QStringLiteral("/zlecanki.htm"),
        dir + QStringLiteral("/../share/zlecanki/zlecanki.htm"),
        dir + QStringLiteral("/../share/doc/zlecanki/zlecanki.htm"),
    };
    for (const QString &c : candidates)
        if (QFileInfo::exists(c))
            return QFileInfo(c).canonicalFilePath();
    return {};
}

void show(const QString &topic)
{
    const QString path = pagePath();
    if (path.isEmpty()) {
        dialogs().exclamation(QStringLiteral("Nie znaleziono pliku pomocy zlecanki.htm obok programu."),
                              QStringLiteral("Pomoc"));
        return;
    }
    QUrl url = QUrl::fromLocalFile(path);
    url.setFragment(topic);
    open(url);
}

void openAddress(const QString &address)
{
    open(QUrl::fromUserInput(address));
}

QString homePage()
{
    return SettingsStore::loadGet(QStringLiteral("AdresInternet"), QStringLiteral("https://www.kontorian.pl/"));
}

} // namespace Help
