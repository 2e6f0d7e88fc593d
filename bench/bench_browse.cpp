// Browsing a large firm, measured (offscreen): 1,000,000 documents over ten years
// (2016 to 2025, about 100,000 a year, every kind, five accounts, 500 contractors).
// Each figure is the browse window's list refilled under a filter and painted, so the
// first lines are on screen. Targets: a year under 300 ms, one month of days under 50 ms.
#include "BenchFirm.h"
#include "DateText.h"
#include "documents/Firm.h"
#include "documents/ui/frmprzegladanie.h"

#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QAbstractItemView>
#include <QRadioButton>
#include <QSqlQuery>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int Documents = 1000000;
constexpr int Runs = 7;

// Bound inserts in one transaction: the firm is made in seconds, not hours.
bool fillFirm()
{
    QSqlDatabase db = Db();
    if (!db.transaction())
        return false;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("INSERT INTO zlecanki (rodzaj, banknr, bank_firmy, konto_firmy, klient_id, klient_nazwa, "
                             "za_dokument_nazwa, wartosc, data_dokumentu, data_sesji) VALUES (?,?,?,?,?,?,?,?,?,?)"));
    const QDate start(2016, 1, 1);
    const int span = int(start.daysTo(QDate(2025, 12, 31))) + 1;
    for (int i = 0; i < Documents; ++i) {
        const int account = 1 + i % 5;
        const QString date = DateText::toIso(start.addDays(qint64(i) * span / Documents));
        q.addBindValue(1 + i % 6);
        q.addBindValue(account);
        q.addBindValue(QStringLiteral("Bank %1").arg(account));
        q.addBindValue(QStringLiteral("11 2222 3333 %1").arg(account));
        q.addBindValue(1 + i % 500);
        q.addBindValue(QStringLiteral("Kontrahent %1").arg(i % 500));
        q.addBindValue(QStringLiteral("Faktura %1/2025").arg(i));
        q.addBindValue(qint64(1000 + i % 100000) * 100);
        q.addBindValue(date);
        q.addBindValue(date);
        if (!q.exec())
            return false;
    }
    return db.commit();
}

// Milliseconds of refilling the list and painting it, the median and the worst of the runs.
void measure(frmprzegladanie &w, const char *what)
{
    std::vector<double> ms;
    int rows = 0;
    for (int run = 0; run < Runs; ++run) {
        QElapsedTimer t;
        t.start();
        w.refresh();
        w.findChild<QAbstractItemView *>(QStringLiteral("lstwynik"))->repaint();
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
        rows = w.model().rowCount();
    }
    std::sort(ms.begin(), ms.end());
    // Count what the filter finds, beyond the lines fetched for the screen.
    QSqlQuery q(Db());
    const Browse::Query built = Browse::build(w.filter());
    q.prepare(QStringLiteral("SELECT count(*) FROM (") + built.sql + QStringLiteral(")"));
    for (const QVariant &v : built.values)
        q.addBindValue(v);
    const int found = q.exec() && q.next() ? q.value(0).toInt() : -1;
    std::printf("%-28s %7d documents  %4d lines fetched  median %7.2f ms  worst %7.2f ms\n", what, found, rows,
                ms[ms.size() / 2], ms.back());
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    if (!openBenchFirm(home, benchFirm()))
        return 1;
    QElapsedTimer made;
    made.start();
    if (!fillFirm()) {
        std::fprintf(stderr, "cannot fill the firm\n");
        return 1;
    }
    std::printf("firm of %d documents made in %.1f s\n", Documents, double(made.elapsed()) / 1000);

    frmprzegladanie w;
    w.show();
    auto *year = w.findChild<QComboBox *>(QStringLiteral("lstrok"));
    {
        const QSignalBlocker block(year);
        year->setCurrentIndex(year->findData(2020));
    }
    w.findChild<QRadioButton *>(QStringLiteral("optdata_0"))->setChecked(true);
    measure(w, "year 2020");

    w.findChild<QRadioButton *>(QStringLiteral("optdata_2"))->setChecked(true);
    w.findChild<QLineEdit *>(QStringLiteral("txtdata_0"))->setText(QStringLiteral("01-03-2020"));
    w.findChild<QLineEdit *>(QStringLiteral("txtdata_1"))->setText(QStringLiteral("31-03-2020"));
    measure(w, "days 01-03-2020..31-03-2020");

    w.findChild<QRadioButton *>(QStringLiteral("optdata_1"))->setChecked(true);
    measure(w, "March of every year");
    return 0;
}
