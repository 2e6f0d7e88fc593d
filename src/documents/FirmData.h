#pragma once

#include "Accounts.h"

#include <QSqlDatabase>
#include <QString>

#include <bitset>
#include <optional>

// The firm's own data: the single row of table firma.
struct FirmData {
    QString nazwa;
    QString nazwa1;
    QString ulica;
    QString nrDomu;
    QString nrLokalu;
    QString kod;
    QString miasto;
    QString nip;
    Accounts::List accounts; // account n at n - 1
    QString nazwaSkrocona;
    QString nazwaSkroconaCd;
    // The supplementary identifiers of ZUS and tax slips. The type is the position in
    // ChoiceLists::zusIdentifierTypes() / taxIdentifierTypes(); -1 when none is chosen.
    int typIdentZus = -1;
    QString identZus;
    int typIdentPod = -1;
    QString identPod;
    // "Rachunek składkowy ZUS (NRS)": the firm's own ZUS contribution account, as typed.
    QString nrs;
};

namespace FirmStore {

// The firm row; nothing when the database has none yet (error left empty) or when the
// read failed (error says why).
std::optional<FirmData> read(const QSqlDatabase &db, QString *error = nullptr);

// Writes the firm row, adding it when the database has none, and rebuilds the in-memory
// account list. Balances are written only for the accounts marked in `writeBalances`:
// the others keep what is stored, including every document charged since the window
// showed them. A new row gets every balance. One transaction.
bool save(QSqlDatabase db, const FirmData &data, std::bitset<Accounts::Count> writeBalances,
          QString *error = nullptr);

} // namespace FirmStore
