#include "DocumentStore.h"

#include "Accounts.h"
#include "ChoiceLists.h"
#include "ContractorStore.h"
#include "DateText.h"
#include "db/Transaction.h"
#include "Firm.h"
#include "db/Dialect.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

ZusBlock ZusBlock::defaults(const QDate &today)
{
    ZusBlock b;
    b.rok = static_cast<qint16>(qMax(0, ChoiceLists::yearPosition(ChoiceLists::zusYears(today), today.year())));
    b.miesiac = static_cast<qint16>(today.month() - 1);
    return b;
}

TaxBlock TaxBlock::defaults(const QDate &today)
{
    TaxBlock b;
    b.rok = static_cast<qint16>(qMax(0, ChoiceLists::yearPosition(ChoiceLists::taxYears(today), today.year())));
    return b;
}

PaymentDocument PaymentDocument::newDocument(qint16 kind, const QDate &today)
{
    PaymentDocument d;
    d.rodzaj = kind;
    d.dataDokumentu = today;
    d.zus = ZusBlock::defaults(today);
    d.pod = TaxBlock::defaults(today);
    return d;
}

namespace DocumentStore {

namespace {

// The columns in the order the entry window writes them; the Id is the database's.
const QStringList &columns()
{
    static const QStringList list = {
        QStringLiteral("RODZAJ"),         QStringLiteral("BANKNR"),         QStringLiteral("BANK_FIRMY"),
        QStringLiteral("KONTO_FIRMY"),    QStringLiteral("KLIENT_ID"),      QStringLiteral("KLIENT_NAZWA"),
        QStringLiteral("KLIENT_NAZWA1"),  QStringLiteral("KLIENT_ULICA"),   QStringLiteral("KLIENT_KOD"),
        QStringLiteral("KLIENT_MIASTO"),  QStringLiteral("Klient_NIP"),     QStringLiteral("KLIENT_BANK"),
        QStringLiteral("KLIENT_KONTO"),   QStringLiteral("ZA_DOKUMENT_NAZWA"), QStringLiteral("WARTOSC"),
        QStringLiteral("DATA_DOKUMENTU"), QStringLiteral("DATA_SESJI"),     QStringLiteral("ZUS_NrRachunku"),
        QStringLiteral("ZUS_TypWplaty"),  QStringLiteral("ZUS_Rok"),        QStringLiteral("ZUS_Miesiac"),
        QStringLiteral("ZUS_NrDeklaracji"), QStringLiteral("ZUS_CzyZus"),   QStringLiteral("POD_Rok"),
        QStringLiteral("POD_TypOkresu"),  QStringLiteral("POD_NrOkresu"),   QStringLiteral("POD_Symbol"),
        QStringLiteral("POD_Identyfikacja"), QStringLiteral("POD_CzyPodatki")};
    return list;
}

QVariant text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

QVariant date(const QDate &d)
{
    return d.isValid() ? QVariant(DateText::toIso(d)) : QVariant();
}

// The values of columns(), in the same order.
QVariantList values(const PaymentDocument &d)
{
    return {d.rodzaj,
            d.banknr,
            text(d.bankFirmy),
            text(d.kontoFirmy),
            d.klientId,
            text(d.klientNazwa),
            text(d.klientNazwa1),
            text(d.klientUlica),
            text(d.klientKod),
            text(d.klientMiasto),
            text(d.klientNip),
            text(d.klientBank),
            text(d.klientKonto),
            text(d.zaDokumentNazwa),
            QVariant::fromValue<qlonglong>(d.wartosc.units()),
            date(d.dataDokumentu),
            date(d.dataSesji),
            d.zus.nrRachunku,
            d.zus.typWplaty,
            d.zus.rok,
            d.zus.miesiac,
            text(d.zus.nrDeklaracji),
            d.czyZus() ? 1 : 0,
            d.pod.rok,
            d.pod.typOkresu,
            text(d.pod.nrOkresu),
            text(d.pod.symbol),
            text(d.pod.identyfikacja),
            d.czyPodatki() ? 1 : 0};
}

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

bool failed(const QSqlQuery &q, QString *error)
{
    return fail(Structure::explainError(q.lastError()), error);
}

QString missing(qint32 id)
{
    return QStringLiteral("Nie ma dokumentu numer %1: mógł zostać usunięty.").arg(id);
}

// Links the document to the contractor of its recipient's name, adding one when needed.
// A document without a recipient name (ZUS and tax slips may have none) links to nobody.
bool linkRecipient(QSqlDatabase &db, PaymentDocument &d, bool *added, QString *error)
{
    *added = false;
    if (d.klientNazwa.trimmed().isEmpty()) {
        d.klientId = 0;
        return true;
    }
    const auto id = ContractorStore::idForName(db, recipientOf(d), added, error);
    if (!id)
        return false;
    d.klientId = *id;
    return true;
}

// The amount a stored document holds and the account it names.
struct Stored {
    int banknr = 0;
    Money wartosc;
};

std::optional<Stored> stored(QSqlDatabase &db, qint32 id, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT BANKNR, WARTOSC FROM zlecanki WHERE ID = ?"));
    q.addBindValue(id);
    if (!q.exec()) {
        failed(q, error);
        return std::nullopt;
    }
    if (!q.next()) {
        fail(missing(id), error);
        return std::nullopt;
    }
    return Stored{q.value(0).toInt(), Money::fromUnits(q.value(1).toLongLong())};
}

// The account list in memory and the contractor windows belong to the firm the program's
// window has open; a connection of the automation object to another firm leaves them be.
bool isProgramFirm(const QSqlDatabase &db)
{
    return isFirmOpen() && db.connectionName() == Db().connectionName();
}

} // namespace

std::optional<PaymentDocument> read(const QSqlDatabase &db, qint32 id, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT ID, ") + columns().join(QStringLiteral(", ")) +
              QStringLiteral(" FROM zlecanki WHERE ID = ?"));
    q.addBindValue(id);
    if (!q.exec()) {
        failed(q, error);
        return std::nullopt;
    }
    if (!q.next()) {
        fail(missing(id), error);
        return std::nullopt;
    }
    int i = 0;
    auto next = [&] { return q.value(i++); };
    auto small = [&] { return static_cast<qint16>(next().toInt()); };
    auto str = [&] { return next().toString(); };
    auto day = [&] { return DateText::fromIso(next().toString()).value_or(QDate()); };
    PaymentDocument d;
    d.id = static_cast<qint32>(next().toLongLong());
    d.rodzaj = small();
    d.banknr = small();
    d.bankFirmy = str();
    d.kontoFirmy = str();
    d.klientId = static_cast<qint32>(next().toLongLong());
    d.klientNazwa = str();
    d.klientNazwa1 = str();
    d.klientUlica = str();
    d.klientKod = str();
    d.klientMiasto = str();
    d.klientNip = str();
    d.klientBank = str();
    d.klientKonto = str();
    d.zaDokumentNazwa = str();
    d.wartosc = Money::fromUnits(next().toLongLong());
    d.dataDokumentu = day();
    d.dataSesji = day();
    d.zus.nrRachunku = small();
    d.zus.typWplaty = small();
    d.zus.rok = small();
    d.zus.miesiac = small();
    d.zus.nrDeklaracji = str();
    next(); // ZUS_CzyZus: the kind tells
    d.pod.rok = small();
    d.pod.typOkresu = small();
    d.pod.nrOkresu = str();
    d.pod.symbol = str();
    d.pod.identyfikacja = str();
    return d;
}

