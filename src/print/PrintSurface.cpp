#include "PrintSurface.h"

#include <QPainter>
#include <QPdfWriter>

void PrintSurface::useTwips(QPainter &painter, qreal dpiX, qreal dpiY)
{
    painter.resetTransform();
    painter.scale(dpiX / 1440.0, dpiY / 1440.0);
}

namespace {

QSizeF twips(const QPageLayout &layout)
{
    const QSizeF points = layout.fullRect(QPageLayout::Point).size();
    return points * 20.0;
}

} // namespace

PdfSurface::PdfSurface(const QString &fileName, SafeOutput::Existing existing, const QString &title)
    : m_file(fileName, existing)
{
    if (!m_file.isOpen())
        return;
    m_writer = std::make_unique<QPdfWriter>(m_file.device());
    m_writer->setResolution(1200);
    m_writer->setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    m_writer->setCreator(QStringLiteral("Zlecanki"));
    m_writer->setTitle(title.isEmpty() ? QStringLiteral("Zlecanki") : title);
}

PdfSurface::~PdfSurface() = default;

bool PdfSurface::begin(QPainter &painter)
{
    if (!m_writer || !painter.begin(m_writer.get()))
        return false;
    useTwips(painter, m_writer->resolution(), m_writer->resolution());
    return true;
}

bool PdfSurface::newPage(QPainter &painter)
{
    const bool ok = m_writer->newPage();
    useTwips(painter, m_writer->resolution(), m_writer->resolution());
    return ok;
}

bool PdfSurface::end(QPainter &painter)
{
    const bool ended = painter.end();
    return ended && m_file.commit();
}

QSizeF PdfSurface::pageSizeTwips() const
{
    return m_writer ? twips(m_writer->pageLayout()) : QSizeF(11906, 16838);
}

bool PdfSurface::setOrientation(QPageLayout::Orientation orientation)
{
    return m_writer && m_writer->setPageOrientation(orientation);
}

PreviewSurface::PreviewSurface(QSizeF pageTwips) : m_page(pageTwips) {}

bool PreviewSurface::begin(QPainter &painter)
{
    m_pages.clear();
    m_pages.append(QPicture());
    if (!painter.begin(&m_pages.last()))
        return false;
    // Pictures are recorded in twips directly and scaled when shown.
    painter.resetTransform();
    return true;
}

bool PreviewSurface::newPage(QPainter &painter)
{
    painter.end();
    m_pages.append(QPicture());
    return painter.begin(&m_pages.last());
}

bool PreviewSurface::end(QPainter &painter)
{
    return painter.end();
}

bool PreviewSurface::setOrientation(QPageLayout::Orientation orientation)
{
    const bool landscape = m_page.width() > m_page.height();
    if ((orientation == QPageLayout::Landscape) != landscape)
        m_page.transpose();
    return true;
}
