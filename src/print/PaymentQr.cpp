#include "PaymentQr.h"

#include "PrintEngine.h"
#include "Slip.h"

#include <QPainter>
#include <QSqlQuery>

#include <qrencode.h>

namespace PaymentQr {

namespace {

constexpr int QuietModules = 4;

// The separator cannot appear inside a field; blanks are folded.
QString field(const QString &value, int length)
{
    QString v = value;
    v.remove(QLatin1Char('|'));
    return v.simplified().left(length).trimmed();
}

} // namespace

QString missingReason(const PaymentDocument &doc)
{
    return Slip::accountDigits(doc.klientKonto).size() == 26
               ? QString()
               : QStringLiteral("Kod QR pominięty: numer rachunku odbiorcy nie ma 26 cyfr.");
}

QString text(const PaymentDocument &doc)
{
    const QString account = Slip::accountDigits(doc.klientKonto);
    if (account.size() != 26)
        return {};
    QString nip = Slip::digitsOnly(doc.klientNip);
    if (nip.size() != 10)
        nip.clear();
    const qint64 grosze = qMax<qint64>(0, doc.wartosc.toGrosze());
    const QString amount = QStringLiteral("%1").arg(grosze, 6, 10, QLatin1Char('0'));
    const QString name = field(doc.klientNazwa.trimmed().isEmpty() ? doc.klientNazwa1 : doc.klientNazwa, 20);
    return QStringList{nip,    QStringLiteral("PL"), account, amount, name, field(doc.zaDokumentNazwa, 32),
                       QString(), QString(),          QString()}
        .join(QLatin1Char('|'));
}

QImage modules(const QString &text)
{
    if (text.isEmpty())
        return {};
    const QByteArray utf8 = text.toUtf8();
    QRcode *code = QRcode_encodeString8bit(utf8.constData(), 0, QR_ECLEVEL_L);
    if (!code)
        return {};
    QImage image(code->width, code->width, QImage::Format_Mono);
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    for (int y = 0; y < code->width; ++y)
        for (int x = 0; x < code->width; ++x)
            image.setPixel(x, y, code->data[y * code->width + x] & 1 ? 1 : 0);
    QRcode_free(code);
    return image;
}

QImage picture(const QString &text, int pixelsPerModule)
{
    const QImage m = modules(text);
    if (m.isNull())
        return {};
    const int side = (m.width() + 2 * QuietModules) * pixelsPerModule;
    QImage out(side, side, QImage::Format_RGB32);
    out.fill(Qt::white);
    QPainter p(&out);
    for (int y = 0; y < m.height(); ++y)
        for (int x = 0; x < m.width(); ++x)
            if (m.pixelIndex(x, y) == 1)
                p.fillRect((x + QuietModules) * pixelsPerModule, (y + QuietModules) * pixelsPerModule,
                           pixelsPerModule, pixelsPerModule, Qt::black);
    return out;
}

bool draw(PrintEngine &engine, const QString &text, qreal x, qreal y, qreal size)
{
    const QImage m = modules(text);
    if (m.isNull())
        return false;
    const qreal module = size / m.width();
    // Runs of dark modules along each row, as whole rectangles: no seams for a scanner.
    QList<QRectF> runs;
    for (int row = 0; row < m.height(); ++row) {
        for (int col = 0; col < m.width();) {
            if (m.pixelIndex(col, row) != 1) {
                ++col;
                continue;
            }
            int end = col;
            while (end < m.width() && m.pixelIndex(end, row) == 1)
                ++end;
            runs << QRectF(x + col * module, y + row * module, (end - col) * module, module);
            col = end;
        }
    }
    engine.fillRects(runs);
    return true;
}

bool firmSetting(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT KodQR FROM Ustawienia ORDER BY rowid LIMIT 1")) && q.next())
        return q.isNull(0) || q.value(0).toInt() != 0;
    return true;
}

bool saveFirmSetting(const QSqlDatabase &db, bool on)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE Ustawienia SET KodQR=? WHERE rowid=(SELECT min(rowid) FROM Ustawienia)"));
    q.addBindValue(on ? 1 : 0);
    return q.exec();
}

} // namespace PaymentQr
