#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "db/MdbConversion.h"
#include "db/MdbProcess.h"
#include "db/MdbReader.h"

#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QTest>

#include <memory>

using OldDatabase::Type;

namespace {

// An old firm file as tests describe it: tables with typed columns and rows of text.
class FakeSource : public OldDatabase::Source {
public:
    struct Data {
        OldDatabase::Table table;
        QList<OldDatabase::Row> rows;
    };
    QList<Data> data;

    FakeSource &table(const QString &name, const QList<QPair<QString, Type>> &columns,
                      const QList<QStringList> &rows = {})
    {
        Data d;
        d.table.name = name;
        for (const auto &[n, t] : columns)
            d.table.columns.append({n, t, n.compare(QLatin1String("ID"), Qt::CaseInsensitive) == 0});
        for (const QStringList &r : rows) {
            OldDatabase::Row row;
            for (const QString &v : r)
                row << (v == QLatin1String("NULL") ? std::nullopt : std::optional<QString>(v));
            d.rows << row;
        }
        data << d;
        return *this;
    }
    QList<OldDatabase::Table> tables() const override
    {
        QList<OldDatabase::Table> out;
        for (const Data &d : data)
            out << d.table;
        return out;
    }
    bool readRows(const OldDatabase::Table &t, const OldDatabase::RowSink &sink, QString *) override
    {
        for (const Data &d : data)
            if (d.table.name == t.name)
                for (const auto &r : d.rows)
                    if (!sink(r))
                        break;
        return true;
    }
};

// A firm of the oldest layout: documents and firm data as the first version wrote them.
FakeSource oldFirm()
{
    FakeSource s;
    s.table(QStringLiteral("zlecanki"),
            {{"id", Type::Long}, {"Rodzaj", Type::Integer}, {"BANKNR", Type::Integer}, {"data_dokumentu", Type::Date},
             {"KLIENT_NAZWA", Type::Text}, {"wartosc", Type::Currency}, {"STARE_POLE", Type::Text}},
            {{"7", "1", "2", "2001-02-03 00:00:00", "Hurtownia Gęśla", "1995.5000", "x"},
             {"12", "5", "1", "1900-01-00 00:00:00", "ZUS", "-0.0001", "y"}});
    s.table(QStringLiteral("FIRMA"), {{"NAZWA", Type::Text}, {"MIASTO", Type::Text}, {"STAN_KONTA1", Type::Currency}},
            {{"Żółć Sp. z o.o.", "Łódź", "100.2500"}});
    return s;
}

} // namespace

class TestMdbConversion : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup();

    void oldFirmGetsTheFullStructure();
    void settingsOfEachUpgradeStep_data();
    void settingsOfEachUpgradeStep();
    void badFiles_data();
    void badFiles();
    void damagedAccessFiles();
    void readerStreamCut_data();
    void readerStreamCut();
    void realAccessFiles_data();
    void realAccessFiles();
    void importMdbCommand();

private:
    MdbConversion::Result convert(FakeSource &s) { return MdbConversion::convert(s, m_db); }
    std::unique_ptr<TestEnv> m_env;
    QSqlDatabase m_db;
};

void TestMdbConversion::init()
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("conv"));
    m_db.setDatabaseName(QStringLiteral(":memory:"));
    QVERIFY(m_db.open());
}

void TestMdbConversion::cleanup()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("conv"));
}

