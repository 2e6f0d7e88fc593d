#include "DateText.h"
#include "Money.h"
#include "RecordingDialogs.h"

#include <QTest>

#include <limits>

class TestSharedTypes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void moneyText_data();
    void moneyText();
    void moneyArithmeticIsExact();
    void amountFromOutside_data();
    void amountFromOutside();
    void parseDate_data();
    void parseDate();
    void errorReport();
};

void TestSharedTypes::moneyText_data()
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
    QTest::newRow("negative whole") << "-5" << "-50000" << "-5,00" << "-5,00";
    QTest::newRow("leading comma") << ",5" << "5000" << "0,50" << "0,50";
    QTest::newRow("half grosz up") << "0,005" << "50" << "0,01" << "0,01";
    QTest::newRow("below half grosz") << "0,0049" << "49" << "0,00" << "0,00";
    QTest::newRow("negative half away from zero") << "-0,015" << "-150" << "-0,02" << "-0,02";
    QTest::newRow("blanks around") << "  12,30 " << "123000" << "12,30" << "12,30";
    QTest::newRow("nbsp grouping") << QString::fromUtf8("1\u00a0234\u00a0567,00") << "12345670000" << "1 234 567,00"
                                   << "1234567,00";
    QTest::newRow("dots group, comma decimal") << "1.234.567,89" << "12345678900" << "1 234 567,89" << "1234567,89";
    QTest::newRow("exact hundred thousand") << "100000" << "1000000000" << "100 000,00" << "100000,00";
    QTest::newRow("limit") << "999 999 999 999,99" << "9999999999999900" << "999 999 999 999,99" << "999999999999,99";
    QTest::newRow("two commas") << "12,34,5" << "" << "" << "";
    QTest::newRow("empty") << "" << "" << "" << "";
    QTest::newRow("sign only") << "-" << "" << "" << "";
    QTest::newRow("five decimals") << "1,00001" << "" << "" << "";
    QTest::newRow("bad grouping") << "12 34,00" << "" << "" << "";
    QTest::newRow("currency word") << "12 zł" << "" << "" << "";
    QTest::newRow("overflow") << "99999999999999999999" << "" << "" << "";
}

void TestSharedTypes::moneyText()
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

void TestSharedTypes::moneyArithmeticIsExact()
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

void TestSharedTypes::amountFromOutside_data()
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

void TestSharedTypes::amountFromOutside()
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
    QTest::newRow("month 13") << "01-13-2026" << QDate();
    QTest::newRow("two-digit year") << "01-01-99" << QDate();
    QTest::newRow("iso order") << "2026-03-05" << QDate();
    QTest::newRow("mixed separators") << "05-03/2026" << QDate();
    QTest::newRow("empty") << "" << QDate();
    QTest::newRow("iso, a day that is none") << "2005-02-30" << QDate();
}

void TestSharedTypes::parseDate()
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
