#include "AppState.h"
#include "CommandLine.h"
#include "Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "db/FirmDatabase.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTest>

#include <memory>

class TestFirm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void cleanup() { CloseDb(); }

    void refusedFiles_data();
    void refusedFiles();
    void opensAndLoadsSettings();
    void progressOfOpening();
    void nameWithoutFolderIsInDatabasesFolder();
    void workingDateOfRun();
    void readOnlyFirmOpensForViewing();
    void captionName_data();
    void captionName();
    void newFirmCommand();
    void startOptions_data();
    void startOptions();

private:
    QString newFirm(const QString &name);
    std::unique_ptr<TestEnv> m_env;
};

QString TestFirm::newFirm(const QString &name)
{
    const QString path = m_env->newPath(name);
    QString error;
    if (!FirmDatabase::create(path, &error))
        qFatal("%s", qPrintable(error));
    return path;
}

void TestFirm::refusedFiles_data()
{
    QTest::addColumn<QByteArray>("content"); // "-": no file at all
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << QByteArray("-") << "Nie ma pliku bazy danych firmy";
    QTest::newRow("text file") << QByteArray("To nie jest baza.\n").repeated(200) << "nie jest bazą danych firmy";
    QTest::newRow("empty file") << QByteArray() << "nie jest bazą danych firmy";
    QTest::newRow("old Access file") << QByteArray("\x00\x01\x00\x00Standard Jet DB\x00", 20).leftJustified(4096, '\0')
                                     << "nie jest bazą danych firmy";
}

void TestFirm::refusedFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    const QString path = m_env->newPath(QStringLiteral("zly.zlc"));
    if (content != "-") {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    RecordingDialogs d;
    QSignalSpy failed(&FirmEvents::instance(), &FirmEvents::openFailed);
    QVERIFY(!OpenDb(path));
    QVERIFY(!isFirmOpen());
    QCOMPARE(failed.size(), 1);
    QVERIFY2(d.saw(message), qPrintable(d.calls.value(0).text));
    QCOMPARE(d.calls.value(0).title, QStringLiteral("Błąd"));
    // Nothing was created or changed on the way.
    QCOMPARE(QFile::exists(path), content != "-");
    if (content != "-") {
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), content);
    }
}

