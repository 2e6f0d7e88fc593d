#include "FirmDatabase.h"

#include "Structure.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace FirmDatabase {

namespace {

bool writable(const QFileInfo &fi)
{
    // The permission bits decide, also for root: a file marked read-only stays read-only.
    if (!fi.isWritable() || !(fi.permissions() & QFileDevice::WriteOwner))
        return false;
    // SQLite writes its journal beside the file.
    const QFileInfo dir(fi.absolutePath());
    return dir.isWritable() && (dir.permissions() & QFileDevice::WriteOwner);
}

QSqlDatabase addConnection(const QString &path, const QString &connection, bool readOnly)
{
    if (QSqlDatabase::contains(connection))
        close(connection);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=3000");
    if (readOnly)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    db.setConnectOptions(options);
    return db;
}

} // namespace

std::optional<QSqlDatabase> open(const QString &path, const QString &connection, bool *readOnly, QString *error)
{
    auto fail = [&](const QString &message) -> std::optional<QSqlDatabase> {
        if (error)
            *error = message;
        return std::nullopt;
    };
    const QFileInfo fi(path);
    const QString shown = QDir::toNativeSeparators(fi.absoluteFilePath());
    if (path.isEmpty() || !fi.exists())
        return fail(QStringLiteral("Nie ma pliku bazy danych firmy:\n") + shown);
    if (fi.isDir())
        return fail(QStringLiteral("Wskazano folder, a nie plik bazy danych firmy:\n") + shown);
    if (!fi.isReadable())
        return fail(QStringLiteral("Brak uprawnień do odczytu pliku bazy danych firmy:\n") + shown);

    const bool ro = !writable(fi);
    // Checks in a scope of their own: a connection can be removed only when no handle is left.
    const QString problem = [&]() -> QString {
        QSqlDatabase db = addConnection(fi.absoluteFilePath(), connection, ro);
        if (!db.open())
            return QStringLiteral("Nie można otworzyć bazy danych firmy:\n") + shown + QLatin1Char('\n') +
                   db.lastError().text();
        QSqlQuery q(db);
        if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")))
            return QStringLiteral("Plik nie jest bazą danych firmy (uszkodzony albo innego rodzaju):\n") + shown;
        if (!Structure::tableExists(db, QStringLiteral("ZLECANKI")) || !Structure::tableExists(db, QStringLiteral("FIRMA")))
            return QStringLiteral("Plik nie jest bazą danych firmy programu Zlecanki:\n") + shown;
        return {};
    }();
    if (!problem.isEmpty()) {
        close(connection);
        return fail(problem);
    }
    if (readOnly)
        *readOnly = ro;
    return QSqlDatabase::database(connection, false);
}

void close(const QString &connection)
{
    {
        QSqlDatabase db = QSqlDatabase::database(connection, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

bool create(const QString &path, QString *error)
{
    const QFileInfo fi(path);
    if (fi.exists()) {
        if (error)
            *error = QStringLiteral("Plik już istnieje, nie zostanie nadpisany:\n") +
                     QDir::toNativeSeparators(fi.absoluteFilePath());
        return false;
    }
    if (!QDir().mkpath(fi.absolutePath())) {
        if (error)
            *error = QStringLiteral("Nie można utworzyć folderu:\n") + QDir::toNativeSeparators(fi.absolutePath());
        return false;
    }
    const QString connection = QStringLiteral("zlecanki-create-") + fi.absoluteFilePath();
    bool ok = false;
    {
        QSqlDatabase db = addConnection(fi.absoluteFilePath(), connection, false);
        if (!db.open()) {
            if (error)
                *error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") +
                         QDir::toNativeSeparators(fi.absoluteFilePath()) + QLatin1Char('\n') + db.lastError().text();
        } else {
            QString why;
            ok = Structure::CreateDatabase(db, &why);
            if (ok)
                Structure::UpgradeStructure(db);
            else if (error)
                *error = QStringLiteral("Nie można utworzyć bazy danych firmy:\n") + why;
        }
    }
    close(connection);
    if (!ok)
        QFile::remove(fi.absoluteFilePath());
    return ok;
}

} // namespace FirmDatabase
