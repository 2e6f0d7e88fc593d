#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <array>

// Copying whole tables from another firm database into the open one: the firm data, the
// documents, the scheduled payments and the contractors. The source is a firm database
// of ours, read in place, or an Access file of the earlier Windows version, converted
// first into a scratch database of ours. Columns are copied by name, so a source of an
// older layout gives what it has.
namespace FirmImport {

enum Category { Firma, Zlecanki, Cykliczne, Kontrahenci, CategoryCount };
using Choice = std::array<bool, CategoryCount>;

// The category captions, in the order of Category.
const QStringList &captions();

// The import command with its checks, question and messages (all through dialogs()):
// imports from `sourceName` (as typed) into `db`, whose file is `openFile`. Each ticked
// category's statements run on their own, without a transaction around them, so rows of
// statements that succeeded stay. Returns true when the statements ran, so that views of
// the firm need refreshing.
bool run(QSqlDatabase db, const QString &openFile, const QString &sourceName, const Choice &ticked);

} // namespace FirmImport
