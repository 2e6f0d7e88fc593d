#include "Dialect.h"

#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QUrl>
#include <QUrlQuery>

#include <libpq-fe.h>

namespace Dialect {

namespace {

const QString Scheme = QStringLiteral("postgresql://");
const QString ShortScheme = QStringLiteral("postgres://");

QString ident(const QString &name)
{
    QString s = name;
    s.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

bool exec(QSqlDatabase &db, const QString &sql, QString *error)
{
    QSqlQuery q(db);
    if (q.exec(sql))
        return true;
    if (error)
        *error = q.lastError().text();
    return false;
}

bool exists(const QSqlDatabase &db, const QString &sql, const QString &name)
{
    QSqlQuery q(db);
    q.prepare(sql);
    q.addBindValue(name);
    return q.exec() && q.next();
}

// The schema named, or the connection's own one (the firm's) when none is.
QString schemaExpression(const QString &schema)
{
    if (schema.isEmpty())
        return QStringLiteral("current_schema()");
    QString s = schema;
    s.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + s + QLatin1Char('\'');
}

bool prepareSession(QSqlDatabase &db, const Address &a, QString *error)
{
    QString why;
    // The firm's schema first; the server's own catalogue is searched before it anyway, so
    // nothing in a firm's schema can stand in for a built-in function.
    if (!exec(db, QStringLiteral("SET search_path TO ") + ident(a.schema), &why) ||
        !exec(db, QStringLiteral("SET client_min_messages TO warning"), &why) ||
        // Dates read as text come out as the ISO text a SQLite firm keeps.
        !exec(db, QStringLiteral("SET DateStyle TO ISO, YMD"), &why) ||
        !exec(db, QStringLiteral("SET statement_timeout TO '60s'"), &why) ||
        !exec(db, QStringLiteral("SET lock_timeout TO '10s'"), &why)) {
        if (error)
            *error = QStringLiteral("Nie można przygotować połączenia z serwerem bazy danych:\n") + why;
        return false;
    }
    return true;
}

} // namespace

Engine engineOf(const QSqlDatabase &db)
{
    return db.driverName() == QLatin1String("QPSQL") ? Engine::Postgres : Engine::Sqlite;
}

bool isAddress(const QString &name)
{
    const QString n = name.trimmed();
    return n.startsWith(Scheme, Qt::CaseInsensitive) || n.startsWith(ShortScheme, Qt::CaseInsensitive);
}

std::optional<Address> parseAddress(const QString &text, QString *error)
{
    auto fail = [&](const QString &why) -> std::optional<Address> {
        if (error)
            *error = QStringLiteral("Nieprawidłowy adres bazy danych firmy na serwerze:\n") + text.trimmed() +
                     QLatin1Char('\n') + why +
                     QStringLiteral("\nPoprawna postać: postgresql://serwer:port/baza?schema=firma");
        return std::nullopt;
    };
    const QString t = text.trimmed();
    const qsizetype start = t.startsWith(Scheme, Qt::CaseInsensitive) ? Scheme.size()
                            : t.startsWith(ShortScheme, Qt::CaseInsensitive) ? ShortScheme.size()
                                                                             : -1;
    if (start < 0)
        return fail(QStringLiteral("Adres musi zaczynać się od postgresql://."));
    static const QRegularExpression shape(QStringLiteral("^(?:([^@/?]*)@)?([^/?]*)/([^/?]+)(?:\\?(.*))?$"));
    const auto m = shape.match(t.mid(start));
    if (!m.hasMatch())
        return fail(QStringLiteral("Brak nazwy bazy danych po ukośniku."));
    Address a;
    a.user = QUrl::fromPercentEncoding(m.captured(1).toUtf8());
    if (a.user.contains(QLatin1Char(':')))
        return fail(QStringLiteral("Hasło nie może być częścią adresu: program go nie przechowuje. "
                                   "Wpisz je do pliku ~/.pgpass."));
    QString hostPort = m.captured(2);
    static const QRegularExpression port(QStringLiteral(":(\\d{1,5})$"));
    if (const auto pm = port.match(hostPort); pm.hasMatch()) {
        a.port = pm.captured(1).toInt();
        hostPort.chop(pm.capturedLength());
        if (a.port < 1 || a.port > 65535)
            return fail(QStringLiteral("Numer portu musi być z zakresu 1..65535."));
    } else if (hostPort.contains(QLatin1Char(':')) && !hostPort.startsWith(QLatin1Char('['))) {
        return fail(QStringLiteral("Numer portu musi być liczbą."));
    }
    a.host = QUrl::fromPercentEncoding(hostPort.toUtf8());
    if (a.host.startsWith(QLatin1Char('[')) && a.host.endsWith(QLatin1Char(']')))
        a.host = a.host.mid(1, a.host.size() - 2);
    a.database = QUrl::fromPercentEncoding(m.captured(3).toUtf8());
    const QUrlQuery query(m.captured(4));
    for (const auto &[key, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (key == QLatin1String("schema"))
            a.schema = value;
        else if (key == QLatin1String("host"))
            a.host = value;
        else if (key == QLatin1String("port"))
            a.port = value.toInt();
        else if (key == QLatin1String("user"))
            a.user = value;
        else if (key == QLatin1String("password"))
            return fail(QStringLiteral("Hasło nie może być częścią adresu: program go nie przechowuje. "
                                       "Wpisz je do pliku ~/.pgpass."));
        else
            return fail(QStringLiteral("Nieznany parametr adresu: ") + key);
    }
    static const QRegularExpression plainName(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]{0,62}$"));
    if (!plainName.match(a.schema).hasMatch())
        return fail(QStringLiteral("Nazwa schematu firmy może zawierać tylko litery łacińskie, cyfry i podkreślenie "
                                   "(najwyżej 63 znaki) i nie może zaczynać się od cyfry."));
    if (a.database.isEmpty())
        return fail(QStringLiteral("Brak nazwy bazy danych po ukośniku."));
    a.schema = a.schema.toLower();
    return a;
}

QString addressText(const Address &a)
{
    QString host = a.host;
    if (host.startsWith(QLatin1Char('/')))
        host = QString::fromUtf8(QUrl::toPercentEncoding(host));
    else if (host.contains(QLatin1Char(':')))
        host = QLatin1Char('[') + host + QLatin1Char(']');
    QString text = Scheme;
    if (!a.user.isEmpty())
        text += QString::fromUtf8(QUrl::toPercentEncoding(a.user)) + QLatin1Char('@');
    text += host;
    if (a.port)
        text += QLatin1Char(':') + QString::number(a.port);
    text += QLatin1Char('/') + QString::fromUtf8(QUrl::toPercentEncoding(a.database));
    if (a.schema != QLatin1String("public"))
        text += QStringLiteral("?schema=") + a.schema;
    return text;
}

bool connect(const Address &a, const QString &connection, QString *error)
{
    if (QSqlDatabase::contains(connection)) {
        {
            QSqlDatabase old = QSqlDatabase::database(connection, false);
            old.close();
        }
        QSqlDatabase::removeDatabase(connection);
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connection);
    if (!db.isValid()) {
        if (error)
            *error = QStringLiteral("Brak sterownika bazy PostgreSQL (pakiet libqt6sql6-psql).");
        return false;
    }
    db.setHostName(a.host);
    if (a.port)
        db.setPort(a.port);
    db.setDatabaseName(a.database);
    if (!a.user.isEmpty())
        db.setUserName(a.user);
    // A server that does not answer is told within seconds; a silent network is noticed by
    // the keepalives instead of a window hanging.
    db.setConnectOptions(QStringLiteral("connect_timeout=5;application_name=zlecanki;keepalives=1;"
                                        "keepalives_idle=20;keepalives_interval=5;keepalives_count=3"));
    if (!db.open()) {
        if (error)
            *error = QStringLiteral("Nie można połączyć się z serwerem bazy danych:\n") + addressText(a) +
                     QLatin1Char('\n') + db.lastError().text().trimmed();
        return false;
    }
    return prepareSession(db, a, error);
}

bool reconnect(QSqlDatabase &db, const Address &a, QString *error)
{
    db.close();
    if (!db.open()) {
        if (error)
            *error = QStringLiteral("Nie można połączyć się z serwerem bazy danych:\n") + addressText(a) +
                     QLatin1Char('\n') + db.lastError().text().trimmed();
        return false;
    }
    return prepareSession(db, a, error);
}

QString beginWriteSql(const QSqlDatabase &db)
{
    return isPostgres(db) ? QStringLiteral("BEGIN") : QStringLiteral("BEGIN IMMEDIATE");
}

qint64 insertedId(const QSqlQuery &q, const QSqlDatabase &db)
{
    if (!isPostgres(db))
        return q.lastInsertId().toLongLong();
    QSqlQuery last(db);
    if (last.exec(QStringLiteral("SELECT lastval()")) && last.next())
        return last.value(0).toLongLong();
    return 0;
}

QString exactInteger(const QSqlDatabase &db, const QString &expression)
{
    return isPostgres(db) ? QStringLiteral("TRUE") : QStringLiteral("typeof(") + expression + QStringLiteral(") = 'integer'");
}

bool lockKey(QSqlDatabase &db, const QString &key, QSqlError *error)
{
    if (!isPostgres(db))
        return true;
    // Advisory locks belong to the whole database: the firm's schema makes the name its own.
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT pg_advisory_xact_lock(hashtext(current_schema() || ':' || ?))"));
    q.addBindValue(key);
    if (q.exec())
        return true;
    if (error)
        *error = q.lastError();
    return false;
}

bool tableExists(const QSqlDatabase &db, const QString &table, const QString &schema)
{
    if (!isPostgres(db)) {
        const QString master = schema.isEmpty() ? QStringLiteral("sqlite_master") : ident(schema) + QStringLiteral(".sqlite_master");
        return exists(db, QStringLiteral("SELECT 1 FROM ") + master + QStringLiteral(" WHERE type='table' AND name=? COLLATE NOCASE"),
                      table);
    }
    // The catalogue itself rather than information_schema: opening a firm asks this many
    // times, and the standard views take milliseconds each.
    return exists(db,
                  QStringLiteral("SELECT 1 FROM pg_class c WHERE c.relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = ") +
                      schemaExpression(schema) + QStringLiteral(") AND c.relkind IN ('r', 'p') AND lower(c.relname) = lower(?)"),
                  table);
}

QList<QPair<QString, QString>> columns(const QSqlDatabase &db, const QString &table, const QString &schema)
{
    QList<QPair<QString, QString>> list;
    QSqlQuery q(db);
    if (!isPostgres(db)) {
        q.prepare(QStringLiteral("SELECT name, type FROM pragma_table_info(?, ?)"));
        q.addBindValue(table);
        q.addBindValue(schema.isEmpty() ? QStringLiteral("main") : schema);
    } else {
        // The row number the server keeps in a column of its own is SQLite's hidden rowid
        // made visible: not one of the firm's columns.
        // A domain by its name, a text of limited length as VARCHAR(n), any other type by its
        // standard name (what information_schema.columns says, read from the catalogue at a
        // fraction of the cost).
        q.prepare(QStringLiteral("SELECT a.attname, CASE WHEN t.typtype = 'd' THEN upper(t.typname) "
                                 "WHEN a.atttypid = 'character varying'::regtype THEN 'VARCHAR(' || nullif(a.atttypmod, -1) - 4 || ')' "
                                 "ELSE upper(format_type(a.atttypid, NULL)) END "
                                 "FROM pg_attribute a JOIN pg_class c ON c.oid = a.attrelid JOIN pg_type t ON t.oid = a.atttypid "
                                 "WHERE c.relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = ") +
                  schemaExpression(schema) +
                  QStringLiteral(") AND c.relkind IN ('r', 'p', 'v', 'f') AND lower(c.relname) = lower(?) AND a.attnum > 0 "
                                 "AND NOT a.attisdropped AND a.attname <> 'rowid' ORDER BY a.attnum"));
        q.addBindValue(table);
    }
    if (q.exec())
        while (q.next())
            list.append({q.value(0).toString(), q.value(1).toString()});
    return list;
}

std::optional<QList<SchemaObject>> schemaObjects(const QSqlDatabase &db, const QString &schema, QString *error)
{
    QSqlQuery q(db);
    bool ok;
    if (!isPostgres(db)) {
        ok = q.exec(QStringLiteral("SELECT type, name, tbl_name FROM ") + ident(schema.isEmpty() ? QStringLiteral("main") : schema) +
                    QStringLiteral(".sqlite_master WHERE type IN ('view', 'trigger') ORDER BY type, name"));
    } else {
        const QString s = schemaExpression(schema);
        ok = q.exec(QStringLiteral("SELECT 'view', c.relname, c.relname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                                   "WHERE n.nspname = %1 AND c.relkind IN ('v', 'm', 'f') "
                                   "UNION ALL SELECT 'trigger', t.tgname, c.relname FROM pg_trigger t "
                                   "JOIN pg_class c ON c.oid = t.tgrelid JOIN pg_namespace n ON n.oid = c.relnamespace "
                                   "WHERE n.nspname = %1 AND NOT t.tgisinternal "
                                   "UNION ALL SELECT 'rule', rulename, tablename FROM pg_rules WHERE schemaname = %1 "
                                   "ORDER BY 1, 2")
                        .arg(s));
    }
    if (!ok) {
        if (error)
            *error = q.lastError().text();
        return std::nullopt;
    }
    QList<SchemaObject> list;
    while (q.next())
        list.append({q.value(0).toString(), q.value(1).toString(), q.value(2).toString()});
    return list;
}

bool definePostgresHelpers(QSqlDatabase &db, QString *error)
{
    struct Helper {
        QString check; // a query giving a row when the helper is there
        QString create;
    };
    const QList<Helper> helpers = {
        // Amounts: an exact count of ten-thousandths of a złoty, as in a SQLite firm.
        {QStringLiteral("SELECT 1 FROM pg_type WHERE typname = 'currency' AND typnamespace = current_schema()::regnamespace"),
         QStringLiteral("CREATE DOMAIN currency AS bigint")},
        // Yes/no: 0 or 1, so the same queries read and write it on both engines.
        {QStringLiteral("SELECT 1 FROM pg_type WHERE typname = 'tak_nie' AND typnamespace = current_schema()::regnamespace"),
         QStringLiteral("CREATE DOMAIN tak_nie AS smallint CONSTRAINT tak_nie_logiczne CHECK (VALUE IN (0, 1))")},
        // Names in the order of the Polish alphabet.
        {QStringLiteral("SELECT 1 FROM pg_collation WHERE collname = 'polski' AND collnamespace = current_schema()::regnamespace"),
         QStringLiteral("CREATE COLLATION polski (provider = icu, locale = 'pl-PL')")},
        // A substring blind to letter case, Polish letters included; no wildcards.
        {QStringLiteral("SELECT 1 WHERE to_regprocedure(current_schema() || '.zawiera(text,text)') IS NOT NULL"),
         QStringLiteral("CREATE FUNCTION zawiera(tekst text, czesc text) RETURNS boolean LANGUAGE sql STABLE "
                        "AS $$SELECT coalesce(strpos(lower(tekst COLLATE polski), lower(czesc COLLATE polski)) > 0, false)$$")},
        // The same name apart from letter case and blanks at its ends.
        {QStringLiteral("SELECT 1 WHERE to_regprocedure(current_schema() || '.jednakowe(text,text)') IS NOT NULL"),
         QStringLiteral("CREATE FUNCTION jednakowe(tekst text, inny text) RETURNS boolean LANGUAGE sql STABLE "
                        "AS $$SELECT coalesce(lower(btrim(tekst) COLLATE polski) = lower(btrim(inny) COLLATE polski), false)$$")},
    };
    for (const Helper &h : helpers) {
        QSqlQuery q(db);
        if (q.exec(h.check) && q.next())
            continue;
        if (!exec(db, h.create, error))
            return false;
    }
    return true;
}

bool connectionLost(const QSqlError &error)
{
    const QString code = error.nativeErrorCode();
    if (code.startsWith(QLatin1String("08")) || code == QLatin1String("57P01") || code == QLatin1String("57P02") ||
        code == QLatin1String("57P03"))
        return true;
    const QString text = error.databaseText() + QLatin1Char(' ') + error.driverText();
    for (const char *sign : {"server closed the connection", "no connection to the server", "terminating connection",
                             "could not receive data", "could not send data", "connection to server", "SSL SYSCALL",
                             "Connection refused", "the database system is shutting down"})
        if (text.contains(QLatin1String(sign), Qt::CaseInsensitive))
            return true;
    return false;
}

bool duplicateKey(const QSqlError &error)
{
    return error.nativeErrorCode() == QLatin1String("23505") ||
           error.databaseText().contains(QLatin1String("UNIQUE constraint failed"), Qt::CaseInsensitive);
}

bool broken(const QSqlDatabase &db)
{
    if (!isPostgres(db))
        return false;
    // Qt's driver closes the connection itself when it sees the server gone.
    if (!db.isOpen())
        return true;
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "PGconn*") != 0)
        return false;
    PGconn *conn = *static_cast<PGconn *const *>(handle.constData());
    return !conn || PQstatus(conn) == CONNECTION_BAD;
}

QString changeChannel(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT current_schema()")) && q.next())
        return QStringLiteral("zlecanki_") + q.value(0).toString();
    return QStringLiteral("zlecanki");
}

} // namespace Dialect
