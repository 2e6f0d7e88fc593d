#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/Accounts.h"
#include "documents/ContractorStore.h"
#include "documents/Firm.h"
#include "documents/ui/frmKontrahenci.h"
#include "documents/ui/frmfirma.h"

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

namespace {

QString text(QWidget *window, const QString &name)
{
    return child<QLineEdit>(window, name)->text();
}

QStringList listed(QWidget *dictionary)
{
    QStringList names;
    auto *list = child<QListWidget>(dictionary, QStringLiteral("lstkontrahent"));
    for (int i = 0; i < list->count(); ++i)
        names << list->item(i)->text();
    return names;
}

// The firm window or the contractors dictionary, shown and with a new entry or change begun.
std::unique_ptr<QWidget> openEditing(bool firm)
{
    std::unique_ptr<QWidget> w;
    if (firm)
        w = std::make_unique<frmfirma>();
    else
        w = std::make_unique<frmKontrahenci>();
    w->show();
    click(w.get(), firm ? QStringLiteral("cmdzmien") : QStringLiteral("cmdnowy"));
    return w;
}

} // namespace

class TestDocumentWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void firmWindowStoresEverything();
    void fieldChecks_data();
    void fieldChecks();
    void contractorsUpkeep();

private:
    TestEnv m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
};

void TestDocumentWindows::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    QVERIFY(openNewFirm(m_env.newPath(QStringLiteral("okna.zlc"))));
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
    click(&w, QStringLiteral("cmdzmien"));
    fill(&w, {{"txtnazwa", "Usługi Łukasz Żak"}, {"txtkod", "90-001"}, {"txtNIP", "526-02-50-995"},
              {"txtnazwaskrocona", "Ł. Żak"}, {"txtbank_2", "Bank trzeci"}, {"txtstan_2", "1 234,56"}});
    child<QComboBox>(&w, QStringLiteral("lstTypIdentZus"))->setCurrentIndex(2);     // "1 - Dowód osobisty"
    child<QComboBox>(&w, QStringLiteral("lstTypIdentPodatki"))->setCurrentIndex(3); // the same type here

    // Two accounts of the list edited one after the other: both are kept.
    auto *lstBank = child<QListWidget>(&w, QStringLiteral("lstBank"));
    lstBank->setCurrentRow(29);
    fill(&w, {{"txtbank11", "Bank czterdziesty"}, {"txtstan11", "40"}});
    lstBank->setCurrentRow(0);
    fill(&w, {{"txtbank11", "Bank jedenasty"}});
    click(&w, QStringLiteral("cmdok"));

    QVERIFY2(m_dialogs->calls.isEmpty(), qPrintable(m_dialogs->calls.value(0).text));
    QCOMPARE(stored(QStringLiteral("SELECT NAZWA || '|' || KOD || '|' || firma_NIP || '|' || NAZWA_SKROCONA || '|' || "
                                   "TYPIDENTZUS || '|' || TYPIDENTPOD FROM firma")),
             QStringLiteral("Usługi Łukasz Żak|90-001|526-02-50-995|Ł. Żak|2|3"));
    QCOMPARE(stored(QStringLiteral("SELECT BANK_NAZWA3 || '|' || STAN_KONTA3 || '|' || BANK_NAZWA11 || '|' || "
                                   "BANK_NAZWA40 || '|' || STAN_KONTA40 FROM firma")),
             QStringLiteral("Bank trzeci|12345600|Bank jedenasty|Bank czterdziesty|400000"));

    // A document charges account 3 while the firm data is being edited: saving the
    // firm data with that balance untouched keeps the charge.
    click(&w, QStringLiteral("cmdzmien"));
    QVERIFY(Accounts::charge(Db(), 3, Money::fromZlote(150)));
    fill(&w, {{"txtnazwa", "Firma nowa"}});
    click(&w, QStringLiteral("cmdok"));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) || '|' || NAZWA || '|' || STAN_KONTA3 FROM firma")),
             QStringLiteral("1|Firma nowa|10845600"));
    QCOMPARE(text(&w, QStringLiteral("txtstan_2")), QStringLiteral("1 084,56"));

    // A balance typed and saved at once with Alt+O is stored as leaving the field shows it.
    QApplication::setActiveWindow(&w);
    QVERIFY(QTest::qWaitForWindowActive(&w));
    click(&w, QStringLiteral("cmdzmien"));
    child<QTabWidget>(&w, QStringLiteral("zakladki"))->setCurrentIndex(2);
    auto *stan = child<QLineEdit>(&w, QStringLiteral("txtstan_0"));
    stan->setFocus();
    stan->selectAll();
    QTest::keyClicks(stan, QStringLiteral("10,005"));
    QTest::keyClick(stan, Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(!w.isEditing());
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA1 FROM firma")), QStringLiteral("100100"));
    QCOMPARE(stan->text(), QStringLiteral("10,01"));
}

