#include "SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <unistd.h>

SingleInstance::SingleInstance(Role role, QObject *parent) : QObject(parent), m_role(role) {}

SingleInstance::~SingleInstance()
{
    if (m_onBus)
        QDBusConnection::sessionBus().unregisterService(Service);
}

QString SingleInstance::lockPath()
{
    QString dir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (dir.isEmpty() || !QFileInfo(dir).isDir())
        dir = QDir::tempPath() + QStringLiteral("/zlecanki-") + QString::number(getuid());
    QDir().mkpath(dir);
    return dir + QStringLiteral("/zlecanki.lock");
}

SingleInstance::Outcome SingleInstance::acquire(QString *error)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()) {
        if (m_role == Role::Automation) {
            if (error)
                *error = QStringLiteral("Brak magistrali sesji D-Bus: automatyzacja jest niedostępna.");
            return Outcome::Failed;
        }
        m_lock = std::make_unique<QLockFile>(lockPath());
        // The running copy holds the lock for hours, so age must not make it stale; a lock
        // left by a crashed copy names a dead process and is taken over all the same.
        m_lock->setStaleLockTime(0);
        return m_lock->tryLock(0) ? Outcome::Owner : Outcome::Running;
    }

    // The bus frees the name of a copy that crashed, so no stale state is ever left.
    const auto reply =
        m_role == Role::Desktop
            ? bus.interface()->registerService(Service, QDBusConnectionInterface::ReplaceExistingService,
                                               QDBusConnectionInterface::DontAllowReplacement)
            : bus.interface()->registerService(Service, QDBusConnectionInterface::DontQueueService,
                                               QDBusConnectionInterface::AllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered)
        return Outcome::Running;
    m_onBus = true;
    if (m_role == Role::Automation) {
        m_watcher = new QDBusServiceWatcher(Service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
        connect(m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString &, const QString &, const QString &newOwner) {
                    if (newOwner != QDBusConnection::sessionBus().baseService()) {
                        m_onBus = false;
                        Q_EMIT replaced();
                    }
                });
    }
    return Outcome::Owner;
}

bool SingleInstance::handOver(const QString &firmFile, QString *error) const
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                       QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"),
                                                       QStringLiteral("UruchomZBaza"));
    call << firmFile;
    const QDBusMessage reply = bus.call(call, QDBus::Block, 10000);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        if (error)
            *error = reply.errorMessage();
        return false;
    }
    return true;
}
