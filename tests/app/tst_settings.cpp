#include "AppState.h"
#include "SettingsStore.h"
#include "StartupSettings.h"
#include "TestEnv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTest>

#include <memory>

using namespace StartupSettings;

class TestSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init()
    {
        m_env->clearSettings();
        appState() = AppState();
    }
    void storeLayout();
    void keysIgnoreCase();
    void booleans_data();
    void booleans();
    void firstRunDefaults();
    void fontRewrites_data();
    void fontRewrites();
    void drukDatyRepairedWhenUnreadable_data();
    void drukDatyRepairedWhenUnreadable();
    void placement_data();
    void placement();
    void damagedFileGivesDefaults();

private:
    std::unique_ptr<TestEnv> m_env;
};

void TestSettings::storeLayout()
{
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), 3);
    SettingsStore::loadSaveBool(QStringLiteral("Toolbar"), false);
    SettingsStore::save(SettingsStore::Suite, QStringLiteral("ListaFirm"), QStringLiteral("Pl7"), QStringLiteral("12"));

    QFile zlecanki(m_env->configHome() + QStringLiteral("/Kontorian/Zlecanki.conf"));
    QVERIFY(zlecanki.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(zlecanki.readAll());
    QVERIFY2(text.contains(QStringLiteral("[PRINT]\nKOPIE=3")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("[Load]\nToolbar=False")), qPrintable(text));
    QVERIFY(QFile::exists(m_env->configHome() + QStringLiteral("/Kontorian/KontorM.conf")));
}

void TestSettings::keysIgnoreCase()
{
    SettingsStore::loadSaveBool(QStringLiteral("Toolbar"), false);
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("toolbar"), true), false);
    SettingsStore::loadSaveBool(QStringLiteral("toolbar"), true);
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("TOOLBAR")), QStringLiteral("True"));
    // Still one key, in the spelling it was first written with.
    QSettings s(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Kontorian"), QStringLiteral("Zlecanki"));
    s.beginGroup(QStringLiteral("Load"));
    QCOMPARE(s.childKeys(), QStringList{QStringLiteral("Toolbar")});
}

void TestSettings::booleans_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("defaultValue");
    QTest::addColumn<bool>("read");
    QTest::newRow("True") << "True" << false << true;
    QTest::newRow("False") << "False" << true << false;
    QTest::newRow("lower case") << "true" << false << true;
    QTest::newRow("old engine true") << "-1" << false << true;
    QTest::newRow("zero") << "0" << true << false;
    QTest::newRow("rubbish keeps default") << "tak" << true << true;
    QTest::newRow("empty keeps default") << "" << false << false;
}

void TestSettings::booleans()
{
    QFETCH(QString, stored);
    QFETCH(bool, defaultValue);
    QFETCH(bool, read);
    SettingsStore::loadSave(QStringLiteral("kom_roz"), stored);
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("kom_roz"), defaultValue), read);
}

void TestSettings::firstRunDefaults()
{
    loadFontsAndPrintOptions();
    const AppState &s = appState();
    QCOMPARE(s.fontScreen, QStringLiteral("Arial CE"));
    QCOMPARE(s.fontPrinter, QStringLiteral("Arial CE"));
    QCOMPARE(s.fontLista, QStringLiteral("Courier New CE"));
    QCOMPARE(s.drukZlGr, 0);
    QCOMPARE(s.drukDaty, 0); // written as "1", read only at the next start
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("NazwaFontuScreen")), QStringLiteral("Arial CE"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("NazwaFontuLista")), QStringLiteral("Courier New CE"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("DrukZlGr")), QStringLiteral("0"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("DrukDaty")), QStringLiteral("1"));
    // The next start reads what the first one wrote.
    loadFontsAndPrintOptions();
    QCOMPARE(appState().drukDaty, 1);
}

