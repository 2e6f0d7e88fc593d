#include "StartupSettings.h"

#include "AppState.h"
#include "SettingsStore.h"

namespace StartupSettings {

namespace {

void rewriteFont(const QString &key, const QString &plain, const QString &central)
{
    if (SettingsStore::loadGet(key) == plain)
        SettingsStore::loadSave(key, central);
}

QString twips(int pixels)
{
    return QString::number(static_cast<float>(pixels) * TwipsPerPixel);
}

std::optional<int> pixels(const QString &key)
{
    const auto v = SettingsStore::value(SettingsStore::App, SettingsStore::Load, key);
    if (!v)
        return std::nullopt;
    bool ok = false;
    const double t = v->trimmed().toDouble(&ok);
    if (!ok || t < -1e7 || t > 1e7)
        return std::nullopt;
    return static_cast<int>(t / TwipsPerPixel);
}

} // namespace

void loadFontsAndPrintOptions()
{
    const QString arial = QStringLiteral("Arial"), arialCe = QStringLiteral("Arial CE");
    const QString times = QStringLiteral("Times New Roman"), timesCe = QStringLiteral("Times New Roman CE");
    const QString courier = QStringLiteral("Courier New"), courierCe = QStringLiteral("Courier New CE");
    rewriteFont(QStringLiteral("NazwaFontuScreen"), arial, arialCe);
    rewriteFont(QStringLiteral("NazwaFontuScreen"), times, timesCe);
    rewriteFont(QStringLiteral("NazwaFontuPrinter"), arial, arialCe);
    rewriteFont(QStringLiteral("NazwaFontuPrinter"), times, timesCe);
    rewriteFont(QStringLiteral("NazwaFontuLista"), courier, courierCe);

    AppState &s = appState();
    if (SettingsStore::loadGet(QStringLiteral("NazwaFontuScreen")).isEmpty()) {
        SettingsStore::loadSave(QStringLiteral("NazwaFontuScreen"), arialCe);
        SettingsStore::loadSave(QStringLiteral("NazwaFontuPrinter"), arialCe);
        SettingsStore::loadSave(QStringLiteral("NazwaFontuLista"), courierCe);
        SettingsStore::loadSave(QStringLiteral("DrukZlGr"), QString::number(s.drukZlGr));
    }
    s.fontScreen = SettingsStore::loadGet(QStringLiteral("NazwaFontuScreen"), arialCe);
    s.fontPrinter = SettingsStore::loadGet(QStringLiteral("NazwaFontuPrinter"), arialCe);
    s.fontLista = SettingsStore::loadGet(QStringLiteral("NazwaFontuLista"), courierCe);
    s.drukZlGr = qBound(0, SettingsStore::getInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukZlGr")).value_or(0), 2);

    if (const auto d = SettingsStore::getInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukDaty")))
        s.drukDaty = *d;
    else
        SettingsStore::loadSave(QStringLiteral("DrukDaty"), QStringLiteral("1"));
}

void savePlacement(WindowState state, const QRect &r)
{
    switch (state) {
    case WindowState::Minimised:
        return;
    case WindowState::Maximised:
        SettingsStore::loadSave(QStringLiteral("WinState"), QStringLiteral("2"));
        return;
    case WindowState::Normal:
        SettingsStore::loadSave(QStringLiteral("Left"), twips(r.x()));
        SettingsStore::loadSave(QStringLiteral("Top"), twips(r.y()));
        SettingsStore::loadSave(QStringLiteral("Width"), twips(r.width()));
        SettingsStore::loadSave(QStringLiteral("Height"), twips(r.height()));
        SettingsStore::loadSave(QStringLiteral("WinState"), QStringLiteral("0"));
        return;
    }
}

Placement loadPlacement()
{
    Placement p;
    p.maximised = SettingsStore::loadGet(QStringLiteral("WinState")).trimmed() == QLatin1String("2");
    const auto l = pixels(QStringLiteral("Left")), t = pixels(QStringLiteral("Top"));
    const auto w = pixels(QStringLiteral("Width")), h = pixels(QStringLiteral("Height"));
    if (l && t && w && h && *w >= 200 && *h >= 150)
        p.normal = QRect(*l, *t, *w, *h);
    return p;
}

} // namespace StartupSettings
