#pragma once

#include "Money.h"

#include <QDate>
#include <QSqlDatabase>
#include <QSqlQueryModel>
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
// title and amount. Rows are fetched as the view scrolls to them, so a filter that finds a
// hundred thousand documents shows at once.
class Model : public QSqlQueryModel {
    Q_OBJECT
public:
    enum Role { IdRole = Qt::UserRole, KindRole };
    static constexpr int ShownColumns = 5;
    static constexpr int AmountShown = 4;
    using QSqlQueryModel::QSqlQueryModel;

    // Runs the filter on `db`; false with the database's message in `error`.
    bool refresh(const QSqlDatabase &db, const Filter &filter, QString *error = nullptr);
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    qint32 idAt(int row) const;
    qint16 kindAt(int row) const;

private:
    // A value of the row as selected, by its place in the SELECT.
    QVariant raw(int row, int column) const;
};

} // namespace Browse
