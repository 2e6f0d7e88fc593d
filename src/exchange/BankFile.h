#pragma once

#include "Money.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <optional>

struct PaymentDocument;
struct FirmData;

// Files of transfers for a bank's business platform: Elixir-O lines and ISO 20022
// pain.001.001.03 XML. Bank transfers, ZUS transfers to the payer's individual account and
// tax transfers are taken; every payment is checked first and nothing is written while
// any of them has a problem.
namespace BankFile {

enum class Format { Elixir, Xml };
enum class Encoding { Cp1250, Iso8859_2, Cp852 };

// "elixir" / "xml"; "cp1250" / "iso-8859-2" / "cp852".
std::optional<Format> formatByName(const QString &name);
QString formatName(Format f);
std::optional<Encoding> encodingByName(const QString &name);
QString encodingName(Encoding e);
// What the user picks from: "Windows-1250", "ISO-8859-2", "CP852 (DOS)".
QString encodingCaption(Encoding e);

// The classification of an Elixir-O order.
enum Classification { Ordinary = 51, SplitPayment = 53, Tax = 71 };

// The longest line of a name, address or title field in Elixir-O, and how many lines it has.
constexpr int LineWidth = 35;
constexpr int LineCount = 4;
// The largest amount a payment may have.
inline constexpr Money MaxAmount = Money::fromGrosze(99999999999LL); // 999 999 999,99

struct Party {
    QString name;
    QString street;
    QString postCode;
    QString town;
    QString account; // 26 digits
};

// One checked payment, ready for either format.
struct Payment {
    qint32 documentId = 0;
    QDate executionDate;
    Money amount;
    Party payer;
    Party payee;
    QString title;
    Classification classification = Ordinary;
};

struct Options {
    Format format = Format::Elixir;
    Encoding encoding = Encoding::Cp1250;
    std::optional<QDate> executionDate; // the documents' own dates (never before today) when not given
    QDate today;
};

struct Checked {
    QList<Payment> payments;
    QStringList problems; // "Dokument nr 12 (Przelew bankowy): ...", one per line
    bool ok() const { return problems.isEmpty() && !payments.isEmpty(); }
};

// Checks every document and turns it into a payment. A problem names its document.
Checked check(const QList<PaymentDocument> &docs, const FirmData &firm, const Options &options);

// A text split into lines of at most `width` characters, broken at spaces or before a "/"
// where it can be, never losing a character.
QStringList wrapLines(const QString &text, int width = LineWidth);

// The 26 digits of an account number as typed ("PL", spaces and dashes dropped).
QString accountDigits(const QString &typed);
// What is wrong with an account number; empty for a valid NRB.
QString accountProblem(const QString &typed);

// The bytes of an Elixir-O file, one CR LF ended line per payment.
QByteArray elixirO(const QList<Payment> &payments, Encoding encoding);
// The bytes of a pain.001.001.03 file in UTF-8: one PmtInf per paying account and execution date.
QByteArray pain001(const QList<Payment> &payments, const QString &initiatingParty, const QDateTime &created);

// Writes `bytes` to `path` through a temporary file beside it, renamed when complete.
// An existing file is replaced only with `overwrite`.
bool writeFile(const QString &path, const QByteArray &bytes, bool overwrite, QString *error = nullptr);

// Reads documents `ids` and the firm from `db` and checks them; a document missing from
// the database is a problem too.
Checked checkStored(const QSqlDatabase &db, const QList<qint32> &ids, const Options &options);

// The format and encoding the firm last wrote (table "UstawieniaBanku"); Elixir-O in
// Windows-1250 until it has written one.
std::pair<Format, Encoding> firmChoice(const QSqlDatabase &db);
bool saveFirmChoice(QSqlDatabase db, Format format, Encoding encoding);

// What a sending step does from the stored documents to the written file and its record.
struct Outcome {
    bool written = false;
    QStringList problems;
    int count = 0;
    Money total;
};
// Reads documents `ids` and the firm from `db`, checks them, writes `path` (replacing an
// existing one only with `overwrite`) and records them as sent in one transaction.
Outcome send(QSqlDatabase db, const QList<qint32> &ids, const Options &options, const QString &path,
             bool overwrite);

// Documents a file may take (bank, ZUS and tax transfers) of day `day`, of account
// `account` (1..40) or of every account when 0, in the order they were stored.
QList<qint32> transfersOfDay(const QSqlDatabase &db, const QDate &day, int account, QString *error = nullptr);

} // namespace BankFile

// The record of what went to the bank: table "WyslaneDoBanku".
namespace SentStore {

struct Entry {
    qint32 documentId = 0;
    QDate date;
    QString fileName;
    QString format;
};

bool record(QSqlDatabase &db, const QList<qint32> &ids, const QDate &date, const QString &fileName,
            BankFile::Format format, QString *error = nullptr);
// Every sending of the documents among `ids` (all documents when empty), oldest first.
QList<Entry> entries(const QSqlDatabase &db, const QList<qint32> &ids = {});
// The documents among `ids` that were sent before.
QList<qint32> sentAmong(const QSqlDatabase &db, const QList<qint32> &ids);

} // namespace SentStore
