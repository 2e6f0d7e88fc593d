#include "AppState.h"
#include "DateText.h"
#include "Money.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "StartupSettings.h"
#include "TestEnv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSettings>
#include <QTest>

#include <limits>
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

// Money, dates, the error report and the settings store: what every other part stands on.
class TestBase : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init()
    {
        m_env->clearSettings();
        appState() = AppState();
    }
    void moneyText_data();
    void moneyText();
    void moneyArithmeticIsExact();
    void amountFromOutside_data();
    void amountFromOutside();
    void parseDate_data();
    void parseDate();
    void errorReport();
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

void TestBase::moneyText_data()
{
    // What a user types, the exact amount read (ten-thousandths; empty: refused), and the
    // amount shown grouped and plain, rounded half away from zero to grosze.
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("units");
    QTest::addColumn<QString>("kwota");
    QTest::addColumn<QString>("plain");
    QTest::newRow("zero") << "0" << "0" << "0,00" << "0,00";
    QTest::newRow("grouped comma") << "1 234,56" << "12345600" << "1 234,56" << "1234,56";
    QTest::newRow("dot") << "1234.56" << "12345600" << "1 234,56" << "1234,56";
    QTest::newRow("leading comma") << ",5" << "5000" << "0,50" << "0,50";
    QTest::newRow("half grosz up") << "0,005" << "50" << "0,01" << "0,01";
    QTest::newRow("below half grosz") << "0,0049" << "49" << "0,00" << "0,00";
    QTest::newRow("negative half away from zero") << "-0,015" << "-150" << "-0,02" << "-0,02";
    QTest::newRow("blanks around") << "  12,30 " << "123000" << "12,30" << "12,30";
    QTest::newRow("nbsp grouping") << QString::fromUtf8("1\u00a0234\u00a0567,00") << "12345670000" << "1 234 567,00"
                                   << "1234567,00";
    QTest::newRow("dots group, comma decimal") << "1.234.567,89" << "12345678900" << "1 234 567,89" << "1234567,89";
    QTest::newRow("limit") << "999 999 999 999,99" << "9999999999999900" << "999 999 999 999,99" << "999999999999,99";
    QTest::newRow("two commas") << "12,34,5" << "" << "" << "";
    QTest::newRow("empty") << "" << "" << "" << "";
    QTest::newRow("sign only") << "-" << "" << "" << "";
    QTest::newRow("five decimals") << "1,00001" << "" << "" << "";
    QTest::newRow("bad grouping") << "12 34,00" << "" << "" << "";
    QTest::newRow("currency word") << "12 zł" << "" << "" << "";
    QTest::newRow("overflow") << "99999999999999999999" << "" << "" << "";
}

void TestBase::moneyText()
{
    QFETCH(QString, text);
    QFETCH(QString, units);
    QFETCH(QString, kwota);
    QFETCH(QString, plain);
    const auto m = Money::parse(text);
    QCOMPARE(m ? QString::number(m->units()) : QString(), units);
    QCOMPARE(m ? Kwota(*m) : QString(), kwota);
    QCOMPARE(m ? m->plain() : QString(), plain);
    // What is shown reads back as the same number of grosze.
    if (m)
        QCOMPARE(Money::parse(kwota)->toGrosze(), m->toGrosze());
}

void TestBase::moneyArithmeticIsExact()
{
    // A tenth of a złoty added ten thousand times is exactly one thousand złoty,
    // which binary floating point does not give.
    Money sum;
    const Money tenth = *Money::parse(u"0,10");
    for (int i = 0; i < 10000; ++i)
        sum += tenth;
    QCOMPARE(sum, Money::fromZlote(1000));
    QCOMPARE(Money::fromUnits(-1).exactText(), QStringLiteral("-0.0001"));
    QCOMPARE(Money::fromUnits(125000).exactText(), QStringLiteral("12.5"));
    // Sums that cannot be held are refused, not wrapped round to a negative amount.
    const Money most = Money::fromUnits(std::numeric_limits<qint64>::max());
    QVERIFY(!most.checkedAdd(Money::fromUnits(1)));
    QVERIFY(!(-most).checkedSub(Money::fromUnits(2)));
    QCOMPARE(most.checkedAdd(-most), Money());
}

void TestBase::amountFromOutside_data()
{
    // Amounts handed in by other programs: what is refused, and why.
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("refusal"); // empty: taken
    QTest::newRow("two decimals") << "1 234,56" << "";
    QTest::newRow("the limit") << "999 999 999 999,99" << "";
    QTest::newRow("negative limit") << "-999 999 999 999,99" << "";
    QTest::newRow("trailing zeros") << "1,5000" << "";
    QTest::newRow("three decimals") << "1,005" << "dwa miejsca";
    QTest::newRow("a grosz above the limit") << "1 000 000 000 000,00" << "999 999 999 999,99";
    QTest::newRow("no amount") << "12 zł" << "nie jest kwota";
}

void TestBase::amountFromOutside()
{
    QFETCH(QString, text);
    QFETCH(QString, refusal);
    QString why;
    const auto m = Money::parseAmount(text, &why);
    QCOMPARE(m.has_value(), refusal.isEmpty());
    QVERIFY2(why.contains(refusal), qPrintable(why));
    if (m)
        QCOMPARE(*m, *Money::parse(text));
}

