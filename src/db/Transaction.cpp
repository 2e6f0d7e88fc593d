#include "Transaction.h"

#include "db/Structure.h"

#include <QSqlError>

Transaction::Transaction(QSqlDatabase db) : m_db(std::move(db))
{
    m_active = m_db.transaction();
    if (!m_active)
        m_error = Structure::explainError(m_db.lastError());
}

Transaction::~Transaction()
{
    if (m_active)
        m_db.rollback();
}

bool Transaction::commit()
{
    if (!m_active)
        return false;
    if (m_db.commit()) {
        m_active = false;
        return true;
    }
    m_error = Structure::explainError(m_db.lastError());
    return false;
}
