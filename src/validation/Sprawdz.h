#pragma once

#include <QString>

// Field checks by kind word, on the text alone (no widgets): "data", "cur", "num", "int",
// "kodpoczt", "nip", "pesel". All are format checks: no check digit is computed.
namespace Sprawdz {

struct Outcome {
    bool ok = true;
    QString message; // "'" + the trimmed text + the kind's message, when not ok
    QString reason;  // the box's title where a reason applies, else empty
};

bool isKnownKind(const QString &kind);
// Checks `text` as a field of `kind`. Blanks at both ends are ignored; an empty text is
// always accepted (required fields are checked apart).
Outcome check(const QString &kind, const QString &text);

// The one-letter outcome of the three number formats: "" correct, "P" empty,
// "N" wrong arrangement, otherwise the reason of the failure (message text).
QString kodPocztowyCode(const QString &text);
QString nipCode(const QString &text);
QString peselCode(const QString &text);

// A number as a Polish user writes it: digits with "," or "." as the decimal separator,
// blanks grouping thousands, an optional sign.
bool isNumeric(const QString &text);
// Numeric with no fraction ("12", "12,00").
bool isWhole(const QString &text);

// The keystroke filter: returns the key code to let it through, 0 to swallow it.
// Codes 0 and 8 (backspace) always pass. Modes: 0 amounts and 1 numbers (digits , . -),
// 2 dates (digits - /), 3 postal codes and NIP (digits -), 4 whole numbers and PESEL
// (digits), 5 free text (all but the apostrophe and the double quote). Other modes
// let nothing through.
int FiltrKlawisza(int keyCode, int mode);

} // namespace Sprawdz
