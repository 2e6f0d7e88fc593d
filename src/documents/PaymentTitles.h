#pragma once

#include "Money.h"

#include <QString>

#include <optional>

struct PaymentDocument;
struct FirmData;

// The titles that banks read by their structure: a split payment (VAT part paid to the
// payee's VAT account) and a transfer to the tax office. Both live in the document's one
// title column, so a split payment is recognised by its title alone.
namespace PaymentTitles {

// "/VAT/23,00/IDC/5261040828/INV/FV 12/2026/TXT/zaplata"
struct SplitPayment {
    Money vat;
    QString idc; // the payee's NIP, up to 14 characters
    QString inv; // the invoice number (or its KSeF number), up to 35
    QString txt; // free text, up to 33

    static constexpr int IdcMax = 14;
    static constexpr int InvMax = 35;
    static constexpr int TxtMax = 33;
};

// The title as it is stored and sent. /TXT/ is always present, empty or not, since some
// banks check the four tags are all there.
QString splitTitle(const SplitPayment &p);
// The parts of a stored title; nothing when it is not a split-payment title.
std::optional<SplitPayment> parseSplit(const QString &title);
// What a split payment printed on a paper slip is told.
QString splitOnPaperWarning();
// What is wrong with the parts, in Polish; empty when they make a valid title for a
// payment of `amount` (the VAT part may not exceed the whole amount).
QString splitProblem(const SplitPayment &p, Money amount);

// "/TI/N5261040828/OKR/26M03/SFP/VAT-7/TXT/..." from the document's tax block and the
// firm's tax identifier (its NIP when it names none). /TXT/ follows only when the
// liability is identified.
QString taxTitle(const PaymentDocument &doc, const FirmData &firm);
// What stops the tax title from being built (no identifier, no period number...); empty when none.
QString taxTitleProblem(const PaymentDocument &doc, const FirmData &firm);

// A ZUS transfer to the payer's individual contribution account carries a plain title:
// the one typed, or "Składki ZUS MM/RRRR, dekl. NN, typ S" from the declaration block.
QString zusTitle(const PaymentDocument &doc);
// True when the document pays the payer's individual contribution account (the only
// ZUS account there is since 2018).
bool isZusOnNrs(const PaymentDocument &doc);

} // namespace PaymentTitles
