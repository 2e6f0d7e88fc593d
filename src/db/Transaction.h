#pragma once

#include <QSqlDatabase>
#include <QString>

// One database transaction for a save that touches several rows: begun on construction,
// rolled back on destruction unless commit() succeeded, so every early return of a
// failed save leaves the database as it was.
class Transaction {
public:
    explicit Transaction(QSqlDatabase db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    // False when the transaction could not be begun (error() tells why).
    bool isActive() const { return m_active; }
    bool commit();
    // A clear Polish message for a failed begin or commit.
    QString error() const { return m_error; }

private:
    QSqlDatabase m_db;
    bool m_active = false;
    QString m_error;
};
