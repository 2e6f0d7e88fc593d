#include "ZusAccount.h"

#include "documents/ChoiceLists.h"
#include "validation/BankNames.h"
#include "validation/CheckDigits.h"

namespace ZusAccount {

qint16 startingAccount(const FirmData &firm)
{
    return firm.nrs.trimmed().isEmpty() ? qint16(0) : Individual;
}

QString transferTitle(const ZusBlock &zus)
{
    return QStringLiteral("Składki ZUS %1/%2, dekl. %3, typ %4")
        .arg(zus.miesiac + 1, 2, 10, QLatin1Char('0'))
        .arg(ChoiceLists::itemAt(ChoiceLists::zusYears(), zus.rok), zus.nrDeklaracji.trimmed(),
             ChoiceLists::letterAt(ChoiceLists::zusPaymentTypes(), zus.typWplaty));
}

PaymentDocument asBankTransfer(const PaymentDocument &zusDocument, const FirmData &firm)
{
    PaymentDocument d = zusDocument;
    d.rodzaj = DocumentKinds::PrzelewBankowy;
    d.klientNazwa = RecipientName;
    d.klientNazwa1.clear();
    d.klientUlica.clear();
    d.klientKod.clear();
    d.klientMiasto.clear();
    d.klientNip.clear();
    d.klientKonto = CheckDigits::accountDigits(firm.nrs);
    d.klientBank = BankNames::bankName(d.klientKonto);
    d.zaDokumentNazwa = transferTitle(zusDocument.zus);
    return d;
}

std::optional<QString> printWarning(const PaymentDocument &zusDocument, const FirmData &firm)
{
    if (zusDocument.zus.nrRachunku != Individual)
        return QStringLiteral(
                   "Rachunek ZUS \"%1\" zamknięto z końcem 2017 roku: składki wpłaca się teraz jednym "
                   "przelewem na rachunek składkowy firmy (NRS).")
            .arg(ChoiceLists::itemAt(ChoiceLists::zusAccounts(), zusDocument.zus.nrRachunku));
    if (firm.nrs.trimmed().isEmpty())
        return QStringLiteral("Firma nie ma rachunku składkowego ZUS (NRS) - wpisz go w danych firmy "
                              "(System, Dane firmy, Identyfikatory).");
    return std::nullopt;
}

} // namespace ZusAccount