void TestFirm::opensAndLoadsSettings()
{
    const QString path = newFirm(QStringLiteral("flagi.zlc"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("prep"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        QVERIFY(q.exec(QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=1, Nowe=1, CzteryOdcinki=0, "
                                      "CzteryNaStronie=1, Szary=1, Eliksir=NULL")));
        QVERIFY(q.exec(QStringLiteral("UPDATE Ustawienia2 SET MargLewy=3, MargPrawy=-2")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("prep"));

    RecordingDialogs d;
    QSignalSpy opened(&FirmEvents::instance(), &FirmEvents::opened);
    QVERIFY(OpenDb(path));
    QCOMPARE(opened.size(), 1);
    QVERIFY(d.calls.isEmpty());
    QVERIFY(!firmReadOnly());
    const AppState &s = appState();
    QCOMPARE((QList<int>{s.data, s.wstawiany, s.nowe, s.czteryOdcinki, s.czteryNaStronie, s.szary, s.eliksir}),
             (QList<int>{0, 1, 1, 0, 1, 1, 0}));
    QCOMPARE(s.margLewy, 3);
    QCOMPARE(s.margPrawy, -2);
    QCOMPARE(firmFile(), path);

    QSignalSpy closed(&FirmEvents::instance(), &FirmEvents::closed);
    CloseDb();
    QCOMPARE(closed.size(), 1);
    QVERIFY(!Db().isValid());
}

void TestFirm::progressOfOpening()
{
    const QString path = newFirm(QStringLiteral("postep.zlc"));
    QSignalSpy progress(&FirmEvents::instance(), &FirmEvents::progress);
    QVERIFY(OpenDb(path));
    QVERIFY(progress.size() >= 4);
    QCOMPARE(progress.first().at(0).toString(), QStringLiteral("Ładuję firmę"));
    QCOMPARE(progress.first().at(1).toInt(), 2);
    QStringList texts;
    int last = 0;
    for (const auto &p : progress) {
        texts << p.at(0).toString();
        QVERIFY(p.at(1).toInt() >= last);
        last = p.at(1).toInt();
    }
    QVERIFY(texts.contains(QStringLiteral("Ładuję dodatki")));
    QVERIFY(texts.contains(QStringLiteral("Sprawdzam terminowe")));
    QCOMPARE(last, 100);
}

void TestFirm::nameWithoutFolderIsInDatabasesFolder()
{
    QVERIFY(FirmDatabase::create(appState().bazyPath + QStringLiteral("bez_folderu.zlc"), nullptr));
    QVERIFY(OpenDb(QStringLiteral("bez_folderu.zlc")));
    QCOMPARE(firmFile(), appState().bazyPath + QStringLiteral("bez_folderu.zlc"));
    QVERIFY(appState().bazyPath.startsWith(m_env->dataHome() + QStringLiteral("/Kontorian/bazy/")));
}

void TestFirm::workingDateOfRun()
{
    const QString path = newFirm(QStringLiteral("data.zlc"));
    appState().todayForRun.reset();
    QVERIFY(OpenDb(path));
    QCOMPARE(appState().today, QDate::currentDate());
    appState().todayForRun = QDate(2026, 3, 5);
    QVERIFY(OpenDb(path));
    QCOMPARE(appState().today, QDate(2026, 3, 5));
    appState().todayForRun.reset();
}

void TestFirm::readOnlyFirmOpensForViewing()
{
    const QString path = newFirm(QStringLiteral("tylko_odczyt.zlc"));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    RecordingDialogs d;
    QVERIFY(OpenDb(path));
    QVERIFY(firmReadOnly());
    QVERIFY(d.saw(QStringLiteral("tylko do odczytu")));
    QSqlQuery q(Db());
    QVERIFY(q.exec(QStringLiteral("SELECT count(*) FROM zlecanki")));
    QVERIFY(!q.exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ) VALUES (1)")));
    d.clear();
    QVERIFY(refuseWhenReadOnly());
    QCOMPARE(d.calls.size(), 1);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

void TestFirm::captionName_data()
{
    QTest::addColumn<QString>("nazwa");
    QTest::addColumn<QString>("miasto");
    QTest::addColumn<bool>("standard");
    QTest::addColumn<QString>("shown");
    QTest::newRow("name and town") << "ACME sp. z o.o." << "Kraków" << false << "ACME sp. z o.o., Kraków";
    QTest::newRow("name only") << "ACME" << "" << false << "ACME";
    QTest::newRow("no firm row") << "-" << "" << false << "biuro";
    QTest::newRow("default firm") << "-" << "" << true << "Firma standardowa";
}

void TestFirm::captionName()
{
    QFETCH(QString, nazwa);
    QFETCH(QString, miasto);
    QFETCH(bool, standard);
    QFETCH(QString, shown);
    QString path;
    if (standard) {
        QFile::remove(standardFirmPath());
        QVERIFY(ensureStandardFirm());
        path = standardFirmPath();
    } else {
        path = newFirm(QStringLiteral("biuro.zlc"));
    }
    QVERIFY(OpenDb(path));
    if (nazwa != QLatin1String("-")) {
        QSqlQuery q(Db());
        q.prepare(QStringLiteral("INSERT INTO firma (NAZWA, MIASTO) VALUES (?, ?)"));
        q.addBindValue(nazwa);
        q.addBindValue(miasto);
        QVERIFY(q.exec());
    }
    QCOMPARE(firmDisplayName(), shown);
}

void TestFirm::newFirmCommand()
{
    if (!QFile::exists(programPath()))
        QSKIP("the program is not built in this configuration");
    QProcess p;
    p.setProcessEnvironment(m_env->processEnvironment());
    const QString path = m_env->newPath(QStringLiteral("z_polecenia"));
    p.start(programPath(), {QStringLiteral("nowa-firma"), path});
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), 0);
    QCOMPARE(QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed(), path + QStringLiteral(".zlc"));
    RecordingDialogs d;
    QVERIFY(OpenDb(path + QStringLiteral(".zlc")));
    CloseDb();

    // An existing file is never overwritten.
    p.start(programPath(), {QStringLiteral("nowa-firma"), path + QStringLiteral(".zlc")});
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), 1);
    QVERIFY(QString::fromLocal8Bit(p.readAllStandardError()).contains(QStringLiteral("już istnieje")));

    p.start(programPath(), {QStringLiteral("--help")});
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), 0);
    const QString help = QString::fromLocal8Bit(p.readAllStandardOutput());
    QVERIFY(help.contains(QStringLiteral("nowa-firma PLIK")));
    QVERIFY(help.contains(QStringLiteral("--dzis")));
}

void TestFirm::startOptions_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<bool>("automation");
    QTest::newRow("nothing") << QStringList{} << "" << QDate() << false;
    QTest::newRow("working date") << QStringList{"--dzis", "05-03-2026"} << "" << QDate(2026, 3, 5) << false;
    QTest::newRow("working date with =") << QStringList{"--dzis=5-3-2026"} << "" << QDate(2026, 3, 5) << false;
    QTest::newRow("bad date") << QStringList{"--dzis", "31-02-2026"} << "Nieprawidłowa data" << QDate() << false;
    QTest::newRow("date missing") << QStringList{"--dzis"} << "Nieprawidłowa data" << QDate() << false;
    QTest::newRow("automation") << QStringList{"--automation"} << "" << QDate() << true;
    QTest::newRow("unknown") << QStringList{"--xyz"} << "Nieznana opcja" << QDate() << false;
    QTest::newRow("two files") << QStringList{"a.zlc", "b.zlc"} << "tylko jeden plik" << QDate() << false;
}

void TestFirm::startOptions()
{
    QFETCH(QStringList, args);
    QFETCH(QString, error);
    QFETCH(QDate, today);
    QFETCH(bool, automation);
    const auto o = CommandLine::parseStart(QStringList{QStringLiteral("zlecanki")} + args);
    QVERIFY2(error.isEmpty() ? o.error.isEmpty() : o.error.contains(error), qPrintable(o.error));
    if (error.isEmpty()) {
        QCOMPARE(o.today.value_or(QDate()), today);
        QCOMPARE(o.automation, automation);
    }
}

QTEST_GUILESS_MAIN(TestFirm)
#include "tst_firm.moc"
