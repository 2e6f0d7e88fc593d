// libFuzzer target: the conversion of an old firm file. Input that starts like an Access
// file is read as the program reads it: libmdb in a child process, whose stream the
// conversion takes (a crash of the library ends only the child, and the stream it leaves
// must then be refused). Input starting with 'S' is such a stream itself. Any other input
// is read as a description of old tables, so that the conversion itself (names, types,
// values) is explored with coverage.
#include "db/MdbConversion.h"
#include "db/MdbProcess.h"
#include "db/MdbReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class FuzzSource : public OldDatabase::Source {
public:
    explicit FuzzSource(FuzzedDataProvider &in)
    {
        static const char *const tableNames[] = {"ZLECANKI", "firma", "Ustawienia", "cykliczne", "KONTRAHENCI", "Ustawienia2", "Inna"};
        static const char *const columnNames[] = {"ID", "NAZWA", "WARTOSC", "DATA_DOKUMENTU", "RODZAJ", "Eliksir", "Szary",
                                                  "Data", "KOD", "STAN_KONTA1", "WYBRANY", "M1", "BANK_NAZWA11", "ZUS_Rok"};
        const int tables = in.ConsumeIntegralInRange(0, 4);
        for (int t = 0; t < tables; ++t) {
            Data d;
            d.table.name = in.ConsumeBool() ? QString::fromLatin1(tableNames[in.ConsumeIntegralInRange<size_t>(0, 6)])
                                            : QString::fromStdString(in.ConsumeRandomLengthString(12));
            const int columns = in.ConsumeIntegralInRange(0, 6);
            for (int c = 0; c < columns; ++c) {
                OldDatabase::Column col;
                col.name = in.ConsumeBool() ? QString::fromLatin1(columnNames[in.ConsumeIntegralInRange<size_t>(0, 13)])
                                            : QString::fromStdString(in.ConsumeRandomLengthString(10));
                col.type = static_cast<OldDatabase::Type>(in.ConsumeIntegralInRange(0, 14));
                d.table.columns << col;
            }
            const int rows = in.ConsumeIntegralInRange(0, 4);
            for (int r = 0; r < rows; ++r) {
                OldDatabase::Row row;
                for (int c = 0; c < columns; ++c)
                    row << (in.ConsumeBool() ? std::nullopt
                                             : std::optional<QString>(QString::fromUtf8(in.ConsumeRandomLengthString(24))));
                d.rows << row;
            }
            m_data << d;
        }
    }
    QList<OldDatabase::Table> tables() const override
    {
        QList<OldDatabase::Table> out;
        for (const Data &d : m_data)
            out << d.table;
        return out;
    }
    bool readRows(const OldDatabase::Table &table, const OldDatabase::RowSink &sink, QString *) override
    {
        for (const Data &d : m_data)
            if (d.table.name == table.name) {
                for (const OldDatabase::Row &r : d.rows)
                    if (!sink(r))
                        return true;
                return true;
            }
        return true;
    }

private:
    struct Data {
        OldDatabase::Table table;
        QList<OldDatabase::Row> rows;
    };
    QList<Data> m_data;
};

void convert(OldDatabase::Source &source)
{
    const QString connection = QStringLiteral("fuzz");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(QStringLiteral(":memory:"));
        if (db.open())
            (void)MdbConversion::convert(source, db);
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

std::unique_ptr<OldDatabase::Source> readInChild(const QByteArray &bytes)
{
    int fds[2];
    if (pipe(fds) != 0)
        return nullptr;
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return nullptr;
    }
    if (pid == 0) {
        close(fds[0]);
        // The library's remarks and the sanitizer's reports on it are the child's alone.
        const int null = ::open("/dev/null", O_WRONLY);
        dup2(null, 2);
        QString error;
        auto reader = MdbReader::fromBytes(bytes, &error);
        QFile out;
        if (out.open(fds[1], QIODevice::WriteOnly))
            MdbProcess::write(reader.get(), error, out);
        out.close();
        _exit(0);
    }
    close(fds[1]);
    QByteArray stream;
    char buffer[65536];
    ssize_t n = 0;
    while ((n = read(fds[0], buffer, sizeof buffer)) > 0)
        stream.append(buffer, n);
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    QString error;
    return MdbProcess::decode(stream, &error);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    if (MdbReader::looksLikeAccess(bytes)) {
        if (auto source = readInChild(bytes))
            convert(*source);
        return 0;
    }
    if (bytes.startsWith('S')) {
        QString error;
        if (auto source = MdbProcess::decode(bytes.mid(1), &error))
            convert(*source);
        return 0;
    }
    FuzzedDataProvider in(data, size);
    FuzzSource source(in);
    convert(source);
    return 0;
}
