#include "BrowseQuery.h"

#include "DateText.h"
#include "DocumentKinds.h"

#include <QSqlError>
#include <QSqlQuery>

#include <utility>

namespace Browse {

namespace {

enum Column { IdColumn, KindColumn, DateColumn, AmountColumn, RecipientColumn, TitleColumn };

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
    q.sql = QStringLiteral("SELECT id,rodzaj,data_dokumentu,wartosc,klient_nazwa,za_dokument_nazwa FROM zlecanki WHERE ");
    // Dates are stored as ISO text, so a year and a run of days are ranges of text that
    // the date index answers; the month of every year can only be read out of each date.
    switch (filter.period) {
    case Period::Year:
        q.sql += QStringLiteral("data_dokumentu BETWEEN ? AND ?");
        q.values << isoDay(filter.year, 1, 1) << isoDay(filter.year, 12, 31);
        break;
    case Period::Month:
        // The date as ISO text on both engines (a SQLite date is that text already).
        q.sql += QStringLiteral("substr(CAST(data_dokumentu AS TEXT),6,2)=?");
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

int Model::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ShownColumns;
}

QVariant Model::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char *const titles[ShownColumns] = {"Data", "Rodzaj", "Kontrahent", "Tytułem", "Kwota"};
    if (orientation != Qt::Horizontal || section < 0 || section >= ShownColumns)
        return {};
    if (role == Qt::DisplayRole)
        return QString::fromUtf8(titles[section]);
    if (role == Qt::TextAlignmentRole && section == AmountShown)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant Model::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case 0:
            return DateText::format(DateText::fromIso(raw(row, DateColumn).toString()).value_or(QDate()));
        case 1:
            return DocumentKinds::name(kindAt(row));
        case 2:
            return raw(row, RecipientColumn).toString();
        case 3:
            return raw(row, TitleColumn).toString();
        case AmountShown:
            return Kwota(Money::fromUnits(raw(row, AmountColumn).toLongLong()));
        default:
            return {};
        }
    case Qt::EditRole: // the row as selected, for record() and any reader of the raw values
        return raw(row, index.column());
    case Qt::TextAlignmentRole:
        if (index.column() == AmountShown)
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    case Qt::ToolTipRole:
        // The whole text of a column the user made narrow.
        return data(index, Qt::DisplayRole);
    case IdRole:
        return idAt(index.row());
    case KindRole:
        return kindAt(index.row());
    default:
        return {};
    }
}

QVariant Model::raw(int row, int column) const
{
    return QSqlQueryModel::data(createIndex(row, column));
}

qint32 Model::idAt(int row) const
{
    return raw(row, IdColumn).toInt();
}

qint16 Model::kindAt(int row) const
{
    return qint16(raw(row, KindColumn).toInt());
}

} // namespace Browse
