#pragma once

#include "OldDatabase.h"

#include <QByteArray>

#include <memory>
#include <optional>

// Reads Access files (".mdb" of Access 97 and later, ".accdb") through mdbtools' libmdb.
// libmdb trusts the file: a damaged one can crash it, so the program runs this reader only
// in a process of its own (MdbProcess). Every table of the file's catalogue and every row
// a table's definition counts is read, or the reading fails naming what was lost.
// Text comes as the file holds it: Unicode in Jet 4 and later, Windows-1250 in Jet 3 files
// (the earlier version wrote Polish text in that code page), unless MDB_JET3_CHARSET says
// otherwise.
class MdbReader : public OldDatabase::Source {
public:
    ~MdbReader() override;

    // Nothing, with a Polish `error`, for a missing, unreadable or non-Access file.
    static std::unique_ptr<MdbReader> open(const QString &path, QString *error);
    // The same over bytes in memory (kept by the reader while it lives).
    static std::unique_ptr<MdbReader> fromBytes(const QByteArray &bytes, QString *error);
    // True when the bytes start like an Access file (the engine's signature).
    static bool looksLikeAccess(const QByteArray &head);
    static bool isAccessFile(const QString &path);
    // What the user reads first when an Access file cannot be read whole.
    static QString damagedMessage();

    QList<OldDatabase::Table> tables() const override { return m_tables; }
    bool readRows(const OldDatabase::Table &table, const OldDatabase::RowSink &sink, QString *error) override;

private:
    // The libmdb handle (MdbHandle, an unnamed struct that cannot be declared here).
    explicit MdbReader(void *mdb);
    static std::unique_ptr<MdbReader> start(void *mdb, QString *error);
    // The rows the definition of the table at `page` counts.
    std::optional<unsigned> promisedRows(const QString &name, unsigned long page) const;

    void *m_mdb = nullptr;
    QByteArray m_bytes;
    QList<OldDatabase::Table> m_tables;
};
