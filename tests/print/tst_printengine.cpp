#include "AppState.h"
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
    void init();
    void copies_data();
    void copies();
    void marginsMoveEverything();
    void previewPages();
    void wordingWrappedInBox();

private:
    void printPdf(const QString &path, const QString &procedure = QStringLiteral("test"));
    std::unique_ptr<TestEnv> m_env;
    PrintEngine &engine = PrintEngine::instance();
    int m_runs = 0;
};

void TestPrintEngine::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    engine.setDriver(QStringLiteral("test"), [this](PrintEngine &e) {
        ++m_runs;
        e.UstawPoczatek(0, 0);
        e.UstawCzcionke(10, false, false, QStringLiteral("Arial CE"));
        e.DrukTekst(QStringLiteral("Znacznik"), 1440, 2880);
        e.KoniecStrony();
    });
}

void TestPrintEngine::init()
{
    m_runs = 0;
    appState().margLewy = appState().margPrawy = 0;
    SettingsStore::remove(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"));
}

void TestPrintEngine::copies_data()
{
    QTest::addColumn<bool>("makesCopies");
    QTest::addColumn<QString>("caller");
    QTest::addColumn<bool>("refused"); // the copies window cancelled, or no such printout
    QTest::addColumn<int>("runs");
    QTest::addColumn<QString>("procedure");
    QTest::newRow("printer makes the copies") << true << "" << false << 1 << "test";
    QTest::newRow("printer cannot count copies") << false << "" << false << 3 << "test";
    QTest::newRow("copies window cancelled") << false << "" << true << 0 << "test";
    QTest::newRow("from the preview's button") << false << "Cmd" << false << 3 << "test";
    QTest::newRow("unknown procedure") << true << "" << true << 0 << "dprzekaz";
}

void TestPrintEngine::copies()
{
    QFETCH(bool, makesCopies);
    QFETCH(QString, caller);
    QFETCH(bool, refused);
    QFETCH(int, runs);
    QFETCH(QString, procedure);
    const bool askedCopies = caller.isEmpty(); // the preview's own button prints as it was asked
    RecordingDialogs d;
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), 3);
    if (refused && procedure == u"test")
        d.printChoices << std::nullopt;
    engine.setPrinterFactory([makesCopies] { return std::make_unique<CountingPrinter>(makesCopies); });
    QCOMPARE(engine.Drukuj(procedure, 7, QPageLayout::Portrait, false, caller), !refused);
    QCOMPARE(m_runs, runs);
    QCOMPARE(d.saw(QStringLiteral("Nieznana procedura wydruku")), procedure == u"dprzekaz");
    QCOMPARE(!d.callsOf(QStringLiteral("copies")).isEmpty(), askedCopies);
    if (askedCopies)
        QCOMPARE(d.callsOf(QStringLiteral("copies")).first().text, QStringLiteral("3"));
    QCOMPARE(engine.job().parameter.toInt(), refused ? engine.job().parameter.toInt() : 7);
}

void TestPrintEngine::printPdf(const QString &path, const QString &procedure)
{
    engine.setPrinterFactory([path] { return std::make_unique<PdfSurface>(path, SafeOutput::Existing::Replace); });
    QVERIFY(engine.Drukuj(procedure, 1, QPageLayout::Portrait, false, QStringLiteral("Cmd")));
}

void TestPrintEngine::marginsMoveEverything()
{
    const int left = -3, top = 12; // mm
    RecordingDialogs d;
    const QString plain = m_env->newPath(QStringLiteral("bez.pdf"));
    const QString moved = m_env->newPath(QStringLiteral("z.pdf"));
    printPdf(plain);
    appState().margLewy = left;
    appState().margPrawy = top;
    printPdf(moved);
    const PdfWord a = readPdf(plain).find(QStringLiteral("Znacznik"));
    const PdfWord b = readPdf(moved).find(QStringLiteral("Znacznik"));
    QVERIFY(!a.box.isEmpty() && !b.box.isEmpty());
    QVERIFY(qAbs(a.box.left() - 1440) < 30); // the text starts where it was placed
    QVERIFY(qAbs(b.box.left() - a.box.left() - left * 56.7) < 2);
    QVERIFY(qAbs(b.box.top() - a.box.top() - top * 56.7) < 2);
}

void TestPrintEngine::previewPages()
{
    RecordingDialogs d;
    int shownPages = -1;
    engine.setPreviewSink([&](const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF size) {
        shownPages = int(pages.size());
        QCOMPARE(job.output, PrintEngine::Output::Preview);
        QCOMPARE(size, QSizeF(11906, 16838));
    });
    engine.setDriver(QStringLiteral("twopages"), [](PrintEngine &e) {
        e.DrukTekst(QStringLiteral("jeden"), 0, 0);
        e.KoniecStrony();
        e.DrukTekst(QStringLiteral("dwa"), 0, 0);
        e.KoniecStrony(); // no blank third page
    });
    // "Drukować na: Ekranie" offers the preview in the copies window; the user keeps it.
    SettingsStore::save(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa"), QStringLiteral("1"));
    QVERIFY(engine.Drukuj(QStringLiteral("twopages"), 1));
    SettingsStore::remove(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa"));
    QCOMPARE(shownPages, 2);
    engine.setPreviewSink(nullptr);
}

void TestPrintEngine::wordingWrappedInBox()
{
    RecordingDialogs d;
    const QString path = m_env->newPath(QStringLiteral("slownie.pdf"));
    qreal endY = 0;
    engine.setDriver(QStringLiteral("slownie"), [&](PrintEngine &e) {
        e.UstawCzcionke(12, true, false, QStringLiteral("Courier New CE"));
        e.DrukTekst(QStringLiteral("ZAŻÓŁĆ GĘŚLĄ JAŹŃ"), 0, 0);
        e.UstawCzcionke(8, false, true, QStringLiteral("Arial CE"));
        e.DrukTekst(QStringLiteral("zażółć gęślą jaźń"), 0, 500);
        e.UstawCzcionke(10, false, false, QStringLiteral("Arial CE"));
        qreal y = 1000;
        e.DrukSlownie(*Money::parse(u"1234,5"), 500, y, 6000);
        y += 400;
        e.DrukSlownie(*Money::parse(u"777 777 777 777,77"), 500, y, 1200);
        endY = y;
    });
    printPdf(path, QStringLiteral("slownie"));
    const PdfContent pdf = readPdf(path);
    // Polish letters in bold and italic come back from the PDF as printed.
    QVERIFY(pdf.text().startsWith(QStringLiteral("ZAŻÓŁĆ GĘŚLĄ JAŹŃ zażółć gęślą jaźń jeden tysiąc dwieście "
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
