#include "Automation.h"

#include "AppState.h"
#include "base/ui/SingleInstance.h"
#include "StartupSettings.h"
#include "clsSerwerBus.h"
#include "print/SlipDrivers.h"
#include "reports/ReportPrintout.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>

#include <cstdio>

int runAutomation(QApplication &app)
{
    initPaths();
    registerSlipDrivers();
    registerReportDriver();
    StartupSettings::loadFontsAndPrintOptions();

    // The object is on the bus before the name, so the first call finds it.
    clsSerwerBus serwer;
    serwer.registerOnBus();
    SingleInstance instance(SingleInstance::Role::Automation);
    QString error;
    switch (instance.acquire(&error)) {
    case SingleInstance::Outcome::Failed:
        std::fprintf(stderr, "%s\n", error.toLocal8Bit().constData());
        return 1;
    case SingleInstance::Outcome::Running:
        return 0; // another copy serves the calls
    case SingleInstance::Outcome::Owner:
        break;
    }

    // The window is a desktop copy of its own: it takes the bus name over and this copy ends.
    serwer.server().setStarter([](const QString &firm) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (env.value(QStringLiteral("ZLECANKI_QPA_AUTOMATION")) == QLatin1String("1")) {
            env.remove(QStringLiteral("QT_QPA_PLATFORM"));
            env.remove(QStringLiteral("ZLECANKI_QPA_AUTOMATION"));
        }
        p.setProcessEnvironment(env);
        p.setProgram(QCoreApplication::applicationFilePath());
        p.setArguments(firm.isEmpty() ? QStringList() : QStringList{firm});
        p.startDetached();
    });

    bool ok = false;
    const int idleSeconds = qEnvironmentVariableIntValue("ZLECANKI_AUTOMATION_IDLE", &ok);
    QTimer idle;
    idle.setSingleShot(true);
    idle.setInterval((ok && idleSeconds > 0 ? idleSeconds : 60) * 1000);
    QObject::connect(&idle, &QTimer::timeout, &app, [] { QCoreApplication::exit(0); });
    QObject::connect(&serwer, &clsSerwerBus::called, &idle, qOverload<>(&QTimer::start));
    QObject::connect(&instance, &SingleInstance::replaced, &app, [] { QCoreApplication::exit(0); },
                     Qt::QueuedConnection);
    idle.start();
    return app.exec();
}
