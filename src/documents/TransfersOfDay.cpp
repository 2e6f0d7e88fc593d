#include "TransfersOfDay.h"

#include "DateText.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>

QList<Money> transfersOfDay(const QSqlDatabase &db, int account, const QDate &day, QString *error)
{
    QList<Money> amounts;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT WARTOSC FROM zlecanki WHERE RODZAJ = 1 AND BANKNR = ? AND DATA_DOKUMENTU = ? "
                             "ORDER BY ID"));
    q.addBindValue(account);
    q.addBindValue(DateText::toIso(day));
    if (!q.exec()) {
        if (error)
            *error = Structure::explainError(q.lastError());
        return amounts;
    }
    while (q.next())
        amounts << Money::fromUnits(q.value(0).toLongLong());
    return amounts;
}
