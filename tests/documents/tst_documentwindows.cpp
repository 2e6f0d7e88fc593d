#include "Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "db/FirmDatabase.h"
#include "documents/Accounts.h"
#include "documents/ContractorStore.h"
#include "documents/FirmData.h"
#include "documents/frmKontrahenci.h"
#include "documents/frmfirma.h"
#include "frmglowna.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTest>

#include <memory>

namespace {

template <typename T = QWidget>
T *child(QWidget *window, const QString &name)
{
    T *w = window->findChild<T *>(name);
    if (!w)
        qFatal("no control %s", qPrintable(name));
    return w;
}

void setText(QWidget *window, const QString &name, const QString &text)
{
    child<QLineEdit>(window, name)->setText(text);
}

QString text(QWidget *window, const QString &name)
{
    return child<QLineEdit>(window, name)->text();
}

void click(QWidget *window, const QString &name)
{
    child<QPushButton>(window, name)->click();
}

QVariant stored(const QString &sql)
{
    QSqlQuery q(Db());
    if (!q.exec(sql) || !q.next())
        return QStringLiteral("<brak>");
    return q.value(0);
}

QStringList listed(QWidget *dictionary)
{
    QStringList names;
    auto *list = child<QListWidget>(dictionary, QStringLiteral("lstkontrahent"));
    for (int i = 0; i < list->count(); ++i)
        names << list->item(i)->text();
    return names;
}

qint32 addContractor(const QString &nazwa, const QString &nazwa1, const QString &miasto, const QString &ulica = {})
{
    Contractor c;
    c.nazwa = nazwa;
    c.nazwa1 = nazwa1;
    c.miasto = miasto;
    c.ulica = ulica;
    c.bankNazwa = QStringLiteral("Bank");
    c.bankKonto = QStringLiteral("00 1111");
    return ContractorStore::insert(Db(), c).value();
}

} // namespace

class TestDocumentWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup();

    void firmWindowStoresEverything();
    void firmWindowKeepsWhatItDidNotChange();
    void firmWindowRefusesBadInput_data();
    void firmWindowRefusesBadInput();
    void postalCodeCheckedOnLeaving_data();
    void postalCodeCheckedOnLeaving();
    void contractorsUpkeep();
    void contractorRequiredFields_data();
    void contractorRequiredFields();
    void choosing_data();
    void choosing();
    void search_data();
    void search();
    void menuCommandsOpenWindows();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    int m_files = 0;
};

void TestDocumentWindows::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    const QString path = m_env->newPath(QStringLiteral("okna%1.zlc").arg(++m_files));
    QString error;
    QVERIFY2(FirmDatabase::create(path, &error), qPrintable(error));
    QVERIFY(OpenDb(path));
    m_dialogs->clear();
}

void TestDocumentWindows::cleanup()
{
    CloseDb();
    m_dialogs.reset();
}

