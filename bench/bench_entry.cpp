// Issuing documents through the entry window, measured (offscreen, no printing):
// 1,000 documents of every kind saved into a firm that already holds 100,000, half of
// them for recipients new to the dictionary. Each save is timed from cmdwystaw's save
// (field checks, required fields, the row, the balance and the recipient in one
// transaction) to its return; the target is a median under 5 ms.
#include "AppState.h"
#include "BenchFirm.h"
#include "documents/Firm.h"
#include "documents/ContractorStore.h"
#include "documents/ui/frmprzelew.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QSqlQuery>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace {

constexpr int Stored = 100000;
constexpr int Issued = 1000;

// A firm with years of documents: one stored through the core, then copied in bulk.
bool fillFirm()
{
    for (int i = 0; i < 500; ++i)
        ContractorStore::insert(Db(), Contractor{0, QStringLiteral("Kontrahent %1").arg(i), {}, QStringLiteral("Polna 1"),
                                                 QStringLiteral("00-950"), QStringLiteral("Warszawa"), {},
                                                 QStringLiteral("Bank"), QStringLiteral("12 3456")});
    if (fillDocuments(1).isEmpty())
        return false;
    return growDocuments(Stored);
}

void type(QWidget *w, const char *name, const QString &text)
{
    w->findChild<QLineEdit *>(QLatin1String(name))->setText(text);
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    if (!openBenchFirm(home, benchFirm()))
        return 1;
    appState().eliksir = 0;

    QElapsedTimer fillTime;
    fillTime.start();
    QSqlQuery pragma(Db());
    pragma.exec(QStringLiteral("PRAGMA synchronous"));
    const int synchronous = pragma.next() ? pragma.value(0).toInt() : 2;
    pragma.exec(QStringLiteral("PRAGMA synchronous = OFF"));
    if (!fillFirm()) {
        std::fprintf(stderr, "filling the firm failed\n");
        return 1;
    }
    // The saves are measured as a user's disk sees them.
    pragma.exec(QStringLiteral("PRAGMA synchronous = %1").arg(synchronous));
    std::printf("firm filled with %d documents in %.1f s (synchronous = %d)\n", Stored, fillTime.nsecsElapsed() / 1e9,
                synchronous);

    std::array<std::unique_ptr<frmprzelew>, 6> windows;
    for (int k = 0; k < 6; ++k)
        windows[k] = std::make_unique<frmprzelew>(qint16(0), qint16(k + 1));

    QList<double> times;
    int failed = 0;
    for (int i = 0; i < Issued; ++i) {
        frmprzelew *w = windows[i % 6].get();
        // Every other document goes to a recipient the dictionary does not know yet.
        type(w, "txtnazwa", i % 2 ? QStringLiteral("Kontrahent %1").arg(i % 500) : QStringLiteral("Odbiorca %1").arg(i));
        type(w, "txtkod", QStringLiteral("31-000"));
        type(w, "txtmiasto", QStringLiteral("Kraków"));
        type(w, "txtbank", QStringLiteral("mBank"));
        type(w, "txtkonto", QStringLiteral("45 1140 2004 0000 3002 0123 4567"));
        type(w, "txtzadokument", QStringLiteral("Faktura VAT %1/2026").arg(i + 1));
        type(w, "txtwartosc", QStringLiteral("1 234,56"));
        type(w, "txtWartoscZus", QStringLiteral("812,40"));
        type(w, "txtWartoscPod", QStringLiteral("2 001,00"));
        type(w, "txtdata", QStringLiteral("05-03-2026"));
        QElapsedTimer t;
        t.start();
        const bool ok = w->save();
        times << t.nsecsElapsed() / 1e6;
        failed += ok ? 0 : 1;
    }
    std::sort(times.begin(), times.end());
    QSqlQuery count(Db());
    count.exec(QStringLiteral("SELECT count(*) FROM zlecanki"));
    count.next();
    const double median = times.at(times.size() / 2);
    std::printf("%d saves (%d refused), firm now %d documents\n", Issued, failed, count.value(0).toInt());
    std::printf("save: median %.3f ms, 90th %.3f ms, 99th %.3f ms, max %.3f ms\n", median,
                times.at(times.size() * 9 / 10), times.at(times.size() * 99 / 100), times.last());
    std::printf("Median save under 5 ms: %s\n", median < 5.0 ? "met" : "NOT met");
    return failed == 0 ? 0 : 1;
}
