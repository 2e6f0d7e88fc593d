#include "MoveFirmCommand.h"

#include "CommandRegistry.h"
#include "Dialect.h"
#include "FirmCopy.h"
#include "FirmDatabase.h"
#include "Structure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlQuery>

#include <cstdio>

namespace {

const QString SourceConnection = QStringLiteral("zlecanki-przenies-zrodlo");
const QString TargetConnection = QStringLiteral("zlecanki-przenies-cel");
const QString AdminConnection = QStringLiteral("zlecanki-przenies-serwer");

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
}

QString shownName(const QString &location)
{
    return Dialect::isAddress(location) ? location.trimmed() : QDir::toNativeSeparators(QFileInfo(location).absoluteFilePath());
}

// Whether the firm's schema is on the server already (an office may prepare an empty schema
// with its rights set): then only the program's tables are taken away again.
bool schemaThere(const QString &address)
{
    const auto a = Dialect::parseAddress(address);
    bool there = false;
    if (a && Dialect::connect(*a, AdminConnection, nullptr)) {
        QSqlQuery q(QSqlDatabase::database(AdminConnection, false));
        q.prepare(QStringLiteral("SELECT 1 FROM information_schema.schemata WHERE schema_name = ?"));
        q.addBindValue(a->schema);
        there = q.exec() && q.next();
    }
    FirmDatabase::close(AdminConnection);
    return there;
}

// A file beside the target that nothing has: the copy is built there and takes the target's
// name only when complete, so a copy cut short leaves nothing that opens as the firm.
QString workFile(const QString &target)
{
    const QFileInfo fi(target);
    QString work;
    do {
        work = fi.absolutePath() + QStringLiteral("/.") + fi.fileName() + QLatin1Char('.') +
               QString::number(QRandomGenerator::global()->bounded(100000000), 36);
    } while (QFileInfo::exists(work));
    return work;
}

// Takes the half-made target away again: the file, or what was made on the server.
void removeTarget(const QString &target, bool keepSchema)
{
    if (!Dialect::isAddress(target)) {
        for (const char *suffix : {"", "-journal", "-wal", "-shm"})
            QFile::remove(target + QLatin1String(suffix));
        return;
    }
    const auto a = Dialect::parseAddress(target);
    if (a && Dialect::connect(*a, AdminConnection, nullptr)) {
        QSqlDatabase db = QSqlDatabase::database(AdminConnection, false);
        QSqlQuery q(db);
        if (!keepSchema) {
            q.exec(QStringLiteral("DROP SCHEMA IF EXISTS \"") + a->schema + QStringLiteral("\" CASCADE"));
        } else {
            for (const QString &table : FirmCopy::firmTables())
                q.exec(QStringLiteral("DROP TABLE IF EXISTS ") + Structure::quoted(db, table));
        }
    }
    FirmDatabase::close(AdminConnection);
}

} // namespace

void registerMoveFirmCommand()
{
    CommandLine::addCommand(QStringLiteral("przenies"), QStringLiteral("przenies ZRODLO CEL"),
                            QStringLiteral("kopiuje firmę do nowej bazy: z pliku na serwer PostgreSQL\n"
                                           "                         (postgresql://serwer:port/baza?schema=firma) albo z\n"
                                           "                         powrotem; wypisuje i porównuje liczby wierszy tabel"),
                            moveFirmCommand);
}

int moveFirmCommand(const QStringList &args)
{
    if (args.size() != 2 || args.at(0).trimmed().isEmpty() || args.at(1).trimmed().isEmpty()) {
        print(stderr, QStringLiteral("Użycie: zlecanki przenies ZRODLO CEL\n"
                                     "(plik firmy albo adres postgresql://serwer:port/baza?schema=firma)"));
        return 2;
    }
    const QString source = Dialect::isAddress(args.at(0)) ? args.at(0).trimmed() : QFileInfo(args.at(0)).absoluteFilePath();
    QString target = args.at(1).trimmed();
    if (!Dialect::isAddress(target)) {
        if (QFileInfo(target).suffix().isEmpty())
            target += QLatin1Char('.') + FirmDatabase::Extension;
        target = QFileInfo(target).absoluteFilePath();
    }
    const QString failed = QStringLiteral("Firma nie została przeniesiona.");
    QString error;
    if (!Dialect::isAddress(source) && !QFileInfo(source).isFile()) {
        print(stderr, QStringLiteral("Nie ma pliku bazy danych firmy:\n") + shownName(source) + QLatin1Char('\n') + failed);
        return 1;
    }
    // The source is looked at first: a firm that cannot be read leaves no empty target behind.
    if (!FirmCopy::openSource(source, shownName(source), SourceConnection, &error)) {
        print(stderr, error + QLatin1Char('\n') + failed);
        return 1;
    }
    const bool onServer = Dialect::isAddress(target);
    if (!onServer && QFileInfo::exists(target)) {
        FirmDatabase::close(SourceConnection);
        print(stderr, QStringLiteral("Plik już istnieje, nie zostanie nadpisany:\n") + shownName(target) + QLatin1Char('\n') +
                          failed);
        return 1;
    }
    const bool keepSchema = onServer && schemaThere(target);
    const QString work = onServer ? target : workFile(target);
    if (!FirmDatabase::create(work, &error)) {
        FirmDatabase::close(SourceConnection);
        print(stderr, error + QLatin1Char('\n') + failed);
        return 1;
    }
    FirmCopy::FirmCopyResult result;
    {
        bool readOnly = false;
        const auto opened = FirmDatabase::open(work, TargetConnection, &readOnly, &error);
        if (!opened) {
            result.error = error;
        } else {
            QSqlDatabase targetDb = *opened;
            result = FirmCopy::copyFirm(QSqlDatabase::database(SourceConnection, false), targetDb);
        }
    }
    FirmDatabase::close(TargetConnection);
    FirmDatabase::close(SourceConnection);

    if (!result.counts.isEmpty()) {
        print(stdout, QStringLiteral("Tabela\tŹródło\tCel"));
        for (const FirmCopy::TableCount &c : std::as_const(result.counts))
            print(stdout, QStringLiteral("%1\t%2\t%3").arg(c.table).arg(c.source).arg(c.target));
    }
    if (result.ok && work != target && !QFile::rename(work, target)) {
        result.ok = false;
        result.error = QStringLiteral("Nie można zapisać bazy danych firmy:\n") + shownName(target);
    }
    if (!result.ok) {
        removeTarget(work, keepSchema);
        print(stderr, result.error + QLatin1Char('\n') + failed + QStringLiteral(" Niepełną kopię usunięto:\n") +
                          shownName(target));
        return 1;
    }
    print(stdout, QStringLiteral("Liczby wierszy zgodne. Firma przeniesiona do:\n") + shownName(target));
    return 0;
}
