#include "FirmImport.h"

#include "Dialogs.h"
#include "Messages.h"
#include "db/Dialect.h"
#include "db/FirmCopy.h"
#include "db/FirmDatabase.h"
#include "db/MdbConversion.h"
#include "db/MdbReader.h"
#include "db/Structure.h"
#include "db/Transaction.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <optional>

namespace FirmImport {

namespace {

const QString SourceConnection = QStringLiteral("zlecanki-import-zrodlo");
const char *const Tables[CategoryCount] = {"FIRMA", "ZLECANKI", "CYKLICZNE", "KONTRAHENCI"};

// The open firm named again: its file in other letter case or through another path, or the
// same schema of the same server database.
bool sameFirm(const QString &name, const QString &openFile)
{
    if (Dialect::isAddress(name) || Dialect::isAddress(openFile)) {
        const auto a = Dialect::parseAddress(name), b = Dialect::parseAddress(openFile);
        return a && b && a->host.compare(b->host, Qt::CaseInsensitive) == 0 && a->port == b->port &&
               a->database == b->database && a->schema == b->schema;
    }
    const QFileInfo a(name), b(openFile);
    if (a.absoluteFilePath().toUpper() == b.absoluteFilePath().toUpper())
        return true;
    return a.exists() && a.canonicalFilePath() == b.canonicalFilePath();
}

bool duplicateKey(const QSqlError &e)
{
    return e.nativeErrorCode() == QLatin1String("23505") ||
           e.databaseText().contains(QLatin1String("UNIQUE constraint failed")) ||
           e.databaseText().contains(QLatin1String("PRIMARY KEY"));
}

// Opens the source, an Access file converted first into `scratch`. A message when it is not
// a firm database.
bool openSource(const QString &name, QTemporaryDir &scratch)
{
    QString location = name;
    if (!Dialect::isAddress(name) && MdbReader::isAccessFile(name)) {
        const QString converted = scratch.filePath(QStringLiteral("import.zlc"));
        const MdbConversion::Result r = MdbConversion::convertFile(name, converted);
        if (!r.ok) {
            dialogs().exclamation(r.error, Msg(51));
            return false;
        }
        if (!r.firmTables) {
            dialogs().exclamation(MdbConversion::notAFirmMessage(name), Msg(51));
            return false;
        }
        location = converted;
    }
    const QString shown = Dialect::isAddress(name) ? name : QDir::toNativeSeparators(name);
    QString error;
    if (!FirmCopy::openSource(location, shown, SourceConnection, &error)) {
        dialogs().exclamation(error, Msg(51));
        return false;
    }
    return true;
}

} // namespace

const QStringList &captions()
{
    static const QStringList list = {QStringLiteral("Dane firmy"), QStringLiteral("Zlecanki i przekazy"),
                                     QStringLiteral("Dokumenty cykliczne"), QStringLiteral("Słowniki kontrahentów")};
    return list;
}

bool run(QSqlDatabase db, const QString &openFile, const QString &sourceName, const Choice &ticked)
{
    const QString name = sourceName.trimmed();
    // The open firm first: named in other letter case it may not exist on this system.
    if (!name.isEmpty() && sameFirm(name, openFile)) {
        dialogs().exclamation(QStringLiteral("Nie można importować z tej samej firmy"));
        return false;
    }
    if (name.isEmpty() || (!Dialect::isAddress(name) && !QFileInfo(name).isFile())) {
        dialogs().exclamation(QStringLiteral("Plik: ") + name + QStringLiteral(" - nie istnieje"));
        return false;
    }
    QTemporaryDir scratch;
    if (!openSource(name, scratch))
        return false;
    if (!dialogs().question(QStringLiteral("Import skasuje wszystkie aktualne dane z wybranych kategorii.\n"
                                           "Chcesz kontynuować?"),
                            Msg(53))) {
        FirmDatabase::close(SourceConnection);
        return false;
    }
    bool failed = false;
    {
        const QSqlDatabase source = QSqlDatabase::database(SourceConnection, false);
        for (int c = 0; c < CategoryCount; ++c) {
            if (!ticked[size_t(c)])
                continue;
            const QString table = QLatin1String(Tables[c]);
            // Each step stands on its own: the firm's data removed stays removed when its copy
            // fails, and a table's copy is whole or nothing, as a single statement would be.
            if (c == Firma && !QSqlQuery(db).exec(QStringLiteral("DELETE FROM ") + Structure::quoted(db, table)))
                failed = true;
            FirmCopy::TableCopy copy;
            {
                Transaction t(db);
                if (t.isActive()) {
                    copy = FirmCopy::copyTable(source, db, table, false, false);
                    copy.ok = copy.ok && t.commit();
                }
            }
            if (copy.ok)
                continue;
            failed = true;
            if (duplicateKey(copy.failure))
                dialogs().message(QStringLiteral("Próbujesz importować do bazy która zawiera jakieś dane.\n"
                                                 "Import nie będzie w pełni poprawny. Importuj dane do pustej bazy "
                                                 "(nowa firma)."),
                                  Msg(51), Dialogs::Icon::Critical);
        }
    }
    FirmDatabase::close(SourceConnection);
    if (failed)
        dialogs().exclamation(QStringLiteral("Import zakończono z błędami"));
    else
        dialogs().information(QStringLiteral("Import zakończono pomyślnie"));
    return true;
}

} // namespace FirmImport
