// A firm on a PostgreSQL server beside a SQLite firm file, measured on the same work:
//  - the save path: 2,000 documents of every kind stored one by one through DocumentStore
//    (row, balance and contractor in one transaction each);
//  - browsing 1,000,000 documents over ten years (2016 to 2025) under year, days and
//    month-of-every-year filters: the browse list filled as the window fills it, and the
//    number of documents the filter finds;
//  - the register of 100,000 bank transfers of one year (2026) out of 1,100,000 documents.
// Each figure is printed for both engines with the ratio PostgreSQL / SQLite.
// The server comes from ZLECANKI_PG ("scripts/pg-cluster start DIR" prints its address);
// without one the benchmark says so and ends. The firm is a schema of its own, dropped at
// the end.
#include "AppState.h"
#include "BenchFirm.h"
#include "Dialogs.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "documents/Accounts.h"
#include "documents/BrowseQuery.h"
#include "documents/DocumentStore.h"
#include "documents/Firm.h"
#include "documents/FirmData.h"
#include "reports/ReportRegister.h"

#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int Saved = 2000;
constexpr int Browsed = 1000000;
constexpr int Registered = 100000;
constexpr int Runs = 5;

// One figure: what was measured and its median in milliseconds on each engine.
struct Figure {
    QString what;
    double sqlite = 0;
    double postgres = 0;
    QString sqliteDetail;
    QString postgresDetail;
    QString detail() const
    {
        if (sqliteDetail == postgresDetail)
            return sqliteDetail;
        return QStringLiteral("SQLite: ") + sqliteDetail + QStringLiteral("; PostgreSQL: ") + postgresDetail;
    }
};

double median(std::vector<double> ms)
{
    if (ms.empty())
        return -1;
    std::sort(ms.begin(), ms.end());
    return ms[ms.size() / 2];
}

// The median of `runs` runs of `step` in milliseconds; negative when a run failed.
double timed(int runs, const std::function<bool()> &step)
{
    std::vector<double> ms;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer t;
        t.start();
        if (!step())
            return -1;
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    return median(ms);
}

bool exec(const QString &sql)
{
    QSqlQuery q(Db());
    if (q.exec(sql))
        return true;
    std::fprintf(stderr, "%s\n%s\n", qPrintable(sql), qPrintable(q.lastError().text()));
    return false;
}

// The documents of the browse (ten years, every kind, five accounts, 500 contractors) and
// the register's year, made on the engine itself, in pieces (a statement may run only so
// long) within one transaction.
bool bulkLoad(bool postgres)
{
    const QString columns = QStringLiteral("(rodzaj, banknr, bank_firmy, konto_firmy, klient_id, klient_nazwa, "
                                           "za_dokument_nazwa, wartosc, data_dokumentu, data_sesji) ");
    // Rows i = first..last of n, row i dated `start` plus i * span / n days.
    const auto rows = [&](int first, int last, int n, const QString &kind, const QString &start, int span) -> QString {
        const QString offset = QStringLiteral("i * %1 / %2").arg(span).arg(n);
        const QString day = postgres ? QStringLiteral("(DATE '%1' + (%2)::int)").arg(start, offset)
                                     : QStringLiteral("date('%1', '+' || (%2) || ' days')").arg(start, offset);
        const QString values =
            QStringLiteral("SELECT %1, 1 + i % 5, 'Bank ' || (1 + i % 5), '11 2222 3333 ' || (1 + i % 5), "
                           "1 + i % 500, 'Kontrahent ' || (i % 500), 'Faktura ' || i || '/2025', "
                           "(1000 + i % 100000) * 100, %2, %2 ")
                .arg(kind, day);
        if (postgres)
            return QStringLiteral("INSERT INTO zlecanki ") + columns + values +
                   QStringLiteral("FROM generate_series(%1::bigint, %2) AS g(i)").arg(first).arg(last);
        return QStringLiteral("WITH RECURSIVE g(i) AS (SELECT %1 UNION ALL SELECT i + 1 FROM g WHERE i < %2) "
                              "INSERT INTO zlecanki ")
                   .arg(first)
                   .arg(last) +
               columns + values + QStringLiteral("FROM g");
    };
    constexpr int Piece = 50000;
    QSqlDatabase db = Db();
    if (!db.transaction())
        return false;
    for (int first = 0; first < Browsed; first += Piece) // 2016-01-01 to 2025-12-31: 3653 days
        if (!exec(rows(first, first + Piece - 1, Browsed, QStringLiteral("1 + i % 6"), QStringLiteral("2016-01-01"), 3653)))
            return false;
    for (int first = 0; first < Registered; first += Piece)
        if (!exec(rows(first, first + Piece - 1, Registered, QStringLiteral("1"), QStringLiteral("2026-01-01"), 365)))
            return false;
    return db.commit();
}

