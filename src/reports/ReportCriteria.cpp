#include "ReportCriteria.h"

#include "DateText.h"
#include "db/Structure.h"
#include "db/Transaction.h"

#include <QSqlError>
#include <QSqlQuery>

namespace Reports {

namespace {

bool exec(QSqlQuery &q, QString *error)
{
    if (q.exec())
        return true;
    if (error)
        *error = Structure::explainError(q.lastError());
    return false;
}

} // namespace

std::optional<QDate> Period::first() const
{
    return DateText::parse(firstText.trimmed());
}

std::optional<QDate> Period::last() const
{
    return DateText::parse(lastText.trimmed());
}

Condition BuildPeriodCondition(const Period &period, const QString &column)
{
    Condition c;
    switch (period.kind) {
    case PeriodKind::Year:
        // A year is a range of ISO texts, which the date index answers.
        c.sql = column + QStringLiteral(" BETWEEN ? AND ?");
        c.values << QStringLiteral("%1-01-01").arg(period.year, 4, 10, QLatin1Char('0'))
                 << QStringLiteral("%1-12-31").arg(period.year, 4, 10, QLatin1Char('0'));
        break;
    case PeriodKind::Month:
        // The month of every year: the report has always asked for the month alone.
        c.sql = QStringLiteral("substr(CAST(") + column + QStringLiteral(" AS TEXT),6,2)=?");
        c.values << QStringLiteral("%1").arg(period.month, 2, 10, QLatin1Char('0'));
        break;
    case PeriodKind::Range: {
        // After the day before the first day, up to the last day: both end days belong.
        const QDate first = period.first().value_or(QDate());
        c.sql = QStringLiteral("(") + column + QStringLiteral(">? AND ") + column + QStringLiteral("<=?)");
        c.values << DateText::toIso(first.addDays(-1)) << DateText::toIso(period.last().value_or(QDate()));
        break;
    }
    }
    return c;
}

QString BuildPeriodCaption(const Period &period)
{
    switch (period.kind) {
    case PeriodKind::Year:
        return QStringLiteral("Za rok ") + QString::number(period.year);
    case PeriodKind::Month:
        return QStringLiteral("Za miesiąc ") + QString::number(period.month);
    case PeriodKind::Range:
        break;
    }
    return QStringLiteral("Za okres od ") + period.firstText + QStringLiteral(" do ") + period.lastText;
}

QString BuildContractorCaption(ContractorChoice choice, const QStringList &tickedNames)
{
    if (choice == ContractorChoice::All)
        return QStringLiteral("wszyscy");
    if (tickedNames.size() == 1)
        return QStringLiteral("wybrany: ") + tickedNames.first();
    return QStringLiteral("wybrani");
}

QString periodFault(const Period &period)
{
    if (period.kind != PeriodKind::Range)
        return {};
    const auto first = period.first();
    const auto last = period.last();
    if (!first)
        return QStringLiteral("Nieprawidłowa data początkowa: \"%1\" (wpisz dd-mm-rrrr).").arg(period.firstText);
    if (!last)
        return QStringLiteral("Nieprawidłowa data końcowa: \"%1\" (wpisz dd-mm-rrrr).").arg(period.lastText);
    if (*first > *last)
        return QStringLiteral("Data początkowa jest późniejsza niż końcowa.");
    return {};
}

bool MarkChosenContractors(QSqlDatabase db, ContractorChoice choice, const QList<qint32> &ticked, QString *error)
{
    Transaction transaction(db);
    if (!transaction.isActive()) {
        if (error)
            *error = transaction.error();
        return false;
    }
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE Kontrahenci SET WYBRANY=?"));
    q.addBindValue(choice == ContractorChoice::All ? 1 : 0);
    if (!exec(q, error))
        return false;
    if (choice == ContractorChoice::Ticked) {
        q.prepare(QStringLiteral("UPDATE Kontrahenci SET WYBRANY=? WHERE ID=?"));
        for (qint32 id : ticked) {
            q.addBindValue(1);
            q.addBindValue(id);
            if (!exec(q, error))
                return false;
        }
    }
    if (!transaction.commit()) {
        if (error)
            *error = transaction.error();
        return false;
    }
    return true;
}

bool ClearContractorMarks(QSqlDatabase db, QString *error)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("UPDATE Kontrahenci SET WYBRANY=? WHERE WYBRANY=?"));
    q.addBindValue(0);
    q.addBindValue(1);
    return exec(q, error);
}

} // namespace Reports
