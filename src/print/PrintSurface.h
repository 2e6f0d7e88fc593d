#pragma once

#include <QList>
#include <QPageLayout>
#include <QPicture>
#include <QSizeF>
#include <QString>

#include "SafeOutput.h"

#include <memory>

class QPainter;
class QPdfWriter;

// Where a printout goes: a printer, a PDF file or the preview's pages. The engine paints
// through a QPainter whose unit is the twip (1/1440 inch) on every surface, so one layout
// serves them all.
class PrintSurface {
public:
    virtual ~PrintSurface() = default;

    // Starts the first document on `painter`; false when the device cannot be opened.
    virtual bool begin(QPainter &painter) = 0;
    // Ends the current page and starts the next one.
    virtual bool newPage(QPainter &painter) = 0;
    // Ends this copy and starts the next as a document of its own (printers); a file just
    // goes on with a new page.
    virtual bool nextCopy(QPainter &painter) { return newPage(painter); }
    // Ends the job.
    virtual bool end(QPainter &painter) = 0;

    // The whole page in twips, in the current orientation.
    virtual QSizeF pageSizeTwips() const = 0;
    // Lets the device itself make `copies` copies; false when it cannot (the engine then
    // repeats the job).
    virtual bool setCopyCount(int copies)
    {
        Q_UNUSED(copies);
        return false;
    }
    // False when the device refuses the orientation.
    virtual bool setOrientation(QPageLayout::Orientation orientation) = 0;
    virtual bool isPreview() const { return false; }
    // The name the printer's calibration is kept under: the CUPS queue, or "PDF"; empty
    // for none (the preview shows the form as drawn).
    virtual QString calibrationName() const { return QString(); }
    // Ends the job so far (the front of a two-sided form, which must be out of the printer
    // before the user turns the sheet); the next drawing begins a new job. False when the
    // surface keeps one job (a file, the preview), which just goes on with a new page.
    virtual bool endJob(QPainter &painter)
    {
        Q_UNUSED(painter);
        return false;
    }
    // Whether a job that drew nothing still makes one blank page (a file or the preview
    // does; a sheet of paper is not wasted).
    virtual bool keepsEmptyJob() const { return isPreview(); }
    // Why begin() or end() failed, in Polish, when the surface knows better than "no printer".
    virtual QString failure() const { return QString(); }

    // Scales `painter`, begun on a device of the given resolution, to twips.
    static void useTwips(QPainter &painter, qreal dpiX, qreal dpiY);
};

// A PDF file, A4. It is written beside the target and takes its place only when the
// job ends well; `existing` says whether a file already there may be replaced.
class PdfSurface : public PrintSurface {
public:
    PdfSurface(const QString &fileName, SafeOutput::Existing existing, const QString &title = QString());
    ~PdfSurface() override;
    bool begin(QPainter &painter) override;
    bool newPage(QPainter &painter) override;
    bool end(QPainter &painter) override;
    QSizeF pageSizeTwips() const override;
    bool setOrientation(QPageLayout::Orientation orientation) override;
    bool keepsEmptyJob() const override { return true; }
    QString failure() const override { return m_file.error(); }
    QString calibrationName() const override { return QStringLiteral("PDF"); }

private:
    SafeOutput::File m_file;
    std::unique_ptr<QPdfWriter> m_writer;
};

// The preview's pages: one picture per page, replayed on screen at any scale.
class PreviewSurface : public PrintSurface {
public:
    explicit PreviewSurface(QSizeF pageTwips = QSizeF(11906, 16838)); // A4 portrait
    bool begin(QPainter &painter) override;
    bool newPage(QPainter &painter) override;
    bool end(QPainter &painter) override;
    QSizeF pageSizeTwips() const override { return m_page; }
    bool setOrientation(QPageLayout::Orientation orientation) override;
    bool isPreview() const override { return true; }

    const QList<QPicture> &pages() const { return m_pages; }

private:
    QSizeF m_page;
    QList<QPicture> m_pages;
};