void TestMdbConversion::oldFirmGetsTheFullStructure()
{
    FakeSource s = oldFirm();
    s.table(QStringLiteral("Kontrahenci"), {{"ID", Type::Long}, {"NAZWA", Type::Text}, {"KOD", Type::Text}, {"WYBRANY", Type::Boolean}},
            {{"3", "Nazwa", "31-000-ZA-DŁUGI", "1"}});
    s.table(QStringLiteral("Notatki"), {{"Kwota", Type::Currency}, {"Kiedy", Type::Date}, {"Tekst", Type::Memo}},
            {{"12.3400", "2020-05-06 07:08:09", "wiersz\r\ndrugi"}, {"NULL", "NULL", "NULL"}});
    const auto r = convert(s);
    QVERIFY2(r.ok, qPrintable(r.error));
    QVERIFY(r.firmTables);
    // Counters keep their numbers, currency is exact, a date out of range becomes Null;
    // columns the old table lacked get what the upgrade gives, unknown columns are left out.
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT ID, RODZAJ, DATA_DOKUMENTU, KLIENT_NAZWA, WARTOSC, Klient_NIP, ZUS_CzyZus "
                                       "FROM ZLECANKI ORDER BY ID")),
             QStringLiteral("7|1|2001-02-03|Hurtownia Gęśla|19955000||0;12|5|NULL|ZUS|-1||0"));
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT count(*) FROM pragma_table_info('ZLECANKI') WHERE name='STARE_POLE'")),
             QStringLiteral("0"));
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT NAZWA, MIASTO, STAN_KONTA1, BANK_NAZWA40 FROM FIRMA")),
             QStringLiteral("Żółć Sp. z o.o.|Łódź|1002500|NULL"));
    // A new document continues after the highest kept number.
    QVERIFY(QSqlQuery(m_db).exec(QStringLiteral("INSERT INTO ZLECANKI (RODZAJ) VALUES (1)")));
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT max(ID) FROM ZLECANKI")), QStringLiteral("13"));
    // Text too long for its column is cut to fit and told; a table of its own is kept as it was.
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT ID, KOD, WYBRANY FROM KONTRAHENCI")), QStringLiteral("3|31-000|1"));
    QVERIFY(r.warnings.join(QLatin1Char('\n')).contains(QLatin1String("ZLECANKI.DATA_DOKUMENTU: 1")));
    QVERIFY(r.warnings.join(QLatin1Char('\n')).contains(QLatin1String("KONTRAHENCI.KOD: 1")));
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT * FROM Notatki")),
             QStringLiteral("123400|2020-05-06 07:08:09|wiersz\r\ndrugi;NULL|NULL|NULL"));
}

void TestMdbConversion::settingsOfEachUpgradeStep_data()
{
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QStringList>("row");
    QTest::addColumn<QString>("expected");
    const QString defaults = QStringLiteral("1|0|0|1|0|0|0");
    const QStringList five = {"Data", "Wstawiany", "Nowe", "CzteryOdcinki", "CzteryNaStronie"};
    QTest::newRow("Szary") << (five + QStringList{"Szary"}) << QStringList{"0", "1", "1", "0", "0", "1"} << defaults;
    QTest::newRow("Eliksir kept") << (five + QStringList{"szary", "ELIKSIR"})
                                  << QStringList{"0", "1", "1", "0", "0", "1", "1"} << QStringLiteral("0|1|1|0|0|1|1");
}

void TestMdbConversion::settingsOfEachUpgradeStep()
{
    QFETCH(QStringList, columns);
    QFETCH(QStringList, row);
    QFETCH(QString, expected);
    FakeSource s = oldFirm();
    QList<QPair<QString, Type>> cols;
    for (const QString &c : columns)
        cols.append({c, c.compare(QLatin1String("Eliksir"), Qt::CaseInsensitive) == 0 ? Type::Integer : Type::Boolean});
    s.table(QStringLiteral("USTAWIENIA"), cols, {row});
    const auto r = convert(s);
    QVERIFY2(r.ok, qPrintable(r.error));
    QCOMPARE(queryRows(m_db, QStringLiteral("SELECT Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, Szary, Eliksir "
                                       "FROM Ustawienia")),
             expected);
}

void TestMdbConversion::badFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("Standard Jet DB, not really");
    QTest::newRow("header and zeros") << (QByteArray("\x00\x01\x00\x00Standard Jet DB\x00", 20) + QByteArray(8192, '\0'));
}

