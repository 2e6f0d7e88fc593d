#include "Firm.h"

#include "AppState.h"
#include "Dialogs.h"
#include "Messages.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/MdbConversion.h"
#include "db/MdbReader.h"
#include "db/Structure.h"
#include "Accounts.h"
#include "ScheduledPayments.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

const QString Connection = QStringLiteral("firma");

struct OpenFirm {
    QString file;
    bool readOnly = true;
};

OpenFirm &current()
{
    static OpenFirm firm;
    return firm;
}

int lastPercent = 0;

// The due check of scheduled payments: true when some are due today. A failing query is
// reported and the opening goes on, as the firm itself is sound.
bool checkDuePayments(const QSqlDatabase &db)
{
    QString error;
    const auto due = ScheduledPayments::due(db, appState().today, &error);
    if (!due)
        ErrorReport(error);
    return due && !due->isEmpty();
}

// A shared firm on a server: what another workstation commits is announced on the firm's
// channel, and this one reads its accounts again and lets its windows follow.
void listenToOtherWorkstations(QSqlDatabase &db)
{
    if (!Dialect::isPostgres(db))
        return;
    QSqlDriver *driver = db.driver();
    driver->subscribeToNotification(Dialect::changeChannel(db));
    static QMetaObject::Connection listening;
    QObject::disconnect(listening);
    listening = QObject::connect(driver, &QSqlDriver::notification, &FirmEvents::instance(),
                     [](const QString &, QSqlDriver::NotificationSource source, const QVariant &) {
                         if (source == QSqlDriver::SelfSource || !isFirmOpen())
                             return;
                         QSqlDatabase firm = Db();
                         Accounts::load(firm);
                         Q_EMIT FirmEvents::instance().accountsChanged();
                         Q_EMIT FirmEvents::instance().changedElsewhere();
                     });
}

// After the server was lost the connection is made again on the next use, at most every two
// seconds, so a window asking many times while the server is down does not wait each time.
void reconnectWhenBroken()
{
    static QDateTime lastTry;
    QSqlDatabase db = QSqlDatabase::database(Connection, false);
    if (!Dialect::broken(db))
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (lastTry.isValid() && lastTry.msecsTo(now) < 2000)
        return;
    lastTry = now;
    const auto address = Dialect::parseAddress(current().file);
    QString error;
    if (address && Dialect::reconnect(db, *address, &error))
        listenToOtherWorkstations(db);
}

} // namespace

void readFirmSettings(QSqlDatabase &db)
{
    AppState &s = appState();
    int *flags[] = {&s.data, &s.wstawiany, &s.nowe, &s.czteryOdcinki, &s.czteryNaStronie, &s.szary, &s.eliksir};
    for (int *f : flags)
        *f = 0;
    {
        QSqlQuery q(db);
        if (q.exec(QStringLiteral("SELECT Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, Szary, Eliksir "
                                  "FROM Ustawienia ORDER BY rowid LIMIT 1")) &&
            q.next()) {
            for (int i = 0; i < 7; ++i)
                *flags[i] = q.value(i).toInt() != 0 ? 1 : 0;
        }
    }
    s.margLewy = s.margPrawy = 0;
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT MargLewy, MargPrawy FROM Ustawienia2 ORDER BY rowid LIMIT 1")) && q.next()) {
        s.margLewy = static_cast<qint16>(q.value(0).toInt());
        s.margPrawy = static_cast<qint16>(q.value(1).toInt());
    }
}

FirmEvents &FirmEvents::instance()
{
    static FirmEvents events;
    return events;
}

void ShowProgress(const QString &text, int percent)
{
    if (percent >= 0)
        lastPercent = qBound(0, percent, 100);
    Q_EMIT FirmEvents::instance().progress(text, lastPercent);
}

QString resolveFirmPath(const QString &name)
{
    if (Dialect::isAddress(name))
        return name.trimmed();
    if (name.contains(QLatin1Char('/')))
        return QFileInfo(name).absoluteFilePath();
    return appState().bazyPath + name;
}

QString firmForCommand(const QString &given, QString *error)
{
    const QString firm = QFileInfo::exists(given) ? QFileInfo(given).absoluteFilePath() : resolveFirmPath(given);
    if (Dialect::isAddress(firm) || QFileInfo::exists(firm))
        return firm;
    if (error)
        *error = QStringLiteral("Nie ma pliku firmy: %1").arg(QDir::toNativeSeparators(given));
    return {};
}

