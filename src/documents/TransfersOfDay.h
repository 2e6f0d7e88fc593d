#pragma once

#include "Money.h"

#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>

// The amounts of the bank transfers (kind 1) paid from firm account `account` on `day`, in
// the order they were stored: what a collective statement starts from. Other kinds never
// enter a statement. A failed read leaves `error` set and gives what was read.
QList<Money> transfersOfDay(const QSqlDatabase &db, int account, const QDate &day, QString *error = nullptr);
