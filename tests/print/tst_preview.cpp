#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "TestWidgets.h"
#include "print/PrintEngine.h"
#include "print/ui/frmDrukPreview.h"
#include "print/ui/frmPrintkopie.h"

#include <QLabel>
#include <QLineEdit>
#include <QDir>
#include <QTest>

#include <memory>

class TestPreview : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pagesAndCounter();
    void copiesWindow();

private:
    std::unique_ptr<frmDrukPreview> preview(const QString &procedure, bool asked = true);
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

std::unique_ptr<frmDrukPreview> TestPreview::preview(const QString &procedure, bool asked)
{
    std::unique_ptr<frmDrukPreview> window;
    PrintEngine::instance().setPreviewSink([&](const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF size) {
        window = std::make_unique<frmDrukPreview>(job, pages, size);
    });
    PrintEngine::instance().Drukuj(procedure, 5, QPageLayout::Portrait, asked, asked ? QStringLiteral("Test") : QString());
    PrintEngine::instance().setPreviewSink(nullptr);
    if (window)
        window->show();
    return window;
}

void TestPreview::pagesAndCounter()
{
    RecordingDialogs d;
    // "Drukować na: Ekranie" offers the preview in the copies window; the user keeps it.
    SettingsStore::save(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa"), QStringLiteral("1"));
    auto w = preview(QStringLiteral("trzy"), false);
    SettingsStore::remove(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa"));
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
    // A name that is no file to write is told, not taken for saved.
    const QString folder = m_env->newPath(QStringLiteral("katalog.pdf"));
    QVERIFY(QDir().mkpath(folder));
    d.files << folder;
    click(w.get(), QStringLiteral("cmdzapisz"));
    QVERIFY(d.saw(QStringLiteral("jest folderem")));

    // Printed from the preview: nothing asked, every page.
    const QString path = m_env->newPath(QStringLiteral("z_podgladu.pdf"));
    PrintEngine::instance().setPrinterFactory([path] { return std::make_unique<PdfSurface>(path, SafeOutput::Existing::Replace); });
    d.clear();
    click(w.get(), QStringLiteral("cmddrukuj"));
    QVERIFY(d.callsOf(QStringLiteral("copies")).isEmpty());
    QCOMPARE(readPdf(path).pages, 3);

    // A report's preview sends the user back to the report's own window to print.
    auto report = preview(QStringLiteral("raport"));
    m_runs = 0;
    click(report.get(), QStringLiteral("cmddrukuj"));
    QCOMPARE(m_runs, 0);
    QVERIFY(d.saw(QStringLiteral("Wydrukuj raport z okienka 'Raporty'")));
}

// What is typed is kept for the next printout, within bounds.
void TestPreview::copiesWindow()
{
    frmPrintkopie w(4, false);
    auto *field = child<QLineEdit>(&w, QStringLiteral("txtkopie"));
    QCOMPARE(field->text(), QStringLiteral("4"));
    for (const auto &[typed, copies] : {std::pair{"999", 255}, {"2", 2}}) {
        field->selectAll();
        QTest::keyClicks(field, QString::fromLatin1(typed));
        QCOMPARE(w.copies(), copies);
        QCOMPARE(SettingsStore::getInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE")).value_or(0),
                 copies);
    }
}

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
