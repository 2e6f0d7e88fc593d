#include "EntryRules.h"

#include "DocumentKinds.h"

namespace EntryRules {

QString caption(int mode)
{
    const QString design = QStringLiteral("Dokument - ");
    if (mode == Viewing)
        return design.left(8) + QStringLiteral(" [Przeglądanie]");
    return design.left(10) + QStringLiteral(" [Wprowadzanie]");
}

QString issueButtonText(int mode)
{
    switch (mode) {
    case Correction:
        return QStringLiteral("&Popraw");
    case Viewing:
        return QStringLiteral("&Drukuj");
    default:
        return QStringLiteral("&Wystaw");
    }
}

bool usesGeneralAmount(int kind)
{
    return kind >= DocumentKinds::PrzelewBankowy && kind <= DocumentKinds::PrzekazImienny;
}

bool recipientBankInUse(int kind)
{
    return kind != DocumentKinds::PrzekazImienny && kind != DocumentKinds::PrzelewZus;
}

QStringList requiredFields(int kind)
{
    QStringList fields;
    if (usesGeneralAmount(kind))
        fields << QStringLiteral("txtnazwa") << QStringLiteral("txtzadokument") << QStringLiteral("txtwartosc");
    else if (kind == DocumentKinds::PrzelewZus)
        fields << QStringLiteral("txtWartoscZus");
    if (recipientBankInUse(kind))
        fields << QStringLiteral("txtbank") << QStringLiteral("txtkonto");
    return fields;
}

PrintRoute printRoute(int mode, int kind)
{
    const QString general = QStringLiteral("dprzelew");
    if (mode == Viewing) {
        const bool wide = kind == DocumentKinds::PrzelewBankowy || kind == DocumentKinds::PrzekazPocztowy;
        return {general, wide ? QPageLayout::Landscape : QPageLayout::Portrait};
    }
    switch (kind) {
    case DocumentKinds::PrzelewZus:
        return {QStringLiteral("dprzelewZus"), QPageLayout::Portrait};
    case DocumentKinds::BankowyDowodWplaty:
    case DocumentKinds::PrzekazImienny:
        return {general, QPageLayout::Portrait};
    default:
        return {general, QPageLayout::Landscape};
    }
}

QList<int> offeredAccounts(const Accounts::List &accounts, int keep)
{
    // Slots 11-40 of a new firm row hold the placeholders "nazwa banku" and "numer konta":
    // such an account has not been filled in and is not offered.
    const auto filled = [](const QString &text, const char *placeholder) {
        const QString t = text.trimmed();
        return !t.isEmpty() && t != QLatin1String(placeholder);
    };
    QList<int> offered;
    for (int n = 1; n <= Accounts::Count; ++n) {
        const BankAccount &a = accounts[n - 1];
        if (filled(a.bankName, "nazwa banku") || n == keep)
            offered << n;
    }
    return offered;
}

QString windowName(int mode, int kind, qint32 id)
{
    if (mode == New)
        return QStringLiteral("frmprzelew_") + QString::number(kind);
    return QStringLiteral("frmprzelew_id") + QString::number(id);
}

} // namespace EntryRules
