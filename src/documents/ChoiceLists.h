#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

// The fixed choice lists whose 0-based positions are stored in documents and in the firm
// row. A stored position keeps its meaning only while every list keeps its order, so
// items are only ever added at the end.
namespace ChoiceLists {

// The working date (the firm's "today"), or the system date before any firm was opened.
QDate workingDate();

// "Nr rachunku ZUS:" (ZUS_NrRachunku).
QStringList zusAccounts();
// "Deklaracja:" (ZUS_TypWplaty); the slip prints the letter before the dash.
QStringList zusPaymentTypes();
// "Typ okresu:" (POD_TypOkresu); not alphabetical, on purpose.
QStringList taxPeriodTypes();
// "Deklaracja za rok:" (POD_Rok): "1999" to "2022", then on to the year after `today`.
QStringList taxYears(const QDate &today = workingDate());
// The ZUS declaration year (ZUS_Rok): "1995" to "2024", then on to the year after `today`.
QStringList zusYears(const QDate &today = workingDate());
// The twelve months in calendar order (ZUS_Miesiac): position 0 is January.
QStringList months();

// The firm's supplementary identifier types. The two lists differ (the ZUS one has no
// NIP), so the same type has different positions in them.
QStringList zusIdentifierTypes(); // TYPIDENTZUS
QStringList taxIdentifierTypes(); // TYPIDENTPOD

// The text of a list's item at a stored position; empty outside the list.
QString itemAt(const QStringList &list, int position);
// What a slip prints for an item "S - składka za 1 m-c": the part before " - ".
QString letterAt(const QStringList &list, int position);
// The position of a year in a year list; -1 when the list does not hold it.
int yearPosition(const QStringList &years, int year);

} // namespace ChoiceLists
