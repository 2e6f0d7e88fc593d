#pragma once

#include "Money.h"
#include "PrintSurface.h"

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPageLayout>
#include <QPainter>
#include <QString>
#include <QTransform>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

// Every printout goes through this engine: a job is named by a procedure word and one
// parameter (usually a document's Id). The engine asks for copies, picks the surface
// (printer, PDF file or preview pages), sets the orientation and runs the layout driver
// of the procedure word, which draws with the primitives below. Positions are twips,
// measured from the origin that UstawPoczatek sets, so the two extra margins of the
// settings move every printout together.
class PrintEngine {
public:
    enum class Output { Printer, Preview };
    using Driver = std::function<void(PrintEngine &)>;
    using SurfaceFactory = std::function<std::unique_ptr<PrintSurface>()>;

    struct Job {
        QString procedure;
        QVariant parameter;
        QPageLayout::Orientation orientation = QPageLayout::Portrait;
        Output output = Output::Printer;
        int copies = 1;
        bool saving = false;      // the preview's "Zapisz" is re-running the driver
        bool withAmount = true;   // the user answered "No" to printing the amount: false
        std::optional<bool> qr;   // the payment QR code on or off, over the firm's setting
        // What the user answered while the driver ran (the arrangement of a slip's parts),
        // so that a repeated copy or the preview's "Zapisz" does not ask again.
        QVariantMap answers;
    };

    static PrintEngine &instance();

    // Starts a job. Without a caller the copies window is asked first (the answer may
    // turn the preview on); a job with a caller, such as the preview's own print button,
    // goes straight to the printer with the stored copies. False when nothing was printed.
    bool Drukuj(const QString &procedure, const QVariant &parameter,
                QPageLayout::Orientation orientation = QPageLayout::Portrait, bool preview = false,
                const QString &caller = QString());
    // Whether the next job prints the amount (the entry window asks the user); every job
    // takes this and puts it back to true.
    void setAmountPrinted(bool printed) { m_nextWithAmount = printed; }
    // The payment QR code of the next job on or off whatever the firm's setting says.
    void setNextQr(std::optional<bool> qr) { m_nextQr = qr; }
    // The copies of the next job started with a caller, instead of the stored count (the
    // command line's own count, which must not change the user's setting).
    void setNextCopies(int copies) { m_nextCopies = copies; }
    // Answers the next job starts with, so printing what the preview shows asks nothing again.
    void setNextAnswers(const QVariantMap &answers) { m_nextAnswers = answers; }
    // Runs the driver of the stored procedure word on the current surface.
    void Wykonaj();
    // Renders a job once more into a PDF file (the preview's "Zapisz"); a failure has
    // been shown to the user.
    bool saveAsPdf(const Job &job, const QString &fileName, SafeOutput::Existing existing);

    // The drivers by procedure word ("dprzelew", "dprzelewZus", "zbiorowka", "raport").
    void setDriver(const QString &procedure, Driver driver);
    // Where printer output goes: the desktop installs the CUPS printer of the settings;
    // the command line and tests a PDF file.
    void setPrinterFactory(SurfaceFactory factory);
    SurfaceFactory printerFactory() const { return m_printerFactory; }
    // Shows finished preview pages (the preview window); without one the preview is dropped.
    void setPreviewSink(std::function<void(const Job &, const QList<QPicture> &, QSizeF pageTwips)> sink);

    const Job &job() const { return m_job; }
    // A driver's answer kept for the rest of the job (see Job::answers).
    QVariant answer(const QString &key) const { return m_job.answers.value(key); }
    void setAnswer(const QString &key, const QVariant &value) { m_job.answers.insert(key, value); }