// 2,000 documents saved one by one; the median milliseconds of one save.
double savePath()
{
    std::vector<double> ms;
    for (int i = 0; i < Saved; ++i) {
        PaymentDocument d = PaymentDocument::newDocument(qint16(1 + i % 6), QDate(2027, 3, 5)); // outside the register
        d.banknr = 1;
        d.kontoFirmy = QStringLiteral("12 1020 1026 0000 1234 5678 9012");
        d.klientNazwa = QStringLiteral("Odbiorca %1").arg(i % 700); // new to the dictionary at first
        d.klientUlica = QStringLiteral("ul. Kwiatowa 7");
        d.klientKod = QStringLiteral("31-000");
        d.klientMiasto = QStringLiteral("Kraków");
        d.klientBank = QStringLiteral("mBank");
        d.klientKonto = QStringLiteral("45 1140 2004 0000 3002 0123 4567");
        d.zaDokumentNazwa = QStringLiteral("Faktura VAT %1/2026").arg(i + 1);
        d.wartosc = Money::fromGrosze(100 + i);
        QElapsedTimer t;
        t.start();
        QString error;
        if (!DocumentStore::insert(Db(), d, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return -1;
        }
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    return median(ms);
}

struct Engine {
    QString location;
    bool postgres = false;
};

// Every figure on the firm at `location`; the figures' texts and details come from the
// first engine measured.
bool measure(const Engine &engine, QList<Figure> &figures)
{
    QString error;
    if (!FirmDatabase::create(engine.location, &error) || !OpenDb(engine.location) ||
        !FirmStore::save(Db(), benchFirm(), std::bitset<Accounts::Count>().set(), &error)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(engine.location), qPrintable(error));
        return false;
    }
    int at = 0;
    const auto put = [&](const QString &what, double ms, const QString &detail = QString()) {
        if (figures.size() <= at)
            figures << Figure{what, 0, 0, {}, {}};
        (engine.postgres ? figures[at].postgres : figures[at].sqlite) = ms;
        (engine.postgres ? figures[at].postgresDetail : figures[at].sqliteDetail) = detail;
        ++at;
    };

    // What a save waits for: the figures of a server that does not flush to disk, or a
    // file that is not synced, say nothing of an office's real saves.
    QSqlQuery setting(Db());
    if (engine.postgres ? setting.exec(QStringLiteral("SHOW fsync")) : setting.exec(QStringLiteral("PRAGMA synchronous")))
        if (setting.next())
            std::printf("%s: %s\n", engine.postgres ? "PostgreSQL fsync" : "SQLite synchronous",
                        qPrintable(setting.value(0).toString()));
    setting.finish();

    QElapsedTimer total;
    total.start();
    put(QStringLiteral("save, one document"), savePath(), QStringLiteral("%1 saved").arg(Saved));
    const double saving = double(total.nsecsElapsed()) / 1e6;
    put(QStringLiteral("save, all of them"), saving);

    QElapsedTimer loading;
    loading.start();
    if (!bulkLoad(engine.postgres))
        return false;
    // A server's statistics follow a bulk load within a minute (autovacuum); here at once.
    if (engine.postgres && !exec(QStringLiteral("ANALYZE zlecanki")))
        return false;
    put(QStringLiteral("bulk load (setup)"), double(loading.nsecsElapsed()) / 1e6,
        QStringLiteral("%1 documents").arg(Browsed + Registered));

    struct Case {
        const char *what;
        Browse::Filter filter;
    };
    Browse::Filter year;
    year.period = Browse::Period::Year;
    year.year = 2020;
    Browse::Filter days;
    days.period = Browse::Period::Days;
    days.first = QDate(2020, 3, 1);
    days.last = QDate(2020, 3, 31);
    Browse::Filter month;
    month.period = Browse::Period::Month;
    month.month = 3;
    Browse::Filter yearKind = year;
    yearKind.kind = 1;
    const Case cases[] = {{"year 2020", year},
                          {"year 2020, bank transfers", yearKind},
                          {"days 01-03..31-03-2020", days},
                          {"March of every year", month}};
    for (const Case &c : cases) {
        Browse::Model model;
        int shown = 0;
        const double listing = timed(Runs, [&] {
            QString why;
            if (!model.refresh(Db(), c.filter, &why)) {
                std::fprintf(stderr, "%s\n", qPrintable(why));
                return false;
            }
            shown = model.rowCount();
            return shown > 0;
        });
        put(QStringLiteral("browse list: ") + QLatin1String(c.what), listing);
        int found = 0;
        const Browse::Query built = Browse::build(c.filter);
        const double counting = timed(Runs, [&] {
            QSqlQuery q(Db());
            q.setForwardOnly(true);
            q.prepare(QStringLiteral("SELECT count(*) FROM (") + built.sql + QStringLiteral(") AS found"));
            for (const QVariant &v : built.values)
                q.addBindValue(v);
            if (!q.exec() || !q.next())
                return false;
            found = q.value(0).toInt();
            return true;
        });
        put(QStringLiteral("browse count: ") + QLatin1String(c.what), counting,
            QStringLiteral("%1 found, %2 lines fetched for the list").arg(found).arg(shown));
    }

    Reports::Criteria criteria;
    criteria.kindIndex = 0;
    criteria.period = Reports::Period{Reports::PeriodKind::Year, 2026, 1, {}, {}};
    qsizetype listed = 0;
    const double registering = timed(3, [&] {
        QString why;
        const auto list = Reports::buildRegister(Db(), criteria, &why);
        if (!list)
            std::fprintf(stderr, "%s\n", qPrintable(why));
        listed = list ? list->rows.size() : 0;
        return list.has_value();
    });
    put(QStringLiteral("register of a year"), registering, QStringLiteral("%1 documents").arg(listed));
    CloseDb();
    return true;
}

// Runs `sql` on the server outside the firm (creating or dropping the benchmark's schema).
void onServer(const QString &server, const QString &sql)
{
    const auto address = Dialect::parseAddress(server);
    if (address && Dialect::connect(*address, QStringLiteral("bench-server"), nullptr))
        QSqlQuery(QSqlDatabase::database(QStringLiteral("bench-server"), false)).exec(sql);
    FirmDatabase::close(QStringLiteral("bench-server"));
}

} // namespace

