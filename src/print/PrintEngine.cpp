#include "PrintEngine.h"

#include "AppState.h"
#include "Dialogs.h"
#include "Messages.h"
#include "PrinterCalibration.h"
#include "SettingsStore.h"
#include "words/Slownie.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>

#include <cmath>
#include <utility>

namespace {

constexpr qreal TwipsPerMillimetre = 56.7;

// The backs are laid out for a sheet turned over its long edge.
const QString TurnEdge = QStringLiteral("Obróć kartkę wokół dłuższej krawędzi (lewa strona na prawą), "
                                        "górną krawędzią znów do góry, i włóż ją tak samo jak poprzednio.");

int storedCopies()
{
    const int copies = SettingsStore::getInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE")).value_or(1);
    return qBound(1, copies, 255);
}

} // namespace

PrintEngine::PrintEngine()
{
    m_font.setFamily(fontFamily(QStringLiteral("Arial CE")));
    m_font.setPixelSize(200);
    m_metrics = QFontMetricsF(m_font);
}

PrintEngine &PrintEngine::instance()
{
    static PrintEngine engine;
    return engine;
}

void PrintEngine::setDriver(const QString &procedure, Driver driver)
{
    m_drivers.insert(procedure, std::move(driver));
}

void PrintEngine::setPrinterFactory(SurfaceFactory factory)
{
    m_printerFactory = std::move(factory);
}

void PrintEngine::setPreviewSink(std::function<void(const Job &, const QList<QPicture> &, QSizeF)> sink)
{
    m_previewSink = std::move(sink);
}

QString PrintEngine::fontFamily(const QString &name)
{
    QString family = name.trimmed();
    if (family.endsWith(QLatin1String(" CE")))
        family.chop(3);
    return family.isEmpty() ? QStringLiteral("Arial") : family;
}

bool PrintEngine::Drukuj(const QString &procedure, const QVariant &parameter, QPageLayout::Orientation orientation,
                         bool preview, const QString &caller)
{
    const bool withAmount = std::exchange(m_nextWithAmount, true);
    const std::optional<int> givenCopies = std::exchange(m_nextCopies, std::nullopt);
    const QVariantMap answers = std::exchange(m_nextAnswers, QVariantMap());
    const std::optional<bool> qr = std::exchange(m_nextQr, std::nullopt);
    int copies = caller.isEmpty() || !givenCopies ? storedCopies() : qBound(1, *givenCopies, 255);
    bool previewOn = preview;
    if (caller.isEmpty()) {
        // "Drukować na: Ekranie" in the settings makes the preview the usual way out.
        const bool toScreen =
            SettingsStore::getInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa")).value_or(0) == 1;
        const auto choice = dialogs().printCopies(copies, preview || toScreen);
        if (!choice)
            return false;
        copies = qBound(1, choice->copies, 255);
        previewOn = choice->preview;
        SettingsStore::saveInt(SettingsStore::App, SettingsStore::Print, QStringLiteral("KOPIE"), copies);
    }
    m_job = Job{procedure, parameter, orientation, previewOn ? Output::Preview : Output::Printer, copies, false,
                withAmount, qr, answers};

    if (!m_drivers.contains(procedure)) {
        dialogs().message(QStringLiteral("Nieznana procedura wydruku"), QString(), Dialogs::Icon::Exclamation);
        return false;
    }
    if (m_job.output == Output::Preview) {
        PreviewSurface surface;
        if (!run(surface, 1))
            return false;
        if (m_previewSink)
            m_previewSink(m_job, surface.pages(), surface.pageSizeTwips());
        return true;
    }
    std::unique_ptr<PrintSurface> surface = m_printerFactory ? m_printerFactory() : nullptr;
    if (!surface) {
        dialogs().exclamation(Msg(80), Msg(51));
        return false;
    }
    // A printer that makes the copies itself gets the job once; otherwise it is repeated.
    const int passes = copies > 1 && surface->setCopyCount(copies) ? 1 : copies;
    return run(*surface, passes);
}

bool PrintEngine::saveAsPdf(const Job &job, const QString &fileName, SafeOutput::Existing existing)
{
    m_job = job;
    m_job.saving = true;
    PdfSurface surface(fileName, existing);
    const bool ok = run(surface, 1);
    m_job.saving = false;
    return ok;
}

