#include "Elixir.h"

#include "Dialogs.h"
#include "SafeOutput.h"
#include "SettingsStore.h"
#include "db/ServerFirms.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringEncoder>

namespace Elixir {

namespace {

QString field(const QSqlQuery &q, const char *name)
{
    const int i = q.record().indexOf(QLatin1String(name));
    return i < 0 || q.isNull(i) ? QString() : q.value(i).toString();
}

QString cut(const QString &s)
{
    return s.left(34);
}

// Whole units of the amount, halves to the even neighbour.
qint64 roundHalfEven(Money amount)
{
    const qint64 u = amount.units();
    qint64 whole = u / Money::Scale;
    const qint64 rest = u % Money::Scale; // same sign as u
    const qint64 half = Money::Scale / 2;
    if (rest > half || (rest == half && whole % 2 != 0))
        ++whole;
    else if (rest < -half || (rest == -half && whole % 2 != 0))
        --whole;
    return whole;
}

// Windows-1250 bytes; a character the code page lacks becomes "?".
QByteArray windows1250(const QString &text)
{
    QStringEncoder encoder("windows-1250");
    QByteArray bytes = encoder.encode(text);
    if (!encoder.hasError())
        return bytes;
    bytes.clear();
    for (QChar c : text) {
        QStringEncoder one("windows-1250");
        const QByteArray b = one.encode(QString(c));
        bytes += one.hasError() || b.isEmpty() ? QByteArray("?") : b;
    }
    return bytes;
}

} // namespace

QString fileNameSetting()
{
    return SettingsStore::loadGet(QStringLiteral("PlikElixir"), QStringLiteral("Przelew.pli"));
}

QString firmFolder(const QString &databaseFile)
{
    return ServerFirms::localFolder(databaseFile);
}

QString filePath(const QString &databaseFile)
{
    const QString name = fileNameSetting();
    if (QDir::isAbsolutePath(name))
        return name;
    return firmFolder(databaseFile) + name;
}

SenderLines GatherSenderLines(const QSqlDatabase &db)
{
    SenderLines s;
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT * FROM firma")) || !q.next())
        return s;
    s.name = cut(field(q, "Nazwa") + QLatin1Char(' ') + field(q, "nazwa1"));
    s.nip = field(q, "Firma_Nip");
    const QString lokal = field(q, "nr_lokalu");
    const QString house = lokal.isEmpty() ? field(q, "nr_domu") : field(q, "nr_domu") + QLatin1Char(' ') + lokal;
    s.street = cut(field(q, "ulica") + QLatin1Char(' ') + house);
    s.town = cut(field(q, "KOD") + QLatin1Char(' ') + field(q, "miasto"));
    s.bankName = field(q, "bank_nazwa1");
    s.bankAccount = field(q, "bank_konto1");
    return s;
}

QString recordLine(const QDate &date, Money amount, const QString &a, const QString &f, const QString &b,
                   const QString &c, const QString &d, const QString &e, const QString &g)
{
    const QChar sp = QLatin1Char(' ');
    return date.toString(QStringLiteral("yyyyMMdd")) + QLatin1Char(',') + a + sp +
           QString::number(roundHalfEven(amount)) + sp + sp + b + sp + c + sp + d + sp + e + sp +
           QStringLiteral("PLN") + sp + sp + f + sp + QStringLiteral("Przelew") + sp + sp + g + sp;
}

bool WriteElixirRecord(QIODevice &out, const QDate &date, Money amount, const QString &a, const QString &f,
                       const QString &b, const QString &c, const QString &d, const QString &e, const QString &g)
{
    const QByteArray line = windows1250(recordLine(date, amount, a, f, b, c, d, e, g)) + "\r\n";
    if (out.write(line) != line.size()) {
        ErrorReport(QStringLiteral("Nie można zapisać do pliku Elixir: ") + out.errorString());
        return false;
    }
    return true;
}

bool issueStep(const QSqlDatabase &db, const QString &databaseFile, int exportSwitch)
{
    if (exportSwitch != 1)
        return true;
    const QString path = filePath(databaseFile);
    const QString cannot = QStringLiteral("Nie można otworzyć pliku Elixir ") + QDir::toNativeSeparators(path) +
                           QStringLiteral(": ");
    // The file grows by whole records: a new one is made beside its place and moved in,
    // an existing one is only opened for appending, and the program's own files are never it.
    const QString refused = SafeOutput::refusal(path, SafeOutput::Existing::Replace);
    if (!refused.isEmpty()) {
        ErrorReport(cannot + refused);
        return false;
    }
    QString error;
    if (!QFileInfo::exists(path)) {
        if (!SafeOutput::write(path, QByteArray(), SafeOutput::Existing::Keep, &error)) {
            ErrorReport(cannot + error);
            return false;
        }
    } else {
        QFile file(path);
        if (!file.open(QIODevice::Append)) {
            ErrorReport(cannot + file.errorString());
            return false;
        }
    }
    GatherSenderLines(db);
    return true;
}

} // namespace Elixir
