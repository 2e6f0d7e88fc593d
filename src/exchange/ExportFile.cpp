#include "ExportFile.h"

#include "SafeOutput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace ExportFile {

namespace {

// Lines 1 to 5 of a block are not used; the values stand on lines 6 to 15.
constexpr int FirstValueLine = 6;
constexpr int NameLine = 6;
constexpr int TitleLine = 13;
constexpr int AmountLine = 14;

ReadError pastEnd()
{
    return ReadError{QStringLiteral("Próba odczytu poza końcem pliku: blok ma mniej niż 15 wierszy."), 62};
}

QString decoded(const QByteArray &bytes)
{
    QStringDecoder decoder("windows-1250");
    return decoder(bytes);
}

} // namespace

const QStringList &fieldNames()
{
    static const QStringList names = {QStringLiteral("txtnazwa"),  QStringLiteral("txtnazwa1"),
                                      QStringLiteral("txtulica"),  QStringLiteral("txtkod"),
                                      QStringLiteral("txtmiasto"), QStringLiteral("txtbank"),
                                      QStringLiteral("txtkonto"),  QStringLiteral("txtzadokument"),
                                      QStringLiteral("txtwartosc"), QStringLiteral("txtdata")};
    return names;
}

QString Entry::text() const
{
    return name + QStringLiteral("; ") + title + QStringLiteral("; ") + Kwota(amount);
}

QList<QByteArray> lines(const QByteArray &data)
{
    QList<QByteArray> out;
    qsizetype start = 0;
    const qsizetype n = data.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char c = data.at(i);
        if (c != '\r' && c != '\n')
            continue;
        out.append(data.mid(start, i - start));
        if (c == '\r' && i + 1 < n && data.at(i + 1) == '\n')
            ++i;
        start = i + 1;
    }
    if (start < n)
        out.append(data.mid(start));
    return out;
}

QString valueOf(const QByteArray &line)
{
    const qsizetype eq = line.indexOf('=');
    return decoded(eq < 0 ? line : line.mid(eq + 1));
}

bool isMarker(const QByteArray &line)
{
    return line.startsWith("***");
}

Listing listBlocks(const QByteArray &data)
{
    Listing listing;
    const QList<QByteArray> all = lines(data);
    qsizetype i = 0;
    while (i < all.size()) {
        if (!isMarker(all.at(i++)))
            continue;
        // The marker is line 0; this block needs lines up to the amount's.
        const qsizetype marker = i - 1;
        if (marker + AmountLine >= all.size()) {
            listing.error = pastEnd();
            return listing;
        }
        Entry e;
        e.name = valueOf(all.at(marker + NameLine));
        e.title = valueOf(all.at(marker + TitleLine));
        const QString amount = valueOf(all.at(marker + AmountLine));
        QString why;
        const auto money = Money::parseAmount(amount, &why);
        if (!money) {
            listing.error = ReadError{QStringLiteral("Wiersz kwoty bloku „%1” nie zawiera poprawnej kwoty: \"%2\" (%3).")
                                          .arg(e.name, amount, why),
                                      13};
            return listing;
        }
        e.amount = *money;
        listing.entries.append(e);
        i = marker + AmountLine + 1;
    }
    return listing;
}

std::optional<QStringList> takeOverBlock(const QByteArray &data, int index, ReadError *error)
{
    const QList<QByteArray> all = lines(data);
    int seen = -1;
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (!isMarker(all.at(i)) || ++seen != index)
            continue;
        if (i + FirstValueLine + FieldCount - 1 >= all.size()) {
            if (error)
                *error = pastEnd();
            return std::nullopt;
        }
        QStringList values;
        for (int f = 0; f < FieldCount; ++f)
            values << valueOf(all.at(i + FirstValueLine + f));
        return values;
    }
    if (error)
        *error = ReadError{QStringLiteral("W pliku nie ma już tego bloku. Wybierz plik ponownie."), 0};
    return std::nullopt;
}

QByteArray removeBlock(const QByteArray &data, int index)
{
    const QList<QByteArray> all = lines(data);
    QByteArray out;
    out.reserve(data.size() + all.size());
    auto write = [&out](const QByteArray &line) {
        out += line;
        out += "\r\n";
    };
    int counter = 0;
    qsizetype i = 0;
    while (i < all.size()) {
        const QByteArray &line = all.at(i++);
        if (!isMarker(line)) {
            write(line);
            continue;
        }
        if (counter != index) {
            ++counter;
            write(line);
            continue;
        }
        // Drop the block up to the next marker, which is written; the counter stays.
        while (i < all.size() && !isMarker(all.at(i)))
            ++i;
        if (i >= all.size())
            break;
        write(all.at(i++));
    }
    return out;
}

std::optional<QByteArray> read(const QString &path, QString *error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        if (error)
            *error = f.errorString();
        return std::nullopt;
    }
    return f.readAll();
}

bool removeBlockInFile(const QString &path, int index, bool removeFile, QString *error)
{
    const auto data = read(path, error);
    if (!data)
        return false;
    if (removeFile) {
        QFile f(path);
        if (f.remove())
            return true;
        if (error)
            *error = f.errorString();
        return false;
    }
    return SafeOutput::write(path, removeBlock(*data, index), SafeOutput::Existing::Replace, error);
}

} // namespace ExportFile
