#include "Transaction.h"

#include "db/Dialect.h"
#include "db/Structure.h"

#include <QSqlError>
#include <QSqlQuery>

Transaction::Transaction(QSqlDatabase db) : m_db(std::move(db))
{
    QString error;
    m_active = Structure::beginWrite(m_db, &error);
    if (!m_active)
        m_error = error;
}

Transaction::~Transaction()
{
    // A connection the server has dropped took its transaction with it.
    if (m_active && m_db.isOpen())
        QSqlQuery(m_db).exec(QStringLiteral("ROLLBACK"));
}

bool Transaction::commit()
{
    if (!m_active)
        return false;
    QSqlQuery q(m_db);
    // The other workstations of a shared firm hear of the change when it is committed.
    if (Dialect::isPostgres(m_db) &&
        !q.exec(QStringLiteral("SELECT pg_notify('zlecanki_' || current_schema(), 'zmiana')"))) {
        m_error = Structure::explainError(q.lastError());
        return false;
    }
    if (q.exec(QStringLiteral("COMMIT"))) {
        m_active = false;
        return true;
    }
    // The server went away while committing: it may have committed before it went, so
    // "nothing was saved" could be untrue.
    m_error = Dialect::connectionLost(q.lastError())
                  ? QStringLiteral("Utracono połączenie z serwerem bazy danych firmy w chwili zatwierdzania zapisu. "
                                   "Nie wiadomo, czy zmiana została zapisana: sprawdź to po ponownym połączeniu.")
                  : Structure::explainError(q.lastError());
    return false;
}
