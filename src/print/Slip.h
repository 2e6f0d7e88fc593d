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
// Courier New at 12 pt is 10 characters to the inch: two to a box, so a text longer than
// its boxes still keeps to the grid.
constexpr qreal BoxFontSize = 12;

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
    // a longer one runs two characters to a box (and smaller still past that).
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
    // Lines of text from (x, y) down, a line too long for `width` going on in the next;
    // returns the y below the last.
    qreal lines(const QStringList &lines, qreal x, qreal y, qreal width, qreal size = 9,
                bool bold = false) const;
    // The amount in words in a field `width` wide and `height` high: the font shrinks from
    // `size` until the wording fits. Nothing when the amount is not printed.
    void words(Money amount, qreal x, qreal y, qreal width, qreal height, qreal size = 8) const;
    // The "W"/"P" marks of a transfer / cash deposit row; the one not used is struck out.
    void wpMarks(qreal x, qreal y, qreal height, bool cashDeposit) const;
};

// The amount in the character boxes: "########0.00" with a dot ("1234.50").
QString boxAmount(Money amount);
// The amount printed outside the boxes, in the format chosen in the settings (DrukZlGr):
// 0 "1 234,50", 1 "1 234,50 zł", 2 "1 234 zł 50 gr".
QString amountText(Money amount, int format);
QString amountText(Money amount);
// The issue date as the slip prints it; empty when dates are not printed.
QString issueDate(const QDate &date);
// An account number for its boxes: blanks and dashes dropped.
QString accountDigits(const QString &account);
// Digits only (a NIP printed one digit to a box).
QString digitsOnly(const QString &text);
// Packs texts into `rows` lines of at most `width` characters: a text joins the line before
// it (after `separator`) while it fits, else starts the next line; the last line is cut.
// `fits` tells whether everything found its place uncut.
QStringList packRows(const QStringList &texts, int rows, int width,
                     const QString &separator = QStringLiteral(", "), bool *fits = nullptr);
// A name and an address in two rows of `width` characters: the name in the first and the
// address in the second when each fits, else packed one after the other.
QStringList nameAndAddress(const QStringList &name, const QStringList &address, int width,
                           bool *fits = nullptr);
// The rows of a text field of `boxes` boxes: one character to a box when `pack` fits
// everything that way, else two to a box.
QStringList boxRows(int boxes, const std::function<QStringList(int width, bool *fits)> &pack);
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
