#include "AppState.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "app/CommandLine.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"
#include "documents/Firm.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

class TestFirm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { CloseDb(); }

    void refused_data();
    void refused();
    void opening();
    void startOptions_data();
    void startOptions();

private:
    TestEnv m_env;
};

static const QString Recursive = QStringLiteral("WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) ");

void TestFirm::refused_data()
{
    QTest::addColumn<QByteArray>("content"); // "-": no file at all; "firm": a firm file, `statements` run on it
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<QStringList>("named"); // in the message; none: the firm opens
    QTest::newRow("missing") << QByteArray("-") << QStringList{} << QStringList{"Nie ma pliku bazy danych firmy"};
    QTest::newRow("text file") << QByteArray("To nie jest baza.\n").repeated(200) << QStringList{}
                               << QStringList{"nie jest bazą danych firmy"};
    QTest::newRow("empty file") << QByteArray() << QStringList{} << QStringList{"nie jest bazą danych firmy"};
    QTest::newRow("trigger redirecting the recipient's account")
        << QByteArray("firm")
        << QStringList{"CREATE TRIGGER podmiana AFTER INSERT ON zlecanki BEGIN "
                       "UPDATE zlecanki SET KLIENT_KONTO = '11 1111' WHERE ID = new.ID; END"}
        << QStringList{"podmiana", "zlecanki"};
    QTest::newRow("recursive view in place of a table")
        << QByteArray("firm") << QStringList{"DROP TABLE FIRMA", "CREATE VIEW Firma AS " + Recursive + "SELECT x AS NAZWA FROM c"}
        << QStringList{"widok Firma"};
    // Let in, but a statement over it runs only so long.
    QTest::newRow("view of another name")
        << QByteArray("firm") << QStringList{"CREATE VIEW licznik AS " + Recursive + "SELECT x FROM c"} << QStringList{};
}

void TestFirm::refused()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, statements);
    QFETCH(QStringList, named);
    const QString path = m_env.newPath(QStringLiteral("obca.zlc"));
    if (content == "firm") {
        QVERIFY(createFirm(path, statements));
    } else if (content != "-") {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    RecordingDialogs d;
    QCOMPARE(OpenDb(path), named.isEmpty());
    const QString told = d.calls.value(0).text;
    for (const QString &name : named)
        QVERIFY2(told.contains(name), qPrintable(told));
    if (content != "firm") { // nothing was created or changed on the way
        QFile f(path);
        QCOMPARE(f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("-"), content);
    }
    if (!named.isEmpty())
        return;
    QSqlQuery q(Db());
    QVERIFY(!q.exec(QStringLiteral("SELECT count(*) FROM licznik")));
    QVERIFY2(Structure::explainError(q.lastError()).contains(QLatin1String("przerwane")),
             qPrintable(q.lastError().text()));
    QVERIFY(q.exec(QStringLiteral("SELECT count(*) FROM zlecanki")));
}

void TestFirm::opening()
{
    const QString path = m_env.newPath(QStringLiteral("flagi.zlc"));
    QVERIFY(createFirm(path, {QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=1, Nowe=1, CzteryOdcinki=0, "
                                             "CzteryNaStronie=1, Szary=1, Eliksir=NULL"),
                              QStringLiteral("UPDATE Ustawienia2 SET MargLewy=3, MargPrawy=-2"),
                              QStringLiteral("INSERT INTO firma (NAZWA, MIASTO) VALUES ('ACME', '')")}));
    RecordingDialogs d;
    QVERIFY(OpenDb(path));
    QCOMPARE(firmDisplayName(), QStringLiteral("ACME")); // no town: the name alone
    const AppState &s = appState();
    QCOMPARE((QList<int>{s.data, s.wstawiany, s.nowe, s.czteryOdcinki, s.czteryNaStronie, s.szary, s.eliksir, s.margLewy,
                         s.margPrawy}),
             (QList<int>{0, 1, 1, 0, 1, 1, 0, 3, -2}));
    CloseDb();

    // A firm the user may only read opens for viewing, saying so.
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    QVERIFY(OpenDb(path));
    QVERIFY(firmReadOnly());
    QVERIFY(d.saw(QStringLiteral("tylko do odczytu")));
    QVERIFY(!QSqlQuery(Db()).exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")));
    d.clear();
    QVERIFY(refuseWhenReadOnly());
    QCOMPARE(d.calls.size(), 1);

    // A name without a folder is a file in the databases folder; a run may set its working date.
    QVERIFY(FirmDatabase::create(appState().bazyPath + QStringLiteral("bez_folderu.zlc"), nullptr));
    appState().todayForRun = QDate(2026, 3, 5);
    QVERIFY(OpenDb(QStringLiteral("bez_folderu.zlc")));
    QCOMPARE(firmFile(), appState().bazyPath + QStringLiteral("bez_folderu.zlc"));
    QCOMPARE(appState().today, QDate(2026, 3, 5));
}

void TestFirm::startOptions_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QDate>("today");
    QTest::newRow("working date") << QStringList{"--dzis", "05-03-2026"} << "" << QDate(2026, 3, 5);
    QTest::newRow("working date with =") << QStringList{"--dzis=5-3-2026"} << "" << QDate(2026, 3, 5);
    QTest::newRow("bad date") << QStringList{"--dzis", "31-02-2026"} << "Nieprawidłowa data" << QDate();
    QTest::newRow("unknown") << QStringList{"--xyz"} << "Nieznana opcja" << QDate();
    QTest::newRow("two files") << QStringList{"a.zlc", "b.zlc"} << "tylko jeden plik" << QDate();
    QTest::newRow("firm file") << QStringList{"a.zlc"} << "" << QDate();
    QTest::newRow("firm on a server") << QStringList{"postgresql://serwer:5432/biuro?schema=kowalski"} << ""
                                      << QDate();
}

void TestFirm::startOptions()
{
    QFETCH(QStringList, args);
    QFETCH(QString, error);
    QFETCH(QDate, today);
    const auto o = CommandLine::parseStart(QStringList{QStringLiteral("zlecanki")} + args);
    QVERIFY2(error.isEmpty() ? o.error.isEmpty() : o.error.contains(error), qPrintable(o.error));
    if (error.isEmpty()) {
        QCOMPARE(o.today.value_or(QDate()), today);
        // A file is taken from the current folder, an address as it is.
        const QString firm = args.value(0).startsWith(QLatin1String("--")) ? QString() : args.value(0);
        QCOMPARE(o.firmFile, firm.endsWith(QLatin1String(".zlc")) ? QDir::current().absoluteFilePath(firm) : firm);
    }
}

QTEST_GUILESS_MAIN(TestFirm)
#include "tst_firm.moc"
