// The automation object under load: 1,000 WystawPrzelew calls without printing, one after
// another from this process to "zlecanki --automation" over the session bus, half of them
// for recipients new to the dictionary, each with a reference of its own. Each round trip
// is timed from the call to its answer (the values checked, the firm opened, recipient,
// document, balance and reference stored in one transaction, the firm closed); the target
// is a median under 10 ms.
// It runs on a private bus of its own (dbus-run-session), never on the desktop's.
#include "BenchFirm.h"
#include "AppState.h"
#include "documents/Firm.h"
#include "db/FirmDatabase.h"
#include "documents/FirmData.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <vector>

namespace {

constexpr int Calls = 1000;
const QString Service = QStringLiteral("pl.kontorian.Zlecanki");

double percentile(std::vector<double> v, double p)
{
    std::sort(v.begin(), v.end());
    return v[std::min(v.size() - 1, static_cast<size_t>(p * double(v.size())))];
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("ZLECANKI_BENCH_BUS")) {
        qputenv("ZLECANKI_BENCH_BUS", "1");
        QStringList args{QStringLiteral("--"), QString::fromLocal8Bit(argv[0])};
        return QProcess::execute(QStringLiteral("dbus-run-session"), args);
    }

    QTemporaryDir home;
    prepareBenchHome(home);
    QApplication app(argc, argv);

    QProcess server;
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(QStringLiteral(ZLECANKI_PROGRAM), {QStringLiteral("--automation")});
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    for (int i = 0; i < 200 && !bus->isServiceRegistered(Service).value(); ++i)
        QThread::msleep(50);
    if (!bus->isServiceRegistered(Service).value()) {
        std::fprintf(stderr, "the automation copy did not come up\n");
        return 1;
    }

    // Every document is committed to the disk before the answer, so the disk's sync time
    // is part of each round trip; the same run on a firm in memory (tmpfs) shows the
    // program's own part.
    std::vector<std::pair<const char *, QString>> places = {{"firm on disk", home.path() + QStringLiteral("/dysk")}};
    QTemporaryDir memory(QStringLiteral("/dev/shm/zlecanki-bench-XXXXXX"));
    if (memory.isValid())
        places.emplace_back("firm in tmpfs", memory.path());
    std::printf("WystawPrzelew over the session bus, %d calls each, no printing\n", Calls);
    for (const auto &[label, folder] : places) {
        QDir().mkpath(folder);
        QString firm;
        {
            initPaths();
            const QString file = folder + QStringLiteral("/firma.zlc");
            if (!FirmDatabase::create(file, nullptr) || !OpenDb(file) ||
                !FirmStore::save(Db(), benchFirm(), std::bitset<Accounts::Count>().set()))
                return 1;
            firm = firmFile();
            CloseDb();
        }

        std::vector<double> ms;
        ms.reserve(Calls);
        QElapsedTimer total;
        total.start();
        for (int i = 0; i < Calls; ++i) {
            const QStringList values = {firm, QString(), QString(),
                                        i % 2 ? QStringLiteral("Hurtownia Gęśla Sp. z o.o.") : QStringLiteral("Odbiorca %1").arg(i),
                                        QStringLiteral("Kwiatowa 7"), QStringLiteral("31-000"), QStringLiteral("Kraków"),
                                        QStringLiteral("mBank"), QStringLiteral("FVZ"), QStringLiteral("FZ %1/2026").arg(i),
                                        QStringLiteral("%1,50").arg(100 + i), QStringLiteral("05-03-2026"),
                                        QStringLiteral("45 1140 2004 0000 3002 0123 4567"), QStringLiteral("526-104-08-28")};
            QDBusMessage call = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                               QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"),
                                                               QStringLiteral("WystawPrzelew"));
            // Each call carries its own reference, as a careful caller's would.
            call << values << QStringLiteral("FZ %1/2026").arg(i);
            QElapsedTimer t;
            t.start();
            const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
            ms.push_back(double(t.nsecsElapsed()) / 1e6);
            if (reply.type() != QDBusMessage::ReplyMessage) {
                std::fprintf(stderr, "call %d refused: %s\n", i, qPrintable(reply.errorMessage()));
                return 1;
            }
        }
        const double seconds = double(total.elapsed()) / 1000.0;
        std::printf("  %-14s round trip: median %.2f ms, 90th percentile %.2f ms, max %.2f ms; %.2f s in all\n", label,
                    percentile(ms, 0.5), percentile(ms, 0.9), *std::max_element(ms.begin(), ms.end()), seconds);
    }
    std::printf("  (target: median under 10 ms)\n");
    server.kill();
    server.waitForFinished(5000);
    return 0;
}
