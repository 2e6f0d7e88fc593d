#pragma once

#include "Money.h"
#include "documents/Contractor.h"

#include <QDate>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <optional>

// A bank transfer asked for by another program of the suite: the fourteen values it
// passes, checked and converted. Position n of the suite's list is index n - 1.
struct ServerRequest {
    // Where the slip goes: nowhere, a PDF file, or a printer queue.
    enum class Target { None, Pdf, Printer };

    QString firmPath;    // 1: the firm database file or server address
    int banknr = 1;      // 2: the paying account, 1..40 (empty: 1)
    Target target = Target::None; // 3: empty, "pdf:PATH" or a queue name
    QString targetName;  //    the PDF file or the queue
    Contractor recipient; // 4-8, 13, 14
    QString sourceKind;  // 9: "FVZ", "FVZK", ...
    QString sourceNumber; // 10
    QString title;       // the payment title made of 9 and 10
    Money amount;        // 11
    QDate documentDate;  // 12

    static constexpr int ValueCount = 14;
};

// Checks and converts the values; nothing, with a Polish message in `error`, when a
// value is missing or does not convert. The firm file itself is not looked at.
std::optional<ServerRequest> parseServerValues(const QStringList &values, QString *error);

// The payment title: "Zapłata za: " and the number for a purchase invoice ("FVZ") or its
// correction ("FVZK"), the number alone for anything else.
QString serverTitle(const QString &sourceKind, const QString &sourceNumber);

// The document stored earlier under the caller's reference, if any (an empty reference
// never matches).
std::optional<qint32> findServerReference(const QSqlDatabase &db, const QString &reference);

// Stores the transfer in the firm database `db` as the entry window stores a document:
// the recipient is looked up by name and added to the contractors when there is none of
// that name, the document row is added (kind 1, the paying account's bank and number
// copied from the firm row) and the account's stored balance is lowered by the amount,
// with the caller's non-empty `reference`, all in one transaction. A reference already
// stored gives its document's Id back and stores nothing (`repeated`). Returns the Id,
// or nothing with a Polish message. `contractorAdded` tells whether the dictionary grew.
std::optional<qint32> StoreServerDocument(QSqlDatabase db, const ServerRequest &request, const QString &reference,
                                          bool *contractorAdded, bool *repeated, QString *error);