void TestDocumentWindows::firmWindowStoresEverything()
{
    frmfirma w;
    w.show();
    QSignalSpy saved(&w, &frmfirma::saved);
    QVERIFY(child<QLineEdit>(&w, QStringLiteral("txtnazwa"))->isReadOnly());
    click(&w, QStringLiteral("cmdzmien"));
    QVERIFY(w.isEditing());
    setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Usługi Łukasz Żak"));
    setText(&w, QStringLiteral("txtkod"), QStringLiteral("90-001"));
    setText(&w, QStringLiteral("txtNIP"), QStringLiteral("123-45-67-890"));
    setText(&w, QStringLiteral("txtnazwaskrocona"), QStringLiteral("Ł. Żak"));
    child<QComboBox>(&w, QStringLiteral("lstTypIdentZus"))->setCurrentIndex(2);     // "1 - Dowód osobisty"
    child<QComboBox>(&w, QStringLiteral("lstTypIdentPodatki"))->setCurrentIndex(3); // the same type here
    setText(&w, QStringLiteral("txtbank_2"), QStringLiteral("Bank trzeci"));
    setText(&w, QStringLiteral("txtstan_2"), QStringLiteral("1 234,56"));

    // Two accounts of the list edited one after the other: both are kept.
    auto *lstBank = child<QListWidget>(&w, QStringLiteral("lstBank"));
    QCOMPARE(lstBank->count(), 30);
    lstBank->setCurrentRow(29);
    QCOMPARE(lstBank->currentItem()->text(), QStringLiteral("Bank 40"));
    setText(&w, QStringLiteral("txtbank11"), QStringLiteral("Bank czterdziesty"));
    setText(&w, QStringLiteral("txtstan11"), QStringLiteral("40"));
    lstBank->setCurrentRow(0);
    setText(&w, QStringLiteral("txtbank11"), QStringLiteral("Bank jedenasty"));
    click(&w, QStringLiteral("cmdok"));

    QVERIFY2(m_dialogs->calls.isEmpty(), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(!w.isEditing());
    QCOMPARE(saved.size(), 1);
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM firma")).toInt(), 1);
    QCOMPARE(stored(QStringLiteral("SELECT NAZWA || '|' || KOD || '|' || firma_NIP || '|' || NAZWA_SKROCONA FROM firma"))
                 .toString(),
             QStringLiteral("Usługi Łukasz Żak|90-001|123-45-67-890|Ł. Żak"));
    QCOMPARE(stored(QStringLiteral("SELECT TYPIDENTZUS FROM firma")).toInt(), 2);
    QCOMPARE(stored(QStringLiteral("SELECT TYPIDENTPOD FROM firma")).toInt(), 3);
    QCOMPARE(stored(QStringLiteral("SELECT BANK_NAZWA3 FROM firma")).toString(), QStringLiteral("Bank trzeci"));
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA3 FROM firma")).toLongLong(), 12345600);
    QCOMPARE(stored(QStringLiteral("SELECT BANK_NAZWA11 FROM firma")).toString(), QStringLiteral("Bank jedenasty"));
    QCOMPARE(stored(QStringLiteral("SELECT BANK_NAZWA40 FROM firma")).toString(), QStringLiteral("Bank czterdziesty"));
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA40 FROM firma")).toLongLong(), 400000);
    // The in-memory list follows the save.
    QCOMPARE(Accounts::list()[39].bankName, QStringLiteral("Bank czterdziesty"));
    QCOMPARE(Accounts::list()[2].balance.kwota(), QStringLiteral("1 234,56"));
}

void TestDocumentWindows::firmWindowKeepsWhatItDidNotChange()
{
    FirmData firm;
    firm.nazwa = QStringLiteral("Firma");
    firm.accounts[0] = {QStringLiteral("Pierwszy"), QStringLiteral("11"), Money::fromZlote(1000)};
    firm.accounts[39] = {QStringLiteral("Czterdziesty"), QStringLiteral("40 4000"), Money::fromGrosze(4099)};
    QVERIFY(FirmStore::save(Db(), firm, {}));

    frmfirma w;
    w.show();
    child<QListWidget>(&w, QStringLiteral("lstBank"))->setCurrentRow(29);
    QCOMPARE(text(&w, QStringLiteral("txtbank11")), QStringLiteral("Czterdziesty"));
    QCOMPARE(text(&w, QStringLiteral("txtkonto11")), QStringLiteral("40 4000"));
    QCOMPARE(text(&w, QStringLiteral("txtstan11")), QStringLiteral("40,99"));

    // A document charges account 1 while the firm data is being edited: saving the
    // firm data with that balance untouched keeps the charge.
    click(&w, QStringLiteral("cmdzmien"));
    QVERIFY(Accounts::charge(Db(), 1, Money::fromZlote(150)));
    setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Firma nowa"));
    click(&w, QStringLiteral("cmdok"));
    QCOMPARE(stored(QStringLiteral("SELECT NAZWA FROM firma")).toString(), QStringLiteral("Firma nowa"));
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA1 FROM firma")).toLongLong(), 850 * Money::Scale);
    QCOMPARE(text(&w, QStringLiteral("txtstan_0")), QStringLiteral("850,00"));

    // Abandoning an edit leaves everything as it was.
    click(&w, QStringLiteral("cmdzmien"));
    setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Porzucona"));
    click(&w, QStringLiteral("cmdanuluj"));
    QCOMPARE(text(&w, QStringLiteral("txtnazwa")), QStringLiteral("Firma nowa"));
    QCOMPARE(stored(QStringLiteral("SELECT NAZWA FROM firma")).toString(), QStringLiteral("Firma nowa"));
}

void TestDocumentWindows::firmWindowRefusesBadInput_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("message");
    QTest::newRow("postal code") << "txtkod" << "00950" << "'00950' nie jest kodem pocztowym.";
    QTest::newRow("NIP") << "txtNIP" << "1234567890" << "'1234567890' nie jest numerem NIP-u.";
    QTest::newRow("balance on a page not in view") << "txtstan_9" << "12,3x" << "'12,3x' nie jest kwotą.";
    QTest::newRow("balance of the list") << "txtstan11" << "1,2,3" << "'1,2,3' nie jest kwotą.";
}

