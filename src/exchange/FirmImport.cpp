#include "FirmImport.h"

#include "Dialogs.h"
#include "Messages.h"
#include "db/FirmDatabase.h"
#include "db/MdbConversion.h"
#include "db/MdbReader.h"
#include "db/Structure.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <optional>

namespace FirmImport {

namespace {

const QString Source = QStringLiteral("zrodlo");
const char *const Tables[CategoryCount] = {"FIRMA", "ZLECANKI", "CYKLICZNE", "KONTRAHENCI"};

// The open firm's file named again, also in other letter case or through another path.
bool sameFirm(const QString &name, const QString &openFile)
{
    const QFileInfo a(name), b(openFile);
    if (a.absoluteFilePath().toUpper() == b.absoluteFilePath().toUpper())
        return true;
    return a.exists() && a.canonicalFilePath() == b.canonicalFilePath();
}

QStringList columnsOf(const QSqlDatabase &db, const QString &schema, const QString &table)
{
    QStringList names;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name FROM pragma_table_info(?, ?)"));
    q.addBindValue(table);
    q.addBindValue(schema);
    if (q.exec())
        while (q.next())
            names << q.value(0).toString();
    return names;
}

// "INSERT INTO T (a,b) SELECT a,b FROM zrodlo.T" over the columns both tables have.
QString copySql(const QSqlDatabase &db, const QString &table)
{
    const QStringList source = columnsOf(db, Source, table);
    QStringList common;
    for (const QString &c : columnsOf(db, QStringLiteral("main"), table))
        if (source.contains(c, Qt::CaseInsensitive))
            common << Structure::quoted(c);
    // With nothing in common the statement names the table alone and fails as it should.
    const QString cols = common.join(QLatin1Char(','));
    return QStringLiteral("INSERT INTO main.") + table + (common.isEmpty() ? QString() : QStringLiteral(" (") + cols + QLatin1Char(')')) +
           QStringLiteral(" SELECT ") + (common.isEmpty() ? QStringLiteral("*") : cols) + QStringLiteral(" FROM ") + Source +
           QLatin1Char('.') + table;
}

bool duplicateKey(const QSqlError &e)
{
    return e.databaseText().contains(QLatin1String("UNIQUE constraint failed")) ||
           e.databaseText().contains(QLatin1String("PRIMARY KEY"));
}

void detach(QSqlDatabase &db)
{
    QSqlQuery q(db);
    q.exec(QStringLiteral("DETACH DATABASE ") + Source);
}

// Attaches the source, an Access file converted first into `scratch`. A message when the
// file is not a firm database.
bool attach(QSqlDatabase &db, const QString &name, QTemporaryDir &scratch)
{
    QString file = name;
    if (MdbReader::isAccessFile(name)) {
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
        file = converted;
    }
    {
        QSqlQuery q(db);
        q.prepare(QStringLiteral("ATTACH DATABASE ? AS ") + Source);
        q.addBindValue(file);
        if (!q.exec()) {
            dialogs().exclamation(QStringLiteral("Nie można otworzyć bazy danych:\n") + QDir::toNativeSeparators(name) +
                                      QLatin1Char('\n') + q.lastError().text(),
                                  Msg(51));
            return false;
        }
    }
    if (const QString foreign = FirmDatabase::foreignObjects(db, Source); !foreign.isEmpty()) {
        detach(db);
        dialogs().exclamation(foreign + QLatin1Char('\n') + QDir::toNativeSeparators(name), Msg(51));
        return false;
    }
    bool firm = false;
    {
        QSqlQuery q(db);
        firm = q.exec(QStringLiteral("SELECT count(*) FROM zrodlo.sqlite_master WHERE type='table' AND "
                                     "upper(name) IN ('ZLECANKI','FIRMA')")) &&
               q.next() && q.value(0).toInt() == 2;
    }
    if (!firm) {
        detach(db);
        dialogs().exclamation(MdbConversion::notAFirmMessage(name), Msg(51));
    }
    return firm;
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
    if (name.isEmpty() || !QFileInfo(name).isFile()) {
        dialogs().exclamation(QStringLiteral("Plik: ") + name + QStringLiteral(" - nie istnieje"));
        return false;
    }
    QTemporaryDir scratch;
    if (!attach(db, name, scratch))
        return false;
    if (!dialogs().question(QStringLiteral("Import skasuje wszystkie aktualne dane z wybranych kategorii.\n"
                                           "Chcesz kontynuować?"),
                            Msg(53))) {
        detach(db);
        return false;
    }
    bool failed = false;
    for (int c = 0; c < CategoryCount; ++c) {
        if (!ticked[size_t(c)])
            continue;
        const QString table = QLatin1String(Tables[c]);
        QStringList statements;
        if (c == Firma)
            statements << QStringLiteral("DELETE FROM main.FIRMA");
        statements << copySql(db, table);
        for (const QString &sql : std::as_const(statements)) {
            QSqlQuery q(db);
            if (q.exec(sql))
                continue;
            failed = true;
            if (duplicateKey(q.lastError()))
                dialogs().message(QStringLiteral("Próbujesz importować do bazy która zawiera jakieś dane.\n"
                                                 "Import nie będzie w pełni poprawny. Importuj dane do pustej bazy "
                                                 "(nowa firma)."),
                                  Msg(51), Dialogs::Icon::Critical);
        }
    }
    detach(db);
    if (failed)
        dialogs().exclamation(QStringLiteral("Import zakończono z błędami"));
    else
        dialogs().information(QStringLiteral("Import zakończono pomyślnie"));
    return true;
}

} // namespace FirmImport
