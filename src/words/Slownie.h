#pragma once

#include "Money.h"

#include <QString>
#include <QStringList>

#include <functional>

// Amounts in Polish words, as the payment slips require ("kwota słownie"), from one grosz
// to 999 999 999 999,99 zł. The form of each magnitude word follows the slips' long-standing
// rule: below twenty the whole group decides, from twenty on only its last digit, so 112 is
// "sto dwanaście złote" and 213 000 "dwieście trzynaście tysiące".

// One word of the table: kind 0 units and teens, 1 tens, 2 hundreds, 3 grosze, 4 złote,
// 5 thousands, 6 millions, 7 thousand-millions; empty for anything outside the table.
QString Slowo(int kind, int code);

struct Wording {
    QString text;           // the words, or the digits when the amount is too large
    bool overLimit = false; // the amount is over 999 999 999 999,99 zł
};
// The wording of an amount's absolute value, rounded half up to grosze; empty for zero.
// Tells nobody anything: see Slownie for the user's message.
Wording wordingOf(Money amount);

// The wording of an amount; an amount too large is told to the user ("Przekroczony
// zakres") and comes back in digits.
QString Slownie(Money amount);
// The text of that message.
QString overLimitMessage(Money amount);
// The amount in plain digits, as the over-limit message and fallback show it ("12,5").
QString plainDigits(Money amount);

struct WrappedWording {
    QStringList lines; // at most five
    QString message;   // "Druk słownie - Za mało wierszy!" when words were left over
};
// Breaks a wording into lines of a box `boxWidth` wide, `width` measuring a text in the
// same units: the average number of characters that fit the box makes a line, broken at
// the last blank within it (a word longer than a line is broken inside).
WrappedWording wrapWording(const QString &text, const std::function<qreal(const QString &)> &width, qreal boxWidth);
