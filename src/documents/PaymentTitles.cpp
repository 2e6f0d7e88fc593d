#include "PaymentTitles.h"

#include "documents/ChoiceLists.h"
#include "documents/FirmData.h"
#include "documents/PaymentDocument.h"
#include "documents/ZusAccount.h"

#include <QRegularExpression>

namespace PaymentTitles {

namespace {

QString onlyAlnum(const QString &s)
{
    QString out;
    for (QChar c : s)
        if (c.isLetterOrNumber())
            out += c.toUpper();
    return out;
}

// The identifier's type letter and the identifier itself.
std::pair<QString, QString> taxIdentifier(const FirmData &firm)
{
    const QString letter = ChoiceLists::letterAt(ChoiceLists::taxIdentifierTypes(), firm.typIdentPod);
    if (!letter.isEmpty() && !firm.identPod.trimmed().isEmpty())
        return {letter, onlyAlnum(firm.identPod)};
    return {QStringLiteral("N"), onlyAlnum(firm.nip)};
}

// "26M03": the year's last two digits, the period type's letter and its number.
QString taxPeriod(const TaxBlock &pod, QString *problem)
{
    const QString year = ChoiceLists::itemAt(ChoiceLists::taxYears(), pod.rok);
    const QString type = ChoiceLists::letterAt(ChoiceLists::taxPeriodTypes(), pod.typOkresu);
    if (year.size() != 4 || type.isEmpty()) {
        *problem = QStringLiteral("nie wybrano roku albo typu okresu podatku");
        return {};
    }
    QString number = pod.nrOkresu.trimmed();
    if (type == QLatin1String("R"))
        return year.right(2) + type;
    bool numeric = false;
    const int n = number.toInt(&numeric);
    const int width = type == QLatin1String("D") ? 4 : 2;
    if (!numeric || n <= 0 || number.size() > width) {
        *problem =
            QStringLiteral("numer okresu podatku \"%1\" nie pasuje do typu okresu %2").arg(number, type);
        return {};
    }
    return year.right(2) + type + number.rightJustified(width, QLatin1Char('0'));
}

} // namespace

QString splitTitle(const SplitPayment &p)
{
    return QStringLiteral("/VAT/") + p.vat.plain(QLatin1Char(',')) + QStringLiteral("/IDC/") +
           p.idc.trimmed() + QStringLiteral("/INV/") + p.inv.trimmed() + QStringLiteral("/TXT/") +
           p.txt.trimmed();
}

std::optional<SplitPayment> parseSplit(const QString &title)
{
    // The invoice number may hold slashes ("FV 12/2026"), so the tags, not the slashes, split it.
    static const QRegularExpression re(
        QStringLiteral("^/VAT/(\\d{1,10},\\d{2})/IDC/([^/]{1,14})/INV/(.{1,35}?)(?:/TXT/(.{0,33}))?$"));
    const QRegularExpressionMatch m = re.match(title.trimmed());
    if (!m.hasMatch())
        return std::nullopt;
    const auto vat = Money::parse(m.captured(1));
    if (!vat)
        return std::nullopt;
    return SplitPayment{*vat, m.captured(2), m.captured(3), m.captured(4)};
}

QString splitOnPaperWarning()
{
    return QStringLiteral(
        "To przelew w mechanizmie podzielonej płatności: banki przyjmują go tylko "
        "elektronicznie (plik dla banku, bankowość internetowa), nie na papierowym blankiecie.");
}

QString splitProblem(const SplitPayment &p, Money amount)
{
    if (p.vat <= Money() || p.vat.roundedToGrosze() != p.vat)
        return QStringLiteral("kwota VAT musi być większa od zera, w złotych i groszach");
    if (p.vat > amount)
        return QStringLiteral("kwota VAT jest większa niż kwota przelewu");
    if (p.vat >= Money::fromZlote(10000000000))
        return QStringLiteral("kwota VAT ma więcej niż 10 cyfr złotych");
    if (p.idc.trimmed().isEmpty() || p.idc.trimmed().size() > SplitPayment::IdcMax)
        return QStringLiteral("NIP (IDC) musi mieć od 1 do %1 znaków").arg(SplitPayment::IdcMax);
    if (p.inv.trimmed().isEmpty() || p.inv.trimmed().size() > SplitPayment::InvMax)
        return QStringLiteral("numer faktury (INV) musi mieć od 1 do %1 znaków").arg(SplitPayment::InvMax);
    if (p.txt.trimmed().size() > SplitPayment::TxtMax)
        return QStringLiteral("tekst (TXT) może mieć najwyżej %1 znaki").arg(SplitPayment::TxtMax);
    for (const QString &part : {p.idc, p.inv, p.txt})
        if (part.contains(QLatin1String("/VAT/")) || part.contains(QLatin1String("/IDC/")) ||
            part.contains(QLatin1String("/INV/")) || part.contains(QLatin1String("/TXT/")))
            return QStringLiteral(
                "pola podzielonej płatności nie mogą zawierać znaczników /VAT/, /IDC/, /INV/, /TXT/");
    if (p.idc.contains(QLatin1Char('/')))
        return QStringLiteral("NIP (IDC) nie może zawierać znaku \"/\"");
    return {};
}

QString taxTitleProblem(const PaymentDocument &doc, const FirmData &firm)
{
    if (taxIdentifier(firm).second.isEmpty())
        return QStringLiteral("firma nie ma NIP ani identyfikatora podatkowego");
    QString problem;
    taxPeriod(doc.pod, &problem);
    if (!problem.isEmpty())
        return problem;
    if (doc.pod.symbol.trimmed().isEmpty())
        return QStringLiteral("brak symbolu formularza podatku");
    return {};
}

QString taxTitle(const PaymentDocument &doc, const FirmData &firm)
{
    const auto [type, id] = taxIdentifier(firm);
    QString problem;
    QString title = QStringLiteral("/TI/") + type + id + QStringLiteral("/OKR/") +
                    taxPeriod(doc.pod, &problem) + QStringLiteral("/SFP/") +
                    doc.pod.symbol.trimmed().toUpper();
    if (!doc.pod.identyfikacja.trimmed().isEmpty())
        title += QStringLiteral("/TXT/") + doc.pod.identyfikacja.trimmed();
    return title;
}

bool isZusOnNrs(const PaymentDocument &doc)
{
    return doc.czyZus() && doc.zus.nrRachunku == ZusAccount::Individual;
}

QString zusTitle(const PaymentDocument &doc)
{
    if (!doc.zaDokumentNazwa.trimmed().isEmpty())
        return doc.zaDokumentNazwa.trimmed();
    return ZusAccount::transferTitle(doc.zus);
}

} // namespace PaymentTitles
