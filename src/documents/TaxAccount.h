#pragma once

#include "documents/FirmData.h"

#include <QString>

// The tax micro-account: since 2020 PIT, CIT and VAT (with their advances) are paid to
// an account made from the payer's NIP, or PESEL for a person without a NIP.
namespace TaxAccount {

inline const QString RecipientName = QStringLiteral("Urząd Skarbowy");

struct MicroAccount {
    QString account; // 26 digits grouped as on forms; empty when it cannot be made
    QString problem; // why not, in Polish
};

// The firm's micro-account, from its PESEL when the tax identifier type chosen in the
// firm data is PESEL, from its NIP otherwise.
MicroAccount forFirm(const FirmData &firm);

} // namespace TaxAccount
