#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "db/FirmDatabase.h"
#include "exchange/Elixir.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTest>

#include <memory>

class TestElixir : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void recordLine_data();
    void recordLine();
    void polishLettersInWindows1250();
    void fileStep();
    void senderLines();

private:
    std::unique_ptr<TestEnv> m_env;
};

void TestElixir::recordLine_data()
{
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("line");
    QTest::newRow("example") << "1234" << "110" << "20050307,110 1234  b c d e PLN  f Przelew  g ";
    QTest::newRow("half down to even") << "1234,5" << "110" << "20050307,110 1234  b c d e PLN  f Przelew  g ";
    QTest::newRow("half up to even") << "1235,5" << "110" << "20050307,110 1236  b c d e PLN  f Przelew  g ";
    QTest::newRow("over a half") << "1234,51" << "110" << "20050307,110 1235  b c d e PLN  f Przelew  g ";
    QTest::newRow("negative half") << "-2,5" << "110" << "20050307,110 -2  b c d e PLN  f Przelew  g ";
    QTest::newRow("empty argument") << "7" << "" << "20050307, 7  b c d e PLN  f Przelew  g ";
}

void TestElixir::recordLine()
{
    QFETCH(QString, amount);
    QFETCH(QString, a);
    QFETCH(QString, line);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    QVERIFY(Elixir::WriteElixirRecord(out, QDate(2005, 3, 7), *Money::parse(amount), a, QStringLiteral("f"),
                                      QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"),
                                      QStringLiteral("e"), QStringLiteral("g")));
    QCOMPARE(out.data(), line.toLatin1() + "\r\n");
}

void TestElixir::polishLettersInWindows1250()
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    Elixir::WriteElixirRecord(out, QDate(2026, 1, 2), Money::fromZlote(5), QStringLiteral("Łódź"), {}, {}, {}, {}, {},
                              QStringLiteral("€ ☃"));
    // Ł 0xA3, ó 0xF3, d, ź 0x9F; the euro sign is in the code page, the snowman is not.
    QVERIFY(out.data().startsWith(QByteArray("20260102,\xA3\xF3\x64\x9F 5 ")));
    QVERIFY(out.data().endsWith(QByteArray("\x80 ? \r\n")));
}

void TestElixir::fileStep()
{
    RecordingDialogs d;
    const QString folderA = m_env->root() + QStringLiteral("/firmaA/");
    const QString folderB = m_env->root() + QStringLiteral("/firmaB/");
    QVERIFY(FirmDatabase::create(folderA + QStringLiteral("a.zlc"), nullptr));
    QVERIFY(FirmDatabase::create(folderB + QStringLiteral("b.zlc"), nullptr));

    QVERIFY(OpenDb(folderA + QStringLiteral("a.zlc")));
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 0));
    QVERIFY(!QFile::exists(folderA + QStringLiteral("Przelew.pli"))); // switch off: nothing touched
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QFile a(folderA + QStringLiteral("Przelew.pli"));
    QVERIFY(a.exists());
    QCOMPARE(a.size(), 0);
    {
        QVERIFY(a.open(QIODevice::Append));
        a.write("stary wiersz\r\n");
        a.close();
    }
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QCOMPARE(a.size(), qint64(14)); // left as it was

    QVERIFY(OpenDb(folderB + QStringLiteral("b.zlc")));
    SettingsStore::loadSave(QStringLiteral("PlikElixir"), QStringLiteral("bank.pli"));
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QVERIFY(QFile::exists(folderB + QStringLiteral("bank.pli")));
    QVERIFY(!QFile::exists(folderB + QStringLiteral("Przelew.pli")));

    // A file that cannot be opened stops the issue with the common error report.
    SettingsStore::loadSave(QStringLiteral("PlikElixir"), QStringLiteral("brak/folderu/x.pli"));
    QVERIFY(!Elixir::issueStep(Db(), firmFile(), 1));
    QCOMPARE(d.beeps, 1);
    QVERIFY(d.saw(QStringLiteral("Przechwycony błąd:")));
    // Nor is it ever the firm's own file.
    SettingsStore::loadSave(QStringLiteral("PlikElixir"), QStringLiteral("b.zlc"));
    QVERIFY(!Elixir::issueStep(Db(), firmFile(), 1));
    QVERIFY(d.saw(QStringLiteral("otwartą bazą firmy")));
    SettingsStore::remove(SettingsStore::App, SettingsStore::Load, QStringLiteral("PlikElixir"));
    CloseDb();
}

void TestElixir::senderLines()
{
    RecordingDialogs d;
    const QString path = m_env->newPath(QStringLiteral("nadawca.zlc"));
    QVERIFY(FirmDatabase::create(path, nullptr));
    QVERIFY(OpenDb(path));
    QSqlQuery q(Db());
    QVERIFY(q.exec(QStringLiteral("INSERT INTO firma (NAZWA, NAZWA1, ULICA, NR_DOMU, NR_LOKALU, KOD, MIASTO, "
                                  "BANK_NAZWA1, BANK_KONTO1, firma_NIP) VALUES ('Przedsiębiorstwo Handlowo-Usługowe', "
                                  "'Kowalski i Wspólnicy', 'Piotrkowska', '12', '3a', '90-001', 'Łódź', 'PKO BP', "
                                  "'12 3456', '123-456-78-90')")));
    const Elixir::SenderLines s = Elixir::GatherSenderLines(Db());
    QCOMPARE(s.name, QStringLiteral("Przedsiębiorstwo Handlowo-Usługowe"));
    QCOMPARE(s.street, QStringLiteral("Piotrkowska 12 3a"));
    QCOMPARE(s.town, QStringLiteral("90-001 Łódź"));
    QCOMPARE(s.bankName, QStringLiteral("PKO BP"));
    QCOMPARE(s.nip, QStringLiteral("123-456-78-90"));
    QCOMPARE(Elixir::firmFolder(QStringLiteral("/dane/firma1/zlecanki.zlc")), QStringLiteral("/dane/firma1/"));
    CloseDb();
}

QTEST_GUILESS_MAIN(TestElixir)
#include "tst_elixir.moc"
