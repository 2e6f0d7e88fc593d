#include "BrowseQuery.h"

#include "DateText.h"
#include "DocumentKinds.h"

#include <QSqlError>
#include <QSqlQuery>

#include <utility>

namespace Browse {

namespace {

enum Column { IdColumn, KindColumn, DateColumn, AmountColumn };

QString isoDay(int year, int month, int day)
{
    return QStringLiteral("%1-%2-%3")
        .arg(year, 4, 10, QLatin1Char('0'))
        .arg(month, 2, 10, QLatin1Char('0'))
        .arg(day, 2, 10, QLatin1Char('0'));
}

} // namespace

Query build(const Filter &filter)
{
    Query q;
    q.sql = QStringLiteral("SELECT id,rodzaj,data_dokumentu,wartosc FROM zlecanki WHERE ");
    // Dates are stored as ISO text, so a year and a run of days are ranges of text that
    // the date index answers; the month of every year can only be read out of each date.
    switch (filter.period) {
    case Period::Year:
        q.sql += QStringLiteral("data_dokumentu BETWEEN ? AND ?");
        q.values << isoDay(filter.year, 1, 1) << isoDay(filter.year, 12, 31);
        break;
    case Period::Month:
        q.sql += QStringLiteral("substr(data_dokumentu,6,2)=?");
        q.values << QStringLiteral("%1").arg(filter.month, 2, 10, QLatin1Char('0'));
        break;
    case Period::Days:
        q.sql += QStringLiteral("data_dokumentu BETWEEN ? AND ?");
        q.values << DateText::toIso(filter.first) << DateText::toIso(filter.last);
        break;
    }
    if (filter.kind > 0) {
        q.sql += QStringLiteral(" AND rodzaj=?");
        q.values << filter.kind;
    }
    if (filter.contractorId) {
        q.sql += QStringLiteral(" AND klient_id=?");
        q.values << *filter.contractorId;
    }
    if (filter.bankName) {
        q.sql += QStringLiteral(" AND bank_firmy=?");
        q.values << *filter.bankName;
    }
    return q;
}

QString line(qint16 kind, const QDate &date, Money amount)
{
    return DateText::format(date) + QLatin1Char(' ') + DocumentKinds::name(kind) + QStringLiteral(" - ") +
           Kwota(amount);
}

bool Model::refresh(const QSqlDatabase &db, const Filter &filter, QString *error)
{
    const Query built = build(filter);
    QSqlQuery q(db);
    bool ok = q.prepare(built.sql);
    for (const QVariant &v : built.values)
        q.addBindValue(v);
    ok = ok && q.exec();
    if (!ok) {
        clear();
        if (error)
            *error = q.lastError().text();
        return false;
    }
    setQuery(std::move(q));
    if (lastError().isValid()) {
        if (error)
            *error = lastError().text();
        return false;
    }
    return true;
}

QVariant Model::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    // The first column is the list's line; the others stay the raw row, for any reader.
    switch (role) {
    case Qt::DisplayRole: {
        if (index.column() != IdColumn)
            return QSqlQueryModel::data(index, role);
        const auto date = DateText::fromIso(QSqlQueryModel::data(this->index(index.row(), DateColumn)).toString());
        const qint64 units = QSqlQueryModel::data(this->index(index.row(), AmountColumn)).toLongLong();
        return line(kindAt(index.row()), date.value_or(QDate()), Money::fromUnits(units));
    }
    case IdRole:
        return idAt(index.row());
    case KindRole:
        return kindAt(index.row());
    default:
        return QSqlQueryModel::data(index, role);
    }
}

qint32 Model::idAt(int row) const
{
    return QSqlQueryModel::data(index(row, IdColumn)).toInt();
}

qint16 Model::kindAt(int row) const
{
    return qint16(QSqlQueryModel::data(index(row, KindColumn)).toInt());
}

} // namespace Browse
