#pragma once

#include "Money.h"

#include <QDate>
#include <QSqlDatabase>
#include <QString>

class QIODevice;

// The Elixir bank file kept beside a firm's database: its place, the sender's lines and
// the writer of one payment record. Text goes out in Windows-1250, each line ended by CR LF.
namespace Elixir {

// The file name from the settings ("Zlecanki"/"Load"/"PlikElixir"); never written by the
// program, "Przelew.pli" by default.
QString fileNameSetting();
// The firm's folder: the database's full file name up to and including its last "/"; for a
// firm on a server, a local folder of its own.
QString firmFolder(const QString &databaseFile);
// Where the firm's Elixir file is: the firm's folder followed by the name setting (a name
// that is already a full path stays as it is).
QString filePath(const QString &databaseFile);

struct SenderLines {
    QString name;   // "Nazwa nazwa1", at most 34 characters
    QString street; // "ulica nr_domu[ nr_lokalu]", at most 34
    QString town;   // "KOD miasto", at most 34
    QString nip;
    QString bankName; // the firm's first account
    QString bankAccount;
};
SenderLines GatherSenderLines(const QSqlDatabase &db);

// One record line without its line end. `amount` is rounded to a whole number, halves to
// even; the texts go in unchanged.
QString recordLine(const QDate &date, Money amount, const QString &a, const QString &f, const QString &b,
                   const QString &c, const QString &d, const QString &e, const QString &g);
// Writes one record line in Windows-1250 with CR LF; a failed write is told through the
// common error report and the line is lost.
bool WriteElixirRecord(QIODevice &out, const QDate &date, Money amount, const QString &a, const QString &f,
                       const QString &b, const QString &c, const QString &d, const QString &e, const QString &g);

// The file step of issuing a document: with the export switch at 1, the firm's file is
// opened for appending (created when missing), the sender's lines are read and the file is
// closed again; no record is written. False, after the common error report, when the file
// cannot be opened: issuing must stop there.
bool issueStep(const QSqlDatabase &db, const QString &databaseFile, int exportSwitch);

} // namespace Elixir
