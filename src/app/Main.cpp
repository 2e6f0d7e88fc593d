#include "Main.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "SettingsStore.h"
#include "base/ui/SingleInstance.h"
#include "users/Users.h"
#include "WidgetDialogs.h"
#include "exchange/ui/Automation.h"
#include "exchange/ui/clsSerwerBus.h"
#include "users/ui/frmLogin.h"
#include "frmglowna.h"
#include "frmstart.h"
#include "print/ui/PrinterSurface.h"
#include "print/SlipDrivers.h"
#include "reports/ReportPrintout.h"
#include "print/ui/frmDrukPreview.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <memory>

int Main(QApplication &app, const CommandLine::StartOptions &options)
{
    // Started by the session bus for another program of the suite: no windows here.
    if (options.automation)
        return runAutomation(app);

    // Unattended runs (scripts, measurements) want messages on standard error instead of boxes.
    std::unique_ptr<WidgetDialogs> widgetDialogs;
    if (qEnvironmentVariable("ZLECANKI_DIALOGS") != QLatin1String("console")) {
        widgetDialogs = std::make_unique<WidgetDialogs>();
        setDialogs(widgetDialogs.get());
    }

    auto splash = std::make_unique<frmstart>();
    splash->show();
    app.processEvents();

    // This copy serves the automation object too; it is on the bus before the name is taken.
    clsSerwerBus serwer;
    serwer.registerOnBus();
    SingleInstance instance;
    if (instance.acquire() == SingleInstance::Outcome::Running) {
        splash.reset();
        // The running copy opens the firm asked for here and comes to the front.
        if (instance.handOver(options.firmFile) && !options.firmFile.isEmpty())
            return 0;
        dialogs().message(QStringLiteral("Nie można uruchomić drugiej kopii programu"), QStringLiteral("Koniec"),
                          Dialogs::Icon::Information);
        return 1;
    }

    initPaths();
    AppState &state = appState();
    state.todayForRun = options.today;
    state.today = options.today.value_or(QDate::currentDate());

    auto progress = QObject::connect(&FirmEvents::instance(), &FirmEvents::progress, splash.get(),
                                     &frmstart::showProgress);
    frmglowna main;
    PrintEngine &engine = PrintEngine::instance();
    registerSlipDrivers();
    registerReportDriver();
    engine.setPrinterFactory([]() -> std::unique_ptr<PrintSurface> {
        auto printer = std::make_unique<PrinterSurface>();
        if (!printer->isValid())
            return nullptr;
        return printer;
    });
    engine.setPreviewSink([&main](const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF page) {
        // A new preview takes the place of the one before.
        if (QWidget *old = main.childWindow(QStringLiteral("frmDrukPreview")))
            old->parentWidget()->close();
        main.showChild(new frmDrukPreview(job, pages, page));
    });
    main.restorePlacement();
    main.show();
    main.openStartFirm(options.firmFile);
    serwer.server().setStarter([&main](const QString &firm) {
        // After the call is answered: opening a firm may ask the user things.
        QTimer::singleShot(0, &main, [&main, firm] {
            if (!firm.isEmpty())
                main.openFirm(firm);
            main.setWindowState(main.windowState() & ~Qt::WindowMinimized);
            main.show();
            main.raise();
            main.activateWindow();
        });
    });
    QString usersError;
    if (!UserSession::instance().reload(&usersError))
        dialogs().exclamation(usersError, QStringLiteral("Ochrona"));
    else if (UserSession::instance().usersDefined())
        main.showChild(new frmLogin);
    QObject::disconnect(progress);

    if (!SettingsStore::loadBool(QStringLiteral("kom_roz"), true)) {
        splash.reset();
        const QScreen *screen = QApplication::primaryScreen();
        if (screen && screen->size().width() < 800)
            dialogs().information(QStringLiteral("Zalecana minimalna rozdzielczość dla programu to 800*600."),
                                  QStringLiteral("Przełącz rozdzielczość."));
    }
    splash.reset();
    state.started = true;

    if (options.quitAfterStart)
        QTimer::singleShot(0, &app, [] { QCoreApplication::exit(0); }); // no quit question
    const int code = app.exec();
    engine.setPreviewSink(nullptr);
    CloseDb();
    setDialogs(nullptr);
    return code;
}
