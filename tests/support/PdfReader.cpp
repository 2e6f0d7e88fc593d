#include "PdfReader.h"

#include <QProcess>
#include <QRegularExpression>

QString PdfContent::text(int page) const
{
    QStringList parts;
    for (const PdfWord &w : words)
        if (page < 0 || w.page == page)
            parts << w.text;
    return parts.join(QLatin1Char(' '));
}

PdfWord PdfContent::find(const QString &word, int page) const
{
    for (const PdfWord &w : words)
        if (w.text == word && (page < 0 || w.page == page))
            return w;
    return {};
}

int PdfContent::count(const QString &word) const
{
    int n = 0;
    for (const PdfWord &w : words)
        n += w.text == word ? 1 : 0;
    return n;
}

PdfContent readPdf(const QString &path)
{
    PdfContent content;
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), path, QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return content;
    const QString html = QString::fromUtf8(p.readAllStandardOutput());
    static const QRegularExpression token(
        QStringLiteral("<page |<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">([^<]*)</word>"));
    int page = -1;
    for (auto it = token.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        if (m.captured(0).startsWith(QLatin1String("<page"))) {
            ++page;
            continue;
        }
        const auto twips = [&](int i) { return m.captured(i).toDouble() * 20.0; };
        QString text = m.captured(5);
        text.replace(QLatin1String("&amp;"), QLatin1String("&"))
            .replace(QLatin1String("&lt;"), QLatin1String("<"))
            .replace(QLatin1String("&gt;"), QLatin1String(">"))
            .replace(QLatin1String("&quot;"), QLatin1String("\""))
            .replace(QLatin1String("&apos;"), QLatin1String("'"));
        content.words.append({page, text, QRectF(QPointF(twips(1), twips(2)), QPointF(twips(3), twips(4)))});
    }
    content.pages = page + 1;
    content.ok = true;
    return content;
}
