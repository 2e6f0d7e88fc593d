#include "AppState.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/Accounts.h"
#include "documents/ContractorStore.h"
#include "documents/Firm.h"
#include "documents/ScheduledPayments.h"
#include "documents/ui/frmKontrahenci.h"
#include "documents/ui/frmZbiorowka.h"
#include "documents/ui/frmfirma.h"
#include "documents/ui/frmprzegladanie.h"
#include "documents/ui/frmprzelew.h"
#include "documents/ui/frmslzapl_term.h"
#include "documents/ui/frmzap_term.h"
#include "exchange/Elixir.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

namespace {

QString fieldText(QWidget *window, const QString &name)
{
    return child<QLineEdit>(window, name)->text();
}

// The lines of a list: the contractors of the dictionary, the amounts of the collective statement.
QStringList listed(QWidget *window, const char *name = "lstkontrahent")
{
    QStringList lines;
    auto *list = child<QListWidget>(window, QLatin1String(name));
    for (int i = 0; i < list->count(); ++i)
        lines << list->item(i)->text();
    return lines;
}

// A document of `kind` filled in as a user would, paid from "mBank" (account 3).
std::unique_ptr<frmprzelew> filledWindow(int kind, const char *name = "Hurtownia Gęśla")
{
    auto w = std::make_unique<frmprzelew>(qint16(0), qint16(kind));
    w->show();
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(1);
    fill(w.get(), {{"txtnazwa", name}, {"txtulica", "Kwiatowa 7"}, {"txtkod", "31-000"}, {"txtmiasto", "Kraków"},
                   {"txtbank", "Bank Odbiorcy"}, {"txtkonto", "45 1140 2004"}, {"txtzadokument", "Faktura 12/2026"},
                   {"txtwartosc", "1 234,50"}, {"txtdata", "05-03-2026"}});
    if (kind == 5) {
        fill(w.get(), {{"txtWartoscZus", "1234,5"}});
        child<QComboBox>(w.get(), QStringLiteral("lstTypWpl"))->setCurrentIndex(6);
    }
    if (kind == 6) {
        fill(w.get(), {{"txtWartoscPod", "1234,50"}, {"txtsymbol", "VAT-7"}, {"txtNrOkresu", "03"}});
        child<QComboBox>(w.get(), QStringLiteral("lstTypOkresu"))->setCurrentIndex(3);
    }
    return w;
}

qint32 issued(int kind)
{
    auto w = filledWindow(kind);
    click(w.get(), QStringLiteral("cmdwystaw"));
    return w->currentId();
}

// The lines of the browse list, in its order: date, kind and amount.
QStringList lines(frmprzegladanie &w)
{
    const QAbstractItemModel &m = w.model();
    QStringList out;
    for (int row = 0; row < m.rowCount(); ++row)
        out << m.index(row, 0).data().toString() + QLatin1Char(' ') + m.index(row, 1).data().toString() +
                   QStringLiteral(" - ") + m.index(row, 4).data().toString();
    return out;
}

void selectRows(frmprzegladanie &w, const QList<int> &rows)
{
    auto *list = child<QTreeView>(&w, QStringLiteral("lstwynik"));
    list->clearSelection();
    for (int row : rows)
        list->selectionModel()->select(list->model()->index(row, 0), QItemSelectionModel::Select);
    if (!rows.isEmpty())
        list->selectionModel()->setCurrentIndex(list->model()->index(rows.first(), 0), QItemSelectionModel::NoUpdate);
}

// Days chosen as the period: only their fields enabled.
void showDays(frmprzegladanie &w, const char *first, const char *last)
{
    child<QRadioButton>(&w, QStringLiteral("optdata_2"))->click();
    fill(&w, {{"txtdata_0", first}, {"txtdata_1", last}});
    Q_EMIT child<QLineEdit>(&w, QStringLiteral("txtdata_1"))->editingFinished();
    QVERIFY(!child(&w, QStringLiteral("lstrok"))->isEnabled() && !child(&w, QStringLiteral("lstmies"))->isEnabled());
    QVERIFY(child(&w, QStringLiteral("txtdata_0"))->isEnabled());
}

// The collective statement of one account and day.
std::unique_ptr<frmZbiorowka> openStatement(const QString &day, int accountIndex)
{
    auto w = std::make_unique<frmZbiorowka>();
    w->show();
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(accountIndex);
    auto *date = child<QLineEdit>(w.get(), QStringLiteral("txtData"));
    date->setText(day);
    Q_EMIT date->editingFinished();
    return w;
}

// The scheduled payments window, shown and active, beside a payment for March already
// saved, paid from an account the firm no longer has.
void openScheduled(frmslzapl_term &w)
{
    ScheduledPayment rent;
    rent.nazwa = QStringLiteral("Czynsz");
    rent.months[2] = true;
    rent.dzienAlarmu = 1;
    rent.dzienPlatnosci = 10;
    rent.klientNazwa = QStringLiteral("Administracja");
    rent.klientNip = QStringLiteral("6762000000");
    rent.wartosc = Money::fromZlote(500);
    rent.bankFirmy = QStringLiteral("Bank Zamknięty");
    QCOMPARE(ScheduledPayments::insert(Db(), rent), ScheduledPayments::SaveResult::Saved);
    w.show();
    QApplication::setActiveWindow(&w);
    QVERIFY(QTest::qWaitForWindowActive(&w));
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
    void issueEachKind_data();
    void issueEachKind();
    void correction_data();
    void correction();
    void slipAidsWhileTyping();
    void refusedSave_data();
    void refusedSave();
    void zusAndTaxAccounts_data();
    void zusAndTaxAccounts();
    void browseListCommands();
    void collectiveStatement();
    void scheduledSavingRefused_data();
    void scheduledSavingRefused();
    void scheduledPaymentIssuedFromAlarm();

private:
    TestEnv m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QString m_pdf;
    QStringList m_jobs; // every slip printed
    int m_files = 0;
};

void TestDocumentWindows::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    FirmData firm = sampleFirm();
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("11 1111"), Money()};
    firm.accounts[2] = {QStringLiteral("mBank"), QStringLiteral("33 3333"), Money::fromZlote(5000)};
    // Each firm in a folder of its own, as is its bank file.
    const QString folder = m_env.newPath(QStringLiteral("dok%1").arg(++m_files));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(openNewFirm(folder + QStringLiteral("/dok.zlc"), firm));
    appState().eliksir = 0;
    appState().today = QDate(2026, 3, 5);
    m_pdf = m_env.newPath(QStringLiteral("slip%1.pdf").arg(m_files));
    m_jobs.clear();
    printToPdf(m_pdf, &m_jobs);
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
    QCOMPARE(fieldText(&w, QStringLiteral("txtstan_2")), QStringLiteral("1 084,56"));

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
    // The firm window or the contractors dictionary, with a change or a new entry begun.
    std::unique_ptr<QWidget> w;
    if (firm)
        w = std::make_unique<frmfirma>();
    else
        w = std::make_unique<frmKontrahenci>();
    w->show();
    click(w.get(), firm ? QStringLiteral("cmdzmien") : QStringLiteral("cmdnowy"));
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
    const QString count = QStringLiteral("SELECT count(*) FROM ") + (firm ? "firma" : "kontrahenci") +
                          QStringLiteral(" WHERE NAZWA = 'Nie zapisany'");
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
    QCOMPARE(fieldText(&w, QStringLiteral("txtnazwa")), QStringLiteral("Łąka"));
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
        QCOMPARE(m_dialogs->calls.isEmpty() ? fieldText(&w, QStringLiteral("txtnazwa")) : m_dialogs->calls[0].text,
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

// The kind, a word of its slip, the answer to "Czy drukowac kwotę?" and the print job.
using Issue = std::tuple<int, QString, bool, QString>;
Q_DECLARE_METATYPE(Issue)

void TestDocumentWindows::issueEachKind_data()
{
    QTest::addColumn<Issue>("row");
    QTest::newRow("transfer") << Issue{1, "Gęśla", true, "dprzelew landscape"};
    QTest::newRow("deposit, amount left out") << Issue{2, "Gęśla", false, "dprzelew portrait"};
    QTest::newRow("ZUS") << Issue{5, "Społecznych", true, "dprzelewZus portrait"};
    QTest::newRow("tax") << Issue{6, "VAT-7", true, "dprzelew landscape"};
}

void TestDocumentWindows::issueEachKind()
{
    QFETCH(Issue, row);
    const auto &[kind, printed, amountPrinted, job] = row;
    m_dialogs->answers = {amountPrinted};
    auto w = filledWindow(kind);
    click(w.get(), QStringLiteral("cmdwystaw"));

    QCOMPARE(m_dialogs->callsOf(QStringLiteral("question")).value(0).text, QStringLiteral("Czy drukowac kwotę?"));
    QCOMPARE(m_jobs, QStringList{job + QLatin1Char(' ') + QString::number(w->currentId())});
    const QString where = QStringLiteral(" FROM zlecanki WHERE id=") + QString::number(w->currentId());
    QCOMPARE(stored(QStringLiteral("SELECT rodzaj || '|' || banknr || '|' || bank_firmy || '|' || konto_firmy || '|' || "
                                   "wartosc || '|' || data_dokumentu") + where),
             QStringLiteral("%1|3|mBank|33 3333|12345000|2026-03-05").arg(kind));
    if (kind == 5)
        QCOMPARE(stored(QStringLiteral("SELECT ZUS_TypWplaty || '|' || ZUS_NrDeklaracji") + where), QStringLiteral("6|01"));
    if (kind == 6)
        QCOMPARE(stored(QStringLiteral("SELECT POD_TypOkresu || '|' || POD_Symbol") + where), QStringLiteral("3|VAT-7"));
    const PdfContent pdf = readPdf(m_pdf);
    // Character boxes hold one letter each.
    const QString text = pdf.text().remove(QLatin1Char(' '));
    QVERIFY2(text.contains(printed), qPrintable(pdf.text()));
    // The amount, in figures or (on the deposit slip) in words, only when the user wants it.
    QCOMPARE(text.contains(QStringLiteral("1234.50")) || text.contains(QStringLiteral("1234,50")) ||
                 text.contains(QStringLiteral("tysiąc")),
             amountPrinted);

    // Ready for the next document, from the same account and date.
    const auto field = [&w](const char *name) -> QString { return child<QLineEdit>(w.get(), name)->text() + '|'; };
    QCOMPARE(field("txtnazwa") + field("txtwartosc") + field("txtdata") + child<QComboBox>(w.get(), "lstbank")->currentText(),
             QStringLiteral("||05-03-2026|mBank"));
}

// The kind, the new amount (empty: left as it is), paid from "PKO BP" instead, then the print job.
// (The same tuple type as Issue, so already known to the meta-type system.)
using Correction = std::tuple<int, QString, bool, QString>;

void TestDocumentWindows::correction_data()
{
    QTest::addColumn<Correction>("row");
    QTest::newRow("tax raised") << Correction{6, "2000", false, "dprzelew landscape"};
    // Moved: the user is told first that the account paid from before keeps its charge.
    QTest::newRow("ZUS moved to another account") << Correction{5, "", true, "dprzelewZus portrait"};
}

void TestDocumentWindows::correction()
{
    QFETCH(Correction, row);
    const auto &[kind, amount, moved, job] = row;
    const qint32 id = issued(kind);
    frmprzelew w(1, qint16(kind), id);
    auto fresh = filledWindow(1);
    const auto shown = [](QWidget *window) -> QString {
        return child<QComboBox>(window, QStringLiteral("lstbank"))->currentText() + QLatin1Char('|') +
               child<QLabel>(window, QStringLiteral("lblbankkonto"))->text();
    };
    // The firm's accounts renamed meanwhile: an open new document offers them as saved, its
    // choice kept; a correction keeps the account it was printed with until another is chosen.
    FirmData firm = FirmStore::read(Db()).value();
    firm.accounts[1] = {QStringLiteral("ING"), QStringLiteral("22 2222"), Money()};
    firm.accounts[2] = {QStringLiteral("mBank Nowy"), QStringLiteral("33 9999"), Money()};
    QVERIFY(FirmStore::save(Db(), firm, {}));
    QCOMPARE(shown(fresh.get()), QStringLiteral("mBank Nowy|33 9999"));
    QCOMPARE(shown(&w), QStringLiteral("mBank|33 3333"));

    const QString amountField = kind == 5 ? "txtWartoscZus" : kind == 6 ? "txtWartoscPod" : "txtwartosc";
    QCOMPARE(child<QLineEdit>(&w, amountField)->text(), QStringLiteral("1 234,50"));
    if (!amount.isEmpty())
        child<QLineEdit>(&w, amountField)->setText(amount);
    auto *account = child<QComboBox>(&w, QStringLiteral("lstbank"));
    if (moved) {
        account->setCurrentIndex(0);
    } else { // the same account chosen again: bank and number come from one entry
        account->setFocus();
        QTest::keyClick(account, Qt::Key_Up);
        QTest::keyClick(account, Qt::Key_Down);
    }
    m_dialogs->clear();
    m_jobs.clear();
    click(&w, QStringLiteral("cmdwystaw"));
    const QString state = QStringLiteral("SELECT count(*) || '|' || bank_firmy || '|' || konto_firmy || '|' || "
                                         "data_sesji FROM zlecanki");
    QVERIFY(stored(state).startsWith(moved ? QStringLiteral("1|PKO BP|11 1111|") : QStringLiteral("1|mBank Nowy|33 9999|")));
    QCOMPARE(m_dialogs->saw(QStringLiteral("Stan konta mBank nie zostanie przywrócony")), moved);

    // Viewed, it prints on the general slip and changes nothing.
    const QString before = stored(state);
    frmprzelew viewed(2, qint16(kind), id);
    QVERIFY(child<QLineEdit>(&viewed, QStringLiteral("txtnazwa"))->isReadOnly());
    click(&viewed, QStringLiteral("cmdwystaw"));
    const QString number = QLatin1Char(' ') + QString::number(id);
    QCOMPARE(m_jobs, (QStringList{job + number, QStringLiteral("dprzelew portrait") + number}));
    QCOMPARE(stored(state), before);

    // The recipient is the contractor already known, whatever the letter case and blanks.
    fill(fresh.get(), {{"txtnazwa", "  HURTOWNIA GĘŚLA "}});
    click(fresh.get(), QStringLiteral("cmdwystaw"));
    QVERIFY(fresh->currentId() > id);
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")), QStringLiteral("1"));
}

// The kind, a field set to a value ("elixir" and "database" break the save instead), the bank
// file switched on (it is opened before the fields are checked) and what the user is told.
using Refusal = std::tuple<int, QString, QString, bool, QString>;
Q_DECLARE_METATYPE(Refusal)

void TestDocumentWindows::refusedSave_data()
{
    QTest::addColumn<Refusal>("row");
    QTest::newRow("postal code") << Refusal{1, "txtkod", "00950", true, "'00950' nie jest kodem pocztowym."};
    QTest::newRow("Elixir file") << Refusal{1, "elixir", "", true, "Przechwycony błąd:"};
    QTest::newRow("database") << Refusal{1, "database", "", false, "Przechwycony błąd:"};
    QTest::newRow("ZUS amount left at zero")
        << Refusal{5, "txtWartoscZus", "0,00", false, "Kwota musi być większa od zera."};
    QTest::newRow("tax amount left at zero") << Refusal{6, "txtWartoscPod", "0,00", false, "większa od zera."};
    QTest::newRow("title longer than the slip")
        << Refusal{1, "txtzadokument", QString("Faktura 12/2026 ").repeated(7), false, "Tytuł nie zmieści się"};
}

void TestDocumentWindows::refusedSave()
{
    QFETCH(Refusal, row);
    const auto &[kind, field, value, elixir, message] = row;
    auto w = filledWindow(kind, "Nowy Odbiorca");
    QApplication::setActiveWindow(w.get());
    appState().eliksir = elixir ? 1 : 0;
    if (field == QLatin1String("elixir")) {
        QVERIFY(QDir().mkpath(Elixir::filePath(firmFile()))); // a folder where the file should be
    } else if (field == QLatin1String("database")) {
        // The balance cannot be written: the row and the new contractor must go too.
        QSqlQuery q(Db());
        QVERIFY(q.exec(QStringLiteral("CREATE TRIGGER blokada BEFORE UPDATE ON firma "
                                      "BEGIN SELECT RAISE(ABORT, 'zablokowane'); END")));
    } else {
        child<QLineEdit>(w.get(), field)->setText(value);
    }
    click(w.get(), QStringLiteral("cmdwystaw"));
    QVERIFY2(m_dialogs->saw(message), qPrintable(m_dialogs->calls.last().text));
    if (field.startsWith(QLatin1String("txt")))
        QCOMPARE(QApplication::focusWidget(), child(w.get(), field));
    QCOMPARE(stored(QStringLiteral("SELECT (SELECT count(*) FROM zlecanki) + (SELECT count(*) FROM kontrahenci)")),
             QStringLiteral("0"));
    QVERIFY(!QFileInfo::exists(m_pdf));
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtnazwa"))->text(), QStringLiteral("Nowy Odbiorca"));
    QCOMPARE(QFileInfo::exists(Elixir::filePath(firmFile())), elixir);
    appState().eliksir = 0;
}

// While typing: Enter moves on with the value put in shape, the bank is named from the account,
// the payment QR code is shown once the account is whole, and the title's room on the slip.
void TestDocumentWindows::slipAidsWhileTyping()
{
    auto w = filledWindow(1);
    QApplication::setActiveWindow(w.get());
    auto *amount = child<QLineEdit>(w.get(), QStringLiteral("txtwartosc"));
    amount->setText(QStringLiteral("1234,5"));
    amount->setFocus();
    QTest::keyClick(amount, Qt::Key_Return);
    QCOMPARE(amount->text(), QStringLiteral("1 234,50"));
    QCOMPARE(QApplication::focusWidget(), child(w.get(), QStringLiteral("txtdata")));

    auto *room = child<QLabel>(w.get(), QStringLiteral("lblTytulMiejsce"));
    auto *qr = child<QLabel>(w.get(), QStringLiteral("lblKodQR"));
    QVERIFY(room->isVisible() && qr->isVisible());
    auto *account = child<QLineEdit>(w.get(), QStringLiteral("txtkonto"));
    account->clear();
    child<QLineEdit>(w.get(), QStringLiteral("txtbank"))->clear();
    account->setFocus();
    QTest::keyClicks(account, QStringLiteral("PL61 1090 1014 0000 0712 1981 2874"));
    QVERIFY(!qr->pixmap().isNull());
    QVERIFY(qr->toolTip().startsWith(QStringLiteral("|PL|61109010140000071219812874|123450|Hurtownia Gęśla|")));
    QTest::keyClick(account, Qt::Key_Tab);
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtbank"))->text(), QStringLiteral("Santander Bank Polska"));
    QVERIFY(m_dialogs->calls.isEmpty());

    // An amount typed and issued at once with Alt+W is stored as leaving the field shows it.
    QVERIFY(QTest::qWaitForWindowActive(w.get()));
    amount->clear();
    amount->setFocus();
    QTest::keyClicks(amount, QStringLiteral("10,005"));
    QTest::keyClick(amount, Qt::Key_W, Qt::AltModifier);
    QTRY_VERIFY(w->currentId() > 0);
    QCOMPARE(stored(QStringLiteral("SELECT wartosc FROM zlecanki")), QStringLiteral("100100"));

    auto *title = child<QLineEdit>(w.get(), QStringLiteral("txtzadokument"));
    title->setFocus();
    QTest::keyClicks(title, QString(QStringLiteral(" za towar")).repeated(13));
    QVERIFY(room->text().endsWith(QStringLiteral("nie zmieści się!")));

    // A contractor chosen from the dictionary, opened with F2.
    const qint32 mlyn = *ContractorStore::insert(
        Db(), Contractor{0, QStringLiteral("Młyn"), {}, QStringLiteral("Polna 2"), QStringLiteral("00-950"),
                         QStringLiteral("Warszawa"), {}, QStringLiteral("Bank Młyna"), QStringLiteral("99 9999")});
    auto *name = child<QLineEdit>(w.get(), QStringLiteral("txtnazwa"));
    name->setFocus();
    QTest::keyClick(name, Qt::Key_F2);
    auto *dictionary = shownWindow<frmKontrahenci>();
    QVERIFY(dictionary && dictionary->showContractor(mlyn));
    click(dictionary, QStringLiteral("cmdwybierz"));
    QCOMPARE(name->text() + child<QLineEdit>(w.get(), "txtkod")->text() + account->text(),
             QStringLiteral("Młyn00-95099 9999"));

    auto zus = filledWindow(5);
    QVERIFY(!child(zus.get(), QStringLiteral("lblTytulMiejsce"))->isVisible() &&
            !child(zus.get(), QStringLiteral("lblKodQR"))->isVisible());
}

// The firm's NIP, NRS, tax identifier type (lstTypIdentPodatki: 0 NIP, 2 PESEL) and identifier,
// then where a new ZUS document starts and the micro-account filled in (empty: refused).
using TaxIds = std::tuple<QString, QString, int, QString, int, QString>;
Q_DECLARE_METATYPE(TaxIds)

void TestDocumentWindows::zusAndTaxAccounts_data()
{
    QTest::addColumn<TaxIds>("row");
    QTest::newRow("NIP, NRS") << TaxIds{"783-191-63-66", "25 6000 0002 0260 0178 3191 6366", 0, "", 4,
                                        "56 1010 0071 2222 7831 9163 6600"};
    QTest::newRow("PESEL, no NRS") << TaxIds{"783-191-63-66", "", 2, "44051401458", 0, "69 1010 0071 2221 4405 1401 4580"};
    QTest::newRow("NIP mistyped") << TaxIds{"783-191-63-67", "", 0, "", 0, ""};
}

void TestDocumentWindows::zusAndTaxAccounts()
{
    QFETCH(TaxIds, row);
    const auto &[nip, nrs, taxType, taxId, zusAccount, micro] = row;
    FirmData firm = *FirmStore::read(Db());
    firm.nip = nip;
    firm.nrs = nrs;
    firm.typIdentPod = taxType;
    firm.identPod = taxId;
    QVERIFY(FirmStore::save(Db(), firm, {}));

    frmprzelew zus(0, 5);
    QCOMPARE(child<QComboBox>(&zus, QStringLiteral("lstNrZus"))->currentIndex(), zusAccount);

    frmprzelew tax(0, 6);
    tax.show();
    click(&tax, QStringLiteral("cmdMikrorachunek"));
    const auto value = [&](const char *name) { return child<QLineEdit>(&tax, name)->text(); };
    QCOMPARE(value("txtkonto") + '|' + value("txtnazwa") + '|' + value("txtbank"),
             micro.isEmpty() ? QStringLiteral("||") : QString(micro + "|Urząd Skarbowy|Narodowy Bank Polski"));
    QCOMPARE(m_dialogs->saw(QStringLiteral("NIP ma błędną cyfrę kontrolną")), micro.isEmpty());
}

// Days, printing, correcting, deleting, a month and the contractor filter.
void TestDocumentWindows::browseListCommands()
{
    // One document of each kind from 1 to 6 in March 2024, then one in March 2023.
    const QDate dates[] = {{2024, 3, 1}, {2024, 3, 10}, {2024, 3, 15}, {2024, 3, 20}, {2024, 3, 25}, {2024, 3, 31}};
    for (int kind = 1; kind <= 6; ++kind) {
        PaymentDocument doc = sampleDocument(kind, dates[kind - 1]);
        QVERIFY(DocumentStore::insert(Db(), doc));
    }
    PaymentDocument old = sampleDocument(2, QDate(2023, 3, 5));
    old.klientNazwa = QStringLiteral("Młyn");
    QVERIFY(DocumentStore::insert(Db(), old));
    frmprzegladanie w;
    w.show();
    showDays(w, "02-03-2024", "30-03-2024");
    QCOMPARE(lines(w).size(), 4);
    // Both end days listed; columns as wide as their text, the amount right-aligned; recipient, then title.
    showDays(w, "01-03-2024", "31-03-2024");
    const auto *view = child<QTreeView>(&w, QStringLiteral("lstwynik"));
    const QAbstractItemModel &m = *view->model();
    for (int row = 0; row < m.rowCount(); ++row)
        for (int column = 0; column < 5; ++column) {
            const QString text = m.index(row, column).data().toString();
            QVERIFY2(view->fontMetrics().horizontalAdvance(text) < view->columnWidth(column), qPrintable(text));
        }
    QVERIFY(m.index(0, 4).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight);
    QCOMPARE(lines(w).first() + '|' + m.index(0, 2).data().toString() + '|' + m.index(0, 3).data().toString(),
             QStringLiteral("01-03-2024 Przelew bankowy - 1 234,50|Hurtownia Gęśla|Faktura 12/2026"));
    QCOMPARE(lines(w).size(), 6);

    // One ZUS document printed as issued; a group, every line as viewed (row n holds
    // kind and id n + 1); nothing selected: a beep.
    selectRows(w, {4});
    click(&w, QStringLiteral("cmddrukuj"));
    QCOMPARE(m_jobs, QStringList{QStringLiteral("dprzelewZus portrait 5")});
    m_jobs.clear();
    selectRows(w, {0, 2, 4, 5});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(m_jobs, (QStringList{"dprzelew landscape 1", "dprzelew landscape 3", "dprzelew portrait 5",
                                  "dprzelew portrait 6"}));
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("copies")).size(), 1); // for the single slip only
    selectRows(w, {});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(m_dialogs->beeps, 1);

    // A correction opened from the list rebuilds it.
    selectRows(w, {0});
    click(&w, QStringLiteral("cmdzmien"));
    frmprzelew *entry = shownWindow<frmprzelew>();
    QVERIFY(entry);
    fill(entry, {{"txtwartosc", "100,00"}});
    QVERIFY(entry->save());
    entry->close();
    QCOMPARE(lines(w).first(), QStringLiteral("01-03-2024 Przelew bankowy - 100,00"));

    // Deleting asks first.
    m_dialogs->clear();
    selectRows(w, {});
    click(&w, QStringLiteral("cmdusun"));
    QCOMPARE(m_dialogs->beeps, 1);
    selectRows(w, {2});
    click(&w, QStringLiteral("cmdusun"));
    const auto asked = m_dialogs->callsOf(QStringLiteral("question"));
    QVERIFY(asked.size() == 1 && asked[0].text.startsWith(QStringLiteral("Jesteś pewien że chcesz usunąć - 15-03-2024")));
    QCOMPARE(lines(w).size(), 5);
    QVERIFY(!lines(w).join(QLatin1Char('\n')).contains(QStringLiteral("15-03-2024")));

    // March of every year, then only the contractor chosen in the dictionary.
    child<QRadioButton>(&w, QStringLiteral("optdata_1"))->click();
    child<QComboBox>(&w, QStringLiteral("lstmies"))->setCurrentIndex(2);
    QVERIFY(!child(&w, QStringLiteral("lstrok"))->isEnabled() && !child(&w, QStringLiteral("txtdata_0"))->isEnabled());
    QVERIFY(child(&w, QStringLiteral("lstmies"))->isEnabled());
    QCOMPARE(lines(w).size(), 6);
    click(&w, QStringLiteral("cmdSzukaj"));
    auto *dictionary = shownWindow<frmKontrahenci>();
    QVERIFY(dictionary);
    QVERIFY(dictionary->showContractor(stored(QStringLiteral("SELECT id FROM kontrahenci WHERE nazwa='Młyn'")).toInt()));
    click(dictionary, QStringLiteral("cmdwybierz"));
    QCOMPARE(lines(w), QStringList{QStringLiteral("05-03-2023 Bankowy dowod wpłaty - 1 234,50")});
    click(&w, QStringLiteral("cmdwszyscy"));
    QCOMPARE(lines(w).size(), 6);
}

