#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "validation/BankNames.h"
#include "validation/CheckDigits.h"
#include "validation/Sprawdz.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <functional>

// The checks of what a user types: field kinds by their format, numbers by their check
// digits, and the small commands that give them to scripts.
class TestCheckDigits : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void checks_data();
    void checks();
    void keyFilter_data();
    void keyFilter();
    void commandLine_data();
    void commandLine();
};

using Check = std::function<std::optional<QString>(const QString &)>;
Q_DECLARE_METATYPE(Check)

void TestCheckDigits::checks_data()
{
    QTest::addColumn<Check>("check");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem"); // empty: valid; else a part of the answer
    const Check nrb = CheckDigits::nrbProblem, nip = CheckDigits::nipProblem,
                pesel = CheckDigits::peselProblem, regon = CheckDigits::regonProblem,
                sortCode = CheckDigits::sortCodeProblem;
    // A field kind's answer as "message|reason".
    const auto field = [](const char *kind) -> Check {
        return [kind](const QString &t) -> std::optional<QString> {
            const Sprawdz::Outcome o = Sprawdz::check(QLatin1String(kind), t);
            return o.ok ? std::nullopt : std::optional(o.message + QLatin1Char('|') + o.reason);
        };
    };
    // The ZUS contribution account checked against the firm's NIP.
    const auto nrs = [](const char *firmNip) -> Check {
        return [firmNip](const QString &t) { return CheckDigits::nrsProblem(t, QLatin1String(firmNip)); };
    };
    // The tax micro-account of a NIP or a PESEL, grouped: empty when refused.
    const auto micro = [](bool isPesel) -> Check {
        return [isPesel](const QString &t) {
            const auto account = CheckDigits::taxMicroAccount(t, isPesel);
            return std::optional(account ? CheckDigits::groupAccount(*account) : QString());
        };
    };
    // The bank an account belongs to: empty when not known.
    const Check bank = [](const QString &t) { return std::optional(BankNames::bankName(t)); };

    // Empty fields pass every kind; the required-field check is apart.
    for (const char *k : {"data", "cur", "num", "int", "kodpoczt", "nip", "pesel"})
        QTest::addRow("%s empty", k) << field(k) << "   " << "";
    QTest::newRow("postal code") << field("kodpoczt") << "00-950" << "";
    QTest::newRow("postal code short") << field("kodpoczt") << " 00950 "
                                       << "'00950' nie jest kodem pocztowym.|Nieprawidłowa ilość znaków";
    QTest::newRow("postal code, dash misplaced") << field("kodpoczt") << "0-0950" << "|Nieprawidłowy format";
    QTest::newRow("letter before length") << field("kodpoczt") << "0a" << "pocztowym.|Niedopuszczalny znak";
    QTest::newRow("NIP 3-3-2-2") << field("nip") << "123-456-78-90" << "";
    QTest::newRow("NIP 3-2-2-3") << field("nip") << "123-45-67-890" << "";
    QTest::newRow("NIP without dashes") << field("nip") << "1234567890" << "NIP-u.|Nieprawidłowa ilość znaków";
    QTest::newRow("NIP trailing dash") << field("nip") << "123-456-7890-" << "NIP-u.|Nieprawidłowy format";
    QTest::newRow("NIP with blanks") << field("nip") << "123 456 78 90" << "NIP-u.|Niedopuszczalny znak";
    QTest::newRow("PESEL field") << field("pesel") << "44051401458" << "";
    QTest::newRow("PESEL ten digits") << field("pesel") << "4405140145" << "PESEL.|Nieprawidłowa ilość znaków";
    QTest::newRow("PESEL field letter") << field("pesel") << "4405140145X" << "PESEL.|Niedopuszczalny znak";
    QTest::newRow("date") << field("data") << "5-3-2026" << "";
    QTest::newRow("not a leap year") << field("data") << "29-02-2023" << "'29-02-2023' nie jest datą.|";
    QTest::newRow("amount") << field("cur") << "1 234,56" << "";
    QTest::newRow("not an amount") << field("cur") << "12,34,5" << "'12,34,5' nie jest kwotą.|";
    QTest::newRow("number") << field("num") << "-3,5" << "";
    QTest::newRow("not a number") << field("num") << "3x" << "'3x' nie jest liczbą.|";
    QTest::newRow("whole") << field("int") << "31" << "";
    QTest::newRow("whole with zero fraction") << field("int") << "31,00" << "";
    QTest::newRow("fraction") << field("int") << "31,5" << "'31,5' nie jest liczbą całkowitą.|";
    QTest::newRow("whole not a number") << field("int") << "x" << "'x' nie jest liczbą.|";
    QTest::newRow("unknown kind") << field("regon") << "123" << "Błąd|";

    QTest::newRow("old ZUS account") << nrb << "83101010230000261395100000" << "";
    QTest::newRow("typed with PL and blanks") << nrb << "PL61 1090 1014 0000 0712 1981 2874" << "";
    QTest::newRow("dashes") << nrb << "13-1020-2964-0000-1234-5678-9012" << "";
    QTest::newRow("micro-account") << nrb << "56 1010 0071 2222 7831 9163 6600" << "";
    QTest::newRow("one digit mistyped") << nrb << "13102029640000123456789013" << "ma błędne cyfry kontrolne";
    QTest::newRow("sort code's eighth digit wrong")
        << nrb << "85102029650000123456789012" << "banku 10202965 ma błędną cyfrę kontrolną";
    QTest::newRow("25 digits") << nrb << "1310202964000012345678901" << "ma 25 cyfr zamiast 26.";
    QTest::newRow("letter") << nrb << "13102029640000I23456789012" << "może zawierać tylko cyfry";
    QTest::newRow("sort code") << sortCode << "10202964" << "";
    QTest::newRow("sort code wrong") << sortCode << "10202965" << "banku 10202965 ma błędną cyfrę";
    QTest::newRow("NIP") << nip << "783-191-63-66" << "";
    QTest::newRow("NIP with PL") << nip << "PL7831916366" << "";
    QTest::newRow("NIP digit wrong") << nip << "783-191-63-67" << "NIP ma błędną cyfrę kontrolną";
    QTest::newRow("NIP summing to 10") << nip << "1234567890" << "suma kontrolna daje 10";
    QTest::newRow("NIP short") << nip << "783191636" << "NIP ma 9 cyfr zamiast 10.";
    QTest::newRow("PESEL") << pesel << "44051401458" << "";
    QTest::newRow("PESEL digit wrong") << pesel << "44051401459" << "PESEL ma błędną cyfrę kontrolną";
    QTest::newRow("PESEL letter") << pesel << "4405140145X" << "PESEL może zawierać tylko cyfry.";
    QTest::newRow("REGON 9") << regon << "123456785" << "";
    QTest::newRow("REGON 9 remainder 10") << regon << "000331501" << "";
    QTest::newRow("REGON 9 wrong") << regon << "123456786" << "REGON ma błędną cyfrę kontrolną";
    QTest::newRow("REGON 14") << regon << "12345678512347" << "";
    QTest::newRow("REGON 14 wrong") << regon << "12345678512346" << "REGON ma błędną cyfrę kontrolną";
    QTest::newRow("REGON 10 digits") << regon << "1234567851" << "REGON ma 10 cyfr zamiast 9 lub 14.";
    QTest::newRow("NRS firm's own") << nrs("783-191-63-66") << "25 6000 0002 0260 0178 3191 6366" << "";
    QTest::newRow("NRS, firm without NIP") << nrs("") << "31 6000 0002 0260 0111 1111 1111" << "";
    QTest::newRow("NRS of another tail")
        << nrs("783-191-63-66") << "31 6000 0002 0260 0111 1111 1111" << "rachunku składkowego to nie NIP";
    QTest::newRow("NRS not ZUS")
        << nrs("7831916366") << "56 1010 0071 2222 7831 9163 6600" << "cyfry 60000002026";
    QTest::newRow("NRS digit mistyped")
        << nrs("7831916366") << "25 6000 0002 0260 0178 3191 6367" << "składkowy ZUS ma błędne cyfry kontrolne";
    QTest::newRow("NRS short") << nrs("") << "25 6000 0002 0260 0178 3191 636" << "ma 25 cyfr zamiast 26.";
    QTest::newRow("micro-account, NIP") << micro(false) << "783-191-63-66" << "56 1010 0071 2222 7831 9163 6600";
    QTest::newRow("micro-account, PESEL") << micro(true) << "44051401458" << "69 1010 0071 2221 4405 1401 4580";
    QTest::newRow("micro-account, NIP wrong") << micro(false) << "7831916367" << "";
    QTest::newRow("micro-account, PESEL as NIP") << micro(false) << "44051401458" << "";
    QTest::newRow("bank PKO BP") << bank << "PL13 1020 2964 0000 1234 5678 9012" << "PKO Bank Polski";
    QTest::newRow("bank, micro-account") << bank << "56 1010 0071 2222 7831 9163 6600" << "Narodowy Bank Polski";
    QTest::newRow("co-operative bank") << bank << "12 8001 0000 0000 0000 0000 0000" << "";
    QTest::newRow("bank of too short") << bank << "13 10" << "";
}

