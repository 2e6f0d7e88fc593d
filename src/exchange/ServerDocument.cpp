#include "ServerDocument.h"

#include "DateText.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/DocumentStore.h"
#include "documents/DocumentKinds.h"
#include "documents/FirmData.h"
#include "db/Dialect.h"
#include "db/Transaction.h"
#include "db/Structure.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

// Dates come as the program writes them ("05-03-2026") or in ISO form ("2026-03-05"),
// never with a time, within the years the slips and the calendar lists know.
std::optional<QDate> parseDate(const QString &text)
{
    static const QRegularExpression dmy(QStringLiteral("^(\\d{2})-(\\d{2})-(\\d{4})$"));
    static const QRegularExpression ymd(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})$"));
    const QString t = text.trimmed();
    QDate d;
    if (const auto m = dmy.match(t); m.hasMatch())
        d = QDate(m.captured(3).toInt(), m.captured(2).toInt(), m.captured(1).toInt());
    else if (const auto m2 = ymd.match(t); m2.hasMatch())
        d = QDate(m2.captured(1).toInt(), m2.captured(2).toInt(), m2.captured(3).toInt());
    if (!d.isValid() || d.year() < 1900 || d.year() > 2099)
        return std::nullopt;
    return d;
}

bool hasControl(const QString &text)
{
    for (QChar c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            return true;
    return false;
}

bool parseTarget(const QString &value, ServerRequest &r, QString *error)
{
    const QString v = value.trimmed();
    if (v.isEmpty()) {
        r.target = ServerRequest::Target::None;
        return true;
    }
    if (!v.startsWith(QLatin1String("pdf:"), Qt::CaseInsensitive)) {
        r.target = ServerRequest::Target::Printer;
        r.targetName = v;
        return true;
    }
    const QString path = v.mid(4);
    const QFileInfo fi(path);
    if (path.isEmpty() || fi.isRelative())
        return fail(QStringLiteral("Plik PDF (pozycja 3) trzeba podać pełną ścieżką: \"%1\".").arg(path), error);
    r.target = ServerRequest::Target::Pdf;
    r.targetName = fi.absoluteFilePath();
    return true;
}

} // namespace

QString serverTitle(const QString &sourceKind, const QString &sourceNumber)
{
    const QString kind = sourceKind.trimmed().toUpper();
    if (kind == QLatin1String("FVZ") || kind == QLatin1String("FVZK"))
        return QStringLiteral("Zapłata za: ") + sourceNumber;
    return sourceNumber;
}

std::optional<ServerRequest> parseServerValues(const QStringList &values, QString *error)
{
    if (values.size() != ServerRequest::ValueCount) {
        fail(QStringLiteral("Oczekiwano %1 wartości dokumentu, otrzymano %2.")
                 .arg(ServerRequest::ValueCount)
                 .arg(values.size()),
             error);
        return std::nullopt;
    }
    for (int i = 0; i < ServerRequest::ValueCount; ++i) {
        if (hasControl(values.at(i))) {
            fail(QStringLiteral("Wartość na pozycji %1 zawiera znak sterujący (np. koniec wiersza lub tabulator).")
                     .arg(i + 1),
                 error);
            return std::nullopt;
        }
    }
    auto at = [&values](int position) { return values.at(position - 1); };
    ServerRequest r;
    r.firmPath = at(1).trimmed();
    if (r.firmPath.isEmpty()) {
        fail(QStringLiteral("Nie podano pliku bazy firmy (pozycja 1)."), error);
        return std::nullopt;
    }
    if (!Dialect::isAddress(r.firmPath) && !QDir::isAbsolutePath(r.firmPath)) {
        fail(QStringLiteral("Plik bazy firmy (pozycja 1) trzeba podać pełną ścieżką: \"%1\".").arg(r.firmPath), error);
        return std::nullopt;
    }
    if (!at(2).trimmed().isEmpty()) {
        bool ok = false;
        r.banknr = at(2).trimmed().toInt(&ok);
        if (!ok || !Accounts::isValid(r.banknr)) {
            fail(QStringLiteral("Nieprawidłowy numer rachunku firmy (pozycja 2): \"%1\" (oczekiwano 1..%2).")
                     .arg(at(2))
                     .arg(Accounts::Count),
                 error);
            return std::nullopt;
        }
    }
    if (!parseTarget(at(3), r, error))
        return std::nullopt;

    r.recipient.nazwa = at(4).trimmed();
    r.recipient.nazwa1 = QStringLiteral("");
    r.recipient.ulica = at(5).trimmed();
    r.recipient.kod = at(6).trimmed();
    r.recipient.miasto = at(7).trimmed();
    r.recipient.bankNazwa = at(8).trimmed();
    r.sourceKind = at(9).trimmed();
    r.sourceNumber = at(10).trimmed();
    r.title = serverTitle(r.sourceKind, r.sourceNumber);
    r.recipient.bankKonto = at(13).trimmed();
    r.recipient.nip = at(14).trimmed();
    if (r.recipient.nazwa.isEmpty()) {
        fail(QStringLiteral("Nie podano nazwy odbiorcy (pozycja 4)."), error);
        return std::nullopt;
    }

    QString why;
    const auto amount = Money::parseAmount(at(11).trimmed(), &why);
    if (!amount) {
        fail(QStringLiteral("Nieprawidłowa kwota (pozycja 11): \"%1\": %2.").arg(at(11), why), error);
        return std::nullopt;
    }
    if (*amount <= Money()) {
        fail(QStringLiteral("Kwota przelewu musi być większa od zera (pozycja 11): \"%1\".").arg(at(11)), error);
        return std::nullopt;
    }
    r.amount = *amount;
    const auto date = parseDate(at(12));
    if (!date) {
        fail(QStringLiteral("Nieprawidłowa data dokumentu (pozycja 12): \"%1\" (oczekiwano dd-mm-rrrr lub "
                            "rrrr-mm-dd, lata 1900-2099).")
                 .arg(at(12)),
             error);
        return std::nullopt;
    }
    r.documentDate = *date;
    return r;
}

