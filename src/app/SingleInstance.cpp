#include "SingleInstance.h"

#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <unistd.h>

SingleInstance::SingleInstance() = default;
SingleInstance::~SingleInstance() = default;

QString SingleInstance::lockPath()
{
    QString dir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (dir.isEmpty() || !QFileInfo(dir).isDir())
        dir = QDir::tempPath() + QStringLiteral("/zlecanki-") + QString::number(getuid());
    QDir().mkpath(dir);
    return dir + QStringLiteral("/zlecanki.lock");
}

bool SingleInstance::acquire()
{
    m_lock = std::make_unique<QLockFile>(lockPath());
    // The running copy holds the lock for hours, so age must not make it stale; a lock
    // left by a crashed copy names a dead process and is taken over all the same.
    m_lock->setStaleLockTime(0);
    return m_lock->tryLock(0);
}