void TestDocumentWindows::collectiveStatement()
{
    const struct {
        int kind, account;
        QDate day;
        const char16_t *amount;
    } documents[] = {
        {1, 1, {2026, 3, 5}, u"10"},        {1, 1, {2026, 3, 5}, u"0,99"},   {1, 1, {2026, 3, 5}, u"1000000"},
        {2, 1, {2026, 3, 5}, u"500"},       {1, 3, {2026, 3, 5}, u"77"},     {1, 1, {2026, 3, 6}, u"33"},
        {2, 1, {2026, 3, 9}, u"44"},
    };
    for (const auto &d : documents) {
        PaymentDocument doc = sampleDocument(d.kind, d.day);
        doc.banknr = qint16(d.account);
        doc.wartosc = *Money::parse(d.amount);
        QVERIFY(DocumentStore::insert(Db(), doc));
    }
    // Only bank transfers of that account and day.
    auto w = openStatement(QStringLiteral("5-3-2026"), 1);
    QCOMPARE(listed(w.get(), "lstkwoty"), QStringList{"77,00"});
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(0);
    auto *list = child<QListWidget>(w.get(), QStringLiteral("lstkwoty"));
    click(w.get(), QStringLiteral("cmdzmien")); // nothing chosen
    QCOMPARE(m_dialogs->beeps, 1);
    list->setCurrentRow(0);
    m_dialogs->inputs << QStringLiteral("25,5");
    click(w.get(), QStringLiteral("cmdzmien"));
    m_dialogs->inputs << QStringLiteral("abc") << std::nullopt << QStringLiteral("1");
    click(w.get(), QStringLiteral("cmdnowa"));
    QVERIFY(m_dialogs->saw(QStringLiteral("To nie jest kwota")));
    click(w.get(), QStringLiteral("cmdnowa")); // cancelled
    click(w.get(), QStringLiteral("cmdnowa"));
    QCOMPARE(listed(w.get(), "lstkwoty"), (QStringList{"25,50", "0,99", "1 000 000,00", "1,00"}));
    auto *total = child<QLineEdit>(w.get(), QStringLiteral("txtrazem"));
    QCOMPARE(total->text(), QStringLiteral("1 000 027,49"));
    list->setCurrentRow(2);
    m_dialogs->answers << false << true;
    click(w.get(), QStringLiteral("cmdusun"));
    click(w.get(), QStringLiteral("cmdusun"));
    QCOMPARE(listed(w.get(), "lstkwoty"), (QStringList{"25,50", "0,99", "1,00"}));
    // The list is the window's own copy: the stored documents are as they were.
    QCOMPARE(stored(QStringLiteral("SELECT group_concat(WARTOSC) FROM zlecanki WHERE RODZAJ=1 AND BANKNR=1 "
                                   "AND DATA_DOKUMENTU='2026-03-05'")),
             QStringLiteral("100000,9900,10000000000"));
    click(w.get(), QStringLiteral("cmdZeruj"));
    QCOMPARE(list->count(), 0);
    QCOMPARE(total->text(), QStringLiteral("0,00"));

    // A day with only a deposit slip: nothing to print, a beep.
    w = openStatement(QStringLiteral("09-03-2026"), 0);
    QCOMPARE(listed(w.get(), "lstkwoty"), QStringList());
    click(w.get(), QStringLiteral("cmdwystaw"));
    QCOMPARE(m_dialogs->beeps, 2);
    // Another day typed and printed at once with Alt+W: the statement is of the day
    // typed, as if the field had been left.
    QApplication::setActiveWindow(w.get());
    QVERIFY(QTest::qWaitForWindowActive(w.get()));
    auto *date = child<QLineEdit>(w.get(), QStringLiteral("txtData"));
    date->setFocus();
    date->selectAll();
    QTest::keyClicks(date, QStringLiteral("6/3/2026"));
    QTest::keyClick(date, Qt::Key_W, Qt::AltModifier);
    QTRY_COMPARE(m_dialogs->callsOf(QStringLiteral("copies")).size(), 1);
    QCOMPARE(date->text(), QStringLiteral("06-03-2026"));
    const QString text = readPdf(m_pdf).text();
    for (const char *part : {"Ilość przelewów: 1", "PKO BP", "Razem: 33,00", "Data: 06-03-2026"})
        QVERIFY2(text.contains(QString::fromUtf8(part)), qPrintable(text));
}

