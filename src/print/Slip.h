#pragma once

#include "Money.h"

#include <QDate>
#include <QPageLayout>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <functional>

class PrintEngine;

// What every slip shares: the character boxes of the standard forms, the texts that fill
// them, the amount as slips print it outside the boxes, and the arrangement of a form's
// parts on A4 sheets. Positions are twips from the corner of the part being drawn.
namespace Slip {

// The character box grid of the standard forms: 5.08 mm (two typewriter characters at
// 10 cpi) from box to box, boxes 4.4 mm wide; a row of 27 is 137 mm.
constexpr qreal BoxPitch = 288;
constexpr qreal BoxWidth = 250;
constexpr qreal TextRowBox = 255; // box height of a text row
constexpr qreal NumberRowBox = 300;
// The size of one character in its box.
constexpr qreal BoxFontSize = 12;
// Below this a free text in a row is no longer legible on a bank's scanner.
constexpr qreal SmallestRowFontSize = 5;

// A row of character boxes with its small caption above. `captionX` < 0: over the first box.
struct Boxes {
    const char *caption; // UTF-8; nullptr for none
    qreal x, y;          // top left of the first box
    int count;
    qreal height = TextRowBox;
    qreal captionX = -1;
};

// A framed field with its caption: above the frame, or under it when `captionBelow`.
struct Frame {
    const char *caption;
    qreal x, y, w, h;
    bool captionBelow = false;
};

// A fixed text of a form at its place.
struct Label {
    const char *text;
    qreal x, y;
    qreal size = 7;
    bool bold = false;
};

constexpr qreal boxX(qreal firstX, int index)
{
    return firstX + index * BoxPitch;
}

enum class Align { Left, Right };

// Draws a form through the engine: the whole form on plain paper, or only the values for
// forms pre-printed in red ("Wstawiany"); grey boxes when "Szary" is on.
class Pen {
public:
    explicit Pen(PrintEngine &engine);

    PrintEngine &engine;
    bool wholeForm;
    bool grey;
    bool withAmount;

    // The form's own drawing: nothing of it when only the values are printed.
    void boxes(const Boxes &b, const QList<int> &thickAfter = {}) const;
    void frame(const Frame &f) const;
    void label(const Label &l) const;
    void caption(const QString &text, qreal x, qreal y, qreal size = 6, bool bold = false,
                 bool italic = false) const;
    // A caption ending at `right` (the part labels).
    void captionRight(const QString &text, qreal right, qreal y, qreal size = 7) const;
    void rule(qreal x1, qreal y1, qreal x2, qreal y2, qreal width = 8) const;
    void border(qreal x, qreal y, qreal w, qreal h) const;

