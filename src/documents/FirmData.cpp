#include "FirmData.h"

#include "db/Transaction.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>

namespace FirmStore {

namespace {

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

QVariant text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

QVariant position(int p)
{
    return p < 0 ? QVariant() : QVariant(p);
}

} // namespace

std::optional<FirmData> read(const QSqlDatabase &db, QString *error)
{
    if (error)
        error->clear();
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT * FROM firma ORDER BY rowid LIMIT 1"))) {
        fail(Structure::explainError(q.lastError()), error);
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    const QSqlRecord r = q.record();
    auto get = [&](const QString &column) {
        const int i = r.indexOf(column);
        return i < 0 ? QVariant() : q.value(i);
    };
    auto typ = [&](const QString &column) {
        const QVariant v = get(column);
        return v.isNull() ? -1 : v.toInt();
    };
    FirmData d;
    d.nazwa = get(QStringLiteral("NAZWA")).toString();
    d.nazwa1 = get(QStringLiteral("NAZWA1")).toString();
    d.ulica = get(QStringLiteral("ULICA")).toString();
    d.nrDomu = get(QStringLiteral("NR_DOMU")).toString();
    d.nrLokalu = get(QStringLiteral("NR_LOKALU")).toString();
    d.kod = get(QStringLiteral("KOD")).toString();
    d.miasto = get(QStringLiteral("MIASTO")).toString();
    d.nip = get(QStringLiteral("firma_NIP")).toString();
    for (int n = 1; n <= Accounts::Count; ++n)
        d.accounts[n - 1] = BankAccount{get(Accounts::nameColumn(n)).toString(), get(Accounts::numberColumn(n)).toString(),
                                        Money::fromUnits(get(Accounts::balanceColumn(n)).toLongLong())};
    d.nazwaSkrocona = get(QStringLiteral("NAZWA_SKROCONA")).toString();
    d.nazwaSkroconaCd = get(QStringLiteral("NAZWA_SKROCONACD")).toString();
    d.typIdentZus = typ(QStringLiteral("TYPIDENTZUS"));
    d.identZus = get(QStringLiteral("IDENTZUS")).toString();
    d.typIdentPod = typ(QStringLiteral("TYPIDENTPOD"));
    d.identPod = get(QStringLiteral("IDENTPOD")).toString();
    d.nrs = get(QStringLiteral("RACHUNEK_NRS")).toString();
    return d;
}

bool save(QSqlDatabase db, const FirmData &data, std::bitset<Accounts::Count> writeBalances, QString *error)
{
    Transaction t(db);
    if (!t.isActive())
        return fail(t.error(), error);
    QSqlQuery count(db);
    if (!count.exec(QStringLiteral("SELECT count(*) FROM firma")) || !count.next())
        return fail(Structure::explainError(count.lastError()), error);
    const bool isNew = count.value(0).toLongLong() == 0;
    count.finish();
    if (isNew)
        writeBalances.set();

    // Columns in the order the window shows them; account column names come from
    // checked numbers only.
    QStringList names;
    QVariantList values;
    auto add = [&](const QString &column, const QVariant &value) {
        names << column;
        values << value;
    };
    add(QStringLiteral("NAZWA"), text(data.nazwa));
    add(QStringLiteral("NAZWA1"), text(data.nazwa1));
    add(QStringLiteral("ULICA"), text(data.ulica));
    add(QStringLiteral("NR_DOMU"), text(data.nrDomu));
    add(QStringLiteral("NR_LOKALU"), text(data.nrLokalu));
    add(QStringLiteral("KOD"), text(data.kod));
    add(QStringLiteral("MIASTO"), text(data.miasto));
    add(QStringLiteral("firma_NIP"), text(data.nip));
    for (int n = 1; n <= Accounts::Count; ++n) {
        const BankAccount &a = data.accounts[n - 1];
        add(Accounts::nameColumn(n), text(a.bankName));
        add(Accounts::numberColumn(n), text(a.number));
        if (writeBalances.test(n - 1))
            add(Accounts::balanceColumn(n), QVariant::fromValue<qlonglong>(a.balance.units()));
    }
    add(QStringLiteral("NAZWA_SKROCONA"), text(data.nazwaSkrocona));
    add(QStringLiteral("NAZWA_SKROCONACD"), text(data.nazwaSkroconaCd));
    add(QStringLiteral("TYPIDENTZUS"), position(data.typIdentZus));
    add(QStringLiteral("IDENTZUS"), text(data.identZus));
    add(QStringLiteral("TYPIDENTPOD"), position(data.typIdentPod));
    add(QStringLiteral("IDENTPOD"), text(data.identPod));
    add(QStringLiteral("RACHUNEK_NRS"), text(data.nrs));

    QStringList quotedNames;
    for (const QString &n : std::as_const(names))
        quotedNames << Structure::quoted(db, n);
    QSqlQuery q(db);
    if (isNew) {
        QStringList marks;
        for (qsizetype i = 0; i < names.size(); ++i)
            marks << QStringLiteral("?");
        q.prepare(QStringLiteral("INSERT INTO firma (") + quotedNames.join(QStringLiteral(", ")) +
                  QStringLiteral(") VALUES (") + marks.join(QStringLiteral(", ")) + QLatin1Char(')'));
    } else {
        q.prepare(QStringLiteral("UPDATE firma SET ") + quotedNames.join(QStringLiteral(" = ?, ")) +
                  QStringLiteral(" = ? WHERE rowid = (SELECT min(rowid) FROM firma)"));
    }
    for (const QVariant &v : std::as_const(values))
        q.addBindValue(v);
    if (!q.exec())
        return fail(Structure::explainError(q.lastError()), error);
    if (!t.commit())
        return fail(t.error(), error);
    Accounts::load(db);
    return true;
}

} // namespace FirmStore
