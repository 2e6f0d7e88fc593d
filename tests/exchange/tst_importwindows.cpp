#include "AppState.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "app/frmglowna.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "documents/DocumentStore.h"
#include "exchange/ui/frmImport.h"
#include "exchange/ui/frmImportFirm.h"

#include <QCheckBox>
#include <QFile>
#include <QListWidget>
#include <QSqlQuery>
#include <QStringEncoder>
#include <QTest>

#include <memory>

namespace {

// An export file of `count` blocks in Windows-1250 with CR LF lines; `name` is the
// recipient of the first.
QByteArray exportFile(int count, const QString &name = {})
{
    QString text = QStringLiteral("naglowek pliku\r\n");
    for (int n = 0; n < count; ++n) {
        text += QStringLiteral("***\r\n1\r\n2\r\n3\r\n4\r\n5\r\n");
        const QStringList values = {n == 0 && !name.isEmpty() ? name : QStringLiteral("Odbiorca %1").arg(n),
                                    QStringLiteral("cd"), QStringLiteral("Długa 1"),
                                    QStringLiteral("90-001"), QStringLiteral("Łódź"), QStringLiteral("PKO"),
                                    QStringLiteral("12 3456"), QStringLiteral("Faktura=%1").arg(n),
                                    QStringLiteral("%1,50").arg(n), QStringLiteral("05-03-2026")};
        for (const QString &v : values)
            text += QStringLiteral("k=") + v + QStringLiteral("\r\n");
    }
    QStringEncoder cp1250("windows-1250");
    return cp1250(text);
}

// A firm schema of this test on the server, emptied first; empty without a server.
QString serverFirm(int n)
{
    return emptiedServerSchema(QStringLiteral("imp_%1").arg(n));
}

QStringList said(const RecordingDialogs &d)
{
    QStringList out;
    for (const auto &c : d.calls)
        if (c.kind == QLatin1String("message") || c.kind == QLatin1String("question"))
            out << c.text.section(QLatin1Char('\n'), 0, 0);
    return out;
}

// A firm import: where from ("firm", "server", "same", "text", "view", "rule", "nwind") into the open
// firm ("file" or "server"), the categories ticked (a digit each), OK pressed `runs` times; the first lines of
// every box, in order; then the firm's name and the rows of ZLECANKI, CYKLICZNE and KONTRAHENCI.
struct Import {
    QString source, target, ticked;
    int runs;
    QStringList said;
    QString counts;
};

} // namespace

Q_DECLARE_METATYPE(Import)

class TestImportWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void exportFileTakenOverAndRemoved();
    void firmImport_data();
    void firmImport();

private:
    QString m_source;
    QString m_serverSource; // the same firm on the server, when there is one
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    std::unique_ptr<frmglowna> m_window;
    int m_files = 0;
};

void TestImportWindows::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    initPaths();
    // A firm to import from, as a file and (with a server) on the server: its data, two
    // documents (their recipient joins the contractors) and a scheduled payment.
    RecordingDialogs quiet;
    m_source = m_env->newPath(QStringLiteral("zrodlo.zlc"));
    m_serverSource = serverFirm(0);
    for (const QString &at : {m_source, m_serverSource}) {
        if (at.isEmpty())
            continue;
        QVERIFY(openNewFirm(at, sampleFirm()));
        for (int kind : {1, 3}) {
            PaymentDocument doc = sampleDocument(kind);
            QVERIFY(DocumentStore::insert(Db(), doc));
        }
        QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("INSERT INTO CYKLICZNE (NAZWA, RODZAJ, WARTOSC) VALUES ('Czynsz', 1, 5000000)")));
        CloseDb();
    }
}

void TestImportWindows::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("cel%1.zlc").arg(++m_files))));
    m_window = std::make_unique<frmglowna>();
    m_window->show();
    m_window->LoadFirma();
    m_dialogs->clear();
}

void TestImportWindows::cleanup()
{
    m_window->closeAllWindows();
    m_window.reset();
    CloseDb();
    m_dialogs.reset();
}