int main(int argc, char **argv)
{
    const QString server = qEnvironmentVariable("ZLECANKI_PG").trimmed();
    if (server.isEmpty()) {
        std::printf("No PostgreSQL server: set ZLECANKI_PG to its address (scripts/pg-cluster start DIR prints it).\n");
        return 0;
    }
    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);
    initPaths();
    static ConsoleDialogs console;
    setDialogs(&console);
    appState().eliksir = 0;

    auto address = Dialect::parseAddress(server);
    if (!address) {
        std::fprintf(stderr, "ZLECANKI_PG is not a server address: %s\n", qPrintable(server));
        return 1;
    }
    address->schema = QStringLiteral("bench_server_%1").arg(QCoreApplication::applicationPid());
    const QString drop = QStringLiteral("DROP SCHEMA IF EXISTS ") + address->schema + QStringLiteral(" CASCADE");
    onServer(server, drop);

    QList<Figure> figures;
    QElapsedTimer t;
    t.start();
    bool ok = measure({Dialect::addressText(*address), true}, figures);
    std::printf("PostgreSQL done in %.1f s\n", double(t.nsecsElapsed()) / 1e9);
    t.restart();
    ok = ok && measure({home.path() + QStringLiteral("/firma.zlc"), false}, figures);
    std::printf("SQLite done in %.1f s\n", double(t.nsecsElapsed()) / 1e9);
    CloseDb();
    onServer(server, drop);
    if (!ok) {
        std::fprintf(stderr, "the benchmark failed\n");
        return 1;
    }

    std::printf("\n%-40s %12s %12s %8s\n", "median, ms", "SQLite", "PostgreSQL", "ratio");
    for (const Figure &f : std::as_const(figures))
        std::printf("%-40s %12.2f %12.2f %8.2f  %s\n", qPrintable(f.what), f.sqlite, f.postgres,
                    f.sqlite > 0 ? f.postgres / f.sqlite : 0.0, qPrintable(f.detail()));
    return 0;
}
