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

private:
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
    for (int kind : {1, 3, 5}) { // a transfer, a postal order and a slip to an old ZUS account
        PaymentDocument d = sampleDocument(kind);
        d.zus.nrRachunku = 2;
        m_ids.insert(kind, DocumentStore::insert(Db(), d).value_or(0));
    }
    CloseDb();
}

void TestPrintCommand::printsToPdf_data()
{
    // In the arguments @firm is the firm, @1, @3 and @5 its documents of those kinds,
    // @pdf a new file, @old a file holding "stary".
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message"); // on standard error; empty: nothing there
    QTest::addColumn<int>("pages");       // of the PDF written
    const QStringList doc{"--firma", "@firm", "--id", "@1"}, toPdf = doc + QStringList{"--pdf", "@pdf"};
    // A new firm prints all four parts of a transfer, two to a sheet; one copy unless told.
    QTest::newRow("transfer, two copies") << toPdf + QStringList{"--kopie", "2"} << 0 << "" << 4;
    QTest::newRow("without the amount") << toPdf + QStringList{"--bez-kwoty"} << 0 << "" << 2;
    // Only a ZUS account closed since 2017 is told about; the hint to turn the sheet is not.
    QTest::newRow("ZUS") << QStringList{"--firma", "@firm", "--id", "@5", "--pdf", "@pdf"} << 0
                         << "zamknięto z końcem 2017" << 1;
    QTest::newRow("postal order, both sides") << QStringList{"--firma", "@firm", "--id", "@3", "--pdf", "@pdf"} << 0
                                              << "" << 2;
    QTest::newRow("nothing") << QStringList{} << 2 << "Użycie: zlecanki drukuj --firma" << 0;
    QTest::newRow("two outputs") << toPdf + QStringList{"--drukarka", "X"} << 2 << "albo drukarkę" << 0;
    QTest::newRow("no copies") << toPdf + QStringList{"--kopie", "0"} << 2 << "Nieprawidłowa wartość opcji --kopie" << 0;
    QTest::newRow("unknown option") << toPdf + QStringList{"--kolor"} << 2 << "Nieznana opcja: --kolor" << 0;
    QTest::newRow("no such firm") << QStringList{"--firma", "/nie/ma/firmy.zlc", "--id", "1", "--pdf", "@pdf"} << 1
                                  << "Nie ma pliku firmy" << 0;
    QTest::newRow("no such document") << QStringList{"--firma", "@firm", "--id", "999", "--pdf", "@pdf"} << 1
                                      << "Nie ma dokumentu numer 999" << 0;
    QTest::newRow("no such printer") << doc + QStringList{"--drukarka", "Nie-Ma-Takiej"} << 1
                                     << "Nie ma drukarki \"Nie-Ma-Takiej\"" << 0;
    QTest::newRow("the firm file, replacing") << doc + QStringList{"--pdf", "@firm", "--nadpisz"} << 1 << "bazą danych"
                                              << 0;
    QTest::newRow("an existing file") << doc + QStringList{"--pdf", "@old"} << 1 << "już istnieje" << 0;
    QTest::newRow("an existing file, replacing") << doc + QStringList{"--pdf", "@old", "--nadpisz"} << 0 << "" << 2;
}

// The firm is never changed; a refusal writes no file.
void TestPrintCommand::printsToPdf()
{
    QFETCH(QStringList, args);
    QFETCH(int, code);
    QFETCH(QString, message);
    QFETCH(int, pages);
    const QByteArray firmBefore = readFile(m_firm);
    const QString pdf = m_env->newPath(QStringLiteral("wydruk.pdf"));
    const QString old = m_env->newPath(QStringLiteral("stary.pdf"));
    QVERIFY(writeFile(old, "stary"));
    args.replaceInStrings(QStringLiteral("@firm"), m_firm);
    for (auto it = m_ids.cbegin(); it != m_ids.cend(); ++it)
        args.replaceInStrings(QStringLiteral("@%1").arg(it.key()), QString::number(it.value()));
    args.replaceInStrings(QStringLiteral("@pdf"), pdf);
    args.replaceInStrings(QStringLiteral("@old"), old);
    const TestEnv::Run r = m_env->run(QStringList{QStringLiteral("drukuj")} + args);
    QCOMPARE(r.code, code);
    QVERIFY2(message.isEmpty() ? r.err.isEmpty() : r.err.contains(message), qPrintable(r.err));
    QVERIFY(readFile(m_firm) == firmBefore);
    const QString target = args.contains(old) ? old : pdf;
    QCOMPARE(readFile(old) == "stary", target != old || code != 0);
    const PdfContent content = readPdf(target);
    QCOMPARE(content.pages, pages);
    // Characters in boxes are words of their own: compare without the blanks.
    QCOMPARE(content.text().remove(QLatin1Char(' ')).contains(QStringLiteral("1234,50")),
             pages > 0 && !args.contains(QStringLiteral("--bez-kwoty")));
}

QTEST_GUILESS_MAIN(TestPrintCommand)
#include "tst_printcommand.moc"