void TestImportWindows::exportFileTakenOverAndRemoved()
{
    const QString name = QStringLiteral("Przedsiębiorstwo Handlowo-Usługowe Gęśla i Synowie Spółka Jawna");
    const QString path = appState().suiteRoot + QStringLiteral("PL.EXP");
    QVERIFY(writeFile(path, exportFile(5, name)));
    // A ZUS payment being written has no place for a transfer's values.
    m_window->command(QStringLiteral("mnuzlecanki_4"))->trigger();
    QWidget *zus = m_window->childWindow(QStringLiteral("frmprzelew_5"));
    QVERIFY(zus);

    m_dialogs->files << m_env->newPath(QStringLiteral("nie-ma.EXP")) << path;
    m_window->command(QStringLiteral("mnuimport"))->trigger();
    QWidget *w = m_window->childWindow(QStringLiteral("frmImport"));
    QVERIFY(w);
    QTRY_COMPARE(m_dialogs->callsOf(QStringLiteral("open")).size(), 1);
    QCOMPARE(said(*m_dialogs), QStringList{"Nie ma takiego pliku"});
    click(w, QStringLiteral("cmdImport"));
    auto *list = child<QListWidget>(w, QStringLiteral("lstdok"));
    QCOMPARE(list->count(), 5);

    click(w, QStringLiteral("cmdpokaz"));
    QCOMPARE(m_dialogs->beeps, 1);
    list->setCurrentRow(0);
    child<QCheckBox>(w, QStringLiteral("chkusun"))->setChecked(true);
    click(w, QStringLiteral("cmdpokaz"));
    QCOMPARE(child<QLineEdit>(zus, QStringLiteral("txtnazwa"))->text(), QString());
    QWidget *entry = m_window->childWindow(QStringLiteral("frmprzelew_1"));
    QVERIFY(entry);
    QCOMPARE(QStringList({child<QLineEdit>(entry, QStringLiteral("txtnazwa"))->text(),
                          child<QLineEdit>(entry, QStringLiteral("txtmiasto"))->text(),
                          child<QLineEdit>(entry, QStringLiteral("txtzadokument"))->text(),
                          child<QLineEdit>(entry, QStringLiteral("txtwartosc"))->text()}),
             QStringList({name, "Łódź", "Faktura=0", "0,50"}));
    // The name is taken whole: too long for its field, it is told and cannot be saved.
    QVERIFY2(m_dialogs->saw(QStringLiteral("Tekst w polu Nazwa jest za długi: pole mieści najwyżej 50 znaków.")),
             qPrintable(said(*m_dialogs).join(QLatin1Char('\n'))));
    // Blocks 0, 2 and 4 left the file; the list lost one entry.
    QCOMPARE(list->count(), 4);
    const QByteArray left = readFile(path);
    QVERIFY(left.count("***") == 2 && left.contains("Odbiorca 1") && left.contains("Odbiorca 3"));

    while (list->count() > 0) {
        list->setCurrentRow(0);
        click(w, QStringLiteral("cmdusun"));
    }
    QVERIFY(!QFile::exists(path));
}

void TestImportWindows::firmImport_data()
{
    QTest::addColumn<Import>("c");
    const QString question = QStringLiteral("Import skasuje wszystkie aktualne dane z wybranych kategorii.");
    const QString ok = QStringLiteral("Import zakończono pomyślnie");
    const QStringList done{question, ok}, same{"Nie można importować z tej samej firmy"},
        twice{question, ok, question, "Próbujesz importować do bazy która zawiera jakieś dane.", "Import zakończono z błędami"},
        refused{"Baza danych zawiera obiekty, które mogłyby zmieniać albo podmieniać dane programu, i nie zostanie użyta:"};
    const QString all = QStringLiteral("Zakład Ślusarski Żółć|2|1|1"), empty = QStringLiteral("|0|0|0");
    QTest::newRow("all into an empty firm") << Import{"firm", "file", "1111", 1, done, all};
    QTest::newRow("into a firm on the server") << Import{"firm", "server", "1111", 1, done, all};
    QTest::newRow("server to server, documents twice") << Import{"server", "server", "0100", 2, twice, "|2|0|0"};
    QTest::newRow("same firm on the server, other letter case") << Import{"same", "server", "1111", 1, same, empty};
    QTest::newRow("same firm, other letter case") << Import{"same", "file", "1111", 1, same, empty};
    QTest::newRow("not a database") << Import{"text", "file", "1111", 1, QStringList{"Nie można otworzyć bazy danych:"}, empty};
    QTest::newRow("source with a view in a table's place") << Import{"view", "file", "1111", 1, refused, empty};
    QTest::newRow("server source with a rule on a table") << Import{"rule", "file", "1111", 1, refused, empty};
    const QStringList notFirm{"Plik nie jest bazą firmy programu Zlecanki (nie ma w nim tabel ZLECANKI ani FIRMA):"};
    QTest::newRow("Access file of another program") << Import{"nwind", "file", "1111", 1, notFirm, empty};
}