// The name, payment day and alarm day typed, a field on the recipient page (not in view) set
// to a value, what the user is told and where they are sent back (empty: not checked).
using PaymentRefusal = std::tuple<QString, QString, QString, QString, QString, QString, QString>;
Q_DECLARE_METATYPE(PaymentRefusal)

void TestDocumentWindows::scheduledSavingRefused_data()
{
    QTest::addColumn<PaymentRefusal>("row");
    QTest::newRow("no alarm day") << PaymentRefusal{"Woda", "10", "", "", "", "Wypełnij pola nazwa, dzień alarmu", ""};
    QTest::newRow("day 32") << PaymentRefusal{"Woda", "32", "5", "", "", "Miesiąc ma tylko 31 dni", "txtdzien"};
    // Before a wrong amount on the page not in view.
    QTest::newRow("negative alarm day")
        << PaymentRefusal{"Woda", "10", "-5", "txtwartosc", "x", "'-5' nie jest liczbą", "txtalarm"};
    QTest::newRow("name taken") << PaymentRefusal{"Czynsz", "10", "5", "", "", "już istnieje", "txtnazwazaplaty"};
    QTest::newRow("amount not in view")
        << PaymentRefusal{"Woda", "10", "5", "txtwartosc", "1.234,5.0", "nie jest kwotą.", "txtwartosc"};
}

