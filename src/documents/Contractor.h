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

// The recipient of a payment document or a scheduled payment (their klient... members) as a
// contractor, and a contractor made their recipient.
template <typename Payment>
Contractor recipientOf(const Payment &p)
{
    Contractor c;
    c.nazwa = p.klientNazwa;
    c.nazwa1 = p.klientNazwa1;
    c.ulica = p.klientUlica;
    c.kod = p.klientKod;
    c.miasto = p.klientMiasto;
    c.nip = p.klientNip;
    c.bankNazwa = p.klientBank;
    c.bankKonto = p.klientKonto;
    return c;
}

template <typename Payment>
void setRecipient(Payment &p, const Contractor &c)
{
    p.klientNazwa = c.nazwa;
    p.klientNazwa1 = c.nazwa1;
    p.klientUlica = c.ulica;
    p.klientKod = c.kod;
    p.klientMiasto = c.miasto;
    p.klientNip = c.nip;
    p.klientBank = c.bankNazwa;
    p.klientKonto = c.bankKonto;
}
