#include "MdbProcess.h"

#include "MdbReader.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>
#include <unistd.h>

namespace MdbProcess {

namespace {

const QString Magic = QStringLiteral("zlecanki-mdb");
constexpr qint32 Version = 1;
constexpr QDataStream::Version StreamVersion = QDataStream::Qt_6_0;
// More than any firm file of the old program could give: a reader that writes on past this
// has gone astray.
constexpr qsizetype MaxStream = qsizetype(1) << 30;
// A reader silent this long is stuck in the file.
constexpr int QuietMs = 60000;

enum Frame : quint8 { Header = 'H', TableFrame = 'T', RowFrame = 'R', TableEnd = 'E', Failure = 'X', End = 'Z' };

class StreamSource : public OldDatabase::Source {
public:
    QList<OldDatabase::Table> list;
    QList<QList<OldDatabase::Row>> rows;

    QList<OldDatabase::Table> tables() const override { return list; }
    bool readRows(const OldDatabase::Table &table, const OldDatabase::RowSink &sink, QString *) override
    {
        for (qsizetype i = 0; i < list.size(); ++i) {
            if (list.at(i).name != table.name)
                continue;
            for (const OldDatabase::Row &row : std::as_const(rows.at(i)))
                if (!sink(row))
                    break;
            return true;
        }
        return true;
    }
};

// The program found elsewhere when tests or tools run the library from another executable.
QString readerProgram()
{
    const QString set = qEnvironmentVariable("ZLECANKI_MDB_READER");
    return set.isEmpty() ? QCoreApplication::applicationFilePath() : set;
}

QString damaged(const QString &detail)
{
    return MdbReader::damagedMessage() + (detail.isEmpty() ? QString() : QLatin1Char('\n') + detail);
}

} // namespace

void write(OldDatabase::Source *source, const QString &error, QIODevice &out)
{
    QDataStream s(&out);
    s.setVersion(StreamVersion);
    s << quint8(Header) << Magic << Version;
    if (!source) {
        s << quint8(Failure) << error;
        return;
    }
    const QList<OldDatabase::Table> tables = source->tables();
    for (const OldDatabase::Table &t : tables) {
        s << quint8(TableFrame) << t.name << qint32(t.columns.size());
        for (const OldDatabase::Column &c : t.columns)
            s << c.name << qint32(c.type) << c.counter;
    }
    for (const OldDatabase::Table &t : tables) {
        qint64 count = 0;
        QString readError;
        const bool read = source->readRows(t, [&](const OldDatabase::Row &row) {
            s << quint8(RowFrame);
            for (qsizetype c = 0; c < t.columns.size(); ++c) {
                const auto &value = c < row.size() ? row.at(c) : std::nullopt;
                s << value.has_value();
                if (value)
                    s << *value;
            }
            ++count;
            return s.status() == QDataStream::Ok;
        }, &readError);
        if (!read) {
            s << quint8(Failure) << readError;
            return;
        }
        s << quint8(TableEnd) << count;
    }
    s << quint8(End);
}

int serve(const QString &path)
{
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return 2;
    QString error;
    auto reader = MdbReader::open(path, &error);
    write(reader.get(), error, out);
    out.close();
    std::fflush(stdout);
    // Straight out: the library's leftovers need no tidying in a process that ends here.
    ::_exit(0);
}

std::unique_ptr<OldDatabase::Source> decode(const QByteArray &stream, QString *error)
{
    auto fail = [error](const QString &detail) -> std::unique_ptr<OldDatabase::Source> {
        if (error)
            *error = damaged(detail);
        return nullptr;
    };
    QDataStream s(stream);
    s.setVersion(StreamVersion);
    quint8 frame = 0;
    QString magic;
    qint32 version = 0;
    s >> frame >> magic >> version;
    if (s.status() != QDataStream::Ok || frame != Header || magic != Magic || version != Version)
        return fail(QString());
    auto source = std::make_unique<StreamSource>();
    qsizetype current = 0; // the table whose rows come now
    // Where the stream stopped, for the message.
    bool rowsBegun = false;
    auto lost = [&]() {
        if (!rowsBegun)
            return QStringLiteral("Nie udało się odczytać spisu tabel pliku.");
        if (current < source->list.size())
            return QStringLiteral("Nie udało się odczytać całej tabeli %1.").arg(source->list.at(current).name);
        return QStringLiteral("Odczyt pliku urwał się przed końcem.");
    };
    for (;;) {
        s >> frame;
        if (s.status() != QDataStream::Ok)
            return fail(lost());
        switch (frame) {
        case TableFrame: {
            if (rowsBegun)
                return fail(lost());
            OldDatabase::Table t;
            qint32 columns = 0;
            s >> t.name >> columns;
            if (columns < 0 || columns > 4096)
                return fail(lost());
            for (qint32 c = 0; c < columns && s.status() == QDataStream::Ok; ++c) {
                OldDatabase::Column col;
                qint32 type = 0;
                s >> col.name >> type >> col.counter;
                if (type < 0 || type > qint32(OldDatabase::Type::Other))
                    return fail(lost());
                col.type = OldDatabase::Type(type);
                t.columns << col;
            }
            if (s.status() != QDataStream::Ok)
                return fail(lost());
            source->list << t;
            break;
        }
        case RowFrame: {
            rowsBegun = true;
            if (current >= source->list.size())
                return fail(lost());
            if (source->rows.size() <= current)
                source->rows.resize(current + 1);
            const qsizetype width = source->list.at(current).columns.size();
            OldDatabase::Row row(width);
            for (qsizetype c = 0; c < width; ++c) {
                bool present = false;
                s >> present;
                if (present) {
                    QString value;
                    s >> value;
                    row[c] = value;
                }
            }
            if (s.status() != QDataStream::Ok)
                return fail(lost());
            source->rows[current] << row;
            break;
        }
        case TableEnd: {
            rowsBegun = true;
            qint64 count = -1;
            s >> count;
            if (s.status() != QDataStream::Ok || current >= source->list.size())
                return fail(lost());
            source->rows.resize(current + 1);
            if (count != source->rows.at(current).size())
                return fail(lost());
            ++current;
            break;
        }
        case Failure: {
            QString message;
            s >> message;
            return fail(message.isEmpty() ? lost() : message);
        }
        case End:
            if (current != source->list.size() || !s.atEnd())
                return fail(lost());
            return source;
        default:
            return fail(lost());
        }
    }
}

std::unique_ptr<OldDatabase::Source> open(const QString &path, QString *error)
{
    auto fail = [error](const QString &message) -> std::unique_ptr<OldDatabase::Source> {
        if (error)
            *error = message;
        return nullptr;
    };
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("Nie można odczytać pliku: ") + f.errorString());
    if (!MdbReader::looksLikeAccess(f.read(32)))
        return fail(MdbReader::damagedMessage());
    f.close();