void TestBase::parseDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("date");
    QTest::newRow("full") << "05-03-2026" << QDate(2026, 3, 5);
    QTest::newRow("short") << "5-3-2026" << QDate(2026, 3, 5);
    QTest::newRow("slashes") << "31/12/2025" << QDate(2025, 12, 31);
    QTest::newRow("leap day") << "29-02-2024" << QDate(2024, 2, 29);
    QTest::newRow("no leap day") << "29-02-2023" << QDate();
    QTest::newRow("century not leap") << "29-02-1900" << QDate();
    QTest::newRow("month 13") << "01-13-2026" << QDate();
    QTest::newRow("two-digit year") << "01-01-99" << QDate();
    QTest::newRow("iso order") << "2026-03-05" << QDate();
    QTest::newRow("mixed separators") << "05-03/2026" << QDate();
    QTest::newRow("empty") << "" << QDate();
    QTest::newRow("iso, a day that is none") << "2005-02-30" << QDate();
}

void TestBase::parseDate()
{
    QFETCH(QString, text);
    QFETCH(QDate, date);
    const auto parsed = DateText::parse(text);
    QCOMPARE(parsed.value_or(QDate()), date);
    // Stored in the database as ISO: both ways give the date back, a day that is none is refused.
    QCOMPARE(DateText::fromIso(DateText::toIso(date)).value_or(QDate()), date);
    QCOMPARE(DateText::fromIso(text).has_value(), text == QLatin1String("2026-03-05"));
    QCOMPARE(DateText::format(date), date.toString(QStringLiteral("dd-MM-yyyy")));
    QCOMPARE(DateText::toIso(date), date.toString(Qt::ISODate));
}

void TestBase::errorReport()
{
    RecordingDialogs d;
    ErrorReport(QStringLiteral("Brak miejsca na dysku"), 61);
    QCOMPARE(d.beeps, 1);
    QCOMPARE(d.calls.size(), 1);
    QCOMPARE(d.calls[0].text, QStringLiteral("\nPrzechwycony błąd:\nBrak miejsca na dysku\nNumer: 61"));
    QCOMPARE(d.calls[0].title, QStringLiteral("Błąd"));
    QCOMPARE(d.calls[0].icon, Dialogs::Icon::Exclamation);
}

void TestBase::storeLayout()
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

void TestBase::booleans_data()
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

void TestBase::booleans()
{
    QFETCH(QString, stored);
    QFETCH(bool, defaultValue);
    QFETCH(bool, read);
    SettingsStore::loadSave(QStringLiteral("kom_roz"), stored);
    QCOMPARE(SettingsStore::loadBool(QStringLiteral("kom_roz"), defaultValue), read);
}

void TestBase::readAtStart_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored"); // null: the first run, nothing stored yet
    QTest::addColumn<QString>("inFile"); // afterwards
    QTest::addColumn<QString>("inState");
    QTest::newRow("first run, screen") << "NazwaFontuScreen" << QString() << "Arial CE" << "Arial CE";
    QTest::newRow("first run, list") << "NazwaFontuLista" << QString() << "Courier New CE" << "Courier New CE";
    QTest::newRow("first run, amounts") << "DrukZlGr" << QString() << "0" << "0";
    // Written as "1", read only at the next start.
    QTest::newRow("first run, dates") << "DrukDaty" << QString() << "1" << "0";
    QTest::newRow("screen Arial") << "NazwaFontuScreen" << "Arial" << "Arial CE" << "Arial CE";
    QTest::newRow("printer Times") << "NazwaFontuPrinter" << "Times New Roman" << "Times New Roman CE" << "Times New Roman CE";
    QTest::newRow("list Courier") << "NazwaFontuLista" << "Courier New" << "Courier New CE" << "Courier New CE";
    QTest::newRow("list Arial stays") << "NazwaFontuLista" << "Arial" << "Arial" << "Arial";
    QTest::newRow("other font stays") << "NazwaFontuPrinter" << "DejaVu Sans" << "DejaVu Sans" << "DejaVu Sans";
    QTest::newRow("dates 2") << "DrukDaty" << "2" << "2" << "2";
    QTest::newRow("dates unreadable") << "DrukDaty" << "x" << "1" << "0";
}

void TestBase::readAtStart()
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

void TestBase::placement_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("stored"); // twips
    QTest::newRow("normal") << int(WindowState::Normal)
                            << QStringList{"Height=9000", "Left=150", "Top=300", "Width=12000", "WinState=0"};
    QTest::newRow("maximised") << int(WindowState::Maximised) << QStringList{"WinState=2"};
    QTest::newRow("minimised") << int(WindowState::Minimised) << QStringList{};
}

void TestBase::placement()
{
    QFETCH(int, state);
    QFETCH(QStringList, stored);
    savePlacement(WindowState(state), QRect(10, 20, 800, 600));
    QCOMPARE(loadSection(), stored);
    const Placement p = loadPlacement();
    QCOMPARE(p.normal.value_or(QRect()), state == int(WindowState::Normal) ? QRect(10, 20, 800, 600) : QRect());
    QCOMPARE(p.maximised, state == int(WindowState::Maximised));
}

void TestBase::damagedFileGivesDefaults()
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

QTEST_GUILESS_MAIN(TestBase)
#include "tst_base.moc"
