#pragma once

#include <QString>
#include <QtGlobal>

// One row of kontrahenci: a recipient of payments.
struct Contractor {
    qint32 id = 0; // 0 while not stored
    QString nazwa;
    QString nazwa1;
    QString ulica;
    QString kod;
    QString miasto;
    QString nip;
    QString bankNazwa;
    QString bankKonto;
};

// An entry of the dictionary's list.
struct ContractorName {
    qint32 id = 0;
    QString nazwa;
};