    QProcess p;
    p.setProgram(readerProgram());
    p.setArguments({Argument, QFileInfo(path).absoluteFilePath()});
    p.setStandardInputFile(QProcess::nullDevice());
    // The library's own remarks (in English) mean nothing to the user.
    p.setStandardErrorFile(QProcess::nullDevice());
    p.start(QIODevice::ReadOnly);
    if (!p.waitForStarted(30000))
        return fail(QStringLiteral("Nie można uruchomić odczytu pliku Access (%1): %2")
                        .arg(QDir::toNativeSeparators(p.program()), p.errorString()));
    QByteArray stream;
    for (;;) {
        if (p.waitForReadyRead(QuietMs)) {
            stream += p.readAllStandardOutput();
            if (stream.size() > MaxStream) {
                p.kill();
                p.waitForFinished();
                return fail(damaged(QStringLiteral("Odczyt pliku dał więcej danych, niż plik może zawierać.")));
            }
            continue;
        }
        if (p.state() == QProcess::NotRunning)
            break;
        p.kill();
        p.waitForFinished();
        return fail(damaged(QStringLiteral("Odczyt pliku zatrzymał się i został przerwany.")));
    }
    p.waitForFinished();
    stream += p.readAllStandardOutput();
    auto source = decode(stream, error);
    if (source && (p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0))
        return fail(damaged(QString()));
    return source;
}

} // namespace MdbProcess
