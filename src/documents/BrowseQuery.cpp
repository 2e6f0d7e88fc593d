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

bool Model::readPage(QList<Row> *page, QString *error) const
{
    QString sql = m_query.sql;
    QVariantList values = m_query.values;
    if (!m_rows.isEmpty()) {
        sql += QStringLiteral(" AND (data_dokumentu>? OR (data_dokumentu=? AND id>?))");
        values << m_rows.last().date << m_rows.last().date << m_rows.last().id;
    }
    sql += QStringLiteral(" ORDER BY data_dokumentu,id LIMIT %1").arg(PageRows);
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    bool ok = q.prepare(sql);
    for (const QVariant &v : std::as_const(values))
        q.addBindValue(v);
    ok = ok && q.exec();
    while (ok && q.next())
        page->append(Row{q.value(IdColumn).toInt(), qint16(q.value(KindColumn).toInt()), q.value(DateColumn),
                         q.value(AmountColumn).toLongLong(), q.value(RecipientColumn).toString(),
                         q.value(TitleColumn).toString()});
    if (!ok && error)
        *error = q.lastError().text();
    return ok;
}

bool Model::refresh(const QSqlDatabase &db, const Filter &filter, QString *error)
{
    beginResetModel();
    m_db = db;
    m_query = build(filter);
    m_rows.clear();
    QList<Row> page;
    const bool ok = readPage(&page, error);
    m_rows = ok ? page : QList<Row>();
    m_complete = !ok || page.size() < PageRows;
    endResetModel();
    return ok;
}

void Model::clear()
{
    beginResetModel();
    m_rows.clear();
    m_complete = true;
    endResetModel();
}

int Model::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

bool Model::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && !m_complete;
}

void Model::fetchMore(const QModelIndex &parent)
{
    if (parent.isValid() || m_complete)
        return;
    QList<Row> page;
    // A page that cannot be read ends the list where it is; the next refresh tries again.
    if (!readPage(&page, nullptr) || page.size() < PageRows)
        m_complete = true;
    if (page.isEmpty())
        return;
    beginInsertRows(QModelIndex(), int(m_rows.size()), int(m_rows.size() + page.size() - 1));
    m_rows.append(page);
    endInsertRows();
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
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Row &r = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case 0:
            return DateText::format(DateText::fromIso(r.date.toString()).value_or(QDate()));
        case 1:
            return DocumentKinds::name(r.kind);
        case 2:
            return r.recipient;
        case 3:
            return r.title;
        case AmountShown:
            return Kwota(Money::fromUnits(r.amount));
        default:
            return {};
        }
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

qint32 Model::idAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).id : 0;
}

qint16 Model::kindAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).kind : qint16(0);
}

} // namespace Browse
