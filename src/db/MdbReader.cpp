#include "MdbReader.h"

#include <QFile>

// mdbtools.h includes glib.h inside extern "C", which breaks glib's C++ templates.
#include <glib.h>
#include <mdbtools.h>

#include <vector>

namespace {

using OldDatabase::Type;

// Large enough for any text and for a memo as the old program's windows could hold it;
// a longer memo is cut at this many bytes.
constexpr size_t BindSize = 64 * 1024;

Type typeOf(int code)
{
    switch (code) {
    case MDB_BOOL: return Type::Boolean;
    case MDB_BYTE: return Type::Byte;
    case MDB_INT: return Type::Integer;
    case MDB_LONGINT: return Type::Long;
    case MDB_MONEY: return Type::Currency;
    case MDB_FLOAT: return Type::Single;
    case MDB_DOUBLE: return Type::Double;
    case MDB_DATETIME: return Type::Date;
    case MDB_BINARY: return Type::Binary;
    case MDB_TEXT: return Type::Text;
    case MDB_OLE: return Type::Ole;
    case MDB_MEMO: return Type::Memo;
    case MDB_REPID: return Type::Guid;
    case MDB_NUMERIC: return Type::Numeric;
    default: return Type::Other;
    }
}

// Columns whose values are bytes, not text: never bound, they come as Null.
bool bytesOnly(Type t)
{
    return t == Type::Binary || t == Type::Ole || t == Type::Other;
}

// libmdb reads its character sets when a file is opened.
void setCharsets()
{
    if (qEnvironmentVariableIsEmpty("MDB_JET3_CHARSET"))
        qputenv("MDB_JET3_CHARSET", "CP1250");
    qputenv("MDB_ICONV", "UTF-8");
}

MdbTableDef *readTable(MdbCatalogEntry *entry)
{
    MdbTableDef *t = mdb_read_table(entry);
    if (!t)
        return nullptr;
    if (!mdb_read_columns(t) || !t->columns) {
        mdb_free_tabledef(t);
        return nullptr;
    }
    return t;
}

MdbColumn *columnAt(MdbTableDef *t, unsigned i)
{
    return static_cast<MdbColumn *>(g_ptr_array_index(t->columns, i));
}

QString notAccess()
{
    return MdbReader::damagedMessage();
}

} // namespace

MdbReader::MdbReader(void *mdb) : m_mdb(mdb) {}

MdbReader::~MdbReader()
{
    if (m_mdb)
        mdb_close(static_cast<MdbHandle *>(m_mdb));
}

QString MdbReader::damagedMessage()
{
    return QStringLiteral("Plik jest uszkodzony lub nie jest bazą Access");
}

bool MdbReader::looksLikeAccess(const QByteArray &head)
{
    return head.size() >= 19 && head.startsWith(QByteArray("\x00\x01\x00\x00", 4)) &&
           (head.mid(4, 15) == "Standard Jet DB" || head.mid(4, 15) == "Standard ACE DB");
}

bool MdbReader::isAccessFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && looksLikeAccess(f.read(32));
}

std::unique_ptr<MdbReader> MdbReader::open(const QString &path, QString *error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("Nie można odczytać pliku: ") + f.errorString();
        return nullptr;
    }
    if (!looksLikeAccess(f.read(32))) {
        if (error)
            *error = notAccess();
        return nullptr;
    }
    f.close();
    setCharsets();
    return start(mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS), error);
}

std::unique_ptr<MdbReader> MdbReader::fromBytes(const QByteArray &bytes, QString *error)
{
    if (!looksLikeAccess(bytes)) {
        if (error)
            *error = notAccess();
        return nullptr;
    }
    setCharsets();
    // libmdb reads the bytes in place: they must outlive the handle, so they move first.
    QByteArray kept = bytes;
    kept.detach();
    MdbHandle *mdb = mdb_open_buffer(kept.data(), size_t(kept.size()), MDB_NOFLAGS);
    auto reader = start(mdb, error);
    if (reader)
        reader->m_bytes = kept;
    return reader;
}

