#include "TestEnv.h"
#include "validation/BankNames.h"
#include "validation/CheckDigits.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <functional>

class TestCheckDigits : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void checks_data();
    void checks();
    void microAccount_data();
    void microAccount();
    void commandLine_data();
    void commandLine();
};

using Check = std::function<std::optional<QString>(const QString &)>;
Q_DECLARE_METATYPE(Check)

void TestCheckDigits::checks_data()
{
    QTest::addColumn<Check>("check");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem"); // empty: valid
    const Check nrb = CheckDigits::nrbProblem, nip = CheckDigits::nipProblem,
                pesel = CheckDigits::peselProblem, regon = CheckDigits::regonProblem,
                sortCode = CheckDigits::sortCodeProblem;
    // The ZUS contribution account checked against the firm's NIP.
    const auto nrs = [](const char *firmNip) -> Check {
        return [firmNip](const QString &t) { return CheckDigits::nrsProblem(t, QLatin1String(firmNip)); };
    };
    // The bank an account belongs to, in the column of the problem: empty when not known.
    const Check bank = [](const QString &t) { return std::optional(BankNames::bankName(t)); };
    const QString badDigits = QStringLiteral("Numer rachunku ma błędne cyfry kontrolne - sprawdź go.");
    QTest::newRow("old ZUS account") << nrb << "83101010230000261395100000" << "";
    QTest::newRow("typed with PL and blanks") << nrb << "PL61 1090 1014 0000 0712 1981 2874" << "";
    QTest::newRow("dashes") << nrb << "13-1020-2964-0000-1234-5678-9012" << "";
    QTest::newRow("micro-account") << nrb << "56 1010 0071 2222 7831 9163 6600" << "";
    QTest::newRow("one digit mistyped") << nrb << "13102029640000123456789013" << badDigits;
    QTest::newRow("two digits swapped") << nrb << "13102029640000213456789012" << badDigits;
    QTest::newRow("sort code's eighth digit wrong")
        << nrb << "85102029650000123456789012"
        << "Numer rozliczeniowy banku 10202965 ma błędną cyfrę kontrolną - sprawdź numer rachunku.";
    QTest::newRow("25 digits") << nrb << "1310202964000012345678901"
                               << "Numer rachunku ma 25 cyfr zamiast 26.";
    QTest::newRow("letter") << nrb << "13102029640000I23456789012"
                            << "Numer rachunku może zawierać tylko cyfry (oraz PL, spacje i myślniki).";
    QTest::newRow("sort code") << sortCode << "10202964" << "";
    QTest::newRow("ZUS sort code") << sortCode << "60000002" << "";
    QTest::newRow("sort code wrong")
        << sortCode << "10202965"
        << "Numer rozliczeniowy banku 10202965 ma błędną cyfrę kontrolną - sprawdź numer rachunku.";
    QTest::newRow("NIP") << nip << "783-191-63-66" << "";
    QTest::newRow("NIP 3-2-2-3") << nip << "526-02-50-995" << "";
    QTest::newRow("NIP with PL") << nip << "PL7831916366" << "";
    QTest::newRow("NIP digit wrong") << nip << "783-191-63-67"
                                     << "NIP ma błędną cyfrę kontrolną - sprawdź go.";
    QTest::newRow("NIP summing to 10") << nip << "1234567890"
                                       << "Taki NIP nie istnieje: suma kontrolna daje 10 - sprawdź go.";
    QTest::newRow("NIP short") << nip << "783191636"
                               << "Numer NIP ma 9 cyfr zamiast 10.";
    QTest::newRow("PESEL") << pesel << "44051401458" << "";
    QTest::newRow("PESEL digit wrong") << pesel << "44051401459"
                                       << "PESEL ma błędną cyfrę kontrolną - sprawdź go.";
    QTest::newRow("PESEL letter") << pesel << "4405140145X"
                                  << "Numer PESEL może zawierać tylko cyfry.";
    QTest::newRow("REGON 9") << regon << "123456785" << "";
    QTest::newRow("REGON 9 remainder 10") << regon << "000331501" << "";
    QTest::newRow("REGON 9 wrong") << regon << "123456786"
                                   << "REGON ma błędną cyfrę kontrolną - sprawdź go.";
    QTest::newRow("REGON 14") << regon << "12345678512347" << "";
    QTest::newRow("REGON 14 wrong") << regon << "12345678512346"
                                    << "REGON ma błędną cyfrę kontrolną - sprawdź go.";
    QTest::newRow("REGON 10 digits") << regon << "1234567851"
                                     << "Numer REGON ma 10 cyfr zamiast 9 lub 14.";
    QTest::newRow("NRS firm's own") << nrs("783-191-63-66") << "25 6000 0002 0260 0178 3191 6366" << "";
    QTest::newRow("NRS, firm without NIP") << nrs("") << "31 6000 0002 0260 0111 1111 1111" << "";
    QTest::newRow("NRS of another tail")
        << nrs("783-191-63-66") << "31 6000 0002 0260 0111 1111 1111"
        << "Ostatnie dziesięć cyfr rachunku składkowego to nie NIP firmy - sprawdź go "
           "(płatnik bez NIP-u ma inne końcowe cyfry).";
    QTest::newRow("NRS not ZUS")
        << nrs("7831916366") << "56 1010 0071 2222 7831 9163 6600"
        << "Rachunek składkowy ZUS ma po cyfrach kontrolnych cyfry 60000002026 (numer ZUS i 026) - sprawdź go.";
    QTest::newRow("NRS digit mistyped") << nrs("7831916366") << "25 6000 0002 0260 0178 3191 6367"
                                        << "Rachunek składkowy ZUS ma błędne cyfry kontrolne - sprawdź go.";
    QTest::newRow("NRS short") << nrs("") << "25 6000 0002 0260 0178 3191 636"
                               << "Numer rachunku ma 25 cyfr zamiast 26.";
    QTest::newRow("bank PKO BP") << bank << "PL13 1020 2964 0000 1234 5678 9012" << "PKO Bank Polski";
    QTest::newRow("bank mBank") << bank << "27114020040000300201355387" << "mBank";
    QTest::newRow("bank of a micro-account") << bank << "56 1010 0071 2222 7831 9163 6600" << "Narodowy Bank Polski";
    QTest::newRow("co-operative bank") << bank << "12 8001 0000 0000 0000 0000 0000" << "";
    QTest::newRow("bank of too short") << bank << "13 10" << "";
}

void TestCheckDigits::checks()
{
    QFETCH(Check, check);
    QFETCH(QString, text);
    QFETCH(QString, problem);
    QCOMPARE(check(text).value_or(QString()), problem);
}

void TestCheckDigits::microAccount_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("isPesel");
    QTest::addColumn<QString>("grouped"); // empty: refused
    QTest::newRow("NIP") << "783-191-63-66" << false << "56 1010 0071 2222 7831 9163 6600";
    QTest::newRow("NIP of ones") << "1111111111" << false << "74 1010 0071 2222 1111 1111 1100";
    QTest::newRow("PESEL") << "44051401458" << true << "69 1010 0071 2221 4405 1401 4580";
    QTest::newRow("NIP digit wrong") << "7831916367" << false << "";
    QTest::newRow("PESEL given as NIP") << "44051401458" << false << "";
}

void TestCheckDigits::microAccount()
{
    QFETCH(QString, identifier);
    QFETCH(bool, isPesel);
    QFETCH(QString, grouped);
    const auto account = CheckDigits::taxMicroAccount(identifier, isPesel);
    QCOMPARE(account ? CheckDigits::groupAccount(*account) : QString(), grouped);
    if (account)
        QVERIFY(!CheckDigits::nrbProblem(*account));
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
