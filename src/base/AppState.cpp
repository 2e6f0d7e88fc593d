#include "AppState.h"

#include <QDir>
#include <QStandardPaths>

AppState &appState()
{
    static AppState state;
    return state;
}

QString defaultSuiteRoot()
{
    QString root = qEnvironmentVariable("ZLECANKI_SUITE_ROOT");
    if (root.isEmpty())
        root = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Kontorian");
    root = QDir::cleanPath(QDir(root).absolutePath());
    if (!root.endsWith(QLatin1Char('/')))
        root += QLatin1Char('/');
    return root;
}

void initPaths()
{
    AppState &s = appState();
    s.suiteRoot = defaultSuiteRoot();
    s.bazyPath = s.suiteRoot + QStringLiteral("bazy/");
    QDir().mkpath(s.bazyPath);
}