    // Values, printed always. A text goes one character to a box, right-aligned when told;
    // a longer one runs as free text across the row in a size measured to fit it (machine
    // filling may ignore the boxes), never two glyphs squeezed into one box.
    void fill(const Boxes &b, const QString &text, Align align = Align::Left) const;
    void boxed(const Boxes &b, const QString &text, Align align = Align::Left,
               const QList<int> &thickAfter = {}) const
    {
        boxes(b, thickAfter);
        fill(b, text, align);
    }
    // A value in Arial (or Courier when `mono`) at a place.
    void text(const QString &text, qreal x, qreal y, qreal size = 9, bool bold = false,
              bool mono = false) const;
    // The text after a fixed caption on the same line: the caption (whole form) and the value.
    void captioned(const Label &caption, const QString &value, qreal valueSize = 9, bool bold = false) const;
    // Paragraphs broken between words into the area (x, y, width, height), the size
    // shrinking from `size` until every line fits; returns the y below the last line.
    // The first paragraph in bold when `boldFirst`.
    qreal block(const QStringList &paragraphs, qreal x, qreal y, qreal width, qreal height, qreal size = 9,
                bool boldFirst = false) const;
    // The amount in words in a field `width` wide and `height` high: the font shrinks from
    // `size` until the wording fits. Nothing when the amount is not printed.
    void words(Money amount, qreal x, qreal y, qreal width, qreal height, qreal size = 8) const;
    // The "W"/"P" marks of a transfer / cash deposit row; the one not used is struck out.
    void wpMarks(qreal x, qreal y, qreal height, bool cashDeposit) const;
};

// The amount in the character boxes: "########0.00" with the decimal comma ("1234,50").
QString boxAmount(Money amount);
// The amount printed outside the boxes, in the format chosen in the settings (DrukZlGr):
// 0 "1 234,50", 1 "1 234,50 zł", 2 "1 234 zł 50 gr".
QString amountText(Money amount, int format);
QString amountText(Money amount);
// The issue date as the slip prints it; empty when dates are not printed.
QString issueDate(const QDate &date);
// An account number for its boxes: digits only, a leading country code "PL" and blanks dropped.
QString accountDigits(const QString &account);
// An account for a line of text: its digits in the usual groups ("45 1140 2004 ...").
QString groupedAccount(const QString &account);
// Digits only (a NIP printed one digit to a box).
QString digitsOnly(const QString &text);
// Packs texts into `rows` lines of at most `width` characters: a text joins the line before
// it (after `separator`) while it fits, else starts the next line; what is left over joins
// the last line. Nothing is cut: `fits` tells whether every line kept to `width`.
QStringList packRows(const QStringList &texts, int rows, int width,
                     const QString &separator = QStringLiteral(", "), bool *fits = nullptr);
// A name and an address in two rows of `width` characters: the name in the first and the
// address in the second when each fits, else packed one after the other.
QStringList nameAndAddress(const QStringList &name, const QStringList &address, int width,
                           bool *fits = nullptr);
// The rows of a text field of `boxes` boxes: one character to a box when `pack` fits
// everything that way, else the narrowest machine-filled width that holds it all (the row
// then prints as free text in a smaller size).
QStringList boxRows(int boxes, const std::function<QStringList(int width, bool *fits)> &pack);
// What a slip can hold of a document's title: `rows` lines of at most `perRow` characters,
// broken between words. No rows: the slip has no place for a title.
struct TextCapacity {
    int rows = 0;
    int perRow = 0;
};
// The title's place on the slip of the document kind (as the settings choose the slip).
TextCapacity titleCapacity(int kind);
// The title broken between words into the lines of `capacity`; `fits` false when it needs more.
QStringList titleLines(const QString &title, TextCapacity capacity, bool *fits = nullptr);
// Whether the slip of `kind` carries the whole title.
bool titleFits(int kind, const QString &title);

// Breaks a text into at most `rows` lines whose measured width stays within `width`.
QStringList wrap(const PrintEngine &engine, const QString &text, qreal width, int rows);

// A recipient's or the firm's address on one line: "Długa 5 / 12, 00-950 Warszawa".
QString streetLine(const QString &ulica, const QString &nrDomu, const QString &nrLokalu);
QString townLine(const QString &kod, const QString &miasto);

// The parts of a form on A4 sheets.
struct Sheet {
    QPageLayout::Orientation orientation;
    QList<QPointF> corners;
};
// Part size (A6 landscape, 148 x 105 mm) and the sheet positions of the parts.
constexpr qreal PartWidth = 8391;
constexpr qreal PartHeight = 5953;
// Parts one under another on A4 portrait, two to a sheet, 109.5 mm apart.
constexpr qreal StackedPitch = 6209;
// Four parts on one A4 landscape sheet, two by two.
constexpr qreal GridColumn = 8419;
constexpr qreal GridRow = 5953;

// Where a part drawn at the sheet's corner stands on plain paper: off the edges by the
// safe margin (parts one under another fit without shrinking).
constexpr QPointF SafeShift(283.5, 283.5);

// Where the `parts` parts of a form go: two under one another on A4 portrait; four on
// two such sheets, or, with "Wydruk 4 odcinków na jednej stronie A4", two by two on one
// landscape sheet, in the order the user chooses ("Czy drukować odcinki w pionie ?", then
// "... w poziomie ?"; two Noes keep the two sheets). The answer holds for the whole job.
QList<Sheet> arrangeParts(PrintEngine &engine, int parts);
// Draws part i of `parts` at its place on its sheet, each sheet in its orientation, and
// ends every sheet. The drawing is told the part, its sheet and the number of sheets.
void printParts(PrintEngine &engine, int parts,
                const std::function<void(int part, int sheet, int sheets)> &drawPart);

} // namespace Slip
