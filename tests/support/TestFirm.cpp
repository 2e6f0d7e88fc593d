#include "TestFirm.h"

#include "documents/Firm.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "documents/Accounts.h"
#include "print/PrintEngine.h"
#include "print/SlipDrivers.h"
#include "reports/ReportPrintout.h"

#include <QCoreApplication>
#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <bitset>
#include <memory>
#include <utility>

FirmData sampleFirm()
{
    FirmData firm;
    firm.nazwa = QStringLiteral("Zakład Ślusarski Żółć");
    firm.ulica = QStringLiteral("Długa");
    firm.nrDomu = QStringLiteral("5");
    firm.kod = QStringLiteral("90-001");
    firm.miasto = QStringLiteral("Łódź");
    firm.nip = QStringLiteral("526-104-08-28");
    firm.nazwaSkrocona = QStringLiteral("ŻÓŁĆ SPÓŁKA");
    firm.typIdentZus = 0;
    firm.identZus = QStringLiteral("012345678");
    return firm;
}

QString testServer()
{
    return qEnvironmentVariable("ZLECANKI_PG").trimmed();
}

bool firmsOnServer()
{
    return qEnvironmentVariableIntValue("ZLECANKI_TEST_SERVER") == 1;
}

namespace {

void dropSchema(const QString &schema)
{
    {
        const auto address = Dialect::parseAddress(testServer());
        if (address && Dialect::connect(*address, QStringLiteral("test-server"), nullptr))
            QSqlQuery(QSqlDatabase::database(QStringLiteral("test-server"), false))
                .exec(QStringLiteral("DROP SCHEMA IF EXISTS ") + schema + QStringLiteral(" CASCADE"));
    }
    FirmDatabase::close(QStringLiteral("test-server"));
}

} // namespace

QString firmLocation(const QString &path)
{
    if (!firmsOnServer() || testServer().isEmpty())
        return path;
    static QHash<QString, QString> given;
    if (const auto it = given.constFind(path); it != given.cend())
        return *it;
    const QString schema = QStringLiteral("t%1_%2").arg(QCoreApplication::applicationPid()).arg(given.size() + 1);
    dropSchema(schema);
    const QString address = testServer() + QStringLiteral("?schema=") + schema;
    given.insert(path, address);
    return address;
}

QString emptiedServerSchema(const QString &schema)
{
    const auto address = Dialect::parseAddress(testServer());
    if (testServer().isEmpty() || !address)
        return {};
    if (Dialect::connect(*address, QStringLiteral("test-server"), nullptr))
        QSqlQuery(QSqlDatabase::database(QStringLiteral("test-server"), false))
            .exec(QStringLiteral("DROP SCHEMA IF EXISTS ") + schema + QStringLiteral(" CASCADE"));
    FirmDatabase::close(QStringLiteral("test-server"));
    Dialect::Address firm = *address;
    firm.schema = schema;
    return Dialect::addressText(firm);
}

bool openNewFirm(const QString &path, const std::optional<FirmData> &firm)
{
    QString error;
    const QString location = firmLocation(path);
    // A new firm under a name used before replaces it, as a new file in the test's folder does.
    if (location != path) {
        CloseDb();
        dropSchema(Dialect::parseAddress(location)->schema);
    }
    if (!FirmDatabase::create(location, &error)) {
        qWarning("%s", qPrintable(error));
        return false;
    }
    if (!OpenDb(location))
        return false;
    return !firm || FirmStore::save(Db(), *firm, std::bitset<Accounts::Count>().set());
}

bool createFirm(const QString &path, const QStringList &statements)
{
    QString error;
    if (!FirmDatabase::create(path, &error)) {
        qWarning("%s", qPrintable(error));
        return false;
    }
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("createFirm"));
        db.setDatabaseName(path);
        ok = db.open();
        for (const QString &statement : statements)
            if (ok && !QSqlQuery(db).exec(statement)) {
                qWarning("%s", qPrintable(statement));
                ok = false;
            }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("createFirm"));
    return ok;
}

PaymentDocument sampleDocument(int kind, QDate issued)
{
    PaymentDocument d = PaymentDocument::newDocument(qint16(kind), issued);
    d.bankFirmy = QStringLiteral("PKO BP");
    d.kontoFirmy = QStringLiteral("12 1020 1026 0000 1234 5678 9012");
    d.klientNazwa = QStringLiteral("Hurtownia Gęśla");
    d.klientUlica = QStringLiteral("Kwiatowa 7");
    d.klientKod = QStringLiteral("31-000");
    d.klientMiasto = QStringLiteral("Kraków");
    d.klientBank = QStringLiteral("mBank");
    d.klientKonto = QStringLiteral("45 1140 2004 0000 3002 0123 4567");
    d.zaDokumentNazwa = QStringLiteral("Faktura 12/2026");
    d.wartosc = Money::fromGrosze(123450);
    return d;
}

void printToPdf(const QString &pdf)
{
    registerSlipDrivers();
    registerReportDriver();
    PrintEngine::instance().setPrinterFactory([pdf] { return std::make_unique<PdfSurface>(pdf, SafeOutput::Existing::Replace); });
}

void printToPdf(const QString &pdf, QStringList *jobs)
{
    printToPdf(pdf);
    for (const auto &[word, driver] : {std::pair{QStringLiteral("dprzelew"), &DrukDokumentu},
                                       std::pair{QStringLiteral("dprzelewZus"), &DrukDokumentuZus}})
        PrintEngine::instance().setDriver(word, [word, driver, jobs](PrintEngine &e) {
            const bool wide = e.job().orientation == QPageLayout::Landscape;
            *jobs << word + (wide ? QStringLiteral(" landscape ") : QStringLiteral(" portrait ")) +
                         e.job().parameter.toString();
            driver(e);
        });
}

QString stored(const QString &sql)
{
    QSqlQuery q(Db());
    return q.exec(sql) && q.next() ? q.value(0).toString() : QStringLiteral("<brak>");
}

QString queryRows(const QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    if (!q.exec(sql))
        return q.lastError().text();
    QStringList out;
    while (q.next()) {
        QStringList values;
        for (int i = 0; i < q.record().count(); ++i)
            values << (q.isNull(i) ? QStringLiteral("NULL") : q.value(i).toString());
        out << values.join(QLatin1Char('|'));
    }
    return out.join(QLatin1Char(';'));
}
