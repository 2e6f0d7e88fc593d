#include "SafeOutput.h"

#include "SettingsStore.h"

#include <QDir>
#include <QSqlDatabase>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace SafeOutput {

namespace {

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

bool samePath(const QString &a, const QString &b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    const QString ca = QFileInfo(a).canonicalFilePath();
    return !ca.isEmpty() && ca == QFileInfo(b).canonicalFilePath();
}

QString systemError(int code)
{
    switch (code) {
    case ENOSPC:
        return QStringLiteral("brak miejsca na dysku");
    case EDQUOT:
        return QStringLiteral("przekroczony przydział miejsca na dysku");
    case EACCES:
    case EPERM:
        return QStringLiteral("brak uprawnień do zapisu");
    case EROFS:
        return QStringLiteral("dysk jest tylko do odczytu");
    case EEXIST:
        return QStringLiteral("plik już istnieje");
    case EIO:
        return QStringLiteral("błąd wejścia-wyjścia");
    case EXDEV:
        return QStringLiteral("plik tymczasowy jest na innym dysku");
    default:
        return QStringLiteral("błąd systemu nr %1").arg(code);
    }
}

mode_t currentUmask()
{
    const mode_t m = ::umask(0);
    ::umask(m);
    return m;
}

} // namespace

bool isDatabaseFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    return f.read(16) == QByteArray("SQLite format 3\0", 16);
}

QString refusal(const QString &path, Existing existing)
{
    if (path.trimmed().isEmpty())
        return QStringLiteral("Nie podano nazwy pliku.");
    const QFileInfo fi(path);
    const QString folder = fi.absolutePath();
    if (!QFileInfo(folder).isDir())
        return QStringLiteral("Nie ma folderu %1.").arg(native(folder));
    // Every database this process has open: the firm of the windows, or one opened by a
    // calling program through the automation.
    // A server's connection names a database on the server, not a file here.
    for (const QString &connection : QSqlDatabase::connectionNames()) {
        const QSqlDatabase db = QSqlDatabase::database(connection, false);
        if (db.driverName() == QLatin1String("QSQLITE") && samePath(path, db.databaseName()))
            return QStringLiteral("Plik %1 jest otwartą bazą firmy; wybierz inny plik.").arg(native(path));
    }
    // The settings folder holds the settings files and the users file.
    if (samePath(folder, QFileInfo(SettingsStore::fileName(SettingsStore::App)).absolutePath()) ||
        samePath(path, SettingsStore::fileName(SettingsStore::Suite)))
        return QStringLiteral("Plik %1 to ustawienia programu; wybierz inny plik.").arg(native(path));
    if (!fi.exists() && !fi.isSymLink())
        return QString();
    if (fi.isDir())
        return QStringLiteral("%1 jest folderem, a nie plikiem.").arg(native(path));
    if (!fi.isFile())
        return QStringLiteral("%1 nie jest zwykłym plikiem.").arg(native(path));
    if (isDatabaseFile(path))
        return QStringLiteral("Plik %1 jest bazą danych (może to baza firmy); nie zostanie zastąpiony.").arg(native(path));
    if (existing == Existing::Keep)
        return QStringLiteral("Plik %1 już istnieje; nie zostanie zastąpiony.").arg(native(path));
    return QString();
}

File::File(const QString &target, Existing existing)
    : m_target(QFileInfo(target).absoluteFilePath()), m_existing(existing)
{
    m_error = refusal(target, existing);
    if (!m_error.isEmpty())
        return;
    // A symbolic link is replaced by the file, never followed to what it names.
    const QFileInfo fi(m_target);
    m_temp = std::make_unique<QTemporaryFile>(fi.absolutePath() + QStringLiteral("/.") + fi.fileName() +
                                              QStringLiteral(".XXXXXX"));
    if (!m_temp->open()) {
        failWith(QStringLiteral("Nie można utworzyć pliku w folderze %1: %2")
                     .arg(native(fi.absolutePath()), systemError(errno)));
        m_temp.reset();
    }
}

File::~File() = default;

bool File::failWith(const QString &why)
{
    if (m_error.isEmpty())
        m_error = why;
    return false;
}

QIODevice *File::device()
{
    return m_temp.get();
}

QString File::tempPath() const
{
    return m_temp ? m_temp->fileName() : QString();
}

bool File::commit()
{
    if (!m_temp)
        return false;
    const QString cannot = QStringLiteral("Nie udało się zapisać pliku %1: ").arg(native(m_target));
    if (m_temp->isOpen()) {
        if (m_temp->error() != QFileDevice::NoError || !m_temp->flush())
            return failWith(cannot + m_temp->errorString());
        if (::fsync(m_temp->handle()) != 0)
            return failWith(cannot + systemError(errno));
        m_temp->close();
    }
    const QByteArray from = QFile::encodeName(m_temp->fileName());
    const QByteArray to = QFile::encodeName(m_target);
    // What the user would get from a new file, or the old file's own rights.
    struct stat old {};
    const mode_t mode = ::stat(to.constData(), &old) == 0 ? (old.st_mode & 07777) : (0666 & ~currentUmask());
    ::chmod(from.constData(), mode);
    // The target is checked once more just before the move: it may have appeared meanwhile.
    const QString late = refusal(m_target, m_existing);
    if (!late.isEmpty())
        return failWith(late);
    if (m_existing == Existing::Keep) {
        // A hard link never replaces: a file that appeared meanwhile stays.
        if (::link(from.constData(), to.constData()) != 0)
            return failWith(cannot + systemError(errno));
    } else if (::rename(from.constData(), to.constData()) != 0) {
        return failWith(cannot + systemError(errno));
    }
    m_temp->remove();
    m_temp.reset();
    return true;
}

bool write(const QString &path, const QByteArray &data, Existing existing, QString *error)
{
    File f(path, existing);
    const bool ok = f.isOpen() && f.device()->write(data) == data.size() && f.commit();
    if (!ok && error)
        *error = f.error().isEmpty() ? QStringLiteral("Nie udało się zapisać pliku %1: %2")
                                           .arg(native(path), f.device() ? f.device()->errorString() : QString())
                                     : f.error();
    return ok;
}

} // namespace SafeOutput
