#pragma once

#include "Accounts.h"

#include <QList>
#include <QPageLayout>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// The decisions of the document window that depend only on its mode (0 new, 1 correction,
// 2 viewing) and the document's kind (1..6), kept apart from the widgets.
namespace EntryRules {

enum Mode : qint16 { New = 0, Correction = 1, Viewing = 2 };

// "Dokument - [Wprowadzanie]" cut as it always was: the viewing caption loses the dash.
QString caption(int mode);
// The text of cmdwystaw: "&Wystaw", "&Popraw", "&Drukuj".
QString issueButtonText(int mode);

// Kinds 1..4 take their amount from txtwartosc; ZUS and tax documents from their blocks.
bool usesGeneralAmount(int kind);
// The recipient's bank and account: printed on every slip but the named postal order and
// the ZUS slip (which carries the insurer's own accounts).
bool recipientBankInUse(int kind);
// The controls that must not be left empty before a document of `kind` is stored, in the
// order the user is sent back to them.
QStringList requiredFields(int kind);

struct PrintRoute {
    QString procedure;
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
    bool operator==(const PrintRoute &) const = default;
};
// The driver and paper orientation of a document's slip. Viewing prints ZUS and tax
// documents through the general driver upright, unlike issuing; bookkeepers have their
// printers set up for it, so it stays.
PrintRoute printRoute(int mode, int kind);

// The firm accounts offered to pay from: those given a bank name, in their order, and
// `keep` (the account of a document being corrected or viewed) even when its name has
// since been cleared. Each entry is the account's own number 1..40.
QList<int> offeredAccounts(const Accounts::List &accounts, int keep = 0);

// The object name of a document window. New documents have one window per kind, so a
// transfer and a ZUS payment can be written side by side while a second command for the
// same kind brings the open one forward; a stored document has one window of its own.
QString windowName(int mode, int kind, qint32 id);

} // namespace EntryRules
