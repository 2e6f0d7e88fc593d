#pragma once

#include "PaymentDocument.h"

#include <QSqlDatabase>
#include <QString>

#include <functional>
#include <optional>

// Payment documents (table zlecanki) and the balance of the account each one charges.
// Every save runs with its balance change (and, on insert and correction, the recipient
// added to the contractors) in one transaction: a failure leaves the database and the
// in-memory account list as they were and comes back as a Polish message in `error`.
namespace DocumentStore {

std::optional<PaymentDocument> read(const QSqlDatabase &db, qint32 id, QString *error = nullptr);

// A step of the caller's that goes into the same transaction as the new document, given
// its Id; false (with the reason in `error`) undoes the whole insert.
using Alongside = std::function<bool(QSqlDatabase &db, qint32 id, QString *error)>;

// Stores a new document and lowers the balance of account doc.banknr by its amount.
// Sets doc.id, doc.klientId and doc.dataSesji; returns the new Id. The in-memory account
// list and the contractor windows follow when `db` is the program's open firm.
// `contractorAdded` tells whether the recipient was new to the dictionary.
std::optional<qint32> insert(QSqlDatabase db, PaymentDocument &doc, QString *error = nullptr,
                             const Alongside &alongside = {}, bool *contractorAdded = nullptr);

// A correction of document doc.id: rewrites the row and lowers the balance of the account
// now chosen (doc.banknr) by the new amount less the amount stored before. An account the
// document was moved away from is not given its old amount back; that is how balances
// have always been kept.
bool update(QSqlDatabase db, PaymentDocument &doc, QString *error = nullptr);

// Gives the document's amount back to the account it names, then deletes it.
bool remove(QSqlDatabase db, qint32 id, QString *error = nullptr);

} // namespace DocumentStore