void TestDocumentWindows::scheduledSavingRefused()
{
    QFETCH(PaymentRefusal, row);
    const auto &[name, payDay, alarmDay, field, value, told, wrong] = row;
    frmslzapl_term w;
    openScheduled(w);
    auto *tabs = child<QTabWidget>(&w, QStringLiteral("zakladki"));
    QTest::keyClick(&w, Qt::Key_N, Qt::AltModifier); // "&Nowa"
    QTRY_VERIFY(w.isEditing());
    auto *nameField = child<QLineEdit>(&w, QStringLiteral("txtnazwazaplaty"));
    QCOMPARE(QApplication::focusWidget(), nameField);
    QTest::keyClicks(nameField, name);
    // Pasted: the keys of these would not get through.
    child<QLineEdit>(&w, QStringLiteral("txtdzien"))->setText(payDay);
    child<QLineEdit>(&w, QStringLiteral("txtalarm"))->setText(alarmDay);
    if (!field.isEmpty())
        child<QLineEdit>(&w, field)->setText(value);
    QCOMPARE(tabs->currentIndex(), 0);
    QTest::keyClick(nameField, Qt::Key_O, Qt::AltModifier); // "&OK"

    QTRY_VERIFY2(m_dialogs->saw(told), qPrintable(told));
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("message")).size(), 1);
    QVERIFY(w.isEditing());
    QCOMPARE(ScheduledPayments::names(Db()).value(), QStringList{QStringLiteral("Czynsz")});
    if (!wrong.isEmpty()) {
        QCOMPARE(QApplication::focusWidget(), child(&w, wrong));
        QVERIFY(tabs->currentWidget()->isAncestorOf(child(&w, wrong)));
    }
}