bool OpenDb(const QString &name)
{
    ShowProgress(QStringLiteral("Ładuję firmę"), 2);
    QString path = resolveFirmPath(name);
    // A firm file of the earlier Windows version is converted into one of ours beside it;
    // declined or failed, the firm open now stays open.
    if (MdbReader::isAccessFile(path) && (path = MdbConversion::convertForOpening(path)).isEmpty()) {
        ShowProgress(QString(), 100);
        return false;
    }
    if (isFirmOpen())
        CloseDb();

    bool readOnly = false;
    QString error;
    auto opened = FirmDatabase::open(path, Connection, &readOnly, &error);
    if (!opened) {
        dialogs().exclamation(error, Msg(51));
        Q_EMIT FirmEvents::instance().openFailed();
        return false;
    }
    QSqlDatabase db = *opened;
    current() = OpenFirm{Dialect::isAddress(path) ? path : QFileInfo(path).absoluteFilePath(), readOnly};
    listenToOtherWorkstations(db);

    ShowProgress(QStringLiteral("Ładuję dodatki"), 40);
    Structure::UpgradeStructure(db);

    AppState &s = appState();
    s.today = s.todayForRun.value_or(QDate::currentDate());

    ShowProgress(QStringLiteral("Ładuję dodatki"), 50);
    Accounts::load(db);
    ShowProgress(QStringLiteral("Ładuję dodatki"), 70);
    ShowProgress(QStringLiteral("Sprawdzam terminowe"), 80);
    const bool paymentsDue = checkDuePayments(db);
    ShowProgress(QStringLiteral("Sprawdzam terminowe"), 100);

    readFirmSettings(db);
    if (readOnly)
        dialogs().information(QStringLiteral("Plik firmy jest tylko do odczytu. Dane można przeglądać i drukować, "
                                             "ale zmiany nie będą zapisywane."),
                              Msg(53));
    Q_EMIT FirmEvents::instance().opened();
    if (paymentsDue)
        Q_EMIT FirmEvents::instance().paymentsDue();
    return true;
}

void CloseDb()
{
    if (!isFirmOpen())
        return;
    FirmDatabase::close(Connection);
    current() = OpenFirm{};
    Q_EMIT FirmEvents::instance().closed();
}

bool isFirmOpen()
{
    return !current().file.isEmpty();
}

QSqlDatabase Db()
{
    if (!isFirmOpen())
        return QSqlDatabase();
    reconnectWhenBroken();
    return QSqlDatabase::database(Connection, false);
}

QString firmFile()
{
    return current().file;
}

bool firmReadOnly()
{
    return current().readOnly;
}

bool refuseWhenReadOnly()
{
    if (!isFirmOpen()) {
        dialogs().beep();
        return true;
    }
    if (!firmReadOnly())
        return false;
    dialogs().exclamation(QStringLiteral("Plik firmy jest tylko do odczytu. Zmiany nie mogą zostać zapisane."),
                          Msg(55));
    return true;
}

QString firmOwnName(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT NAZWA FROM firma ORDER BY rowid LIMIT 1")) && q.next())
        return q.value(0).toString().trimmed();
    return {};
}

QString firmDisplayName()
{
    if (!isFirmOpen())
        return {};
    QSqlQuery q(Db());
    if (q.exec(QStringLiteral("SELECT NAZWA, MIASTO FROM firma ORDER BY rowid LIMIT 1")) && q.next()) {
        const QString nazwa = q.value(0).toString().trimmed();
        const QString miasto = q.value(1).toString().trimmed();
        if (!nazwa.isEmpty())
            return miasto.isEmpty() ? nazwa : nazwa + QStringLiteral(", ") + miasto;
    }
    if (Dialect::isAddress(firmFile())) {
        if (const auto address = Dialect::parseAddress(firmFile()))
            return address->schema == QLatin1String("public") ? address->database : address->schema;
    }
    if (QFileInfo(firmFile()) == QFileInfo(standardFirmPath()))
        return StandardFirmName;
    return QFileInfo(firmFile()).completeBaseName();
}

QString standardFirmPath()
{
    return appState().bazyPath + QStringLiteral("standardowa.") + FirmDatabase::Extension;
}

bool ensureStandardFirm(QString *error)
{
    if (QFileInfo::exists(standardFirmPath()))
        return true;
    return FirmDatabase::create(standardFirmPath(), error);
}