void TestMdbConversion::badFiles()
{
    QFETCH(QByteArray, bytes);
    const QString old = m_env->newPath(QStringLiteral("zly.mdb"));
    QVERIFY(writeFile(old, bytes));
    const QString target = m_env->newPath(QStringLiteral("zly.zlc"));
    const auto r = MdbConversion::convertFile(old, target);
    // Either refused with a message, or read as a file without any table: never a firm.
    QVERIFY(!r.ok ? !r.error.isEmpty() : !r.firmTables && r.rows.isEmpty());
    QCOMPARE(QFile::exists(target), r.ok);
}

// Opened as a firm: the user is asked, then told, and no file appears beside the old one.
void TestMdbConversion::damagedAccessFiles()
{
    const QString shared = qEnvironmentVariable("ZLECANKI_SHARED") + QStringLiteral("/testdata/mdb-damaged/");
    if (!QFile::exists(shared))
        QSKIP("No ../shared/testdata/mdb-damaged/: damaged Access files not checked.");
    // Under the sanitizer build the first one makes libmdb overflow a heap buffer: the
    // reader dies before it can tell more. Elsewhere the library reads on, one entry short.
    for (const auto &[file, told] : {std::pair{"overflows-libmdb.accdb", ""}, {"truncated-table-lost.mdb", "MSysObjects"}}) {
        QTemporaryDir dir;
        const QString old = dir.filePath(QString::fromLatin1(file));
        QVERIFY(QFile::copy(shared + QString::fromLatin1(file), old));
        RecordingDialogs dialogs;
        QCOMPARE(MdbConversion::convertForOpening(old), QString());
        const auto boxes = dialogs.callsOf(QStringLiteral("message"));
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.first().text.startsWith(QStringLiteral("Plik jest uszkodzony lub nie jest bazą Access\n")) &&
                     boxes.first().text.contains(QString::fromLatin1(told)),
                 qPrintable(boxes.first().text));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QString::fromLatin1(file)});
    }
}

void TestMdbConversion::readerStreamCut_data()
{
    QTest::addColumn<int>("cut"); // bytes kept: 0 all, -1 all but the end mark, -2 up to a value in the second row
    QTest::addColumn<QString>("told");
    QTest::newRow("whole") << 0 << QString();
    QTest::newRow("reader ended in a table") << -2 << QStringLiteral("całej tabeli zlecanki.");
    QTest::newRow("reader ended before the end mark") << -1 << QStringLiteral("przed końcem");
}

void TestMdbConversion::readerStreamCut()
{
    QFETCH(int, cut);
    QFETCH(QString, told);
    FakeSource s = oldFirm();
    s.data[0].rows[1][4] = QStringLiteral("ŚRODEK");
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    MdbProcess::write(&s, QString(), out);
    QByteArray stream = out.data();
    if (cut == -1) {
        stream.chop(1);
    } else if (cut == -2) {
        QByteArray marker;
        QDataStream encoder(&marker, QIODevice::WriteOnly);
        encoder << QStringLiteral("ŚRODEK");
        stream.truncate(stream.indexOf(marker) + marker.size());
    }
    QString error;
    auto decoded = MdbProcess::decode(stream, &error);
    if (told.isEmpty()) {
        QVERIFY2(decoded, qPrintable(error));
        const auto r = MdbConversion::convert(*decoded, m_db);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(r.rows, (QList<QPair<QString, qint64>>{{QStringLiteral("zlecanki"), 2}, {QStringLiteral("FIRMA"), 1}}));
        QCOMPARE(queryRows(m_db, QStringLiteral("SELECT KLIENT_NAZWA FROM ZLECANKI WHERE ID=12")), QStringLiteral("ŚRODEK"));
        return;
    }
    QVERIFY(!decoded);
    QVERIFY2(error.startsWith(MdbReader::damagedMessage()) && error.contains(told), qPrintable(error));
}

void TestMdbConversion::realAccessFiles_data()
{
    QTest::addColumn<QString>("path");
    const QDir dir(qEnvironmentVariable("ZLECANKI_SHARED") + QStringLiteral("/testdata/mdb"));
    const auto files = dir.entryInfoList({QStringLiteral("*.mdb"), QStringLiteral("*.accdb")}, QDir::Files);
    for (const QFileInfo &fi : files)
        QTest::newRow(qPrintable(fi.fileName())) << fi.absoluteFilePath();
    if (files.isEmpty())
        QTest::newRow("none") << QString();
}