void TestDocumentWindows::firmWindowRefusesBadInput()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, message);
    frmfirma w;
    w.show();
    click(&w, QStringLiteral("cmdzmien"));
    setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Nie zapisana"));
    setText(&w, field, value);
    click(&w, QStringLiteral("cmdok"));
    QVERIFY2(m_dialogs->saw(message), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(w.isEditing());
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM firma")).toInt(), 0);
    // The page holding the wrong field is the one in view.
    auto *tabs = child<QTabWidget>(&w, QStringLiteral("zakladki"));
    QVERIFY(tabs->currentWidget()->isAncestorOf(child(&w, field)));
}

void TestDocumentWindows::postalCodeCheckedOnLeaving_data()
{
    QTest::addColumn<bool>("firm"); // the firm window, else the contractors
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("wrong");
    QTest::newRow("firm, wrong") << true << "123456" << true;
    QTest::newRow("firm, right") << true << "12-345" << false;
    QTest::newRow("contractor, wrong") << false << "1-2345" << true;
    QTest::newRow("contractor, letters kept out") << false << "12-3a45" << false;
}

void TestDocumentWindows::postalCodeCheckedOnLeaving()
{
    QFETCH(bool, firm);
    QFETCH(QString, typed);
    QFETCH(bool, wrong);
    std::unique_ptr<QWidget> w;
    if (firm)
        w = std::make_unique<frmfirma>();
    else
        w = std::make_unique<frmKontrahenci>();
    w->show();
    click(w.get(), firm ? QStringLiteral("cmdzmien") : QStringLiteral("cmdnowy"));
    auto *kod = child<QLineEdit>(w.get(), QStringLiteral("txtkod"));
    QTest::keyClicks(kod, typed);
    QTest::keyClick(kod, Qt::Key_Return);
    QCOMPARE(m_dialogs->saw(QStringLiteral("nie jest kodem pocztowym")), wrong);
}

void TestDocumentWindows::contractorsUpkeep()
{
    frmKontrahenci w;
    w.show();
    for (const QString &name : {QStringLiteral("Zenon"), QStringLiteral("Łąka"), QStringLiteral("apteka")}) {
        click(&w, QStringLiteral("cmdnowy"));
        setText(&w, QStringLiteral("txtnazwa"), name);
        setText(&w, QStringLiteral("txtkod"), QStringLiteral("00-950"));
        setText(&w, QStringLiteral("txtbank"), QStringLiteral("PKO"));
        setText(&w, QStringLiteral("txtkonto"), QStringLiteral("12 3456"));
        click(&w, QStringLiteral("cmdok"));
        QVERIFY(!w.isEditing());
    }
    QVERIFY(m_dialogs->calls.isEmpty());
    // In the order of the Polish alphabet, letter case aside.
    QCOMPARE(listed(&w), (QStringList{"apteka", "Łąka", "Zenon"}));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci WHERE KOD='00-950'")).toInt(), 3);

    // A click shows a contractor; a change is stored.
    auto *list = child<QListWidget>(&w, QStringLiteral("lstkontrahent"));
    list->setCurrentRow(1);
    QCOMPARE(text(&w, QStringLiteral("txtnazwa")), QStringLiteral("Łąka"));
    click(&w, QStringLiteral("cmdzmien"));
    setText(&w, QStringLiteral("txtmiasto"), QStringLiteral("Gdańsk"));
    click(&w, QStringLiteral("cmdok"));
    QCOMPARE(stored(QStringLiteral("SELECT MIASTO FROM kontrahenci WHERE NAZWA='Łąka'")).toString(),
             QStringLiteral("Gdańsk"));

    // Deleting asks first; No keeps the contractor.
    m_dialogs->answers = {false, true};
    click(&w, QStringLiteral("cmdusun"));
    QCOMPARE(listed(&w).size(), 3);
    click(&w, QStringLiteral("cmdusun"));
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("question")).size(), 2);
    QVERIFY(m_dialogs->callsOf(QStringLiteral("question")).first().text.contains(QStringLiteral("Łąka")));
    QCOMPARE(listed(&w), (QStringList{"apteka", "Zenon"}));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")).toInt(), 2);
    QCOMPARE(text(&w, QStringLiteral("txtnazwa")), QString());

    // A document saved for a new recipient shows up in the open dictionary.
    addContractor(QStringLiteral("Bogdan"), {}, {});
    QCOMPARE(listed(&w), (QStringList{"apteka", "Bogdan", "Zenon"}));
}

