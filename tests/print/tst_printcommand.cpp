#include "documents/Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"

#include <QFile>
#include <QTest>

#include <memory>

// "zlecanki drukuj": one stored document printed from the command line, no window, no question.
class TestPrintCommand : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void printsToPdf_data();
    void printsToPdf();
    void refusesWrongUse_data();
    void refusesWrongUse();

private:
    TestEnv::Run run(const QStringList &args) { return m_env->run(QStringList{QStringLiteral("drukuj")} + args); }
    std::unique_ptr<TestEnv> m_env;
    QString m_firm;
    QHash<int, qint32> m_ids; // by kind
};

void TestPrintCommand::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    if (!QFile::exists(programPath()))
        QSKIP("the program is not built in this configuration");
    m_firm = m_env->newPath(QStringLiteral("firma.zlc"));
    RecordingDialogs quiet;
    QVERIFY(openNewFirm(m_firm, sampleFirm()));
    for (int kind : {1, 3, 5}) {
        PaymentDocument d = sampleDocument(kind);
        d.zus.nrRachunku = 2;
        m_ids.insert(kind, DocumentStore::insert(Db(), d).value_or(0));
    }
    CloseDb();
}

void TestPrintCommand::printsToPdf_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("pages");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    // A new firm prints all four parts of a transfer, two to a sheet; one copy unless told.
    QTest::newRow("transfer, two copies") << 1 << QStringList{"--kopie", "2"} << 4
                                          << QStringList{"Polecenie przelewu", "1234,50"} << QStringList{};
    QTest::newRow("without the amount")
        << 1 << QStringList{"--bez-kwoty"} << 2 << QStringList{"kwota"} << QStringList{"1234,50", "tysiąc"};
    QTest::newRow("ZUS") << 5 << QStringList{} << 1 << QStringList{"Zakład Ubezpieczeń Społecznych"} << QStringList{};
    QTest::newRow("postal order, both sides")
        << 3 << QStringList{} << 2 << QStringList{"Rodzaj zobowiązania:"} << QStringList{};
}

void TestPrintCommand::printsToPdf()
{
    QFETCH(int, kind);
    QFETCH(QStringList, options);
    QFETCH(int, pages);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    const QString pdf = m_env->newPath(QStringLiteral("wydruk.pdf"));
    const TestEnv::Run r = run(
        QStringList{"--firma", m_firm, "--id", QString::number(m_ids.value(kind)), "--pdf", pdf} + options);
    QCOMPARE(r.code, 0);
    // Nothing asked; only a ZUS account closed since 2017 is told about.
    const QString told = kind == 5 ? QStringLiteral("zamknięto z końcem 2017") : QString();
    QVERIFY2(told.isEmpty() ? r.err.isEmpty() : r.err.contains(told), qPrintable(r.err));
    QVERIFY(r.out.contains(QStringLiteral("wydruk.pdf")));
    const PdfContent content = readPdf(pdf);
    QCOMPARE(content.pages, pages);
    // Characters in boxes are words of their own: compare without the blanks.
    const QString packed = content.text().remove(QLatin1Char(' '));
    for (const QString &p : present)
        QVERIFY2(packed.contains(QString(p).remove(QLatin1Char(' '))), qPrintable(p));
    for (const QString &a : absent)
        QVERIFY2(!packed.contains(QString(a).remove(QLatin1Char(' '))), qPrintable(a));
}

void TestPrintCommand::refusesWrongUse_data()
{
    // In the arguments @firm is the firm, @id its transfer, @pdf a new file, @old a file holding "stary".
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    const QStringList doc{"--firma", "@firm", "--id", "@id"}, toPdf = doc + QStringList{"--pdf", "@pdf"};
    QTest::newRow("nothing") << QStringList{} << 2 << "Użycie: zlecanki drukuj --firma";
    QTest::newRow("two outputs") << toPdf + QStringList{"--drukarka", "X"} << 2 << "albo drukarkę";
    QTest::newRow("no copies") << toPdf + QStringList{"--kopie", "0"} << 2 << "Nieprawidłowa wartość opcji --kopie";
    QTest::newRow("unknown option") << toPdf + QStringList{"--kolor"} << 2 << "Nieznana opcja: --kolor";
    QTest::newRow("no such firm") << QStringList{"--firma", "/nie/ma/firmy.zlc", "--id", "1", "--pdf", "@pdf"} << 1
                                  << "Nie ma pliku firmy";
    QTest::newRow("no such document") << QStringList{"--firma", "@firm", "--id", "999", "--pdf", "@pdf"} << 1
                                      << "Nie ma dokumentu numer 999";
    QTest::newRow("no such printer") << doc + QStringList{"--drukarka", "Nie-Ma-Takiej"} << 1
                                     << "Nie ma drukarki \"Nie-Ma-Takiej\"";
    QTest::newRow("the firm file, replacing") << doc + QStringList{"--pdf", "@firm", "--nadpisz"} << 1 << "bazą danych";
    QTest::newRow("an existing file") << doc + QStringList{"--pdf", "@old"} << 1 << "już istnieje";
    QTest::newRow("an existing file, replacing") << doc + QStringList{"--pdf", "@old", "--nadpisz"} << 0 << "";
}

// Refused without a file written and the firm untouched.
void TestPrintCommand::refusesWrongUse()
{
    QFETCH(QStringList, args);
    QFETCH(int, code);
    QFETCH(QString, message);
    const QByteArray firmBefore = readFile(m_firm);
    const QString pdf = m_env->newPath(QStringLiteral("nie.pdf"));
    const QString old = m_env->newPath(QStringLiteral("stary.pdf"));
    QVERIFY(writeFile(old, "stary"));
    args.replaceInStrings(QStringLiteral("@firm"), m_firm);
    args.replaceInStrings(QStringLiteral("@id"), QString::number(m_ids.value(1)));
    args.replaceInStrings(QStringLiteral("@pdf"), pdf);
    args.replaceInStrings(QStringLiteral("@old"), old);
    const TestEnv::Run r = run(args);
    QCOMPARE(r.code, code);
    QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QVERIFY(!QFile::exists(pdf));
    QVERIFY(readFile(m_firm) == firmBefore);
    if (args.contains(old))
        QCOMPARE(readFile(old) == "stary", code != 0);
}

QTEST_GUILESS_MAIN(TestPrintCommand)
#include "tst_printcommand.moc"