std::unique_ptr<MdbReader> MdbReader::start(void *handle, QString *error)
{
    auto fail = [error](const QString &message) -> std::unique_ptr<MdbReader> {
        if (error)
            *error = message;
        return nullptr;
    };
    auto *mdb = static_cast<MdbHandle *>(handle);
    if (!mdb)
        return fail(notAccess());
    std::unique_ptr<MdbReader> reader(new MdbReader(mdb));
    mdb_set_bind_size(mdb, BindSize);
    mdb_set_date_fmt(mdb, "%Y-%m-%d %H:%M:%S");
    mdb_set_shortdate_fmt(mdb, "%Y-%m-%d %H:%M:%S");
    mdb_set_boolean_fmt_numbers(mdb);
    if (!mdb_read_catalog(mdb, MDB_ANY))
        return fail(QStringLiteral("Nie można odczytać spisu obiektów pliku (tabeli MSysObjects)."));
    // The catalogue is a table too: a file cut short or damaged gives fewer of its rows
    // than its definition counts, and each row lost may be a table lost.
    const auto promised = reader->promisedRows(QStringLiteral("MSysObjects"), 2);
    if (!promised || *promised != mdb->num_catalog)
        return fail(QStringLiteral("Spis obiektów pliku (tabela MSysObjects) zapowiada %1 pozycji, a odczytano %2: "
                                   "tabele z brakujących pozycji zostałyby utracone.")
                        .arg(promised ? QString::number(*promised) : QStringLiteral("?"))
                        .arg(mdb->num_catalog));
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (!entry || entry->object_type != MDB_TABLE || mdb_is_system_table(entry))
            continue;
        const QString name = QString::fromUtf8(entry->object_name);
        MdbTableDef *t = readTable(entry);
        if (!t)
            return fail(QStringLiteral("Nie można odczytać definicji tabeli %1.").arg(name));
        OldDatabase::Table table;
        table.name = name;
        for (unsigned c = 0; c < t->num_cols && c < t->columns->len; ++c) {
            const MdbColumn *col = columnAt(t, c);
            table.columns.append({QString::fromUtf8(col->name), typeOf(col->col_type), col->is_long_auto != 0});
        }
        mdb_free_tabledef(t);
        reader->m_tables.append(table);
    }
    return reader;
}

std::optional<unsigned> MdbReader::promisedRows(const QString &name, unsigned long page) const
{
    MdbCatalogEntry entry{};
    entry.mdb = static_cast<MdbHandle *>(m_mdb);
    entry.object_type = MDB_TABLE;
    entry.table_pg = page;
    qstrncpy(entry.object_name, name.toUtf8().constData(), sizeof entry.object_name);
    MdbTableDef *t = mdb_read_table(&entry);
    if (!t)
        return std::nullopt;
    const unsigned rows = t->num_rows;
    mdb_free_tabledef(t);
    return rows;
}

bool MdbReader::readRows(const OldDatabase::Table &table, const OldDatabase::RowSink &sink, QString *error)
{
    auto *mdb = static_cast<MdbHandle *>(m_mdb);
    MdbCatalogEntry *entry = nullptr;
    for (unsigned i = 0; i < mdb->num_catalog && !entry; ++i) {
        auto *e = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (e && e->object_type == MDB_TABLE && QString::fromUtf8(e->object_name) == table.name)
            entry = e;
    }
    MdbTableDef *t = entry ? readTable(entry) : nullptr;
    if (!t) {
        if (error)
            *error = QStringLiteral("Nie można odczytać definicji tabeli %1.").arg(table.name);
        return false;
    }
    const unsigned count = std::min<unsigned>(t->num_cols, t->columns->len);
    std::vector<std::vector<char>> buffers(count);
    std::vector<int> lengths(count, 0);
    std::vector<bool> bound(count, false);
    for (unsigned c = 0; c < count; ++c) {
        if (bytesOnly(typeOf(columnAt(t, c)->col_type)))
            continue;
        buffers[c].assign(BindSize, 0);
        bound[c] = mdb_bind_column(t, int(c + 1), buffers[c].data(), &lengths[c]) != -1;
    }
    mdb_rewind_table(t);
    const qsizetype width = table.columns.size();
    OldDatabase::Row row(width);
    const unsigned promised = t->num_rows;
    unsigned fetched = 0;
    bool stopped = false;
    while (mdb_fetch_row(t)) {
        ++fetched;
        for (qsizetype c = 0; c < width; ++c) {
            const auto i = size_t(c);
            if (i < count && bound[i] && lengths[i] > 0)
                row[c] = QString::fromUtf8(buffers[i].data(), qMin<qsizetype>(lengths[i], qsizetype(BindSize) - 1));
            else
                row[c] = std::nullopt;
        }
        if (!sink(row)) {
            stopped = true;
            break;
        }
    }
    mdb_free_tabledef(t);
    // libmdb ends the rows quietly at a page it cannot read.
    if (!stopped && fetched != promised) {
        if (error)
            *error = QStringLiteral("Odczytano %1 z %2 wierszy tabeli %3.").arg(fetched).arg(promised).arg(table.name);
        return false;
    }
    return true;
}
