#include "SlipDrivers.h"

#include "AppState.h"
#include "CollectiveStatement.h"
#include "Dialogs.h"
#include "DocumentSlips.h"
#include "documents/Firm.h"
#include "Messages.h"
#include "PaymentQr.h"
#include "PrintEngine.h"
#include "Slip.h"
#include "documents/DocumentStore.h"
#include "documents/ZusAccount.h"
#include "documents/PaymentTitles.h"

namespace {

QStringList nonEmpty(const QStringList &lines)
{
    QStringList kept;
    for (const QString &l : lines)
        if (!l.trimmed().isEmpty())
            kept << l.trimmed();
    return kept;
}

void printStored(PrintEngine &engine, bool shortName)
{
    bool isNumber = false;
    const qint32 id = engine.job().parameter.toInt(&isNumber);
    QString error;
    const auto doc = isNumber ? DocumentStore::read(Db(), id, &error) : std::nullopt;
    if (!doc) {
        dialogs().exclamation(error.isEmpty() ? QStringLiteral("Nie ma takiego dokumentu.") : error, Msg(51));
        return;
    }
    SlipRecords r;
    r.doc = *doc;
    r.firm = FirmStore::read(Db()).value_or(FirmData{});
    r.shortName = shortName;
    r.qr = engine.job().qr.value_or(PaymentQr::firmSetting(Db()));
    printDocumentSlip(engine, r);
}

} // namespace

QStringList SlipRecords::payerName() const
{
    if (shortName) {
        const QStringList brief = nonEmpty({firm.nazwaSkrocona, firm.nazwaSkroconaCd});
        if (!brief.isEmpty())
            return brief;
    }
    return nonEmpty({firm.nazwa, firm.nazwa1});
}

QStringList SlipRecords::payerAddress() const
{
    return nonEmpty(
        {Slip::streetLine(firm.ulica, firm.nrDomu, firm.nrLokalu), Slip::townLine(firm.kod, firm.miasto)});
}

QStringList SlipRecords::recipientName() const
{
    return nonEmpty({doc.klientNazwa, doc.klientNazwa1});
}

QStringList SlipRecords::recipientAddress() const
{
    return nonEmpty({doc.klientUlica, Slip::townLine(doc.klientKod, doc.klientMiasto)});
}

bool SlipRecords::cashDeposit() const
{
    return doc.kontoFirmy.trimmed().isEmpty();
}

void printDocumentSlip(PrintEngine &engine, const SlipRecords &r)
{
    const AppState &s = appState();
    switch (r.doc.rodzaj) {
    case DocumentKinds::PrzelewBankowy:
        // Printed all the same: the slip is still the firm's record of the payment.
        if (PaymentTitles::parseSplit(r.doc.zaDokumentNazwa))
            dialogs().exclamation(PaymentTitles::splitOnPaperWarning(), Msg(53));
        if (s.nowe != 0)
            DrukUproszczony(engine, r);
        else
            DrukPrzelewu(engine, r);
        break;
    case DocumentKinds::BankowyDowodWplaty:
        DrukDowoduWplaty(engine, r);
        break;
    case DocumentKinds::PrzekazPocztowy:
        DrukPrzekazuNaKonto(engine, r);
        break;
    case DocumentKinds::PrzekazImienny:
        DrukPrzekazu(engine, r);
        break;
    case DocumentKinds::PrzelewZus:
        if (const auto warning = ZusAccount::printWarning(r.doc, r.firm))
            dialogs().exclamation(*warning, QStringLiteral("Przelew do ZUS"));
        // Contributions to the firm's own account go on an ordinary transfer form.
        if (r.doc.zus.nrRachunku == ZusAccount::Individual) {
            SlipRecords transfer = r;
            transfer.doc = ZusAccount::asBankTransfer(r.doc, r.firm);
            printDocumentSlip(engine, transfer);
        } else if (s.wstawiany != 0)
            DrukPolZus(engine, r);
        else
            DrukZus(engine, r);
        break;
    case DocumentKinds::PrzelewPodatki:
        DrukPodatku(engine, r);
        break;
    default:
        dialogs().exclamation(QStringLiteral("Nieznany rodzaj dokumentu: %1").arg(r.doc.rodzaj), Msg(51));
        break;
    }
}

void DrukDokumentu(PrintEngine &engine)
{
    printStored(engine, false);
}

void DrukDokumentuZus(PrintEngine &engine)
{
    printStored(engine, true);
}

void registerSlipDrivers()
{
    PrintEngine &engine = PrintEngine::instance();
    engine.setDriver(QStringLiteral("dprzelew"), DrukDokumentu);
    engine.setDriver(QStringLiteral("dprzelewZus"), DrukDokumentuZus);
    engine.setDriver(QStringLiteral("zbiorowka"), DrukZbiorowki);
}
