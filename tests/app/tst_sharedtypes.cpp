#include "DateText.h"
#include "Messages.h"
#include "Money.h"
#include "RecordingDialogs.h"

#include <QTest>

class TestSharedTypes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parseMoney_data();
    void parseMoney();
    void formatMoney_data();
    void formatMoney();
    void moneyArithmeticIsExact();
    void parseDate_data();
    void parseDate();
    void isoRoundTrip();
    void messageTable();
    void errorReport();
};

void TestSharedTypes::parseMoney_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<qint64>("units");
    QTest::newRow("grouped comma") << "1 234,56" << true << qint64(12345600);
    QTest::newRow("comma") << "1234,56" << true << qint64(12345600);
    QTest::newRow("dot") << "1234.56" << true << qint64(12345600);
    QTest::newRow("negative whole") << "-5" << true << qint64(-50000);
    QTest::newRow("half") << "0,5" << true << qint64(5000);
    QTest::newRow("leading comma") << ",5" << true << qint64(5000);
    QTest::newRow("four decimals") << "0,0001" << true << qint64(1);
    QTest::newRow("blanks around") << "  12,30 " << true << qint64(123000);
    QTest::newRow("nbsp grouping") << QString::fromUtf8("1\u00a0234\u00a0567,00") << true << qint64(12345670000);
    QTest::newRow("dots group, comma decimal") << "1.234.567,89" << true << qint64(12345678900);
    QTest::newRow("limit") << "999 999 999 999,99" << true << qint64(9999999999999900);
    QTest::newRow("two commas") << "12,34,5" << false << qint64(0);
    QTest::newRow("mixed mess") << "1.234.567,8.9" << false << qint64(0);
    QTest::newRow("letters") << "abc" << false << qint64(0);
    QTest::newRow("empty") << "" << false << qint64(0);
    QTest::newRow("sign only") << "-" << false << qint64(0);
    QTest::newRow("separator only") << "," << false << qint64(0);
    QTest::newRow("five decimals") << "1,00001" << false << qint64(0);
    QTest::newRow("bad grouping") << "12 34,00" << false << qint64(0);
    QTest::newRow("bad dot grouping") << "1.23,00" << false << qint64(0);
    QTest::newRow("currency word") << "12 zł" << false << qint64(0);
    QTest::newRow("overflow") << "99999999999999999999" << false << qint64(0);
}

void TestSharedTypes::parseMoney()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(qint64, units);
    const auto m = Money::parse(text);
    QCOMPARE(m.has_value(), ok);
    if (ok)
        QCOMPARE(m->units(), units);
}

void TestSharedTypes::formatMoney_data()
{
    QTest::addColumn<qint64>("units");
    QTest::addColumn<QString>("kwota");
    QTest::addColumn<QString>("plain");
    QTest::newRow("zero") << qint64(0) << "0,00" << "0,00";
    QTest::newRow("grosz") << qint64(100) << "0,01" << "0,01";
    QTest::newRow("thousands") << qint64(12345000) << "1 234,50" << "1234,50";
    QTest::newRow("millions") << qint64(12345678900) << "1 234 567,89" << "1234567,89";
    QTest::newRow("exact hundred thousand") << qint64(1000000000) << "100 000,00" << "100000,00";
    QTest::newRow("half grosz up") << qint64(50) << "0,01" << "0,01";
    QTest::newRow("below half grosz") << qint64(49) << "0,00" << "0,00";
    QTest::newRow("negative") << qint64(-12345000) << "-1 234,50" << "-1234,50";
    QTest::newRow("negative half away from zero") << qint64(-150) << "-0,02" << "-0,02";
    QTest::newRow("limit") << qint64(9999999999999900) << "999 999 999 999,99" << "999999999999,99";
}

void TestSharedTypes::formatMoney()
{
    QFETCH(qint64, units);
    QFETCH(QString, kwota);
    QFETCH(QString, plain);
    const Money m = Money::fromUnits(units);
    QCOMPARE(Kwota(m), kwota);
    QCOMPARE(m.plain(), plain);
    // What is shown reads back as the same number of grosze.
    QCOMPARE(Money::parse(kwota)->toGrosze(), m.toGrosze());
}

