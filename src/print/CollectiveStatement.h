#pragma once

#include "Money.h"

#include <QDate>

#include <optional>
#include <QList>
#include <QMetaType>
#include <QString>

class PrintEngine;

// What the collective statement ("zbiorówka") prints: one firm account's bank and
// number, the day, and the amounts of that day's transfers in the order of the list.
// Handed to the engine as the job parameter: QVariant::fromValue(statement).
struct CollectiveStatement {
    QString bankName;
    QString accountNumber;
    QDate date;
    QList<Money> amounts;

    // Nothing when the sum cannot be held.
    std::optional<Money> total() const;
};
Q_DECLARE_METATYPE(CollectiveStatement)

// The driver of "zbiorowka": the statement twice on one sheet, "A" at the top and "D"
// 10 cm lower, to be cut apart. A list too long for half a sheet gives each copy whole
// sheets, the amounts running on from sheet to sheet.
void DrukZbiorowki(PrintEngine &engine);
// One copy with its top left corner at (left, top), marked `mark`, in a band `height`
// high; `amounts` from `first` on. Returns how many amounts it printed.
qsizetype DrukZestawienia(PrintEngine &engine, const CollectiveStatement &statement, qreal top, qreal left,
                          const QString &mark, qreal height, qsizetype first = 0);
