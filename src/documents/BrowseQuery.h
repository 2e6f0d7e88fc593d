#pragma once

#include "Money.h"

#include <QDate>
#include <QSqlDatabase>
#include <QAbstractTableModel>
#include <QList>
#include <QString>
#include <QVariantList>

#include <optional>

// The browse window's filter over the stored payment documents and the list it shows,
// apart from the widgets so that the query can be checked and timed on its own.
namespace Browse {

// Which period is in force, by the position of its option in the window.
enum class Period { Year = 0, Month = 1, Days = 2 };

struct Filter {
    Period period = Period::Year;
    int year = 0;
    int month = 1; // 1 is January
    QDate first;   // both end days are listed
    QDate last;
    int kind = 0; // 0: every kind
    std::optional<qint32> contractorId; // none: every contractor
    // The bank name of the chosen account as documents carry it; none: every account.
    std::optional<QString> bankName;
};

struct Query {
    QString sql;
    QVariantList values; // bound to the placeholders in order
};

// The SELECT of the list's columns (id, rodzaj, data_dokumentu, wartosc, klient_nazwa,
// za_dokument_nazwa) under `filter`.
// Every value travels as a bound parameter.
Query build(const Filter &filter);

// The documents found by a filter, one row each, in the columns date, kind, recipient,
// title and amount, by date and then by number. Rows are read a page at a time as the view
// scrolls to them, each page a query of its own that starts after the last row read, so a
// filter that finds a hundred thousand documents shows at once on a file and on a server alike,
// and nothing is held open on the connection between pages.
class Model : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role { IdRole = Qt::UserRole, KindRole };
    static constexpr int ShownColumns = 5;
    static constexpr int AmountShown = 4;
    static constexpr int PageRows = 256;
    using QAbstractTableModel::QAbstractTableModel;

    // Runs the filter on `db` and reads its first page; false with the database's message in
    // `error`, the list then empty.
    bool refresh(const QSqlDatabase &db, const Filter &filter, QString *error = nullptr);
    void clear();
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool canFetchMore(const QModelIndex &parent = QModelIndex()) const override;
    void fetchMore(const QModelIndex &parent = QModelIndex()) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    qint32 idAt(int row) const;
    qint16 kindAt(int row) const;

private:
    struct Row {
        qint32 id = 0;
        qint16 kind = 0;
        QVariant date; // as the engine gives it, to start the next page after it
        qint64 amount = 0;
        QString recipient;
        QString title;
    };
    // The next page after the rows read; false with the database's message in `error`.
    bool readPage(QList<Row> *page, QString *error) const;

    QSqlDatabase m_db;
    Query m_query;
    QList<Row> m_rows;
    bool m_complete = true;
};

} // namespace Browse
