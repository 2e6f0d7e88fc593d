// Printing, measured (offscreen):
//  - 1,000 stored documents of every kind, each read from the firm and drawn on its slip,
//    into one PDF file: slips a second;
//  - the preview of one slip: from the print command to the preview window painted.
#include "AppState.h"
#include "Dialogs.h"
#include "Firm.h"
#include "db/FirmDatabase.h"
#include "documents/DocumentStore.h"
#include "documents/FirmData.h"
#include "print/DocumentSlips.h"
#include "print/PrintEngine.h"
#include "print/SlipDrivers.h"
#include "print/frmDrukPreview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr int Documents = 1000;

// Documents as users issue them: every kind, names and titles of usual lengths.
QList<qint32> fill(int count)
{
    QRandomGenerator rng(11);
    QSqlQuery(Db()).exec(QStringLiteral("PRAGMA synchronous = OFF"));
    QList<qint32> ids;
    const QStringList names = {QStringLiteral("Hurtownia Gęśla Sp. z o.o."), QStringLiteral("Jan Żółtowski"),
                               QStringLiteral("Urząd Skarbowy Łódź-Bałuty"), QStringLiteral("PPHU Świt")};
    for (int i = 0; i < count; ++i) {
        PaymentDocument d = PaymentDocument::newDocument(qint16(1 + i % 6), QDate(2026, 3, 5));
        d.kontoFirmy = QStringLiteral("12 1020 1026 0000 1234 5678 9012");
        d.klientNazwa = names.at(i % names.size());
        d.klientUlica = QStringLiteral("ul. Kwiatowa %1").arg(1 + rng.bounded(99));
        d.klientKod = QStringLiteral("31-000");
        d.klientMiasto = QStringLiteral("Kraków");
        d.klientBank = QStringLiteral("mBank");
        d.klientKonto = QStringLiteral("45 1140 2004 0000 3002 0123 4567");
        d.zaDokumentNazwa = QStringLiteral("Faktura VAT %1/2026").arg(i + 1);
        d.wartosc = Money::fromGrosze(1 + rng.bounded(10000000));
        d.zus.nrRachunku = qint16(rng.bounded(4));
        if (const auto id = DocumentStore::insert(Db(), d))
            ids << *id;
    }
    return ids;
}

double median(QList<double> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

// The offscreen platform warns of every window it cannot size; the figures are what matters.
void quietWindowWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (!message.contains(QLatin1String("propagateSizeHints")))
        std::fprintf(stderr, "%s%s\n", type == QtWarningMsg ? "warning: " : "", qPrintable(message));
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(quietWindowWarnings);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toLocal8Bit());
    QApplication app(argc, argv);
    initPaths();
    ConsoleDialogs console;
    setDialogs(&console);

    const QString file = home.path() + QStringLiteral("/firma.zlc");
    if (!FirmDatabase::create(file, nullptr) || !OpenDb(file))
        return 1;
    FirmData firm;
    firm.nazwa = QStringLiteral("Zakład Ślusarski Żółć");
    firm.ulica = QStringLiteral("Długa");
    firm.nrDomu = QStringLiteral("5");
    firm.kod = QStringLiteral("90-001");
    firm.miasto = QStringLiteral("Łódź");
    firm.nip = QStringLiteral("526-104-08-28");
    FirmStore::save(Db(), firm, {});
    const QList<qint32> ids = fill(Documents);
    registerSlipDrivers();
    PrintEngine &engine = PrintEngine::instance();

    // Every document read and printed in one job, into one file.
    engine.setDriver(QStringLiteral("wszystkie"), [&ids](PrintEngine &e) {
        for (qint32 id : ids) {
            SlipRecords r;
            r.doc = *DocumentStore::read(Db(), id);
            r.firm = FirmStore::read(Db()).value_or(FirmData{});
            printDocumentSlip(e, r);
        }
    });
    const QString pdf = home.path() + QStringLiteral("/wszystkie.pdf");
    double best = 0;
    for (int round = 0; round < 3; ++round) {
        PrintEngine::Job job;
        job.procedure = QStringLiteral("wszystkie");
        QElapsedTimer t;
        t.start();
        engine.saveAsPdf(job, pdf);
        const double seconds = t.nsecsElapsed() / 1e9;
        best = std::max(best, ids.size() / seconds);
        std::printf("round %d: %lld documents, %d pages, %.1f MB in %.2f s = %.0f slips a second\n",
                    round + 1, static_cast<long long>(ids.size()), engine.pageCount(),
                    QFileInfo(pdf).size() / 1e6, seconds, ids.size() / seconds);
    }
    std::printf("Slips to one PDF: best %.0f a second (target at least 200): %s\n", best,
                best >= 200 ? "met" : "NOT met");

    // The preview of one slip of each kind: the engine's pages, then the window painted.
    std::unique_ptr<frmDrukPreview> window;
    engine.setPreviewSink([&](const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF size) {
        window = std::make_unique<frmDrukPreview>(job, pages, size);
        window->show();
        window->grab();
    });
    QList<double> times;
    for (int i = 0; i < 60; ++i) {
        const qint32 id = ids.at(i % 6);
        QElapsedTimer t;
        t.start();
        engine.Drukuj(i % 6 == 4 ? QStringLiteral("dprzelewZus") : QStringLiteral("dprzelew"), id,
                      QPageLayout::Portrait, true, QStringLiteral("bench"));
        times << t.nsecsElapsed() / 1e6;
        window.reset();
    }
    const double previewMs = median(times);
    std::printf("Preview of one slip shown: median %.1f ms, slowest %.1f ms (target under 100 ms): %s\n",
                previewMs, *std::max_element(times.begin(), times.end()),
                previewMs < 100 ? "met" : "NOT met");
    engine.setPreviewSink(nullptr);
    CloseDb();
    setDialogs(nullptr);
    return 0;
}
