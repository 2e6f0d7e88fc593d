#pragma once

#include "Money.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// The export file other programs of the suite leave for us ("PL.EXP"): Windows-1250 text,
// lines ending in CR LF, one block per payment. A block starts at a marker line (its first
// three characters "***"); counting the marker as line 0, lines 6 to 15 hold the values as
// "key=value", where only the position decides what a value means. Lines before the first
// marker are not read.
//
// Everything here works on the file's bytes and has no windows, so the window, the tests
// and the fuzzer all drive the same code.
namespace ExportFile {

inline const QString DefaultName = QStringLiteral("PL.EXP");

// Values of a block in the order of their lines 6 to 15.
enum Field { Nazwa, Nazwa1, Ulica, Kod, Miasto, Bank, Konto, ZaDokument, Wartosc, Data, FieldCount };
// The entry window's field each value goes into, in the same order.
const QStringList &fieldNames();

// An error of reading, as the common error report tells it.
struct ReadError {
    QString description;
    int number = 0;
};

struct Entry {
    QString name;  // line 6
    QString title; // line 13
    Money amount;  // line 14
    // "name; title; 1 234,50"
    QString text() const;
};

struct Listing {
    QList<Entry> entries;
    // Set when the listing stopped early: an amount that is not money, or the file ending
    // inside a block. The entries before it stay listed.
    std::optional<ReadError> error;
};

// The file split into lines (CR LF; a lone LF or CR ends a line as well).
QList<QByteArray> lines(const QByteArray &data);
// The value of a "key=value" line: everything after the first "=", or the whole line.
QString valueOf(const QByteArray &line);
bool isMarker(const QByteArray &line);

// The list of blocks. Positions are counted, not keys: a block shorter than 15 lines
// takes the following lines, marker included, into its values.
Listing listBlocks(const QByteArray &data);

// The ten values of block `index`, markers counted from 0 from the start of the file.
std::optional<QStringList> takeOverBlock(const QByteArray &data, int index, ReadError *error);

// The file without block `index`. The block counter does not move past a dropped block, so
// the marker after the next block again has the dropped one's number: removing block k
// also removes blocks k+2, k+4 and so on. Lines come back with CR LF.
QByteArray removeBlock(const QByteArray &data, int index);

// Reads the whole file; an error text when it cannot be read.
std::optional<QByteArray> read(const QString &path, QString *error);
// Removes block `index` from the file at `path`. When `removeFile` (the list is empty now)
// the file is deleted; otherwise the new contents replace it in one step (written beside
// it first, then renamed over it), so a crash never leaves the user without the file.
bool removeBlockInFile(const QString &path, int index, bool removeFile, QString *error);

} // namespace ExportFile
