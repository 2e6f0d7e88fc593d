#pragma once

#include "documents/FirmData.h"
#include "documents/PaymentDocument.h"

#include <QString>

#include <optional>

// Paying ZUS as it is paid since 2018: one ordinary transfer to the firm's individual
// contribution account (NRS). The four common ZUS accounts were closed on 31-12-2017;
// documents stored on them keep printing as they were.
namespace ZusAccount {

// The position of "Rachunek indywidualny (NRS)" in ChoiceLists::zusAccounts().
inline constexpr qint16 Individual = 4;

inline const QString RecipientName = QStringLiteral("Zakład Ubezpieczeń Społecznych");

// The account a new ZUS document of the firm starts on: its NRS when it has one.
qint16 startingAccount(const FirmData &firm);

// "Składki ZUS 03/2026, dekl. 01, typ S": the declaration block as a transfer title.
QString transferTitle(const ZusBlock &zus);

// A ZUS document on the NRS as the bank transfer it is paid with: ZUS as the recipient,
// the firm's NRS as its account, the declaration block as the title.
PaymentDocument asBankTransfer(const PaymentDocument &zusDocument, const FirmData &firm);

// What to tell the user before printing a ZUS document: that its account is closed, or
// that the firm has no NRS to pay to; nothing when all is well.
std::optional<QString> printWarning(const PaymentDocument &zusDocument, const FirmData &firm);

} // namespace ZusAccount