void TestSharedTypes::moneyArithmeticIsExact()
{
    // A tenth of a złoty added ten thousand times is exactly one thousand złoty,
    // which binary floating point does not give.
    Money sum;
    const Money tenth = *Money::parse(u"0,10");
    for (int i = 0; i < 10000; ++i)
        sum += tenth;
    QCOMPARE(sum, Money::fromZlote(1000));
    QCOMPARE(Money::parse(u"100,00")->operator-(*Money::parse(u"80,00")), Money::fromZlote(20));
    QCOMPARE(Money::fromUnits(-1).exactText(), QStringLiteral("-0.0001"));
    QCOMPARE(Money::fromUnits(125000).exactText(), QStringLiteral("12.5"));
}

void TestSharedTypes::parseDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("date");
    QTest::newRow("full") << "05-03-2026" << QDate(2026, 3, 5);
    QTest::newRow("short") << "5-3-2026" << QDate(2026, 3, 5);
    QTest::newRow("slashes") << "31/12/2025" << QDate(2025, 12, 31);
    QTest::newRow("leap day") << "29-02-2024" << QDate(2024, 2, 29);
    QTest::newRow("no leap day") << "29-02-2023" << QDate();
    QTest::newRow("century not leap") << "29-02-1900" << QDate();
    QTest::newRow("day 32") << "32-01-2026" << QDate();
    QTest::newRow("month 13") << "01-13-2026" << QDate();
    QTest::newRow("two-digit year") << "01-01-99" << QDate();
    QTest::newRow("iso order") << "2026-03-05" << QDate();
    QTest::newRow("mixed separators") << "05-03/2026" << QDate();
    QTest::newRow("letters") << "ab-cd-efgh" << QDate();
    QTest::newRow("empty") << "" << QDate();
}

void TestSharedTypes::parseDate()
{
    QFETCH(QString, text);
    QFETCH(QDate, date);
    const auto parsed = DateText::parse(text);
    QCOMPARE(parsed.value_or(QDate()), date);
    if (date.isValid())
        QCOMPARE(DateText::parse(DateText::format(date)).value_or(QDate()), date);
}

void TestSharedTypes::isoRoundTrip()
{
    QCOMPARE(DateText::format(QDate(2005, 3, 1)), QStringLiteral("01-03-2005"));
    QCOMPARE(DateText::toIso(QDate(2005, 3, 1)), QStringLiteral("2005-03-01"));
    QCOMPARE(DateText::fromIso(u"2005-03-01").value_or(QDate()), QDate(2005, 3, 1));
    QVERIFY(!DateText::fromIso(u"2005-02-30"));
    QCOMPARE(DateText::format(QDate()), QString());
}

void TestSharedTypes::messageTable()
{
    QCOMPARE(Msg(51), QStringLiteral("Błąd"));
    QCOMPARE(Msg(56), QStringLiteral("Jesteś pewien że chcesz usunąć - "));
    QCOMPARE(Msg(108), QStringLiteral("' nie jest numerem NIP-u."));
    QCOMPARE(Msg(999), QString());
}

void TestSharedTypes::errorReport()
{
    RecordingDialogs d;
    ErrorReport(QStringLiteral("Brak miejsca na dysku"), 61);
    QCOMPARE(d.beeps, 1);
    QCOMPARE(d.calls.size(), 1);
    QCOMPARE(d.calls[0].text, QStringLiteral("\nPrzechwycony błąd:\nBrak miejsca na dysku\nNumer: 61"));
    QCOMPARE(d.calls[0].title, QStringLiteral("Błąd"));
    QCOMPARE(d.calls[0].icon, Dialogs::Icon::Exclamation);
}

QTEST_GUILESS_MAIN(TestSharedTypes)
#include "tst_sharedtypes.moc"