    // Primitives for the drivers.
    void UstawPoczatek(qreal x0, qreal y0);
    void DrukTekst(const QString &text, qreal x, qreal y, bool centre = false);
    // Many short texts in the current font at once, each at its top-left corner (or with its
    // right edge at x): one glyph run without text shaping, which Latin text in the slips'
    // fonts does not need. A long table prints several times faster this way, and a PDF
    // gets one text object for the whole batch instead of one for each text.
    struct PlacedText {
        QString text;
        qreal x = 0;
        qreal y = 0;
        bool flushRight = false;
    };
    void DrukTeksty(const QList<PlacedText> &texts);
    qreal PozycjaY() const;
    void UstawCzcionke(qreal size, bool bold = false, bool italic = false, const QString &name = QString());
    qreal WysokoscWiersza() const;
    qreal SzerokoscStrony() const;
    qreal WysokoscStrony() const;
    void KoniecStrony();
    void DrukSlownie(Money amount, qreal x, qreal &y, qreal width);
    void UstawOrientacje(QPageLayout::Orientation orientation);
    // Lines and boxes, from the origin; a grey box is filled light grey.
    void Linia(qreal x1, qreal y1, qreal x2, qreal y2, qreal width = 10);
    void Prostokat(qreal x, qreal y, qreal w, qreal h, bool grey = false, qreal width = 10);
    // Solid black rectangles, from the origin (a QR code's modules).
    void fillRects(const QList<QRectF> &rects);
    // Ends the front of a two-sided form: the page ends, the user is told to turn the
    // sheet over with `message` (title "Druk dwustronny") and the back follows.
    void turnOver(const QString &message = QStringLiteral("Po wydrukowaniu przełóż kartkę na drugą stronę."));

    // Whole forms on plain paper: the content of the sheet (layout twips, before the user's
    // margins) is placed at least SafeMargin from every edge of the paper, made smaller
    // only when it cannot fit otherwise. An empty extent: the layout follows the paper
    // exactly (values for pre-printed forms, reports). Holds until the job ends.
    static constexpr qreal SafeMargin = 283.5; // 5 mm
    void setSheetContent(const QRectF &extent);
    // Where a layout point lands on the current sheet (twips from the paper's corner).
    QPointF sheetPoint(const QPointF &layout) const { return m_sheet.map(layout); }

    // The width of a text in the current font, in twips.
    qreal textWidth(const QString &text) const;
    qreal originX() const { return m_originX; }
    qreal originY() const { return m_originY; }
    QPainter &painter() { return m_painter; }
    // The face the slips ask for, as this system has it: "Arial CE" is Arial (fontconfig
    // answers with its metric twin Liberation Sans), "Courier New CE" Courier New.
    static QString fontFamily(const QString &name);
    // The page count of the current job so far (preview pages drawn, or printer pages).
    int pageCount() const { return m_pageCount; }

private:
    PrintEngine();
    bool run(PrintSurface &surface, int passes);
    bool ensurePage();
    // The transform of the sheet from the safe margin and the printer's calibration.
    void updateSheet();

    QRectF m_sheetContent;
    QTransform m_sheet;
    QTransform m_deviceBase;
    qreal m_calibrationX = 0, m_calibrationY = 0, m_calibrationScale = 1;

    Job m_job;
    bool m_nextWithAmount = true;
    std::optional<bool> m_nextQr;
    std::optional<int> m_nextCopies;
    QVariantMap m_nextAnswers;
    QHash<QString, Driver> m_drivers;
    SurfaceFactory m_printerFactory;
    std::function<void(const Job &, const QList<QPicture> &, QSizeF)> m_previewSink;

    QPainter m_painter;
    PrintSurface *m_surface = nullptr;
    QFont m_font;
    // Metrics of m_font, kept with it: a long printout asks for them at every text.
    QFontMetricsF m_metrics{QFont()};
    qreal m_originX = 0, m_originY = 0;
    qreal m_currentY = 0;
    bool m_pageEnded = false;
    // The device is opened by the first drawing, so that a driver can still choose the
    // orientation of its first page; a copy after the first opens the same way.
    bool m_begun = false;
    bool m_copyPending = false;
    bool m_failed = false;
    int m_pageCount = 0;
};

// The engine's entry point under its usual name.
inline bool Drukuj(const QString &procedure, const QVariant &parameter,
                   QPageLayout::Orientation orientation = QPageLayout::Portrait, bool preview = false,
                   const QString &caller = QString())
{
    return PrintEngine::instance().Drukuj(procedure, parameter, orientation, preview, caller);
}