void TestCheckDigits::checks()
{
    QFETCH(Check, check);
    QFETCH(QString, text);
    QFETCH(QString, problem);
    const QString got = check(text).value_or(QString());
    QVERIFY2(problem.isEmpty() ? got.isEmpty() : got.contains(problem), qPrintable(got));
}

void TestCheckDigits::keyFilter_data()
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

void TestCheckDigits::keyFilter()
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

// The small commands: checks, micro-accounts and amounts in words.
void TestCheckDigits::commandLine_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("account") << QStringList{"sprawdz-sume", "nrb", "PL61 1090 1014 0000 0712 1981 2874"} << 0
                             << "OK\n";
    QTest::newRow("account mistyped") << QStringList{"sprawdz-sume", "nrb", "61109010140000071219812875"} << 1
                                      << "Numer rachunku ma błędne cyfry kontrolne - sprawdź go.\n";
    QTest::newRow("REGON") << QStringList{"sprawdz-sume", "regon", "123456786"} << 1
                           << "REGON ma błędną cyfrę kontrolną - sprawdź go.\n";
    QTest::newRow("unknown kind") << QStringList{"sprawdz-sume", "iban", "1"} << 2 << "";
    QTest::newRow("micro-account") << QStringList{"mikrorachunek", "783-191-63-66"} << 0
                                   << "56 1010 0071 2222 7831 9163 6600\n";
    QTest::newRow("micro-account of a PESEL")
        << QStringList{"mikrorachunek", "44051401458"} << 0 << "69 1010 0071 2221 4405 1401 4580\n";
    QTest::newRow("NIP mistyped") << QStringList{"mikrorachunek", "7831916367"} << 1
                                  << "NIP ma błędną cyfrę kontrolną - sprawdź go.\n";
    QTest::newRow("words") << QStringList{"slownie", "1234,50"} << 0
                           << "jeden tysiąc dwieście trzydzieści cztery złote pięćdziesiąt groszy\n";
    QTest::newRow("over the limit") << QStringList{"slownie", "1000000000000"} << 1
                                    << "Kwota - 1000000000000 - jest za duża. Nie potrafię przedstawić jej słownie\n"
                                       "1000000000000\n";
    QTest::newRow("not an amount") << QStringList{"slownie", "12,34,5"} << 2 << "";
    QTest::newRow("postal code ok") << QStringList{"sprawdz", "kodpoczt", "00-950"} << 0 << "OK\n";
    QTest::newRow("postal code wrong") << QStringList{"sprawdz", "kodpoczt", "00-9a0"} << 1
                                       << "'00-9a0' nie jest kodem pocztowym.\nNiedopuszczalny znak\n";
    QTest::newRow("unknown field kind") << QStringList{"sprawdz", "regon", "1"} << 2 << "";
}

void TestCheckDigits::commandLine()
{
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    if (!QFile::exists(programPath()))
        QSKIP("the program is not built in this configuration");
    QProcess p;
    p.start(programPath(), args);
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), exitCode);
    QCOMPARE(QString::fromUtf8(p.readAllStandardOutput()), output);
}

QTEST_GUILESS_MAIN(TestCheckDigits)
#include "tst_checkdigits.moc"