bool PrintEngine::run(PrintSurface &surface, int passes)
{
    m_surface = &surface;
    m_begun = m_copyPending = m_failed = false;
    m_pageCount = 0;
    m_sheetContent = QRectF();
    const PrinterCalibration calibration = PrinterCalibration::load(surface.calibrationName());
    m_calibrationX = calibration.offsetX * TwipsPerMillimetre / 10;
    m_calibrationY = calibration.offsetY * TwipsPerMillimetre / 10;
    m_calibrationScale = calibration.scale / 1000.0;
    updateSheet();
    UstawOrientacje(m_job.orientation);
    for (int pass = 0; pass < passes && !m_failed; ++pass) {
        m_copyPending = pass > 0;
        m_pageEnded = false;
        m_originX = m_originY = m_currentY = 0;
        m_font = QFont(fontFamily(appState().fontPrinter));
        m_font.setPixelSize(200);
        m_font.setBold(false);
        m_font.setItalic(false);
        m_font.setUnderline(false);
        m_metrics = QFontMetricsF(m_font);
        if (m_painter.isActive())
            m_painter.setFont(m_font);
        Wykonaj();
    }
    // A driver that drew nothing still gives the preview or the file its one blank page;
    // a printer is not sent an empty sheet.
    if (!m_begun && !m_failed && surface.keepsEmptyJob())
        ensurePage();
    const bool ok = !m_failed && (!m_begun || surface.end(m_painter));
    if (!ok && !m_failed && !surface.failure().isEmpty())
        dialogs().exclamation(surface.failure(), Msg(51));
    m_surface = nullptr;
    m_begun = false;
    return ok;
}

void PrintEngine::Wykonaj()
{
    const auto it = m_drivers.constFind(m_job.procedure);
    if (it == m_drivers.constEnd()) {
        dialogs().message(QStringLiteral("Nieznana procedura wydruku"), QString(), Dialogs::Icon::Exclamation);
        return;
    }
    (*it)(*this);
}

bool PrintEngine::ensurePage()
{
    if (!m_surface || m_failed)
        return false;
    if (!m_begun) {
        if (!m_surface->begin(m_painter)) {
            m_failed = true;
            const QString why = m_surface->failure();
            dialogs().exclamation(why.isEmpty() ? Msg(80) : why, Msg(51));
            return false;
        }
        m_begun = true;
    } else if (m_copyPending) {
        m_surface->nextCopy(m_painter);
    } else if (m_pageEnded) {
        m_surface->newPage(m_painter);
    } else {
        return true;
    }
    m_deviceBase = m_painter.worldTransform();
    m_painter.setWorldTransform(m_sheet * m_deviceBase);
    m_painter.setFont(m_font);
    ++m_pageCount;
    m_pageEnded = m_copyPending = false;
    return true;
}

void PrintEngine::setSheetContent(const QRectF &extent)
{
    m_sheetContent = extent;
    updateSheet();
}

void PrintEngine::updateSheet()
{
    QTransform sheet;
    sheet.translate(m_calibrationX, m_calibrationY);
    sheet.scale(m_calibrationScale, m_calibrationScale);
    if (!m_sheetContent.isEmpty()) {
        const QSizeF page = m_surface ? m_surface->pageSizeTwips() : QSizeF(11906, 16838);
        const QRectF safe(SafeMargin, SafeMargin, page.width() - 2 * SafeMargin, page.height() - 2 * SafeMargin);
        const QRectF &c = m_sheetContent;
        const qreal scale = qMin(1.0, qMin(safe.width() / c.width(), safe.height() / c.height()));
        // As little moved as keeps it off the edges.
        qreal dx = qMax(0.0, safe.left() - scale * c.left());
        dx = qMin(dx, safe.right() - scale * c.right());
        qreal dy = qMax(0.0, safe.top() - scale * c.top());
        dy = qMin(dy, safe.bottom() - scale * c.bottom());
        sheet.translate(dx, dy);
        sheet.scale(scale, scale);
    }
    m_sheet = sheet;
    if (m_painter.isActive() && m_begun && !m_pageEnded && !m_copyPending)
        m_painter.setWorldTransform(m_sheet * m_deviceBase);
}

void PrintEngine::UstawPoczatek(qreal x0, qreal y0)
{
    const AppState &s = appState();
    m_originX = std::round(s.margLewy * TwipsPerMillimetre + x0);
    m_originY = std::round(s.margPrawy * TwipsPerMillimetre + y0);
}

void PrintEngine::DrukTekst(const QString &text, qreal x, qreal y, bool centre)
{
    if (!ensurePage())
        return;
    const QFontMetricsF &fm = m_metrics;
    const qreal left = m_originX + x - (centre ? fm.horizontalAdvance(text) / 2 : 0);
    const qreal top = m_originY + y;
    // The position is the text's top, as on the old printing surface; Qt draws on the baseline.
    m_painter.drawText(QPointF(left, top + fm.ascent()), text);
    m_currentY = top + fm.height();
}