void TestDocumentWindows::contractorRequiredFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("message");
    QTest::newRow("no name") << "txtnazwa" << "  " << "To pole nie może być puste";
    QTest::newRow("no bank") << "txtbank" << "" << "To pole nie może być puste";
    QTest::newRow("no account") << "txtkonto" << "" << "To pole nie może być puste";
    QTest::newRow("wrong NIP") << "txtNIP" << "123-456-7890-" << "nie jest numerem NIP-u.";
    QTest::newRow("wrong postal code") << "txtkod" << "00-9a0" << "nie jest kodem pocztowym.";
}

void TestDocumentWindows::contractorRequiredFields()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, message);
    frmKontrahenci w;
    w.show();
    click(&w, QStringLiteral("cmdnowy"));
    setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Kowalski"));
    setText(&w, QStringLiteral("txtbank"), QStringLiteral("PKO"));
    setText(&w, QStringLiteral("txtkonto"), QStringLiteral("12"));
    setText(&w, field, value);
    click(&w, QStringLiteral("cmdok"));
    QVERIFY2(m_dialogs->saw(message), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(w.isEditing());
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")).toInt(), 0);
}

void TestDocumentWindows::choosing_data()
{
    QTest::addColumn<QString>("situation");
    QTest::addColumn<bool>("taken");
    QTest::newRow("contractor shown") << "shown" << true;
    QTest::newRow("double click") << "double click" << true;
    QTest::newRow("edit unsaved") << "editing" << false;
    QTest::newRow("nothing shown") << "nothing" << false;
    QTest::newRow("nobody asked") << "no opener" << false;
    QTest::newRow("asking window closed") << "opener gone" << false;
}

void TestDocumentWindows::choosing()
{
    QFETCH(QString, situation);
    QFETCH(bool, taken);
    const qint32 id = addContractor(QStringLiteral("Hurtownia"), QStringLiteral("Oddział"), QStringLiteral("Łódź"));
    auto opener = std::make_unique<QWidget>();
    QList<Contractor> received;
    frmKontrahenci w;
    w.show();
    if (situation != QLatin1String("no opener"))
        w.chooseFor(opener.get(), [&received](const Contractor &c) { received << c; });
    if (situation != QLatin1String("nothing"))
        QVERIFY(w.showContractor(id));
    if (situation == QLatin1String("editing")) {
        click(&w, QStringLiteral("cmdzmien"));
        setText(&w, QStringLiteral("txtnazwa"), QStringLiteral("Hurtownia 2"));
    }
    if (situation == QLatin1String("opener gone"))
        opener.reset();

    if (situation == QLatin1String("double click")) {
        auto *list = child<QListWidget>(&w, QStringLiteral("lstkontrahent"));
        Q_EMIT list->itemDoubleClicked(list->currentItem());
    } else {
        click(&w, QStringLiteral("cmdwybierz"));
    }

    QCOMPARE(received.size(), taken ? 1 : 0);
    QCOMPARE(m_dialogs->beeps, taken ? 0 : 1);
    QCOMPARE(w.isVisible(), !taken);
    if (taken) {
        QCOMPARE(received.first().id, id);
        QCOMPARE(received.first().nazwa1, QStringLiteral("Oddział"));
        QCOMPARE(received.first().miasto, QStringLiteral("Łódź"));
        QCOMPARE(received.first().bankKonto, QStringLiteral("00 1111"));
    }
    if (situation == QLatin1String("editing"))
        QCOMPARE(text(&w, QStringLiteral("txtnazwa")), QStringLiteral("Hurtownia 2"));
}

