#include "AppState.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
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

// Days chosen as the period: only their fields enabled.
void showDays(frmprzegladanie &w, const char *first, const char *last)
{
    child<QRadioButton>(&w, QStringLiteral("optdata_2"))->click();
    fill(&w, {{"txtdata_0", first}, {"txtdata_1", last}});
    Q_EMIT child<QLineEdit>(&w, QStringLiteral("txtdata_1"))->editingFinished();
    QVERIFY(!child(&w, QStringLiteral("lstrok"))->isEnabled() && !child(&w, QStringLiteral("lstmies"))->isEnabled());
    QVERIFY(child(&w, QStringLiteral("txtdata_0"))->isEnabled());
}

} // namespace

class TestFrmPrzegladanie : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void commandsOnTheList();

private:
    TestEnv m_env;
};

// Days, printing, correcting, deleting, a month and the contractor filter.
void TestFrmPrzegladanie::commandsOnTheList()
{
    RecordingDialogs dialogs;
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
    QStringList jobs;
    printToPdf(m_env.newPath(QStringLiteral("out.pdf")), &jobs);
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
    QCOMPARE(jobs, QStringList{QStringLiteral("dprzelewZus portrait 5")});
    jobs.clear();
    selectRows(w, {0, 2, 4, 5});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(jobs, (QStringList{"dprzelew landscape 1", "dprzelew landscape 3", "dprzelew portrait 5",
                                  "dprzelew portrait 6"}));
    QCOMPARE(dialogs.callsOf(QStringLiteral("copies")).size(), 1); // for the single slip only
    selectRows(w, {});
    click(&w, QStringLiteral("cmddrukgrupe"));
    QCOMPARE(dialogs.beeps, 1);

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
    dialogs.clear();
    selectRows(w, {});
    click(&w, QStringLiteral("cmdusun"));
    QCOMPARE(dialogs.beeps, 1);
    selectRows(w, {2});
    click(&w, QStringLiteral("cmdusun"));
    const auto asked = dialogs.callsOf(QStringLiteral("question"));
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

QTEST_MAIN(TestFrmPrzegladanie)
#include "tst_frmprzegladanie.moc"