std::optional<qint32> findServerReference(const QSqlDatabase &db, const QString &reference)
{
    if (reference.isEmpty())
        return std::nullopt;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT ZlecenieId FROM OdwolaniaSerwera WHERE Odwolanie = ?"));
    q.addBindValue(reference);
    if (!q.exec() || !q.next())
        return std::nullopt;
    return static_cast<qint32>(q.value(0).toLongLong());
}

std::optional<qint32> StoreServerDocument(QSqlDatabase db, const ServerRequest &request, const QString &reference,
                                          bool *contractorAdded, bool *repeated, QString *error)
{
    *contractorAdded = false;
    *repeated = false;
    if (const auto id = findServerReference(db, reference)) {
        *repeated = true;
        return id;
    }
    QString why;
    const auto firm = FirmStore::read(db, &why);
    if (!firm) {
        fail(why.isEmpty() ? QStringLiteral("Baza firmy nie ma jeszcze danych firmy.") : why, error);
        return std::nullopt;
    }
    const BankAccount &account = firm->accounts.at(static_cast<size_t>(request.banknr - 1));
    if (account.number.trimmed().isEmpty()) {
        fail(QStringLiteral("Rachunek firmy nr %1 nie ma numeru w danych firmy.").arg(request.banknr), error);
        return std::nullopt;
    }

    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzelewBankowy, ChoiceLists::workingDate());
    doc.banknr = static_cast<qint16>(request.banknr);
    doc.bankFirmy = account.bankName;
    doc.kontoFirmy = account.number;
    setRecipient(doc, request.recipient);
    doc.zaDokumentNazwa = request.title;
    doc.wartosc = request.amount;
    doc.dataDokumentu = request.documentDate;

    // The reference is written with the document: both are stored, or neither.
    DocumentStore::Alongside keepReference;
    if (!reference.isEmpty())
        keepReference = [&reference](QSqlDatabase &d, qint32 id, QString *e) {
            QSqlQuery q(d);
            q.prepare(QStringLiteral("INSERT INTO OdwolaniaSerwera (Odwolanie, ZlecenieId) VALUES (?, ?)"));
            q.addBindValue(reference);
            q.addBindValue(id);
            return q.exec() || fail(Structure::explainError(q.lastError()), e);
        };
    const auto id = DocumentStore::insert(db, doc, error, keepReference, contractorAdded);
    if (!id && !Dialect::broken(db)) {
        // Another server may have stored the same reference meanwhile: its document is the answer.
        if (const auto earlier = findServerReference(db, reference)) {
            *repeated = true;
            return earlier;
        }
    }
    return id;
}
