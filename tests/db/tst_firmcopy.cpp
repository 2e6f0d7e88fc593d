#include "TestEnv.h"
#include "TestFirm.h"
#include "db/Dialect.h"
#include "db/FirmCopy.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <memory>

// "zlecanki przenies": a firm moved from a file to a server and back keeps every row and value,
// a target that is there is never touched, and a copy that fails leaves nothing behind.
namespace {

// Every row of every firm table, read through the program's own connection of the engine;
// rows sorted, as the engines need not give them in the same order.
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
            for (const auto &[name, declared] : Dialect::columns(*db, table))
                cols << Structure::quoted(*db, name);
            QStringList rows = queryRows(*db, QStringLiteral("SELECT %1 FROM %2")
                                                  .arg(cols.join(QLatin1Char(',')), Structure::quoted(*db, table)))
                                   .split(QLatin1Char(';'));
            rows.sort();
            text += table + QLatin1Char(':') + rows.join(QLatin1Char(';')) + QLatin1Char('\n');
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
            id = Dialect::insertedId(q, *db);
    }
    FirmDatabase::close(QStringLiteral("nastepny"));
    return id;
}

} // namespace

class TestFirmCopy : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void thereAndBack_data();
    void thereAndBack();
    void refused_data();
    void refused();

private:
    TestEnv::Run przenies(const QStringList &args) { return m_env->run(QStringList{QStringLiteral("przenies")} + args); }
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
              "INSERT INTO OdwolaniaSerwera (Odwolanie, ZlecenieId) VALUES ('ref-1', 1)",
              "INSERT INTO Ustawienia2 (MargLewy, MargPrawy) VALUES (-5, 7)"})
            QVERIFY2(q.exec(QString::fromUtf8(sql)), qPrintable(q.lastError().text()));
    }
    FirmDatabase::close(QStringLiteral("zrodlo"));
}

QString TestFirmCopy::location(const QString &kind)
{
    ++m_made;
    if (kind == QLatin1String("server"))
        return emptiedServerSchema(QStringLiteral("prz%1_%2").arg(QCoreApplication::applicationPid()).arg(m_made));
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

    for (const auto &[from, to] : {std::pair{m_source, middle}, std::pair{middle, back}}) {
        const TestEnv::Run r = przenies({from, to});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY2(r.out.contains(QLatin1String("ZLECANKI\t2\t2\n")), qPrintable(r.out));
        QCOMPARE(dump(to), before);
    }
    QCOMPARE(dump(m_source), before);
    // The deleted document's Id is not given again, on either engine.
    QCOMPARE(nextDocumentId(middle), 4);
    QCOMPARE(nextDocumentId(back), 4);
}

void TestFirmCopy::refused_data()
{
    QTest::addColumn<QString>("source"); // "firm", "inexact" (an amount with a fraction)
    QTest::addColumn<QString>("target"); // "file", "server", "existing file", "existing server"
    QTest::addColumn<QString>("told");
    QTest::newRow("existing file") << "firm" << "existing file" << "Plik już istnieje, nie zostanie nadpisany:";
    QTest::newRow("firm on the server") << "firm" << "existing server" << "Firma już istnieje pod tym adresem";
    QTest::newRow("inexact amount, file") << "inexact" << "file" << "Wartość \"0.5\" w kolumnie WARTOSC tabeli ZLECANKI";
    QTest::newRow("inexact amount, server") << "inexact" << "server" << "Wartość \"0.5\" w kolumnie WARTOSC tabeli ZLECANKI";
}

void TestFirmCopy::refused()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, told);
    if (target.contains(QLatin1String("server")) && testServer().isEmpty())
        QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG");
    QString from = m_source;
    if (source == QLatin1String("inexact")) {
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
    const QString to = location(target.section(QLatin1Char(' '), -1));
    QString existing;
    if (target.startsWith(QLatin1String("existing"))) {
        // An empty firm: a copy made over it would show.
        QVERIFY(FirmDatabase::create(to, nullptr));
        existing = dump(to);
    }
    const TestEnv::Run r = przenies({from, to});
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(told), qPrintable(r.err));
    if (!existing.isEmpty()) {
        QCOMPARE(dump(to), existing);
    } else {
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
