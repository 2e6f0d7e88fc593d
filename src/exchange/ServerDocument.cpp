#include "ServerDocument.h"

#include "DateText.h"
#include "documents/Accounts.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentKinds.h"
#include "documents/FirmData.h"
#include "db/Transaction.h"
#include "db/Structure.h"

#include <QDir>
#include <QFileInfo>
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

// Dates come as the program writes them ("05-03-2026") or in ISO form ("2026-03-05").
std::optional<QDate> parseDate(const QString &text)
{
    if (auto d = DateText::parse(text.trimmed()))
        return d;
    return DateText::fromIso(text.trimmed());
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
    if (!QFileInfo(fi.absolutePath()).isDir())
        return fail(QStringLiteral("Nie ma folderu na plik PDF (pozycja 3): %1").arg(QDir::toNativeSeparators(fi.absolutePath())),
                    error);
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
    auto at = [&values](int position) { return values.at(position - 1); };
    ServerRequest r;
    r.firmPath = at(1).trimmed();
    if (r.firmPath.isEmpty()) {
        fail(QStringLiteral("Nie podano pliku bazy firmy (pozycja 1)."), error);
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

    const auto amount = Money::parse(at(11).trimmed());
    if (!amount) {
        fail(QStringLiteral("Nieprawidłowa kwota (pozycja 11): \"%1\".").arg(at(11)), error);
        return std::nullopt;
    }
    if (*amount <= Money()) {
        fail(QStringLiteral("Kwota przelewu musi być większa od zera (pozycja 11): \"%1\".").arg(at(11)), error);
        return std::nullopt;
    }
    r.amount = *amount;
    const auto date = parseDate(at(12));
    if (!date) {
        fail(QStringLiteral("Nieprawidłowa data dokumentu (pozycja 12): \"%1\" (oczekiwano dd-mm-rrrr).").arg(at(12)),
             error);
        return std::nullopt;
    }
    r.documentDate = *date;
    return r;
}

std::optional<qint32> StoreServerDocument(QSqlDatabase db, const ServerRequest &request, const QDate &today,
                                          bool *contractorAdded, QString *error)
{
    *contractorAdded = false;
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

    Transaction t(db);
    if (!t.isActive()) {
        fail(t.error(), error);
        return std::nullopt;
    }
    bool added = false;
    const auto klientId = ContractorStore::idForName(db, request.recipient, &added, error);
    if (!klientId)
        return std::nullopt;

    QSqlQuery q(db);
    q.prepare(QStringLiteral(
        "INSERT INTO zlecanki (Rodzaj, banknr, bank_firmy, konto_firmy, klient_id, Klient_Nazwa, Klient_Nazwa1, "
        "Klient_Ulica, Klient_Kod, Klient_Miasto, Klient_Nip, Klient_Bank, Klient_Konto, za_dokument_nazwa, "
        "Wartosc, Data_dokumentu, data_sesji) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    const Contractor &c = request.recipient;
    const QVariantList values = {DocumentKinds::PrzelewBankowy,
                                 request.banknr,
                                 account.bankName,
                                 account.number,
                                 *klientId,
                                 c.nazwa,
                                 c.nazwa1,
                                 c.ulica,
                                 c.kod,
                                 c.miasto,
                                 c.nip,
                                 c.bankNazwa,
                                 c.bankKonto,
                                 request.title,
                                 QVariant::fromValue<qlonglong>(request.amount.units()),
                                 DateText::toIso(request.documentDate),
                                 DateText::toIso(today)};
    for (const QVariant &v : values)
        q.addBindValue(v.typeId() == QMetaType::QString && v.toString().isNull() ? QVariant(QStringLiteral("")) : v);
    if (!q.exec()) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    const auto id = static_cast<qint32>(q.lastInsertId().toLongLong());
    if (!Accounts::chargeStored(db, request.banknr, request.amount, error))
        return std::nullopt;
    if (!t.commit()) {
        fail(t.error(), error);
        return std::nullopt;
    }
    *contractorAdded = added;
    return id;
}
