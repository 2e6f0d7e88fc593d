#include "TestEnv.h"
#include "TestFirm.h"
#include "db/Dialect.h"
#include "db/FirmCopy.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <memory>

// "zlecanki przenies": a firm moved from a file to a server and back keeps every row and value,
// a target that is there is never touched, and a copy that fails leaves nothing behind.
namespace {

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

// Every row of every firm table, read through the program's own connection of the engine.
QString dump(const QString &location)
{
    QString text;
    {
        bool readOnly = false;
        QString error;
        const auto db = FirmDatabase::open(location, QStringLiteral("zrzut"), &readOnly, &error);
        if (!db)
            return error;
        for (const QString &table : FirmCopy::firmTables()) {
            QStringList cols;
            QString order = QStringLiteral("rowid");
            for (const Structure::Table &t : Structure::fullTables())
                if (t.name == table)
                    for (const Structure::Column &c : t.columns) {
                        cols << Structure::quoted(*db, c.name);
                        if (c.counter)
                            order = cols.last();
                    }
            if (cols.isEmpty()) { // the server-call references
                cols << QStringLiteral("Odwolanie") << QStringLiteral("ZlecenieId");
                order = QStringLiteral("Odwolanie");
            }
            text += table + QLatin1Char(':') +
                    queryRows(*db, QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                                       .arg(cols.join(QLatin1Char(',')), Structure::quoted(*db, table), order)) +
                    QLatin1Char('\n');
        }
    }
    FirmDatabase::close(QStringLiteral("zrzut"));
    return text;
}

// The Id the next document of the firm gets.
qint64 nextDocumentId(const QString &location)
{
    qint64 id = -1;
    {
        bool readOnly = false;
        const auto db = FirmDatabase::open(location, QStringLiteral("nastepny"), &readOnly, nullptr);
        QSqlQuery q(db.value_or(QSqlDatabase()));
        if (q.exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")))
            id = db->driverName() == QLatin1String("QPSQL") && q.exec(QStringLiteral("SELECT lastval()")) && q.next()
                     ? q.value(0).toLongLong()
                     : q.lastInsertId().toLongLong();
    }
    FirmDatabase::close(QStringLiteral("nastepny"));
    return id;
}

} // namespace

class TestFirmCopy : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void thereAndBack_data();
    void thereAndBack();
    void refused_data();
    void refused();

private:
    Run przenies(const QStringList &args);
    // A location named by its kind: "file" (a new file) or "server" (a new schema).
    QString location(const QString &kind);
    QString m_source;
    std::unique_ptr<TestEnv> m_env;
    int m_made = 0;
};

void TestFirmCopy::initTestCase()
{
    if (!QFile::exists(programPath()))
        QSKIP("The program is not built here (core only): its command line is not checked.");
    m_env = std::make_unique<TestEnv>();
    // Every kind of value: Polish text, a day, an amount beyond a double's exact digits, yes
    // and no, Null; the last document deleted, so its Id is not to be given again.
    m_source = m_env->newPath(QStringLiteral("zrodlo.zlc"));
    QString error;
    QVERIFY2(FirmDatabase::create(m_source, &error), qPrintable(error));
    {
        bool readOnly = false;
        const auto db = FirmDatabase::open(m_source, QStringLiteral("zrodlo"), &readOnly, &error);
        QVERIFY2(db, qPrintable(error));
        QSqlQuery q(*db);
        for (const char *sql :
             {"INSERT INTO FIRMA (NAZWA, MIASTO, STAN_KONTA1, BANK_NAZWA12, firma_NIP) VALUES ('Żółć i S-ka', 'Łódź', "
              "123456789012345678, 'PKO', '526-104-08-28')",
              "INSERT INTO ZLECANKI (RODZAJ, DATA_DOKUMENTU, WARTOSC, KLIENT_NAZWA, ZUS_CzyZus) VALUES "
              "(1, '2026-03-05', 12345000, 'Gęśla \"Ślimak\"', 1), (3, '2000-02-29', -1, NULL, 0), (2, NULL, 0, '', NULL)",
              "DELETE FROM ZLECANKI WHERE ID = 3",
              "INSERT INTO CYKLICZNE (NAZWA, M1, M12, WARTOSC, LASTWYSTAWM) VALUES ('Czynsz', 1, 0, 50000000, 3)",
              "INSERT INTO KONTRAHENCI (NAZWA, NIP, WYBRANY) VALUES ('Łąka', '', 1), ('Zenon', NULL, 0)",
              "INSERT INTO WyslaneDoBanku (Dokument, Data, Plik, Format) VALUES (1, '2026-03-06', '/tmp/ż.txt', 'elixir')",
              "INSERT INTO UstawieniaBanku (Format, Kodowanie) VALUES ('xml', 'cp1250')",
              "INSERT INTO OdwolaniaSerwera (Odwolanie, ZlecenieId) VALUES ('ref-1', 1)",
              "INSERT INTO Ustawienia2 (MargLewy, MargPrawy) VALUES (-5, 7)"})
            QVERIFY2(q.exec(QString::fromUtf8(sql)), qPrintable(q.lastError().text()));
    }
    FirmDatabase::close(QStringLiteral("zrodlo"));
}

