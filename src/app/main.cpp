#include "CommandLine.h"
#include "Main.h"
#include "Version.h"
#include "db/ImportMdbCommand.h"
#include "db/MoveFirmCommand.h"
#include "print/ui/PrintCommand.h"
#include "db/MdbProcess.h"
#include "reports/ReportCommand.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <cstdio>

int main(int argc, char **argv)
{
    // The reader of an old Access file, started by the program itself (MdbProcess).
    if (argc == 3 && QString::fromLocal8Bit(argv[1]) == MdbProcess::Argument)
        return MdbProcess::serve(QString::fromLocal8Bit(argv[2]));

    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    registerPrintCommand();
    registerReportCommand();
    registerImportMdbCommand();
    registerMoveFirmCommand();
    if (CommandLine::isCommand(args)) {
        if (CommandLine::needsApplication(args)) {
            // Printing needs the GUI classes but no screen: headless unless told otherwise.
            if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
                qputenv("QT_QPA_PLATFORM", "offscreen");
            QApplication app(argc, argv);
            QApplication::setApplicationName(QStringLiteral("Zlecanki"));
            QApplication::setOrganizationName(QStringLiteral("Kontorian"));
            return CommandLine::run(args).value_or(2);
        }
        QCoreApplication app(argc, argv);
        return CommandLine::run(args).value_or(2);
    }
    const CommandLine::StartOptions options = CommandLine::parseStart(args);
    if (!options.error.isEmpty()) {
        std::fprintf(stderr, "%s\n", options.error.toLocal8Bit().constData());
        return 2;
    }

    // An automation copy shows nothing, and the bus may start it without a display.
    if (options.automation && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("ZLECANKI_QPA_AUTOMATION", "1");
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Zlecanki"));
    QApplication::setOrganizationName(QStringLiteral("Kontorian"));
    QApplication::setApplicationVersion(QStringLiteral(ZLECANKI_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("pl.kontorian.Zlecanki"));
    QTranslator qtPolish;
    if (qtPolish.load(QLocale(QLocale::Polish, QLocale::Poland), QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtPolish);
    return Main(app, options);
}
