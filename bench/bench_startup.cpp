// Start-up and firm opening, measured:
//  - the program started to its main window with the default firm open and ended at once
//    (a whole process each time, offscreen), median of many starts;
//  - OpenDb of a firm holding 100,000 documents: the first opening of an old file (the
//    whole structure upgrade) and the usual opening of an up-to-date one.
#include "AppState.h"
#include "documents/Firm.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace {

struct Stats {
    double median, min, max;
};

Stats stats(QList<double> v)
{
    std::sort(v.begin(), v.end());
    return {v[v.size() / 2], v.first(), v.last()};
}

void print(const char *what, const Stats &s, int runs, double target)
{
    std::printf("%-48s median %7.1f ms  min %7.1f  max %7.1f  (%d runs, target < %.0f ms: %s)\n", what, s.median, s.min,
                s.max, runs, target, s.median < target ? "met" : "NOT met");
}

// Fills a firm with documents as the program stores them, in one transaction.
void fillDocuments(const QString &path, int count, bool oldStructure)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
        db.setDatabaseName(path);
        db.open();
        Structure::CreateDatabase(db);
        if (!oldStructure)
            Structure::UpgradeStructure(db);
        db.transaction();
        QSqlQuery q(db);
        q.prepare(QStringLiteral("INSERT INTO zlecanki (RODZAJ, BANKNR, BANK_FIRMY, KONTO_FIRMY, DATA_DOKUMENTU, KLIENT_ID, "
                                 "KLIENT_NAZWA, KLIENT_ULICA, KLIENT_KOD, KLIENT_MIASTO, KLIENT_BANK, KLIENT_KONTO, "
                                 "ZA_DOKUMENT_NAZWA, WARTOSC, DATA_SESJI) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
        QRandomGenerator rng(42);
        const QDate start(2015, 1, 1);
        for (int i = 0; i < count; ++i) {
            const QDate d = start.addDays(rng.bounded(4000));
            q.addBindValue(1 + rng.bounded(6));
            q.addBindValue(1 + rng.bounded(3));
            q.addBindValue(QStringLiteral("Bank Spółdzielczy"));
            q.addBindValue(QStringLiteral("12 3456 7890 1234 5678 9012 3456"));
            q.addBindValue(d.toString(Qt::ISODate));
            q.addBindValue(1 + rng.bounded(500));
            q.addBindValue(QStringLiteral("Kontrahent %1").arg(rng.bounded(500)));
            q.addBindValue(QStringLiteral("ul. Długa 5"));
            q.addBindValue(QStringLiteral("00-950"));
            q.addBindValue(QStringLiteral("Łódź"));
            q.addBindValue(QStringLiteral("PKO BP"));
            q.addBindValue(QStringLiteral("98 7654 3210 9876 5432 1098 7654"));
            q.addBindValue(QStringLiteral("Zapłata za fakturę %1/2025").arg(i));
            q.addBindValue(qint64(rng.bounded(1, 10000000)) * 100);
            q.addBindValue(d.toString(Qt::ISODate));
            q.exec();
        }
        db.commit();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
}

double timeOpen(const QString &path)
{
    QElapsedTimer t;
    t.start();
    OpenDb(path);
    const double ms = t.nsecsElapsed() / 1e6;
    CloseDb();
    return ms;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", (home.path() + QStringLiteral("/run")).toLocal8Bit());
    QDir().mkpath(home.path() + QStringLiteral("/run"));
    QFile::setPermissions(home.path() + QStringLiteral("/run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    initPaths();

    std::printf("Zlecanki start-up benchmark (%d cores)\n", QThread::idealThreadCount());

    // Start to main window, default firm open.
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
        for (const char *k : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
            env.insert(QLatin1String(k), qEnvironmentVariable(k));
        QList<double> times;
        const int runs = 21;
        for (int i = 0; i <= runs; ++i) {
            QProcess p;
            p.setProcessEnvironment(env);
            p.setStandardErrorFile(QProcess::nullDevice());
            QElapsedTimer t;
            t.start();
            p.start(QStringLiteral(ZLECANKI_PROGRAM), {QStringLiteral("--zamknij-po-starcie")});
            p.waitForFinished(60000);
            if (i > 0) // the first start also creates the default firm
                times << t.nsecsElapsed() / 1e6;
            if (p.exitCode() != 0) {
                std::printf("the program failed to start (exit %d)\n", p.exitCode());
                return 1;
            }
        }
        print("start to main window with the default firm", stats(times), runs, 300);
    }

    // OpenDb of a firm with 100,000 documents.
    {
        const int documents = 100000;
        const QString upToDate = home.path() + QStringLiteral("/duza.zlc");
        const QString old = home.path() + QStringLiteral("/stara.zlc");
        QElapsedTimer t;
        t.start();
        fillDocuments(upToDate, documents, false);
        fillDocuments(old, documents, true);
        std::printf("(two firms of %d documents written in %.1f s)\n", documents, t.elapsed() / 1000.0);

        const double first = timeOpen(old);
        std::printf("%-48s %7.1f ms\n", "OpenDb, first opening of an old file (upgrade)", first);
        QList<double> times;
        const int runs = 25;
        for (int i = 0; i < runs; ++i)
            times << timeOpen(upToDate);
        print("OpenDb of a firm with 100,000 documents", stats(times), runs, 100);
    }
    return 0;
}