void TestDocumentWindows::search_data()
{
    QTest::addColumn<int>("criterion");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown"); // the contractors shown by successive presses
    QTest::newRow("name, second line too") << 0 << "oddział" << QStringList{"Adam", "Źródło"};
    QTest::newRow("town, other letter case") << 2 << "łódź" << QStringList{"Adam", "Źródło"};
    QTest::newRow("street with a quote") << 1 << "o'har" << QStringList{"Bogdan"};
    QTest::newRow("nothing") << 3 << "999" << QStringList{};
}

void TestDocumentWindows::search()
{
    QFETCH(int, criterion);
    QFETCH(QString, text);
    QFETCH(QStringList, shown);
    addContractor(QStringLiteral("Źródło"), QStringLiteral("ODDZIAŁ 1"), QStringLiteral("ŁÓDŹ"));
    addContractor(QStringLiteral("Bogdan"), QString(), QStringLiteral("Kraków"), QStringLiteral("ul. O'Hary 2"));
    addContractor(QStringLiteral("Adam"), QStringLiteral("Oddział"), QStringLiteral("Łódź"));
    frmKontrahenci w;
    w.show();
    click(&w, QStringLiteral("cmdSzukaj"));
    auto *find = child(&w, QStringLiteral("frmSzukaj"));
    QVERIFY(find->isVisible());
    setText(find, QStringLiteral("txtSzukaj"), text);
    child<QRadioButton>(find, QStringLiteral("optkryterium_") + QString::number(criterion))->setChecked(true);
    for (int round = 0; round < 2; ++round) { // past the last match it starts again
        for (const QString &name : shown) {
            click(find, QStringLiteral("cmdnastepny"));
            QCOMPARE(::text(&w, QStringLiteral("txtnazwa")), name);
            QCOMPARE(child<QListWidget>(&w, QStringLiteral("lstkontrahent"))->currentItem()->text(), name);
        }
        m_dialogs->clear();
        click(find, QStringLiteral("cmdnastepny"));
        QCOMPARE(m_dialogs->calls.size(), 1);
        QCOMPARE(m_dialogs->calls.first().text, QStringLiteral("Brak szukanego tekstu"));
    }
}

void TestDocumentWindows::menuCommandsOpenWindows()
{
    frmglowna main;
    main.show();
    main.LoadFirma();
    main.command(QStringLiteral("mnufirmadane"))->trigger();
    auto *firm = main.childWindow(QStringLiteral("frmfirma"));
    QVERIFY(firm);
    click(firm, QStringLiteral("cmdzmien"));
    setText(firm, QStringLiteral("txtnazwa"), QStringLiteral("Piekarnia Złoty Kłos"));
    click(firm, QStringLiteral("cmdok"));
    QVERIFY2(main.windowTitle().contains(QStringLiteral("Piekarnia Złoty Kłos")), qPrintable(main.windowTitle()));

    main.command(QStringLiteral("mnukontrahenci"))->trigger();
    QVERIFY(main.childWindow(QStringLiteral("frmKontrahenci")));

    // A window of the work area asking for a contractor gets the dictionary already open.
    const qint32 id = addContractor(QStringLiteral("Młyn"), {}, {});
    qint32 received = 0;
    auto *dictionary = frmKontrahenci::openForChoosing(firm, [&received](const Contractor &c) { received = c.id; });
    QCOMPARE(dictionary, main.childWindow(QStringLiteral("frmKontrahenci")));
    QCOMPARE(main.mdiArea()->subWindowList().size(), 2);
    QVERIFY(dictionary->showContractor(id));
    click(dictionary, QStringLiteral("cmdwybierz"));
    QCOMPARE(received, id);
    m_dialogs->defaultAnswer = true;
    main.closeAllWindows();
}

QTEST_MAIN(TestDocumentWindows)
#include "tst_documentwindows.moc"
