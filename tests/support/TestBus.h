#pragma once

#include "TestEnv.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMap>

// Makes the session bus start the program in the test's private home, ending after
// `idleSeconds` without calls, its questions answered on the console so that no message box
// waits for a person. False when the bus refused.
inline bool startProgramsInTestHome(const TestEnv &env, int idleSeconds)
{
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QMap<QString, QString> values;
    const QProcessEnvironment pe = env.processEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME", "QT_QPA_PLATFORM"})
        values.insert(QLatin1String(name), pe.value(QLatin1String(name)));
    values.insert(QStringLiteral("ZLECANKI_AUTOMATION_IDLE"), QString::number(idleSeconds));
    values.insert(QStringLiteral("ZLECANKI_DIALOGS"), QStringLiteral("console"));
    QDBusMessage update = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                                         QStringLiteral("org.freedesktop.DBus"),
                                                         QStringLiteral("UpdateActivationEnvironment"));
    update << QVariant::fromValue(values);
    return QDBusConnection::sessionBus().call(update).type() == QDBusMessage::ReplyMessage;
}
