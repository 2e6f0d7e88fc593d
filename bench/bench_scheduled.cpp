// The due check of scheduled payments as a firm opening runs it, measured on a firm of
// 1,000,000 documents holding 5,000 scheduled payments (days and months spread over
// the year, a fifth already issued this month). The check reads cykliczne only, so the
// payments are the load that counts; the documents are there to make the file real.
// Each of the 365 days of a year is checked (median and worst), and the first check
// after reopening the firm is timed on its own. The target is under 5 ms.
#include "AppState.h"
#include "BenchFirm.h"
#include "documents/Firm.h"
#include "documents/ScheduledPayments.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int Documents = 1000000;
constexpr int Payments = 5000;

bool fillFirm()
{
    if (fillDocuments(1).isEmpty())
        return false;
    if (!growDocuments(Documents))
        return false;
    QSqlQuery(Db()).exec(QStringLiteral("BEGIN"));
    for (int i = 0; i < Payments; ++i) {
        ScheduledPayment p;
        p.nazwa = QStringLiteral("Zapłata %1").arg(i);
        for (int m = 0; m < 12; ++m)
            p.months[size_t(m)] = (i % 3 == 0) || (m % 4 == i % 4);
        p.dzienPlatnosci = 1 + (i * 7) % 31;
        p.dzienAlarmu = std::max(1, p.dzienPlatnosci - 3);
        p.klientNazwa = QStringLiteral("Kontrahent %1").arg(i);
        p.zaDokumentNazwa = QStringLiteral("Opłata miesięczna");
        p.wartosc = Money::fromGrosze(100 + i);
        if (ScheduledPayments::insert(Db(), p) != ScheduledPayments::SaveResult::Saved)
            return false;
        if (i % 5 == 0)
            ScheduledPayments::markIssued(Db(), p.nazwa, 1 + i % 12);
    }
    QSqlQuery(Db()).exec(QStringLiteral("COMMIT"));
    return true;
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    if (!openBenchFirm(home, benchFirm()) || !fillFirm())
        return 1;
    const QString file = firmFile();

    QList<qint64> times;
    qsizetype listed = 0;
    QElapsedTimer timer;
    for (QDate day(2026, 1, 1); day.year() == 2026; day = day.addDays(1)) {
        timer.start();
        const auto due = ScheduledPayments::due(Db(), day);
        times << timer.nsecsElapsed();
        if (!due)
            return 1;
        listed += due->size();
    }
    std::sort(times.begin(), times.end());

    CloseDb();
    if (!OpenDb(file))
        return 1;
    timer.start();
    const auto first = ScheduledPayments::due(Db(), QDate(2026, 3, 5));
    const qint64 firstTime = timer.nsecsElapsed();
    if (!first)
        return 1;

    std::printf("due check: %d documents, %d scheduled payments\n", Documents, Payments);
    std::printf("  365 days: median %.3f ms, worst %.3f ms, %.0f payments listed a day on average\n",
                ms(times.at(times.size() / 2)), ms(times.last()), double(listed) / double(times.size()));
    std::printf("  first check after reopening the firm: %.3f ms (%lld listed on 5 March)\n", ms(firstTime),
                static_cast<long long>(first->size()));
    std::printf("  target: under 5 ms\n");
    return 0;
}
