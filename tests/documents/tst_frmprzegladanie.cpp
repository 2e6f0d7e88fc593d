#include "AppState.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/Accounts.h"
#include "documents/Firm.h"
#include "documents/ui/frmKontrahenci.h"
#include "documents/ui/frmprzegladanie.h"
#include "documents/ui/frmprzelew.h"

#include <QComboBox>
#include <QRadioButton>
#include <QTest>
#include <QTreeView>

namespace {

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

void showDays(frmprzegladanie &w, const char *first, const char *last)
{
    child<QRadioButton>(&w, QStringLiteral("optdata_2"))->click();
    fill(&w, {{"txtdata_0", first}, {"txtdata_1", last}});
    Q_EMIT child<QLineEdit>(&w, QStringLiteral("txtdata_1"))->editingFinished();
}

} // namespace

class TestFrmPrzegladanie : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void periodControls_data();
    void periodControls();
    void commandsOnTheList();

private:
    TestEnv m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QStringList m_jobs;
};

void TestFrmPrzegladanie::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    FirmData firm = sampleFirm();
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("11 1111"), Money::fromZlote(5000)};
    QVERIFY(openNewFirm(m_env.newPath(QStringLiteral("przeg.zlc")), firm));
    appState().eliksir = 0;
    // One document of each kind from 1 to 6 in March 2024, then one in March 2023.
    const QDate dates[] = {{2024, 3, 1}, {2024, 3, 10}, {2024, 3, 15}, {2024, 3, 20}, {2024, 3, 25}, {2024, 3, 31}};
    for (int kind = 1; kind <= 6; ++kind) {
        PaymentDocument doc = sampleDocument(kind, dates[kind - 1]);
        QVERIFY(DocumentStore::insert(Db(), doc));
    }
    PaymentDocument old = sampleDocument(2, QDate(2023, 3, 5));
    old.klientNazwa = QStringLiteral("Młyn");
    QVERIFY(DocumentStore::insert(Db(), old));
    m_jobs.clear();
    printToPdf(m_env.newPath(QStringLiteral("out.pdf")), &m_jobs);
    m_dialogs->clear();
}

void TestFrmPrzegladanie::cleanup()
{
    CloseDb();
    m_dialogs.reset();
}

void TestFrmPrzegladanie::periodControls_data()
{
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("choice"); // year or month text, or "first|last"
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("firstLine");
    QTest::newRow("1 to 31 March lists both end days") << 2 << "01-03-2024|31-03-2024" << 6
                                                       << "01-03-2024 Przelew bankowy - 1 234,50";
    QTest::newRow("2 to 30 March leaves them out") << 2 << "02-03-2024|30-03-2024" << 4
                                                   << "10-03-2024 Bankowy dowod wpłaty - 1 234,50";
    QTest::newRow("March of every year") << 1 << "Marzec" << 7 << "";
}

void TestFrmPrzegladanie::periodControls()
{
    QFETCH(int, option);
    QFETCH(QString, choice);
    QFETCH(int, count);
    QFETCH(QString, firstLine);
    frmprzegladanie w;
    w.show();
    if (option == 2) {
        const QStringList ends = choice.split(QLatin1Char('|'));
        showDays(w, qPrintable(ends[0]), qPrintable(ends[1]));
    } else {
        child<QRadioButton>(&w, QStringLiteral("optdata_%1").arg(option))->click();
        auto *list = child<QComboBox>(&w, option == 0 ? QStringLiteral("lstrok") : QStringLiteral("lstmies"));
        list->setCurrentIndex(list->findText(choice, Qt::MatchFixedString));
    }
    QCOMPARE(child<QComboBox>(&w, QStringLiteral("lstrok"))->isEnabled(), option == 0);
    QCOMPARE(child<QComboBox>(&w, QStringLiteral("lstmies"))->isEnabled(), option == 1);
    QCOMPARE(child<QLineEdit>(&w, QStringLiteral("txtdata_0"))->isEnabled(), option == 2);
    QCOMPARE(lines(w).size(), count);
    // Columns as wide as their text, the amount right-aligned; recipient, then title.
    const auto *view = child<QTreeView>(&w, QStringLiteral("lstwynik"));
    QCOMPARE(view->model()->columnCount(), 5);
    for (int row = 0; row < view->model()->rowCount(); ++row)
        for (int column = 0; column < 5; ++column) {
            const QString text = view->model()->index(row, column).data().toString();
            QVERIFY2(view->fontMetrics().horizontalAdvance(text) < view->columnWidth(column), qPrintable(text));
        }
    const QModelIndex amount = view->model()->index(0, 4);
    QVERIFY(amount.data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight);
    if (!firstLine.isEmpty())
        QCOMPARE(lines(w).first() + QLatin1Char('|') + view->model()->index(0, 2).data().toString() + QLatin1Char('|') +
                     view->model()->index(0, 3).data().toString(),
                 firstLine + QStringLiteral("|Hurtownia Gęśla|Faktura 12/2026"));
}