void TestDocumentWindows::scheduledPaymentIssuedFromAlarm()
{
    frmslzapl_term w;
    openScheduled(w);
    click(&w, QStringLiteral("cmdnowy"));
    QTest::keyClicks(child<QLineEdit>(&w, QStringLiteral("txtnazwazaplaty")), QStringLiteral("Woda"));
    auto *day = child<QLineEdit>(&w, QStringLiteral("txtdzien"));
    QTest::keyClicks(day, QStringLiteral("-7."));
    QCOMPARE(day->text(), QStringLiteral("7")); // digits only
    QTest::keyClicks(child<QLineEdit>(&w, QStringLiteral("txtalarm")), QStringLiteral("3"));
    child<QComboBox>(&w, QStringLiteral("lstbank"))->setCurrentIndex(1); // mBank
    for (QCheckBox *box : w.findChildren<QCheckBox *>(QStringLiteral("chkmiesiac")))
        box->setChecked(box->property("Index").toInt() == 2); // March
    child<QTabWidget>(&w, QStringLiteral("zakladki"))->setCurrentIndex(1);
    auto *amount = child<QLineEdit>(&w, QStringLiteral("txtwartosc"));
    amount->setFocus();
    QTest::keyClicks(amount, QStringLiteral("150,255"));
    QTest::keyClick(amount, Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(!w.isEditing());

    QVERIFY(m_dialogs->calls.isEmpty());
    // Stored as the window shows it.
    QCOMPARE(amount->text(), QStringLiteral("150,26"));
    QCOMPARE(ScheduledPayments::read(Db(), QStringLiteral("Woda"))->wartosc, Money::fromGrosze(15026));

    // Listed by the alarm at once; only a chosen line is issued.
    frmzap_term alarm;
    alarm.show();
    QVERIFY(QTest::qWaitForWindowActive(&alarm));
    auto *list = child<QListWidget>(&alarm, QStringLiteral("lstzaplaty"));
    QCOMPARE(list->item(0)->text(), QStringLiteral("7 - Woda"));
    // The list taking the focus makes its first line current, not chosen.
    list->setFocus(Qt::TabFocusReason);
    QVERIFY(list->currentItem());
    click(&alarm, QStringLiteral("cmdwystaw"));
    QCOMPARE(m_dialogs->beeps, 1);
    list->setCurrentItem(list->findItems(QStringLiteral("10 - Czynsz"), Qt::MatchExactly).value(0));
    std::unique_ptr<frmprzelew> entry(alarm.issue());
    QVERIFY(entry);
    const PaymentDocument doc = entry->gather();
    QCOMPARE(doc.klientNazwa, QStringLiteral("Administracja"));
    QVERIFY(doc.klientNip.isEmpty());
    QCOMPARE(doc.wartosc, Money::fromZlote(500));
    QCOMPARE(ScheduledPayments::read(Db(), QStringLiteral("Czynsz"))->lastWystAWM, 3);
    QCOMPARE(list->count(), 1);
    const auto account = [&entry]() -> QString {
        return child<QComboBox>(entry.get(), QStringLiteral("lstbank"))->currentText() + QLatin1Char('|') +
               child<QLabel>(entry.get(), QStringLiteral("lblbankkonto"))->text();
    };
    // Its account gone: told, and left to be chosen rather than paid silently from another one.
    QVERIFY(m_dialogs->saw(QStringLiteral("Bank Zamknięty")));
    QCOMPARE(account(), QStringLiteral("|"));
    // A payment's account is found by its bank's name.
    m_dialogs->clear();
    list->setCurrentRow(0);
    entry.reset(alarm.issue());
    QVERIFY(entry);
    QCOMPARE(account(), QStringLiteral("mBank|33 3333"));
    QVERIFY(m_dialogs->calls.isEmpty());
}

QTEST_MAIN(TestDocumentWindows)
#include "tst_documentwindows.moc"