// The firm window (else the contractors), a field and its value, typed and left with Enter
// (else set and saved with OK), what the user is told, and whether it is a check digit the
// user may overrule on saving.
using Check = std::tuple<bool, QString, QString, bool, QString, bool>;
Q_DECLARE_METATYPE(Check)

void TestDocumentWindows::fieldChecks_data()
{
    QTest::addColumn<Check>("row");
    const char *account = "Numer rachunku ma błędne cyfry kontrolne";
    QTest::newRow("firm postal code, left") << Check{true, "txtkod", "123456", true, "nie jest kodem", false};
    QTest::newRow("balance on a page not in view")
        << Check{true, "txtstan_9", "12,3x", false, "'12,3x' nie jest kwotą.", false};
    QTest::newRow("contractor without name") << Check{false, "txtnazwa", "  ", false, "nie może być puste", false};
    QTest::newRow("contractor NIP") << Check{false, "txtNIP", "123-456-7890-", false, "numerem NIP-u.", false};
    QTest::newRow("contractor account")
        << Check{false, "txtkonto", "61 1090 1014 0000 0712 1981 2875", true, account, true};
    QTest::newRow("firm account in the list")
        << Check{true, "txtkonto11", "61109010140000071219812875", true, account, true};
    // Checked against the NIP typed in the same window.
    QTest::newRow("firm NRS of another NIP")
        << Check{true, "txtRachunekNrs", "31 6000 0002 0260 0111 1111 1111", true, "składkowego to nie NIP firmy", true};
    QTest::newRow("firm PESEL for taxes")
        << Check{true, "txtIdentyfikatorPodatki", "44051401459", true, "PESEL ma błędną", true};
}

void TestDocumentWindows::fieldChecks()
{
    QFETCH(Check, row);
    const auto &[firm, field, value, leave, message, warned] = row;
    const auto w = openEditing(firm);
    fill(w.get(), {{"txtnazwa", "Nie zapisany"}, {"txtNIP", "783-191-63-66"}});
    if (!firm)
        fill(w.get(), {{"txtbank", "PKO"}, {"txtkonto", "12"}});
    if (field == QLatin1String("txtIdentyfikatorPodatki"))
        child<QComboBox>(w.get(), QStringLiteral("lstTypIdentPodatki"))->setCurrentIndex(2); // "P - PESEL"
    auto *edit = child<QLineEdit>(w.get(), field);
    auto *tabs = w->findChild<QTabWidget *>();
    if (leave) {
        for (int page = 0; tabs && page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(edit))
                tabs->setCurrentIndex(page);
        edit->clear();
        QTest::keyClicks(edit, value);
        QCOMPARE(edit->property("bledneCyfry").toBool(), warned);
        QTest::keyClick(edit, Qt::Key_Return);
    } else {
        edit->setText(value);
        click(w.get(), QStringLiteral("cmdok"));
    }
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("message")).size(), 1);
    QVERIFY2(m_dialogs->saw(message), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(child<QPushButton>(w.get(), QStringLiteral("cmdok"))->isEnabled()); // still editing
    const QString count = QStringLiteral("SELECT count(*) FROM ") + (firm ? "firma" : "kontrahenci");
    QCOMPARE(stored(count), QStringLiteral("0"));
    // The page holding the wrong field is the one in view.
    if (tabs)
        QVERIFY(tabs->currentWidget()->isAncestorOf(edit));
    if (!warned)
        return;

    // Saving asks once; No keeps the window editing with nothing stored, Yes stores as typed.
    m_dialogs->clear();
    m_dialogs->answers = {false};
    click(w.get(), QStringLiteral("cmdok"));
    const auto asked = m_dialogs->callsOf(QStringLiteral("question"));
    QVERIFY(asked.size() == 1 && asked[0].text.contains(message));
    QCOMPARE(stored(count), QStringLiteral("0"));
    click(w.get(), QStringLiteral("cmdok"));
    QCOMPARE(stored(count), QStringLiteral("1"));
    if (field == QLatin1String("txtRachunekNrs"))
        QCOMPARE(stored(QStringLiteral("SELECT RACHUNEK_NRS FROM firma")), value);
}