void TestMdbConversion::realAccessFiles()
{
    QFETCH(QString, path);
    if (path.isEmpty())
        QSKIP("No Access files in ../shared/testdata/mdb/: conversion of real files not checked.");
    auto run = [](const QStringList &args) {
        QProcess p;
        p.start(args.first(), args.mid(1));
        p.waitForFinished(60000);
        return p.readAllStandardOutput();
    };
    const QStringList tables = QString::fromUtf8(run({QStringLiteral("mdb-tables"), QStringLiteral("-1"), path}))
                                   .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (tables.isEmpty())
        QSKIP("mdb-tables (mdbtools) is not installed: nothing to compare with.");
    const QString target = m_env->newPath(QFileInfo(path).completeBaseName() + QStringLiteral(".zlc"));
    const auto r = MdbConversion::convertFile(path, target);
    QVERIFY2(r.ok, qPrintable(r.error));
    QStringList converted;
    for (const auto &[table, count] : r.rows) {
        converted << table;
        const QByteArray marker = "<<wiersz>>";
        const QByteArray exported = run({QStringLiteral("mdb-export"), QStringLiteral("-H"), QStringLiteral("-b"),
                                         QStringLiteral("strip"), QStringLiteral("-R"), QString::fromLatin1(marker), path, table});
        QCOMPARE(count, qint64(exported.count(marker)));
    }
    QCOMPARE(converted, tables);
    // Amounts are exact: the sum of a currency column equals the digits mdb-export prints.
    if (tables.contains(QLatin1String("Order Details"))) {
        qint64 expected = 0;
        for (const QByteArray &line : run({QStringLiteral("mdb-export"), QStringLiteral("-H"), QStringLiteral("-d"),
                                           QStringLiteral("|"), path, QStringLiteral("Order Details")})
                                          .split('\n'))
            if (!line.isEmpty())
                expected += QByteArray(line.split('|').at(2)).replace('.', "").toLongLong();
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("real"));
            db.setDatabaseName(target);
            QVERIFY(db.open());
            QCOMPARE(queryRows(db, QStringLiteral("SELECT sum(UnitPrice) FROM \"Order Details\"")), QString::number(expected));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("real"));
    }
}

void TestMdbConversion::importMdbCommand()
{
    const QString old = qEnvironmentVariable("ZLECANKI_SHARED") + QStringLiteral("/testdata/mdb/nwind.mdb");
    if (!QFile::exists(old))
        QSKIP("No ../shared/testdata/mdb/nwind.mdb: the command line is not checked on a real file.");
    if (!QFile::exists(programPath()))
        QSKIP("The program is not built here (core only): its command line is not checked.");
    const QString target = m_env->newPath(QStringLiteral("z-wiersza-polecen"));
    const TestEnv::Run r = m_env->run({QStringLiteral("import-mdb"), old, target});
    QCOMPARE(r.code, 0);
    QVERIFY2(r.out.contains(QLatin1String("Orders\t830\n")) && r.out.contains(QLatin1String("Order Details\t2155\n")), qPrintable(r.out));
    QCOMPARE(m_env->run({QStringLiteral("import-mdb"), old, target}).code, 1); // never overwrites
}

int main(int argc, char **argv)
{
    // A build without the program (the core alone) reads Access files with this test itself.
    if (argc == 3 && QString::fromLocal8Bit(argv[1]) == MdbProcess::Argument)
        return MdbProcess::serve(QString::fromLocal8Bit(argv[2]));
    QCoreApplication app(argc, argv);
    if (!QFile::exists(programPath()))
        qputenv("ZLECANKI_MDB_READER", QFile::encodeName(QCoreApplication::applicationFilePath()));
    TestMdbConversion test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_mdbconversion.moc"
