#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "print/PrintEngine.h"

#include <QTest>

#include <memory>

namespace {

// A printer that only counts: whether it makes copies itself, and how often it is begun.
class CountingPrinter : public PrintSurface {
public:
    explicit CountingPrinter(bool makesCopies) : m_makesCopies(makesCopies) {}
    bool begin(QPainter &painter) override { return painter.begin(&m_picture); }
    bool newPage(QPainter &) override { return true; }
    bool end(QPainter &painter) override { return painter.end(); }
    QSizeF pageSizeTwips() const override { return {11906, 16838}; }
    bool setCopyCount(int) override { return m_makesCopies; }
    bool setOrientation(QPageLayout::Orientation) override { return true; }

private:
    bool m_makesCopies;
    QPicture m_picture;
};

} // namespace

class TestPrintEngine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void copies_data();
    void copies();
    void wordingWrappedInBox();

private:
    std::unique_ptr<TestEnv> m_env;
    PrintEngine &engine = PrintEngine::instance();
    int m_runs = 0;
};

void TestPrintEngine::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    engine.setDriver(QStringLiteral("test"), [this](PrintEngine &e) {
        ++m_runs;
        e.DrukTekst(QStringLiteral("Znacznik"), 1440, 2880);
        e.KoniecStrony();
    });
}

void TestPrintEngine::copies_data()
{
    QTest::addColumn<bool>("makesCopies");
    QTest::addColumn<bool>("refused"); // the copies window cancelled, or no such printout
    QTest::addColumn<int>("runs");
    QTest::addColumn<QString>("procedure");
    QTest::newRow("printer makes the copies") << true << false << 1 << "test";
    QTest::newRow("printer cannot count copies") << false << false << 3 << "test";
    QTest::newRow("copies window cancelled") << false << true << 0 << "test";
    QTest::newRow("unknown procedure") << true << true << 0 << "dprzekaz";
}

void TestPrintEngine::copies()
{
    QFETCH(bool, makesCopies);
    QFETCH(bool, refused);
    QFETCH(int, runs);
    QFETCH(QString, procedure);
    RecordingDialogs d;
    m_runs = 0;
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), 3);
    if (refused && procedure == u"test")
        d.printChoices << std::nullopt;
    engine.setPrinterFactory([makesCopies] { return std::make_unique<CountingPrinter>(makesCopies); });
    QCOMPARE(engine.Drukuj(procedure, 7, QPageLayout::Portrait, false, QString()), !refused);
    QCOMPARE(m_runs, runs);
    QCOMPARE(d.saw(QStringLiteral("Nieznana procedura wydruku")), procedure == u"dprzekaz");
    QCOMPARE(d.callsOf(QStringLiteral("copies")).value(0).text, QStringLiteral("3"));
}

void TestPrintEngine::wordingWrappedInBox()
{
    RecordingDialogs d;
    const QString path = m_env->newPath(QStringLiteral("slownie.pdf"));
    qreal endY = 0;
    engine.setDriver(QStringLiteral("slownie"), [&](PrintEngine &e) {
        e.UstawCzcionke(12, true, false, QStringLiteral("Courier New CE"));
        e.DrukTekst(QStringLiteral("ZAŻÓŁĆ GĘŚLĄ JAŹŃ"), 0, 0);
        e.UstawCzcionke(10, false, false, QStringLiteral("Arial CE"));
        qreal y = 1000;
        e.DrukSlownie(*Money::parse(u"1234,5"), 500, y, 6000);
        y += 400;
        e.DrukSlownie(*Money::parse(u"777 777 777 777,77"), 500, y, 1200);
        endY = y;
    });
    engine.setPrinterFactory([path] { return std::make_unique<PdfSurface>(path, SafeOutput::Existing::Replace); });
    QVERIFY(engine.Drukuj(QStringLiteral("slownie"), 1, QPageLayout::Portrait, false, QStringLiteral("Cmd")));
    const PdfContent pdf = readPdf(path);
    // Polish letters in bold come back from the PDF as printed.
    QVERIFY(pdf.text().startsWith(QStringLiteral("ZAŻÓŁĆ GĘŚLĄ JAŹŃ jeden tysiąc dwieście "
                                                 "trzydzieści cztery złote pięćdziesiąt groszy siedemset")));
    // The long wording fills five lines of its narrow box and the user is told the rest is missing.
    QVERIFY(d.saw(QStringLiteral("Druk słownie - Za mało wierszy!")));
    QVERIFY(!pdf.text().contains(QStringLiteral("groszy siedemdziesiąt siedem groszy")));
    for (const PdfWord &w : pdf.words)
        QVERIFY2(w.box.right() <= 500 + 6000 + 20, qPrintable(w.text));
    QVERIFY(endY > 1400 + 4 * 200);
}

QTEST_MAIN(TestPrintEngine)
#include "tst_printengine.moc"