void TestImportWindows::firmImport()
{
    QFETCH(Import, c);
    const auto &[source, target, ticked, runs, said, counts] = c;
    if ((source == QLatin1String("server") || source == QLatin1String("rule") || target == QLatin1String("server")) && testServer().isEmpty())
        QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG");
    if (target == QLatin1String("server")) {
        const QString address = serverFirm(m_files);
        QString error;
        QVERIFY2(FirmDatabase::create(address, &error), qPrintable(error));
        QVERIFY(OpenDb(address));
        m_window->LoadFirma();
        m_dialogs->clear();
    }
    QString file = m_source;
    if (source == QLatin1String("server")) {
        file = m_serverSource;
    } else if (source == QLatin1String("rule")) {
        file = serverFirm(1000 + m_files);
        QVERIFY(FirmDatabase::create(file, nullptr));
        bool readOnly = false;
        QVERIFY(QSqlQuery(*FirmDatabase::open(file, QStringLiteral("regula"), &readOnly, nullptr))
                    .exec(QStringLiteral("CREATE RULE podmiana AS ON INSERT TO kontrahenci DO INSTEAD NOTHING")));
        FirmDatabase::close(QStringLiteral("regula"));
    } else if (source == QLatin1String("same")) {
        // The file, or the firm's schema, in other letter case.
        file = firmFile();
        const qsizetype from = Dialect::isAddress(file) ? file.indexOf(QLatin1String("schema=")) + 7 : 0;
        file = file.left(from) + file.mid(from).toUpper();
    } else if (source == QLatin1String("text")) {
        file = m_env->newPath(QStringLiteral("tekst%1.zlc").arg(m_files));
        QVERIFY(writeFile(file, QByteArray(4096, 'x')));
    } else if (source == QLatin1String("view")) {
        file = m_env->newPath(QStringLiteral("widok%1.zlc").arg(m_files));
        QVERIFY(createFirm(file, {"DROP TABLE KONTRAHENCI", "CREATE VIEW KONTRAHENCI AS SELECT * FROM ZLECANKI"}));
    } else if (source == QLatin1String("nwind")) {
        file = qEnvironmentVariable("ZLECANKI_SHARED") + QStringLiteral("/testdata/mdb/nwind.mdb");
        if (!QFile::exists(file))
            QSKIP("No ../shared/testdata/mdb/nwind.mdb: an Access source is not checked.");
    }
    m_dialogs->files << file;
    m_window->command(QStringLiteral("mnuImportWin"))->trigger();
    QWidget *w = m_window->childWindow(QStringLiteral("frmImportFirm"));
    QVERIFY(w);
    click(w, QStringLiteral("cmdSzukaj"));
    QCOMPARE(child<QLineEdit>(w, QStringLiteral("txtPlik"))->text(), file);
    for (int i = 0; i < 4; ++i)
        child<QCheckBox>(w, QStringLiteral("chkImport_%1").arg(i))->setChecked(ticked.at(i) == QLatin1Char('1'));
    for (int i = 0; i < runs; ++i)
        click(w, QStringLiteral("cmdOK"));
    QCOMPARE(::said(*m_dialogs), said);
    QCOMPARE(stored(QStringLiteral("SELECT (SELECT coalesce(max(NAZWA),'') FROM FIRMA) || '|' || (SELECT count(*) FROM ZLECANKI)"
                                   " || '|' || (SELECT count(*) FROM CYKLICZNE) || '|' || (SELECT count(*) FROM KONTRAHENCI)")),
             counts);
    // The firm's caption follows its imported data.
    if (ticked.at(0) == QLatin1Char('1') && said.last() == QLatin1String("Import zakończono pomyślnie"))
        QVERIFY(m_window->windowTitle().contains(QLatin1String("Zakład Ślusarski Żółć")));
}

QTEST_MAIN(TestImportWindows)
#include "tst_importwindows.moc"