// Printing, correcting, deleting and the contractor filter, on the list of March 2024.
void TestFrmPrzegladanie::commandsOnTheList()
{
    frmprzegladanie w;
    showDays(w, "01-03-2024", "31-03-2024");
    // One ZUS document printed as issued; a group, every line as viewed (row n holds
    // kind and id n + 1); nothing selected: a beep.
    selectRows(w, {4});
    click(&w, QStringLiteral("cmddrukuj"));
    QCOMPARE(m_jobs, QStringList{QStringLiteral("dprzelewZus portrait 5")});
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("copies")).size(), 1);
    m_jobs.clear();
    selectRows(w, {0, 2, 4, 5});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(m_jobs, (QStringList{"dprzelew landscape 1", "dprzelew landscape 3", "dprzelew portrait 5",
                                  "dprzelew portrait 6"}));
    QCOMPARE(m_dialogs->callsOf(QStringLiteral("copies")).size(), 1);
    selectRows(w, {});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(m_jobs.size(), 4);
    QCOMPARE(m_dialogs->beeps, 1);

    // A correction opened from the list rebuilds it.
    selectRows(w, {0});
    click(&w, QStringLiteral("cmdzmien"));
    frmprzelew *entry = shownWindow<frmprzelew>();
    QVERIFY(entry);
    QCOMPARE(entry->mode(), qint16(1));
    fill(entry, {{"txtwartosc", "100,00"}});
    QVERIFY(entry->save());
    entry->close();
    QCOMPARE(lines(w).size(), 6);
    QCOMPARE(lines(w).first(), QStringLiteral("01-03-2024 Przelew bankowy - 100,00"));

    // Deleting asks first and gives the amount back to the account.
    const Money before = Accounts::list()[0].balance;
    m_dialogs->clear();
    selectRows(w, {});
    click(&w, QStringLiteral("cmdusun"));
    QCOMPARE(m_dialogs->beeps, 1);
    QVERIFY(m_dialogs->callsOf(QStringLiteral("question")).isEmpty());
    selectRows(w, {2});
    click(&w, QStringLiteral("cmdusun"));
    const auto asked = m_dialogs->callsOf(QStringLiteral("question"));
    QCOMPARE(asked.size(), 1);
    QVERIFY(asked[0].text.startsWith(QStringLiteral("Jesteś pewien że chcesz usunąć - 15-03-2024")));
    QCOMPARE(lines(w).size(), 5);
    QVERIFY(!lines(w).join(QLatin1Char('\n')).contains(QStringLiteral("15-03-2024")));
    QCOMPARE(Accounts::list()[0].balance - before, Money::fromGrosze(123450));
    QCOMPARE(stored(QStringLiteral("SELECT STAN_KONTA1 FROM firma")).toLongLong(), Accounts::list()[0].balance.units());

    // March of every year, then only the contractor chosen in the dictionary.
    child<QRadioButton>(&w, QStringLiteral("optdata_1"))->click();
    child<QComboBox>(&w, QStringLiteral("lstmies"))->setCurrentIndex(2);
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

QTEST_MAIN(TestFrmPrzegladanie)
#include "tst_frmprzegladanie.moc"
