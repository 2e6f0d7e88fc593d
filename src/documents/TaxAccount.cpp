#include "TaxAccount.h"

#include "documents/ChoiceLists.h"
#include "validation/CheckDigits.h"

namespace TaxAccount {

MicroAccount forFirm(const FirmData &firm)
{
    const bool isPesel =
        ChoiceLists::letterAt(ChoiceLists::taxIdentifierTypes(), firm.typIdentPod) == QLatin1String("P");
    const QString identifier = isPesel ? firm.identPod : firm.nip;
    const QString name = isPesel ? QStringLiteral("PESEL") : QStringLiteral("NIP");
    if (identifier.trimmed().isEmpty())
        return {QString(), QStringLiteral("W danych firmy brak numeru %1, z którego powstaje mikrorachunek "
                                          "podatkowy.")
                               .arg(name)};
    if (const auto problem =
            isPesel ? CheckDigits::peselProblem(identifier) : CheckDigits::nipProblem(identifier))
        return {QString(), QStringLiteral("Z numeru %1 firmy nie da się zrobić mikrorachunku podatkowego: %2")
                               .arg(name, *problem)};
    return {CheckDigits::groupAccount(*CheckDigits::taxMicroAccount(identifier, isPesel)), QString()};
}

} // namespace TaxAccount
