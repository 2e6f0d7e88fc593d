#pragma once

#include <QList>
#include <QRectF>
#include <QString>

// Reads a PDF back with Poppler's pdftotext: every word with its box, in twips from the
// page's top left corner, so tests check what was printed and where.
struct PdfWord {
    int page = 0; // from 0
    QString text;
    QRectF box; // twips
};

struct PdfContent {
    bool ok = false;
    int pages = 0;
    QList<PdfWord> words;

    // The words of a page joined by blanks, in reading order.
    QString text(int page = -1) const;
    // The first word equal to `word` (on `page`, or on any page); an empty box when none.
    PdfWord find(const QString &word, int page = -1) const;
    int count(const QString &word) const;
};

PdfContent readPdf(const QString &path);
