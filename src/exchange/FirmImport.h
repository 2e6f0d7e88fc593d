#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <array>

// Copying whole tables from another firm database into the open one: the firm data, the
// documents, the scheduled payments and the contractors. The source is a firm database
// of ours, read in place (a file, or a firm on a database server named by its address), or
// an Access file of the earlier Windows version, converted first into a scratch database of
// ours. The open firm may be on either too. Columns are copied by name, so a source of an
// older layout gives what it has.
namespace FirmImport {

enum Category { Firma, Zlecanki, Cykliczne, Kontrahenci, CategoryCount };
using Choice = std::array<bool, CategoryCount>;

// The category captions, in the order of Category.
const QStringList &captions();

// The import command with its checks, question and messages (all through dialogs()):
// imports from `sourceName` (as typed) into `db`, whose file is `openFile`. Each ticked
// category's steps run on their own, without a transaction around them all, so rows of
// steps that succeeded stay; the copy of one table is whole or nothing. Returns true when the statements ran, so that views of
// the firm need refreshing.
bool run(QSqlDatabase db, const QString &openFile, const QString &sourceName, const Choice &ticked);

} // namespace FirmImport