void TestSettings::fontRewrites_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("screen Arial") << "NazwaFontuScreen" << "Arial" << "Arial CE";
    QTest::newRow("screen Times") << "NazwaFontuScreen" << "Times New Roman" << "Times New Roman CE";
    QTest::newRow("printer Arial") << "NazwaFontuPrinter" << "Arial" << "Arial CE";
    QTest::newRow("printer Times") << "NazwaFontuPrinter" << "Times New Roman" << "Times New Roman CE";
    QTest::newRow("list Courier") << "NazwaFontuLista" << "Courier New" << "Courier New CE";
    QTest::newRow("list Arial stays") << "NazwaFontuLista" << "Arial" << "Arial";
    QTest::newRow("other font stays") << "NazwaFontuPrinter" << "DejaVu Sans" << "DejaVu Sans";
}

void TestSettings::fontRewrites()
{
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, expected);
    SettingsStore::loadSave(QStringLiteral("NazwaFontuScreen"), QStringLiteral("Verdana"));
    SettingsStore::loadSave(key, stored);
    loadFontsAndPrintOptions();
    QCOMPARE(SettingsStore::loadGet(key), expected);
    const AppState &s = appState();
    const QString inState = key == QLatin1String("NazwaFontuScreen")    ? s.fontScreen
                            : key == QLatin1String("NazwaFontuPrinter") ? s.fontPrinter
                                                                        : s.fontLista;
    QCOMPARE(inState, expected);
}

void TestSettings::drukDatyRepairedWhenUnreadable_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("inMemory");
    QTest::addColumn<QString>("afterwards");
    QTest::newRow("number") << "0" << 0 << "0";
    QTest::newRow("two") << "2" << 2 << "2";
    QTest::newRow("not a number") << "x" << 0 << "1";
}

void TestSettings::drukDatyRepairedWhenUnreadable()
{
    QFETCH(QString, stored);
    QFETCH(int, inMemory);
    QFETCH(QString, afterwards);
    SettingsStore::loadSave(QStringLiteral("DrukDaty"), stored);
    loadFontsAndPrintOptions();
    QCOMPARE(appState().drukDaty, inMemory);
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("DrukDaty")), afterwards);
}

void TestSettings::placement_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("winState");
    QTest::newRow("normal") << int(WindowState::Normal)
                            << QStringList{"Height", "Left", "Top", "Width", "WinState"} << "0";
    QTest::newRow("maximised") << int(WindowState::Maximised) << QStringList{"WinState"} << "2";
    QTest::newRow("minimised") << int(WindowState::Minimised) << QStringList{} << "";
}

void TestSettings::placement()
{
    QFETCH(int, state);
    QFETCH(QStringList, keys);
    QFETCH(QString, winState);
    savePlacement(WindowState(state), QRect(10, 20, 800, 600));
    QSettings s(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Kontorian"), QStringLiteral("Zlecanki"));
    s.beginGroup(QStringLiteral("Load"));
    QStringList stored = s.childKeys();
    stored.sort();
    QCOMPARE(stored, keys);
    QCOMPARE(s.value(QStringLiteral("WinState")).toString(), winState);
    if (state == int(WindowState::Normal)) {
        QCOMPARE(s.value(QStringLiteral("Left")).toString(), QStringLiteral("150"));
        QCOMPARE(s.value(QStringLiteral("Width")).toString(), QStringLiteral("12000"));
        const Placement p = loadPlacement();
        QCOMPARE(p.normal.value_or(QRect()), QRect(10, 20, 800, 600));
        QVERIFY(!p.maximised);
    }
}

void TestSettings::damagedFileGivesDefaults()
{
    const QString path = m_env->configHome() + QStringLiteral("/Kontorian/Zlecanki.conf");
    QDir().mkpath(QFileInfo(path).absolutePath());
    {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("\x00\x01[Load\nNazwaFontuScreen\n===\xff\xfe garbage [[[", 40);
    }
    loadFontsAndPrintOptions();
    QCOMPARE(appState().fontScreen, QStringLiteral("Arial CE"));
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("kom_roz"), true), true);
    // Writing still works afterwards.
    SettingsStore::loadSaveBool(QStringLiteral("Status"), false);
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("Status"), true), false);
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
