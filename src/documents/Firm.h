#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QString>

// The open firm: at most one firm database is open at a time, under one connection.
// Opening runs the whole loading sequence (structure upgrade, working date, accounts,
// due payments, the firm's print settings) and tells the windows through FirmEvents.

// Signals about the open firm and the progress of loading it.
class FirmEvents : public QObject {
    Q_OBJECT
public:
    static FirmEvents &instance();

Q_SIGNALS:
    void progress(const QString &text, int percent);
    void opened();
    void closed();
    // An opening failed: no firm is open now.
    void openFailed();
    // The due check at opening found scheduled payments whose alarm day has come; the
    // main window answers with the alarm window once the opening is over.
    void paymentsDue();
    // The firm's accounts were read again (firm data saved, a firm imported): every open
    // list of accounts follows.
    void accountsChanged();
    // Another workstation of a shared firm committed a change: lists of documents follow.
    void changedElsewhere();
};

// Shows a loading step: text and percentage (a negative percentage keeps the previous one).
void ShowProgress(const QString &text, int percent = -1);

// Opens a firm database: `name` without "/" is a file in the databases folder, otherwise a
// path. On failure a Polish message is shown and no firm is open. Returns success.
bool OpenDb(const QString &name);
// Reads a firm's document and print flags and its margins (first row of Ustawienia and
// Ustawienia2, Null as 0) into the application state.
void readFirmSettings(QSqlDatabase &db);
// Closes the open firm database (windows are closed by the caller before).
void CloseDb();

bool isFirmOpen();
QSqlDatabase Db();
// The open firm's file (absolute path) or server address, empty when none.
QString firmFile();
// The open firm may only be viewed; true also when none is open.
bool firmReadOnly();
// For saving commands: when the firm cannot be written, tells the user and returns true.
bool refuseWhenReadOnly();

// The firm as the main window's caption shows it: "Nazwa, Miasto" from the firm data, or
// "Firma standardowa" / the file's name while the firm has no name yet.
QString firmDisplayName();
// The name the firm gives itself in its data (the first row's NAZWA), empty when it has none.
QString firmOwnName(const QSqlDatabase &db);

// The default firm's file in the databases folder, and the name it is listed under.
QString standardFirmPath();
inline const QString StandardFirmName = QStringLiteral("Firma standardowa");
// Creates the default firm's file when it does not exist yet. Returns false on failure.
bool ensureStandardFirm(QString *error = nullptr);
// The file path for a name given to OpenDb.
QString resolveFirmPath(const QString &name);
// The firm a command line names with --firma: a file here, a firm of the databases folder by
// its file name, or a server address. Empty, with the Polish reason in `error`, when there is
// no such file.
QString firmForCommand(const QString &given, QString *error);
