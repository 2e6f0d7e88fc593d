#include "RecordingDialogs.h"
#include "validation/Sprawdz.h"

#include <QTest>

class TestSprawdz : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fieldKinds_data();
    void fieldKinds();
    void keyFilter_data();
    void keyFilter();
};

void TestSprawdz::fieldKinds_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message"); // empty: accepted
    QTest::addColumn<QString>("reason");
    // Empty fields pass every kind; the required-field check is apart.
    for (const char *k : {"data", "cur", "num", "int", "kodpoczt", "nip", "pesel"})
        QTest::addRow("%s empty", k) << k << "   " << "" << "";
    QTest::newRow("postal code") << "kodpoczt" << "00-950" << "" << "";
    QTest::newRow("postal code short") << "kodpoczt" << "00950" << "'00950' nie jest kodem pocztowym."
                                       << "Nieprawidłowa ilość znaków";
    QTest::newRow("postal code dash misplaced") << "kodpoczt" << "0-0950" << "'0-0950' nie jest kodem pocztowym."
                                                << "Nieprawidłowy format";
    QTest::newRow("postal code letter") << "kodpoczt" << "00-9a0" << "'00-9a0' nie jest kodem pocztowym."
                                        << "Niedopuszczalny znak";
    QTest::newRow("letter before length") << "kodpoczt" << "0a" << "'0a' nie jest kodem pocztowym." << "Niedopuszczalny znak";
    QTest::newRow("NIP 3-3-2-2") << "nip" << "123-456-78-90" << "" << "";
    QTest::newRow("NIP 3-2-2-3") << "nip" << "123-45-67-890" << "" << "";
    QTest::newRow("NIP without dashes") << "nip" << "1234567890" << "'1234567890' nie jest numerem NIP-u."
                                        << "Nieprawidłowa ilość znaków";
    QTest::newRow("NIP trailing dash") << "nip" << "123-456-7890-" << "'123-456-7890-' nie jest numerem NIP-u."
                                       << "Nieprawidłowy format";
    QTest::newRow("NIP with blanks") << "nip" << "123 456 78 90" << "'123 456 78 90' nie jest numerem NIP-u."
                                     << "Niedopuszczalny znak";
    QTest::newRow("PESEL") << "pesel" << "44051401458" << "" << "";
    QTest::newRow("PESEL ten digits") << "pesel" << "4405140145" << "'4405140145' nie jest numerem PESEL."
                                      << "Nieprawidłowa ilość znaków";
    QTest::newRow("PESEL letter") << "pesel" << "4405140145X" << "'4405140145X' nie jest numerem PESEL."
                                  << "Niedopuszczalny znak";
    QTest::newRow("date") << "data" << "5-3-2026" << "" << "";
    QTest::newRow("not a leap year") << "data" << "29-02-2023" << "'29-02-2023' nie jest datą." << "";
    QTest::newRow("amount") << "cur" << "1 234,56" << "" << "";
    QTest::newRow("not an amount") << "cur" << "12,34,5" << "'12,34,5' nie jest kwotą." << "";
    QTest::newRow("number") << "num" << "-3,5" << "" << "";
    QTest::newRow("not a number") << "num" << "3x" << "'3x' nie jest liczbą." << "";
    QTest::newRow("whole") << "int" << "31" << "" << "";
    QTest::newRow("whole with zero fraction") << "int" << "31,00" << "" << "";
    QTest::newRow("fraction") << "int" << "31,5" << "'31,5' nie jest liczbą całkowitą." << "";
    QTest::newRow("whole not a number") << "int" << "x" << "'x' nie jest liczbą." << "";
    QTest::newRow("unknown kind") << "regon" << "123" << "Błąd" << "";
}

void TestSprawdz::fieldKinds()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    QFETCH(QString, message);
    QFETCH(QString, reason);
    const Sprawdz::Outcome o = Sprawdz::check(kind, text);
    QCOMPARE(o.ok, message.isEmpty());
    QCOMPARE(o.message, message);
    QCOMPARE(o.reason, reason);
}

void TestSprawdz::keyFilter_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<int>("beeps"); // only a quote in free text beeps
    QTest::newRow("amount") << 0 << "1 2,3.4-a" << "12,3.4-" << 0;
    QTest::newRow("number") << 1 << "-1,5e" << "-1,5" << 0;
    QTest::newRow("date") << 2 << "05-03/2026." << "05-03/2026" << 0;
    QTest::newRow("postal code") << 3 << "00-95a0/" << "00-950" << 0;
    QTest::newRow("whole number") << 4 << "12-3,4" << "1234" << 0;
    QTest::newRow("free text") << 5 << "Kowalski 'Max' \"S.A.\" ąę" << "Kowalski Max S.A. ąę" << 4;
    QTest::newRow("unknown mode") << 9 << "abc123" << "" << 0;
}

void TestSprawdz::keyFilter()
{
    QFETCH(int, mode);
    QFETCH(QString, typed);
    QFETCH(QString, kept);
    QFETCH(int, beeps);
    RecordingDialogs d;
    QString result;
    for (QChar c : typed)
        if (Sprawdz::FiltrKlawisza(c.unicode(), mode) != 0)
            result += c;
    QCOMPARE(result, kept);
    QCOMPARE(d.beeps, beeps);
    // Backspace and the empty key always pass.
    QCOMPARE(Sprawdz::FiltrKlawisza(8, mode), 8);
    QCOMPARE(Sprawdz::FiltrKlawisza(0, mode), 0);
}

QTEST_GUILESS_MAIN(TestSprawdz)
#include "tst_sprawdz.moc"
