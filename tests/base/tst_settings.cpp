#include "AppState.h"
#include "SettingsStore.h"
#include "StartupSettings.h"
#include "TestEnv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSettings>
#include <QTest>

#include <memory>

using namespace StartupSettings;

namespace {

// The program's own section as "key=value", in the order of keys.
QStringList loadSection()
{
    QSettings s(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Kontorian"), QStringLiteral("Zlecanki"));
    s.beginGroup(QStringLiteral("Load"));
    QStringList out;
    for (const QString &key : s.childKeys())
        out << key + QLatin1Char('=') + s.value(key).toString();
    out.sort();
    return out;
}

} // namespace

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
    void booleans_data();
    void booleans();
    void readAtStart_data();
    void readAtStart();
    void placement_data();
    void placement();
    void damagedFileGivesDefaults();

private:
    std::unique_ptr<TestEnv> m_env;
};

void TestSettings::storeLayout()
{
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), 3);
    SettingsStore::save(SettingsStore::Suite, QStringLiteral("ListaFirm"), QStringLiteral("Pl7"), QStringLiteral("12"));
    // Keys ignore letter case: still one key, in the spelling it was first written with.
    SettingsStore::loadSaveBool(QStringLiteral("Toolbar"), false);
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("toolbar"), true), false);
    SettingsStore::loadSaveBool(QStringLiteral("TOOLBAR"), true);
    QCOMPARE(loadSection(), QStringList{QStringLiteral("Toolbar=True")});

    QFile zlecanki(m_env->configHome() + QStringLiteral("/Kontorian/Zlecanki.conf"));
    QVERIFY(zlecanki.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(zlecanki.readAll());
    QVERIFY2(text.contains(QStringLiteral("[PRINT]\nKOPIE=3")) && text.contains(QStringLiteral("[Load]\nToolbar=True")),
             qPrintable(text));
    QVERIFY(QFile::exists(m_env->configHome() + QStringLiteral("/Kontorian/KontorM.conf")));
}

void TestSettings::booleans_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("defaultValue");
    QTest::addColumn<bool>("read");
    QTest::newRow("True") << "True" << false << true;
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

void TestSettings::readAtStart_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored"); // null: the first run, nothing stored yet
    QTest::addColumn<QString>("inFile"); // afterwards
    QTest::addColumn<QString>("inState");
    QTest::newRow("first run, screen") << "NazwaFontuScreen" << QString() << "Arial CE" << "Arial CE";
    QTest::newRow("first run, printer") << "NazwaFontuPrinter" << QString() << "Arial CE" << "Arial CE";
    QTest::newRow("first run, list") << "NazwaFontuLista" << QString() << "Courier New CE" << "Courier New CE";
    QTest::newRow("first run, amounts") << "DrukZlGr" << QString() << "0" << "0";
    // Written as "1", read only at the next start.
    QTest::newRow("first run, dates") << "DrukDaty" << QString() << "1" << "0";
    QTest::newRow("screen Arial") << "NazwaFontuScreen" << "Arial" << "Arial CE" << "Arial CE";
    QTest::newRow("screen Times") << "NazwaFontuScreen" << "Times New Roman" << "Times New Roman CE" << "Times New Roman CE";
    QTest::newRow("printer Times") << "NazwaFontuPrinter" << "Times New Roman" << "Times New Roman CE" << "Times New Roman CE";
    QTest::newRow("list Courier") << "NazwaFontuLista" << "Courier New" << "Courier New CE" << "Courier New CE";
    QTest::newRow("list Arial stays") << "NazwaFontuLista" << "Arial" << "Arial" << "Arial";
    QTest::newRow("other font stays") << "NazwaFontuPrinter" << "DejaVu Sans" << "DejaVu Sans" << "DejaVu Sans";
    QTest::newRow("dates 2") << "DrukDaty" << "2" << "2" << "2";
    QTest::newRow("dates unreadable") << "DrukDaty" << "x" << "1" << "0";
}

void TestSettings::readAtStart()
{
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, inFile);
    QFETCH(QString, inState);
    if (!stored.isNull()) {
        SettingsStore::loadSave(QStringLiteral("NazwaFontuScreen"), QStringLiteral("Verdana"));
        SettingsStore::loadSave(key, stored);
    }
    loadFontsAndPrintOptions();
    QCOMPARE(SettingsStore::loadGet(key), inFile);
    const AppState &s = appState();
    const QHash<QString, QString> state = {{"NazwaFontuScreen", s.fontScreen}, {"NazwaFontuPrinter", s.fontPrinter},
                                           {"NazwaFontuLista", s.fontLista}, {"DrukZlGr", QString::number(s.drukZlGr)},
                                           {"DrukDaty", QString::number(s.drukDaty)}};
    QCOMPARE(state.value(key), inState);
}

void TestSettings::placement_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("stored"); // twips
    QTest::newRow("normal") << int(WindowState::Normal)
                            << QStringList{"Height=9000", "Left=150", "Top=300", "Width=12000", "WinState=0"};
    QTest::newRow("maximised") << int(WindowState::Maximised) << QStringList{"WinState=2"};
    QTest::newRow("minimised") << int(WindowState::Minimised) << QStringList{};
}

void TestSettings::placement()
{
    QFETCH(int, state);
    QFETCH(QStringList, stored);
    savePlacement(WindowState(state), QRect(10, 20, 800, 600));
    QCOMPARE(loadSection(), stored);
    const Placement p = loadPlacement();
    QCOMPARE(p.normal.value_or(QRect()), state == int(WindowState::Normal) ? QRect(10, 20, 800, 600) : QRect());
    QCOMPARE(p.maximised, state == int(WindowState::Maximised));
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
