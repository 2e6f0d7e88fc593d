#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "TestWidgets.h"
#include "print/PrintEngine.h"
#include "print/ui/frmDrukPreview.h"
#include "print/ui/frmPrintkopie.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QDir>
#include <QTest>

#include <memory>

class TestPreview : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pagesAndCounter();
    void copiesWindow_data();
    void copiesWindow();

private:
    std::unique_ptr<frmDrukPreview> preview(const QString &procedure);
    std::unique_ptr<TestEnv> m_env;
    int m_runs = 0;
};

void TestPreview::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    for (const char *word : {"trzy", "raport"}) {
        PrintEngine::instance().setDriver(QLatin1String(word), [this](PrintEngine &e) {
            ++m_runs;
            for (int page = 1; page <= 3; ++page) {
                e.DrukTekst(QStringLiteral("Strona%1").arg(page), 1000, 1000);
                e.KoniecStrony();
            }
        });
    }
}

std::unique_ptr<frmDrukPreview> TestPreview::preview(const QString &procedure)
{
    std::unique_ptr<frmDrukPreview> window;
    PrintEngine::instance().setPreviewSink([&](const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF size) {
        window = std::make_unique<frmDrukPreview>(job, pages, size);
    });
    PrintEngine::instance().Drukuj(procedure, 5, QPageLayout::Portrait, true, QStringLiteral("Test"));
    PrintEngine::instance().setPreviewSink(nullptr);
    if (window)
        window->show();
    return window;
}

void TestPreview::pagesAndCounter()
{
    RecordingDialogs d;
    auto w = preview(QStringLiteral("trzy"));
    QVERIFY(w);
    auto *counter = w->findChild<QLabel *>(QStringLiteral("lblstrona"));
    QCOMPARE(counter->text(), QStringLiteral("1/3"));
    click(w.get(), QStringLiteral("cmdmove_1"));
    click(w.get(), QStringLiteral("cmdmove_1"));
    QCOMPARE(counter->text(), QStringLiteral("3/3"));
    click(w.get(), QStringLiteral("cmdmove_1")); // past the last page: a beep, nothing else
    QCOMPARE(counter->text(), QStringLiteral("3/3"));
    QCOMPARE(d.beeps, 1);
    click(w.get(), QStringLiteral("cmdmove_0"));
    QCOMPARE(counter->text(), QStringLiteral("2/3"));

    const QString saved = m_env->newPath(QStringLiteral("zapisany"));
    d.files << saved;
    click(w.get(), QStringLiteral("cmdzapisz"));
    QCOMPARE(readPdf(saved + QStringLiteral(".pdf")).text(), QStringLiteral("Strona1 Strona2 Strona3"));
    QVERIFY(!PrintEngine::instance().job().saving);
    // A name that is no file to write is told, not taken for saved.
    const QString folder = m_env->newPath(QStringLiteral("katalog.pdf"));
    QVERIFY(QDir().mkpath(folder));
    d.files << folder;
    click(w.get(), QStringLiteral("cmdzapisz"));
    QVERIFY(d.saw(QStringLiteral("jest folderem")));
    // Cancelling the file choice saves nothing.
    m_runs = 0;
    click(w.get(), QStringLiteral("cmdzapisz"));
    QCOMPARE(m_runs, 0);

    // Printed from the preview: nothing asked, every page.
    const QString path = m_env->newPath(QStringLiteral("z_podgladu.pdf"));
    PrintEngine::instance().setPrinterFactory([path] { return std::make_unique<PdfSurface>(path, SafeOutput::Existing::Replace); });
    d.clear();
    m_runs = 0;
    click(w.get(), QStringLiteral("cmddrukuj"));
    QCOMPARE(m_runs, 1);
    QVERIFY(d.callsOf(QStringLiteral("copies")).isEmpty());
    const PdfContent pdf = readPdf(path);
    QCOMPARE(pdf.pages, 3);
    QCOMPARE(pdf.text(2), QStringLiteral("Strona3"));

    // A report's preview sends the user back to the report's own window to print.
    auto report = preview(QStringLiteral("raport"));
    m_runs = 0;
    click(report.get(), QStringLiteral("cmddrukuj"));
    QCOMPARE(m_runs, 0);
    QVERIFY(d.saw(QStringLiteral("Wydrukuj raport z okienka 'Raporty'")));
}

void TestPreview::copiesWindow_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("tickPreview");
    QTest::addColumn<int>("copies");
    QTest::newRow("two copies") << "2" << false << 2;
    QTest::newRow("preview ticked") << "1" << true << 1;
    QTest::newRow("too many") << "999" << false << 255;
}

void TestPreview::copiesWindow()
{
    QFETCH(QString, typed);
    QFETCH(bool, tickPreview);
    QFETCH(int, copies);
    frmPrintkopie w(4, false);
    auto *field = w.findChild<QLineEdit *>(QStringLiteral("txtkopie"));
    QCOMPARE(field->text(), QStringLiteral("4"));
    field->selectAll();
    QTest::keyClicks(field, typed);
    if (tickPreview)
        w.findChild<QCheckBox *>(QStringLiteral("chkpodglad"))->setChecked(true);
    QCOMPARE(w.copies(), copies);
    QCOMPARE(w.preview(), tickPreview);
    // What is typed is kept for the next printout.
    QCOMPARE(SettingsStore::getInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE")).value_or(0),
             copies);
}

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
