#include "ImportMdbCommand.h"

#include "CommandRegistry.h"
#include "FirmDatabase.h"
#include "MdbConversion.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace {

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
}

} // namespace

void registerImportMdbCommand()
{
    CommandLine::addCommand(QStringLiteral("import-mdb"), QStringLiteral("import-mdb STARY.mdb NOWA_BAZA"),
                            QStringLiteral("przenosi firmę z pliku Access poprzedniej wersji do nowej bazy\n"
                                           "                         (z rozszerzeniem .zlc, gdy go nie ma) i wypisuje\n"
                                           "                         liczbę wierszy każdej tabeli"),
                            importMdbCommand);
}

int importMdbCommand(const QStringList &args)
{
    if (args.size() != 2) {
        print(stderr, QStringLiteral("Użycie: zlecanki import-mdb STARY.mdb NOWA_BAZA"));
        return 2;
    }
    QString target = args.at(1);
    if (QFileInfo(target).suffix().isEmpty())
        target += QLatin1Char('.') + FirmDatabase::Extension;
    const MdbConversion::Result r = MdbConversion::convertFile(args.at(0), target);
    if (!r.ok) {
        print(stderr, r.error);
        return 1;
    }
    for (const auto &[table, rows] : r.rows)
        print(stdout, table + QLatin1Char('\t') + QString::number(rows));
    for (const QString &w : r.warnings)
        print(stderr, w);
    if (!r.firmTables)
        print(stderr, MdbConversion::notAFirmMessage(args.at(0)));
    print(stderr, QStringLiteral("Zapisano: ") + QDir::toNativeSeparators(QFileInfo(target).absoluteFilePath()));
    return 0;
}