void TestFirmCopy::cleanupTestCase()
{
    if (testServer().isEmpty())
        return;
    {
        Dialect::connect(*Dialect::parseAddress(testServer()), QStringLiteral("sprzatanie"), nullptr);
        QSqlQuery q(QSqlDatabase::database(QStringLiteral("sprzatanie"), false));
        if (q.exec(QStringLiteral("SELECT string_agg(format('DROP SCHEMA %I CASCADE', nspname), '; ') FROM pg_namespace "
                                  "WHERE nspname LIKE 'prz%1\\_%'")
                       .arg(QCoreApplication::applicationPid())) &&
            q.next() && !q.value(0).toString().isEmpty())
            q.exec(q.value(0).toString());
    }
    FirmDatabase::close(QStringLiteral("sprzatanie"));
}

Run TestFirmCopy::przenies(const QStringList &args)
{
    QProcess p;
    p.setProcessEnvironment(m_env->processEnvironment());
    p.start(programPath(), QStringList{QStringLiteral("przenies")} + args);
    Run r;
    if (!p.waitForFinished(60000))
        return r;
    r.exitCode = p.exitCode();
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

QString TestFirmCopy::location(const QString &kind)
{
    ++m_made;
    if (kind == QLatin1String("server"))
        return testServer() + QStringLiteral("?schema=prz%1_%2").arg(QCoreApplication::applicationPid()).arg(m_made);
    return m_env->newPath(QStringLiteral("firma%1.zlc").arg(m_made));
}

void TestFirmCopy::thereAndBack_data()
{
    QTest::addColumn<QString>("between");
    QTest::newRow("file, server, file") << "server";
    QTest::newRow("file, file, file") << "file";
}

void TestFirmCopy::thereAndBack()
{
    QFETCH(QString, between);
    if (between == QLatin1String("server") && testServer().isEmpty())
        QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG");
    const QString middle = location(between);
    const QString back = location(QStringLiteral("file"));
    const QString before = dump(m_source);
    QVERIFY2(before.contains(QLatin1String("123456789012345678")) && before.contains(QLatin1String("2000-02-29")),
             qPrintable(before));

    for (const auto &[from, to] : {std::pair{m_source, middle}, std::pair{middle, back}}) {
        const Run r = przenies({from, to});
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        for (const char *line : {"ZLECANKI\t2\t2\n", "FIRMA\t1\t1\n", "KONTRAHENCI\t2\t2\n", "Ustawienia2\t2\t2\n",
                                 "OdwolaniaSerwera\t1\t1\n"})
            QVERIFY2(r.out.contains(QLatin1String(line)), qPrintable(r.out));
        QCOMPARE(dump(to), before);
    }
    QCOMPARE(dump(m_source), before);
    // The deleted document's Id is not given again, on either engine.
    QCOMPARE(nextDocumentId(middle), 4);
    QCOMPARE(nextDocumentId(back), 4);
}

void TestFirmCopy::refused_data()
{
    QTest::addColumn<QString>("source"); // "firm", "missing", "inexact" (an amount with a fraction)
    QTest::addColumn<QString>("target"); // "file", "server", "existing file", "existing server"
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("told");
    QTest::newRow("existing file") << "firm" << "existing file" << 1 << "Plik już istnieje, nie zostanie nadpisany:";
    QTest::newRow("firm on the server") << "firm" << "existing server" << 1 << "Firma już istnieje pod tym adresem";
    QTest::newRow("no source") << "missing" << "file" << 1 << "Nie ma pliku bazy danych firmy:";
    QTest::newRow("inexact amount, file") << "inexact" << "file" << 1 << "Wartość \"0.5\" w kolumnie WARTOSC tabeli ZLECANKI";
    QTest::newRow("inexact amount, server") << "inexact" << "server" << 1 << "Wartość \"0.5\" w kolumnie WARTOSC tabeli ZLECANKI";
    QTest::newRow("one name") << "firm" << "" << 2 << "Użycie: zlecanki przenies ZRODLO CEL";
}

void TestFirmCopy::refused()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(int, exitCode);
    QFETCH(QString, told);
    if (target.contains(QLatin1String("server")) && testServer().isEmpty())
        QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG");
    QString from = m_source;
    if (source == QLatin1String("missing")) {
        from = m_env->newPath(QStringLiteral("nie-ma.zlc"));
    } else if (source == QLatin1String("inexact")) {
        // A file written past its checks by another tool.
        from = m_env->newPath(QStringLiteral("niedokladna%1.zlc").arg(++m_made));
        QVERIFY(QFile::copy(m_source, from));
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("obca"));
            db.setDatabaseName(from);
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("PRAGMA ignore_check_constraints = ON")));
            QVERIFY(q.exec(QStringLiteral("INSERT INTO ZLECANKI (RODZAJ, WARTOSC) VALUES (1, 0.5)")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("obca"));
    }
    QStringList args{from};
    QString to;
    QString existing;
    if (!target.isEmpty()) {
        to = location(target.section(QLatin1Char(' '), -1));
        if (target.startsWith(QLatin1String("existing"))) {
            QVERIFY(przenies({m_source, to}).exitCode == 0);
            // Marked, to see that the refused copy changed nothing.
            {
                bool readOnly = false;
                const auto db = FirmDatabase::open(to, QStringLiteral("cel"), &readOnly, nullptr);
                QVERIFY(db);
                QVERIFY(QSqlQuery(*db).exec(QStringLiteral("UPDATE firma SET NAZWA = 'Stara'")));
            }
            FirmDatabase::close(QStringLiteral("cel"));
            existing = dump(to);
        }
        args << to;
    }
    const Run r = przenies(args);
    QCOMPARE(r.exitCode, exitCode);
    QVERIFY2(r.err.contains(told), qPrintable(r.err));
    if (!existing.isEmpty()) {
        QCOMPARE(dump(to), existing);
    } else if (!to.isEmpty()) {
        // Nothing of the failed copy is left: opening the target finds no firm.
        bool readOnly = false;
        QString error;
        QVERIFY(!FirmDatabase::open(to, QStringLiteral("cel"), &readOnly, &error));
        QVERIFY2(error.startsWith(QLatin1String("Nie ma pliku")) || error.startsWith(QLatin1String("Pod tym adresem nie ma")),
                 qPrintable(error));
        const QStringList building{QLatin1Char('.') + QFileInfo(to).fileName() + QStringLiteral(".*")};
        QCOMPARE(QDir(m_env->root()).entryList(building, QDir::Files | QDir::Hidden), QStringList());
    }
}

QTEST_MAIN(TestFirmCopy)
#include "tst_firmcopy.moc"
