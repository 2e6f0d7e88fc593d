#pragma once

#include "DocumentKinds.h"
#include "Money.h"

#include <QDate>
#include <QString>
#include <QtGlobal>

// The social-insurance block of a document. Positions are those of ChoiceLists.
struct ZusBlock {
    qint16 nrRachunku = 0; // ZUS_NrRachunku, zusAccounts()
    qint16 typWplaty = 0;  // ZUS_TypWplaty, zusPaymentTypes()
    qint16 rok = 0;        // ZUS_Rok, zusYears()
    qint16 miesiac = 0;    // ZUS_Miesiac, months()
    QString nrDeklaracji = QStringLiteral("01");

    // What the entry window starts with: first account and type, the year and month of `today`.
    static ZusBlock defaults(const QDate &today);
};

// The tax block of a document.
struct TaxBlock {
    qint16 rok = 0;       // POD_Rok, taxYears()
    qint16 typOkresu = 0; // POD_TypOkresu, taxPeriodTypes()
    QString nrOkresu;
    QString symbol;
    QString identyfikacja;

    // The year of `today`, monthly period, the rest empty.
    static TaxBlock defaults(const QDate &today);
};

// One payment document: a row of zlecanki.
struct PaymentDocument {
    qint32 id = 0; // assigned on insert
    qint16 rodzaj = DocumentKinds::PrzelewBankowy;
    qint16 banknr = 1; // the paying firm account, 1..40
    QString bankFirmy;  // that account's bank name and number, copied when saved
    QString kontoFirmy;
    qint32 klientId = 0;
    QString klientNazwa;
    QString klientNazwa1;
    QString klientUlica;
    QString klientKod;
    QString klientMiasto;
    QString klientNip;
    QString klientBank;
    QString klientKonto;
    QString zaDokumentNazwa;
    Money wartosc;
    QDate dataDokumentu;
    QDate dataSesji; // set by every save to the working date
    ZusBlock zus;
    TaxBlock pod;

    // Which block is in force is told by the kind alone, whatever the blocks hold.
    bool czyZus() const { return rodzaj == DocumentKinds::PrzelewZus; }
    bool czyPodatki() const { return rodzaj == DocumentKinds::PrzelewPodatki; }

    // A new document of `kind` dated `today`, both blocks at their defaults.
    static PaymentDocument newDocument(qint16 kind, const QDate &today);
};
