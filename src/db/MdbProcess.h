#pragma once

#include "OldDatabase.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>

// libmdb runs in a process of its own: the program starts itself again as
// "zlecanki --mdb-reader FILE", which reads the whole Access file and writes its tables and
// rows on standard output. A file that crashes the library, or makes it read past its
// buffers, ends only that process; the program then tells the user the file is damaged and
// nothing has been changed.
//
// The stream: a header, every table with its columns, then each table's rows in the same
// order, each table closed by the number of rows it gave, and an end mark. A failure the
// reader itself finds ends the stream with its message.
namespace MdbProcess {

// The argument that starts the program as the reader.
inline const QString Argument = QStringLiteral("--mdb-reader");

// The reader's side: reads `path` and writes the stream on standard output; the exit code.
int serve(const QString &path);
// Writes `source` (or, when it is null, the failure `error`) as the stream.
void write(OldDatabase::Source *source, const QString &error, QIODevice &out);

// The program's side: the whole stream as a source, or nothing with a Polish `error`
// naming the table the stream ended in.
std::unique_ptr<OldDatabase::Source> decode(const QByteArray &stream, QString *error);
// Runs the reader on `path` and decodes what it wrote.
std::unique_ptr<OldDatabase::Source> open(const QString &path, QString *error);

} // namespace MdbProcess
