#include "BenchFirm.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "db/FirmDatabase.h"
#include "documents/Accounts.h"
#include "documents/DocumentStore.h"

#include <QRandomGenerator>
#include <QSqlQuery>

#include <bitset>
#include <cstdio>

namespace {

// The offscreen platform warns of every window it cannot size; the figures are what matters.
void quietWindowWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (!message.contains(QLatin1String("propagateSizeHints")))
        std::fprintf(stderr, "%s%s\n", type == QtWarningMsg ? "warning: " : "", qPrintable(message));
}

} // namespace

void prepareBenchHome(const QTemporaryDir &home)
{
    qInstallMessageHandler(quietWindowWarnings);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toLocal8Bit());
}

FirmData benchFirm()
{
    FirmData firm;
    firm.nazwa = QStringLiteral("Zakład Ślusarski Żółć");
    firm.ulica = QStringLiteral("Długa");
    firm.nrDomu = QStringLiteral("5");
    firm.kod = QStringLiteral("90-001");
    firm.miasto = QStringLiteral("Łódź");
    firm.nip = QStringLiteral("526-104-08-28");
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("12 1020 1026 0000 1234 5678 9012"),
                        Money::fromZlote(1000000)};
    return firm;
}

bool openBenchFirm(const QTemporaryDir &home, const FirmData &firm)
{
    initPaths();
    static ConsoleDialogs console;
    setDialogs(&console);
    const QString file = home.path() + QStringLiteral("/firma.zlc");
    return FirmDatabase::create(file, nullptr) && OpenDb(file) &&
           FirmStore::save(Db(), firm, std::bitset<Accounts::Count>().set());
}

QList<qint32> fillDocuments(int count)
{
    QRandomGenerator rng(11);
    QSqlQuery(Db()).exec(QStringLiteral("PRAGMA synchronous = OFF"));
    QList<qint32> ids;
    const QStringList names = {QStringLiteral("Hurtownia Gęśla Sp. z o.o."), QStringLiteral("Jan Żółtowski"),
                               QStringLiteral("Urząd Skarbowy Łódź-Bałuty"), QStringLiteral("PPHU Świt")};
    for (int i = 0; i < count; ++i) {
        PaymentDocument d = PaymentDocument::newDocument(qint16(1 + i % 6), QDate(2026, 3, 5));
        d.banknr = 1;
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

bool growDocuments(int total)
{
    QSqlQuery q(Db());
    QStringList columns;
    q.exec(QStringLiteral("SELECT name FROM pragma_table_info('zlecanki')"));
    while (q.next())
        if (q.value(0).toString().compare(QLatin1String("ID"), Qt::CaseInsensitive) != 0)
            columns << q.value(0).toString();
    const QString list = columns.join(QStringLiteral(", "));
    for (;;) {
        q.exec(QStringLiteral("SELECT count(*) FROM zlecanki"));
        q.next();
        const int have = q.value(0).toInt();
        if (have >= total)
            return true;
        q.prepare(QStringLiteral("INSERT INTO zlecanki (") + list + QStringLiteral(") SELECT ") + list +
                  QStringLiteral(" FROM zlecanki LIMIT ?"));
        q.addBindValue(total - have);
        if (!q.exec())
            return false;
    }
}
