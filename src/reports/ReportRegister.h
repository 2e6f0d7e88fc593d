#pragma once

#include "Money.h"
#include "ReportCriteria.h"

#include <QAbstractTableModel>
#include <QDate>
#include <QList>
#include <QMetaType>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <optional>

// The report of this system: the register of the payment documents of one kind over a
// period, with the total of their amounts.
namespace Reports {

// The four lists, by their index (0 to 3: document kinds 1 to 4).
inline constexpr int KindCount = 4;
// The list's name as the menu shows it ("Lista Przelewów bankowych"); empty for any other index.
QString reportName(int kindIndex);

inline const QString TotalCaption = QStringLiteral("Ogółem");
inline const QString ReportTitle = QStringLiteral("Zlecanki bankowe");

// Everything a report is made from.
struct Criteria {
    int kindIndex = 0;
    Period period;
    ContractorChoice contractors = ContractorChoice::All;
    QStringList tickedNames; // for the caption; the marks in the database choose the rows
    // A firm that cannot be written keeps the choice here instead of in the marks: the
    // ticked contractors' Ids choose the rows and no mark is touched.
    bool choiceInMemory = false;
    QList<qint32> tickedIds;
};

struct ReportRow {
    QDate date;
    QString contractor;
    QString title;
    Money amount; // as shown: whole grosze
};

struct Register {
    bool built = false; // false: the kind index makes no list at all
    QList<ReportRow> rows;
    Money total;

    // One text line per document (date, contractor, title, amount, separated by tabs)
    // and the closing "Ogółem" line; nothing when no list was built.
    QStringList lines() const;
};

// Builds the register: documents of kind kindIndex + 1 dated within the period, by date;
// with ticked contractors only those whose contractor is marked. Amounts count as shown
// (rounded to grosze; an empty amount is 0) and so does the total. The contractor marks
// are cleared afterwards, also when the query failed.
std::optional<Register> buildRegister(QSqlDatabase db, const Criteria &criteria, QString *error = nullptr);

// The heading of a printed or saved report: the firm, the title, the criteria and the day.
struct Heading {
    QString firmName;
    QStringList firmAddress;
    QString period;      // BuildPeriodCaption
    QString documents;   // the kind's name
    QString contractors; // BuildContractorCaption
    QDate date;

    QString title() const { return QStringLiteral("Raport ") + ReportTitle; }
    // "  (OKRES - ...)", "  (Dokumenty - ...)", "  (Kontrahenci - ...)".
    QStringList criteriaLines() const;
    // "Na dzień dd-mm-yyyy".
    QString dateLine() const;
};
Heading makeHeading(const QSqlDatabase &db, const Criteria &criteria, const QDate &today);

// A report as the print engine gets it (job parameter of the procedure "raport").
struct Report {
    Heading heading;
    Register list;
};

// The register as a grid: date, contractor, title, amount, then the "Ogółem" row.
class RegisterModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;
    void setRegister(const Register &list);
    const Register &list() const { return m_list; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    Register m_list;
};

} // namespace Reports

Q_DECLARE_METATYPE(Reports::Report)
