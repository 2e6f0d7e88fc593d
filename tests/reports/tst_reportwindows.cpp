#include "documents/Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "app/frmglowna.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <memory>

// The "Raporty" commands, the criteria window and the report window, driven as a user would.
class TestReportWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_main->closeAllWindows(); }
    void oneCriteriaWindowForTheFourLists();
    void report_data();
    void report();

private:
    QWidget *criteria(int list);
    QWidget *run(int list, const QString &from, const QString &to, const QStringList &ticked);
    QStringList rows(QWidget *report);
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<frmglowna> m_main;
};

void TestReportWindows::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    RecordingDialogs quiet;
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("okna.zlc")), sampleFirm()));
    const struct {
        int kind, day;
        const char *name;
        int zlote;
    } documents[] = {{1, 1, "Alfa", 10}, {1, 2, "Beta", 20}, {1, 3, "Gamma", 30}, {3, 4, "Alfa", 40}};
    for (const auto &d : documents) {
        PaymentDocument doc = sampleDocument(d.kind, QDate(2005, 3, d.day));
        doc.klientNazwa = QLatin1String(d.name);
        doc.wartosc = Money::fromZlote(d.zlote);
        QVERIFY(DocumentStore::insert(Db(), doc));
    }
    m_main = std::make_unique<frmglowna>();
    m_main->show();
}

QWidget *TestReportWindows::criteria(int list)
{
    m_main->command(QStringLiteral("mnuraporty_%1").arg(list))->trigger();
    return m_main->childWindow(QStringLiteral("frmraport_kryteria"));
}

QWidget *TestReportWindows::run(int list, const QString &from, const QString &to, const QStringList &ticked)
{
    QWidget *w = criteria(list);
    child<QRadioButton>(w, QStringLiteral("optdaty_2"))->click();
    child<QLineEdit>(w, QStringLiteral("txtdata_od"))->setText(from);
    child<QLineEdit>(w, QStringLiteral("txtdata_do"))->setText(to);
    child<QRadioButton>(w, ticked.isEmpty() ? QStringLiteral("optkontrahenci_0") : QStringLiteral("optkontrahenci_2"))
        ->click();
    auto *contractors = child<QListWidget>(w, QStringLiteral("lstKOntrahenci"));
    for (int i = 0; i < contractors->count(); ++i)
        contractors->item(i)->setCheckState(ticked.contains(contractors->item(i)->text()) ? Qt::Checked
                                                                                          : Qt::Unchecked);
    click(w, QStringLiteral("cmdok"));
    return m_main->childWindow(QStringLiteral("frmraport"));
}

QStringList TestReportWindows::rows(QWidget *report)
{
    QStringList out;
    const QAbstractItemModel *m = child<QTableView>(report, QStringLiteral("Lista"))->model();
    for (int r = 0; r < m->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < m->columnCount(); ++c)
            cells << m->index(r, c).data().toString();
        out << cells.join(u'|');
    }
    return out;
}

void TestReportWindows::oneCriteriaWindowForTheFourLists()
{
    QWidget *first = criteria(2);
    QVERIFY(first);
    QVERIFY(first->windowTitle().endsWith(QStringLiteral("Lista Przekazów na konto")));
    QCOMPARE(criteria(0), first);
    QVERIFY(first->windowTitle().endsWith(QStringLiteral("Lista Przelewów bankowych")));
    QCOMPARE(child<QListWidget>(first, QStringLiteral("lstKOntrahenci"))->count(), 3);
    // Refused: a ticked choice with nobody ticked, a date that is none.
    RecordingDialogs d;
    QVERIFY(!run(0, QStringLiteral("01-03-2005"), QStringLiteral("31-03-2005"), {QStringLiteral("nikt")}));
    QCOMPARE(d.callsOf(QStringLiteral("message")).value(0).title, QStringLiteral("Nie wskazałeś"));
    QVERIFY(!run(0, QStringLiteral("31-02-2005"), QStringLiteral("31-03-2005"), {}));
    QVERIFY(d.saw(QStringLiteral("Nieprawidłowa data początkowa")));
}

void TestReportWindows::report_data()
{
    QTest::addColumn<int>("list");
    QTest::addColumn<QStringList>("ticked");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("caption");
    QTest::newRow("all") << 0 << QStringList{}
                         << QStringList{"01-03-2005|Alfa|Faktura 12/2026|10,00", "02-03-2005|Beta|Faktura 12/2026|20,00",
                                        "03-03-2005|Gamma|Faktura 12/2026|30,00", "Ogółem|||60,00"}
                         << "  (Kontrahenci - wszyscy)";
    QTest::newRow("ticked") << 0 << QStringList{"Alfa", "Gamma"}
                            << QStringList{"01-03-2005|Alfa|Faktura 12/2026|10,00",
                                           "03-03-2005|Gamma|Faktura 12/2026|30,00", "Ogółem|||40,00"}
                            << "  (Kontrahenci - wybrani)";
    QTest::newRow("third list, one ticked") << 2 << QStringList{"Alfa"}
                                            << QStringList{"04-03-2005|Alfa|Faktura 12/2026|40,00", "Ogółem|||40,00"}
                                            << "  (Kontrahenci - wybrany: Alfa)";
}

void TestReportWindows::report()
{
    QFETCH(int, list);
    QFETCH(QStringList, ticked);
    QFETCH(QString, caption);
    RecordingDialogs d;
    QWidget *report = run(list, QStringLiteral("01-03-2005"), QStringLiteral("31-03-2005"), ticked);
    QVERIFY(report);
    QTEST(rows(report), "expected");
    QVERIFY(child<QLabel>(report, QStringLiteral("lblnaglowek"))->text().contains(caption));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci WHERE WYBRANY<>0")), QStringLiteral("0"));
    QVERIFY(d.calls.isEmpty());
    if (!ticked.isEmpty())
        return;
    // Saved twice: the second workbook takes a free name beside the first.
    const QString folder = QFileInfo(firmFile()).absolutePath();
    for (const QString &name : {QStringLiteral("Lista Przelewów bankowych.xlsx"),
                                QStringLiteral("Lista Przelewów bankowych_1.xlsx")}) {
        d.clear();
        click(report, QStringLiteral("CmdExcel"));
        QVERIFY(QFileInfo::exists(folder + u'/' + name));
        QCOMPARE(d.callsOf(QStringLiteral("message")).value(0).text,
                 QStringLiteral("Raport został zapisany w katalogu :\n") + folder + QStringLiteral("\nPod nazwą: ") + name);
    }
    const QString pdf = m_env->newPath(QStringLiteral("okno.pdf"));
    printToPdf(pdf);
    click(report, QStringLiteral("cmddrukuj"));
    QCOMPARE(d.callsOf(QStringLiteral("copies")).size(), 1);
    const QString text = readPdf(pdf).text();
    QVERIFY2(text.contains(QStringLiteral("Ogółem")) && text.contains(QStringLiteral("60,00")) &&
                 text.contains(QStringLiteral("strona nr: 1")),
             qPrintable(text));
}

QTEST_MAIN(TestReportWindows)
#include "tst_reportwindows.moc"
