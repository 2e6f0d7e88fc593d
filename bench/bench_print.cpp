// Printing, measured (offscreen):
//  - 1,000 stored documents of every kind, each read from the firm and drawn on its slip,
//    into one PDF file: slips a second;
//  - the preview of one slip: from the print command to the preview window painted.
#include "BenchFirm.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "documents/DocumentStore.h"
#include "print/DocumentSlips.h"
#include "print/PrintEngine.h"
#include "print/SlipDrivers.h"
#include "print/ui/frmDrukPreview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPicture>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr int Documents = 1000;

double median(QList<double> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    if (!openBenchFirm(home, benchFirm()))
        return 1;
    const QList<qint32> ids = fillDocuments(Documents);
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
        engine.saveAsPdf(job, pdf, SafeOutput::Existing::Replace);
        const double seconds = t.nsecsElapsed() / 1e9;
        best = std::max(best, ids.size() / seconds);
        std::printf("round %d: %lld documents, %d pages, %.1f MB in %.2f s = %.0f slips a second\n",
                    round + 1, static_cast<long long>(ids.size()), engine.pageCount(),
                    QFileInfo(pdf).size() / 1e6, seconds, ids.size() / seconds);
    }
    std::printf("Slips to one PDF: best %.0f a second (target at least 200): %s\n", best,
                best >= 200 ? "met" : "NOT met");

    // The same pages drawn with bare QPainter calls: each page's boxes, lines and texts as the
    // slip path recorded them, replayed into a PDF with no layout code, against the slip
    // path drawing the same documents.
    {
        const QList<qint32> some = ids.mid(0, 120);
        engine.setDriver(QStringLiteral("niektore"), [&some](PrintEngine &e) {
            for (qint32 id : some) {
                SlipRecords r;
                r.doc = *DocumentStore::read(Db(), id);
                r.firm = FirmStore::read(Db()).value_or(FirmData{});
                printDocumentSlip(e, r);
            }
        });
        QList<QPicture> recorded;
        QSizeF pageSize;
        engine.setPreviewSink([&](const PrintEngine::Job &, const QList<QPicture> &pages, QSizeF size) {
            recorded = pages;
            pageSize = size;
        });
        engine.Drukuj(QStringLiteral("niektore"), 0, QPageLayout::Portrait, true, QStringLiteral("bench"));
        engine.setPreviewSink(nullptr);
        const QString slipPdf = home.path() + QStringLiteral("/slip.pdf");
        const QString barePdf = home.path() + QStringLiteral("/bare.pdf");
        double slipBest = 1e9, bareBest = 1e9;
        for (int round = 0; round < 3; ++round) {
            PrintEngine::Job job;
            job.procedure = QStringLiteral("niektore");
            QElapsedTimer t;
            t.start();
            engine.saveAsPdf(job, slipPdf, SafeOutput::Existing::Replace);
            slipBest = std::min(slipBest, t.nsecsElapsed() / 1e9);
            t.restart();
            QPdfWriter writer(barePdf);
            writer.setResolution(1200);
            writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
            QPainter painter(&writer);
            for (qsizetype i = 0; i < recorded.size(); ++i) {
                if (i > 0)
                    writer.newPage();
                painter.resetTransform();
                painter.scale(1200 / 1440.0, 1200 / 1440.0);
                painter.drawPicture(0, 0, recorded.at(i));
            }
            painter.end();
            bareBest = std::min(bareBest, t.nsecsElapsed() / 1e9);
        }
        const double ratio = slipBest / bareBest;
        std::printf("Slip path against bare QPainter drawing of the same %lld pages: %.3f s / %.3f s = %.2fx "
                    "(target within 2x): %s\n",
                    static_cast<long long>(recorded.size()), slipBest, bareBest, ratio,
                    ratio <= 2 ? "met" : "NOT met");
    }

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