void PrintEngine::DrukTeksty(const QList<PlacedText> &texts)
{
    if (texts.isEmpty() || !ensurePage())
        return;
    const QRawFont font = QRawFont::fromFont(m_font);
    if (!font.isValid()) {
        for (const PlacedText &t : texts)
            DrukTekst(t.text, t.flushRight ? t.x - textWidth(t.text) : t.x, t.y);
        return;
    }
    QList<quint32> glyphs;
    QList<QPointF> positions;
    const qreal ascent = m_metrics.ascent();
    for (const PlacedText &t : texts) {
        const QList<quint32> indexes = font.glyphIndexesForString(t.text);
        const QList<QPointF> advances = font.advancesForGlyphIndexes(indexes);
        qreal width = 0;
        for (const QPointF &a : advances)
            width += a.x();
        qreal x = m_originX + t.x - (t.flushRight ? width : 0);
        const qreal baseline = m_originY + t.y + ascent;
        for (qsizetype i = 0; i < indexes.size(); ++i) {
            glyphs << indexes.at(i);
            positions << QPointF(x, baseline);
            x += advances.at(i).x();
        }
    }
    QGlyphRun run;
    run.setRawFont(font);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    m_painter.drawGlyphRun(QPointF(0, 0), run);
    m_currentY = m_originY + texts.last().y + m_metrics.height();
}

qreal PrintEngine::PozycjaY() const
{
    return m_currentY - m_originY;
}

void PrintEngine::UstawCzcionke(qreal size, bool bold, bool italic, const QString &name)
{
    if (!name.isEmpty())
        m_font.setFamily(fontFamily(name));
    m_font.setPixelSize(qMax(1, qRound(size * 20)));
    m_font.setBold(bold);
    m_font.setItalic(italic);
    m_metrics = QFontMetricsF(m_font);
    if (m_painter.isActive())
        m_painter.setFont(m_font);
}

qreal PrintEngine::WysokoscWiersza() const
{
    const qreal height = m_metrics.height();
    return m_surface && m_surface->isPreview() ? height - 35 : height;
}

qreal PrintEngine::SzerokoscStrony() const
{
    const QSizeF page = m_surface ? m_surface->pageSizeTwips() : QSizeF(11906, 16838);
    return page.width() - 2 * m_originX;
}

qreal PrintEngine::WysokoscStrony() const
{
    const QSizeF page = m_surface ? m_surface->pageSizeTwips() : QSizeF(11906, 16838);
    return page.height() - m_originY - 100;
}

void PrintEngine::KoniecStrony()
{
    // The next page opens when something is drawn on it, so a layout that ends its last
    // page leaves no blank page behind.
    m_pageEnded = true;
}

qreal PrintEngine::textWidth(const QString &text) const
{
    return m_metrics.horizontalAdvance(text);
}

void PrintEngine::DrukSlownie(Money amount, qreal x, qreal &y, qreal width)
{
    const QString text = Slownie(amount);
    if (text.isEmpty())
        return;
    const WrappedWording wrapped = wrapWording(text, [this](const QString &s) { return textWidth(s); }, width);
    const qreal advance = m_metrics.height();
    for (const QString &line : wrapped.lines) {
        DrukTekst(line, x, y);
        y += advance;
    }
    if (!wrapped.message.isEmpty())
        dialogs().message(wrapped.message, QString(), Dialogs::Icon::None);
}

void PrintEngine::UstawOrientacje(QPageLayout::Orientation orientation)
{
    m_job.orientation = orientation;
    if (m_surface && !m_surface->setOrientation(orientation))
        dialogs().exclamation(QStringLiteral("Nie mogę zmienić orientacji"));
}

void PrintEngine::Linia(qreal x1, qreal y1, qreal x2, qreal y2, qreal width)
{
    if (!ensurePage())
        return;
    m_painter.setPen(QPen(Qt::black, width));
    m_painter.drawLine(QPointF(m_originX + x1, m_originY + y1), QPointF(m_originX + x2, m_originY + y2));
}

void PrintEngine::Prostokat(qreal x, qreal y, qreal w, qreal h, bool grey, qreal width)
{
    if (!ensurePage())
        return;
    m_painter.setPen(QPen(Qt::black, width));
    m_painter.setBrush(grey ? QBrush(QColor(225, 225, 225)) : QBrush(Qt::NoBrush));
    m_painter.drawRect(QRectF(m_originX + x, m_originY + y, w, h));
    m_painter.setBrush(Qt::NoBrush);
}

void PrintEngine::fillRects(const QList<QRectF> &rects)
{
    if (rects.isEmpty() || !ensurePage())
        return;
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(Qt::black);
    for (const QRectF &r : rects)
        m_painter.drawRect(r.translated(m_originX, m_originY));
    m_painter.setBrush(Qt::NoBrush);
}

void PrintEngine::turnOver(const QString &message)
{
    KoniecStrony();
    if (m_job.output != Output::Printer || m_job.saving)
        return;
    // The front goes to the printer as a job of its own before the user is asked to turn
    // the sheet; the back is the next job.
    if (m_begun && m_surface && m_surface->endJob(m_painter))
        m_begun = false;
    dialogs().information(message + QLatin1Char(' ') + TurnEdge, QStringLiteral("Druk dwustronny"));
}
