// Reports, measured (offscreen): the register of a list with 100,000 documents (a firm of
// 600,000 documents of every kind, one sixth of them bank transfers of one year).
// Figures: the list built from the firm, the .xlsx workbook written, the printout's PDF
// written. Targets: under 500 ms, under 1 s and under 2 s.
#include "AppState.h"
#include "BenchFirm.h"
#include "documents/Firm.h"
#include "print/PrintEngine.h"
#include "print/SlipDrivers.h"
#include "reports/ReportPrintout.h"
#include "reports/ReportRegister.h"
#include "reports/ReportWorkbook.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

// The median and the worst of `runs` runs of `step`, in milliseconds.
void measure(const char *what, int runs, const std::function<bool()> &step,
             const std::function<QString()> &detail = [] { return QString(); })
{
    QList<double> ms;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer t;
        t.start();
        if (!step()) {
            std::printf("%-24s FAILED\n", what);
            return;
        }
        ms << double(t.nsecsElapsed()) / 1e6;
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%-24s median %8.1f ms  worst %8.1f ms  %s\n", what, ms.at(ms.size() / 2), ms.back(),
                qPrintable(detail()));
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    if (!openBenchFirm(home, benchFirm()))
        return 1;
    fillDocuments(600);
    if (!growDocuments(600000))
        return 1;

    Reports::Criteria criteria;
    criteria.kindIndex = 0;
    criteria.period = Reports::Period{Reports::PeriodKind::Year, 2026, 1, {}, {}};
    Reports::Report report;
    report.heading = Reports::makeHeading(Db(), criteria, appState().today);
    measure("list built", 5, [&] {
        const auto list = Reports::buildRegister(Db(), criteria);
        report.list = list.value_or(Reports::Register{});
        return list.has_value();
    });
    const QString rows = QStringLiteral("%1 documents, total %2").arg(report.list.rows.size()).arg(Kwota(report.list.total));
    std::printf("%-24s %s\n", "register", qPrintable(rows));

    const QString xlsx = home.path() + QStringLiteral("/raport.xlsx");
    measure("xlsx written", 3, [&] {
        QFile::remove(xlsx);
        return ReportWorkbook::write(xlsx, report, SafeOutput::Existing::Replace);
    }, [&] { return QStringLiteral("%1 kB").arg(QFileInfo(xlsx).size() / 1024); });

    const QString pdf = home.path() + QStringLiteral("/raport.pdf");
    registerSlipDrivers();
    registerReportDriver();
    PrintEngine &engine = PrintEngine::instance();
    engine.setPrinterFactory([&] { return std::make_unique<PdfSurface>(pdf, SafeOutput::Existing::Replace); });
    measure("PDF written", 3, [&] {
        return engine.Drukuj(QStringLiteral("raport"), QVariant::fromValue(report), QPageLayout::Portrait, false,
                             QStringLiteral("bench"));
    }, [&] { return QStringLiteral("%1 pages, %2 kB").arg(engine.pageCount()).arg(QFileInfo(pdf).size() / 1024); });
    return 0;
}