std::optional<qint32> insert(QSqlDatabase db, PaymentDocument &doc, QString *error, const Alongside &alongside,
                             bool *contractorAdded)
{
    if (contractorAdded)
        *contractorAdded = false;
    if (!Accounts::isValid(doc.banknr)) {
        fail(Accounts::boundsError(doc.banknr), error);
        return std::nullopt;
    }
    PaymentDocument d = doc;
    d.dataSesji = ChoiceLists::workingDate();
    Transaction t(db);
    if (!t.isActive()) {
        fail(t.error(), error);
        return std::nullopt;
    }
    bool added = false;
    if (!linkRecipient(db, d, &added, error))
        return std::nullopt;
    QSqlQuery q(db);
    QStringList marks;
    for (qsizetype i = 0; i < columns().size(); ++i)
        marks << QStringLiteral("?");
    q.prepare(QStringLiteral("INSERT INTO zlecanki (") + columns().join(QStringLiteral(", ")) +
              QStringLiteral(") VALUES (") + marks.join(QStringLiteral(", ")) + QLatin1Char(')'));
    for (const QVariant &v : values(d))
        q.addBindValue(v);
    if (!q.exec()) {
        failed(q, error);
        return std::nullopt;
    }
    d.id = static_cast<qint32>(Dialect::insertedId(q, db));
    if (!Accounts::chargeStored(db, d.banknr, d.wartosc, error))
        return std::nullopt;
    if (alongside && !alongside(db, d.id, error))
        return std::nullopt;
    if (!t.commit()) {
        fail(t.error(), error);
        return std::nullopt;
    }
    if (isProgramFirm(db)) {
        Accounts::chargeListed(d.banknr, d.wartosc);
        if (added)
            Q_EMIT ContractorEvents::instance().changed();
    }
    if (contractorAdded)
        *contractorAdded = added;
    doc = d;
    return d.id;
}

bool update(QSqlDatabase db, PaymentDocument &doc, QString *error)
{
    if (!Accounts::isValid(doc.banknr))
        return fail(Accounts::boundsError(doc.banknr), error);
    PaymentDocument d = doc;
    d.dataSesji = ChoiceLists::workingDate();
    Transaction t(db);
    if (!t.isActive())
        return fail(t.error(), error);
    const auto before = stored(db, d.id, error);
    if (!before)
        return false;
    bool added = false;
    if (!linkRecipient(db, d, &added, error))
        return false;
    QStringList sets;
    for (const QString &c : columns())
        sets << c + QStringLiteral(" = ?");
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE zlecanki SET ") + sets.join(QStringLiteral(", ")) + QStringLiteral(" WHERE ID = ?"));
    for (const QVariant &v : values(d))
        q.addBindValue(v);
    q.addBindValue(d.id);
    if (!q.exec())
        return failed(q, error);
    const Money difference = d.wartosc - before->wartosc;
    if (!Accounts::chargeStored(db, d.banknr, difference, error))
        return false;
    if (!t.commit())
        return fail(t.error(), error);
    Accounts::chargeListed(d.banknr, difference);
    if (added)
        Q_EMIT ContractorEvents::instance().changed();
    doc = d;
    return true;
}

bool remove(QSqlDatabase db, qint32 id, QString *error)
{
    Transaction t(db);
    if (!t.isActive())
        return fail(t.error(), error);
    const auto before = stored(db, id, error);
    if (!before)
        return false;
    if (!Accounts::chargeStored(db, before->banknr, -before->wartosc, error))
        return false;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("DELETE FROM zlecanki WHERE ID = ?"));
    q.addBindValue(id);
    if (!q.exec())
        return failed(q, error);
    if (!t.commit())
        return fail(t.error(), error);
    Accounts::chargeListed(before->banknr, -before->wartosc);
    return true;
}

} // namespace DocumentStore
