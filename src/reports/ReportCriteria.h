#pragma once

#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

// What a report covers: a period and a choice of contractors, turned into a condition on
// a date column, the captions of the report's heading and the marks (kontrahenci.WYBRANY)
// that the report's query looks at.
namespace Reports {

// The period kinds in the order of their options in the criteria windows.
enum class PeriodKind { Year = 0, Month = 1, Range = 2 };

struct Period {
    PeriodKind kind = PeriodKind::Year;
    int year = 0;
    int month = 1; // 1 is January
    // The range as the user typed it: the caption repeats it, the condition reads it.
    QString firstText;
    QString lastText;

    std::optional<QDate> first() const;
    std::optional<QDate> last() const;
};

// The contractor options by their positions in the criteria window; position 1 (a group
// of contractors) does not exist here, since contractors have no groups.
enum class ContractorChoice { All = 0, Ticked = 2 };

// SQL text with its values, bound to the placeholders in order.
struct Condition {
    QString sql;
    QVariantList values;
};

// The period as a condition on the date column `column` (dates stored as ISO text):
// a whole year, one month of any year, or a range whose both end days belong to it.
Condition BuildPeriodCondition(const Period &period, const QString &column);
// "Za rok 2005", "Za miesiąc 3", "Za okres od 01-03-2005 do 31-03-2005".
QString BuildPeriodCaption(const Period &period);
// "wszyscy"; with ticked contractors "wybrany: " and the name when there is one, else "wybrani".
QString BuildContractorCaption(ContractorChoice choice, const QStringList &tickedNames);

// Why the period cannot make a report (a date that is no date, a range running backwards);
// empty when it can.
QString periodFault(const Period &period);

// Marks the contractors a report is for: every one, or exactly the `ticked` ones (marks
// left by an earlier report are cleared first). One transaction.
bool MarkChosenContractors(QSqlDatabase db, ContractorChoice choice, const QList<qint32> &ticked,
                           QString *error = nullptr);
// Clears every contractor's mark, as every report does once its list is built.
bool ClearContractorMarks(QSqlDatabase db, QString *error = nullptr);

} // namespace Reports