void TestDocumentWindows::contractorsUpkeep()
{
    frmKontrahenci w;
    w.show();
    for (const char *name : {"Zenon", "Łąka", "apteka"}) {
        click(&w, QStringLiteral("cmdnowy"));
        fill(&w, {{"txtnazwa", name}, {"txtbank", "PKO"}, {"txtkonto", "12 3456"}});
        QTest::keyClicks(child<QLineEdit>(&w, QStringLiteral("txtkod")), QStringLiteral("00-9a50")); // letters kept out
        click(&w, QStringLiteral("cmdok"));
    }
    QVERIFY(m_dialogs->calls.isEmpty());
    // In the order of the Polish alphabet, letter case aside.
    QCOMPARE(listed(&w), (QStringList{"apteka", "Łąka", "Zenon"}));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci WHERE KOD='00-950'")), QStringLiteral("3"));

    // A click shows a contractor; a change is stored.
    child<QListWidget>(&w, QStringLiteral("lstkontrahent"))->setCurrentRow(1);
    QCOMPARE(text(&w, QStringLiteral("txtnazwa")), QStringLiteral("Łąka"));
    click(&w, QStringLiteral("cmdzmien"));
    fill(&w, {{"txtmiasto", "Gdańsk"}});
    click(&w, QStringLiteral("cmdok"));
    QCOMPARE(stored(QStringLiteral("SELECT MIASTO FROM kontrahenci WHERE NAZWA='Łąka'")), QStringLiteral("Gdańsk"));

    // Deleting asks first; No keeps the contractor.
    m_dialogs->answers = {false, true};
    click(&w, QStringLiteral("cmdusun"));
    click(&w, QStringLiteral("cmdusun"));
    const auto asked = m_dialogs->callsOf(QStringLiteral("question"));
    QVERIFY(asked.size() == 2 && asked[0].text.contains(QStringLiteral("Łąka")));
    QCOMPARE(listed(&w), (QStringList{"apteka", "Zenon"}));

    // Contractors stored meanwhile (as a document for a new recipient does) show up in the
    // open dictionary, which is read again from the firm.
    qint32 adam = 0;
    for (const auto &[name, branch, town] : {std::tuple{"Źródło", "ODDZIAŁ 1", "ŁÓDŹ"}, {"Adam", "Oddział", "Łódź"}})
        adam = *ContractorStore::insert(Db(), Contractor{0, name, branch, {}, {}, town, {}, "Bank", "00 1111"});
    QCOMPARE(listed(&w), (QStringList{"Adam", "apteka", "Zenon", "Źródło"}));

    // Searching steps through the matches (the second name line, Polish letters in any case);
    // past the last one the user is told, and the next press starts again.
    click(&w, QStringLiteral("cmdSzukaj"));
    auto *find = child(&w, QStringLiteral("frmSzukaj"));
    fill(find, {{"txtSzukaj", "oddział"}});
    child<QRadioButton>(find, QStringLiteral("optkryterium_0"))->setChecked(true);
    for (const char *step : {"Adam", "Źródło", "Brak szukanego tekstu", "Adam"}) {
        m_dialogs->clear();
        click(find, QStringLiteral("cmdnastepny"));
        QCOMPARE(m_dialogs->calls.isEmpty() ? text(&w, QStringLiteral("txtnazwa")) : m_dialogs->calls[0].text,
                 QString::fromUtf8(step));
    }

    // Choosing for another window: neither an unsaved edit nor a choice for a window since
    // closed is taken (a beep each); then the contractor shown goes to the asking window.
    m_dialogs->clear();
    auto opener = std::make_unique<QWidget>();
    QList<Contractor> received;
    const auto chooseFor = [&](QWidget *asking) {
        w.chooseFor(asking, [&received](const Contractor &c) { received << c; });
        QVERIFY(w.showContractor(adam));
    };
    chooseFor(opener.get());
    click(&w, QStringLiteral("cmdzmien"));
    fill(&w, {{"txtnazwa", "Adam 2"}});
    click(&w, QStringLiteral("cmdwybierz"));
    click(&w, QStringLiteral("cmdanuluj"));
    chooseFor(opener.get());
    opener.reset();
    click(&w, QStringLiteral("cmdwybierz"));
    QCOMPARE(m_dialogs->beeps, 2);
    QVERIFY(received.isEmpty() && w.isVisible());
    opener = std::make_unique<QWidget>();
    chooseFor(opener.get());
    click(&w, QStringLiteral("cmdwybierz"));
    QVERIFY(!w.isVisible());
    QCOMPARE(received.size(), 1);
    QCOMPARE(received[0].id, adam);
}

QTEST_MAIN(TestDocumentWindows)
#include "tst_documentwindows.moc"
