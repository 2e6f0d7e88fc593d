#include "AppState.h"
#include "DateText.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/ChoiceLists.h"
#include "documents/ui/frmprzegladanie.h"
#include "documents/ui/frmprzelew.h"
#include "documents/ui/frmDoBanku.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QAbstractItemView>
#include <QListWidget>
#include <QTest>

#include <memory>

namespace {

const QString FirmAccount = QStringLiteral("13 1020 2964 0000 1234 5678 9012");

void typeInto(QWidget *window, const QString &name, const QString &text)
{
    auto *f = child<QLineEdit>(window, name);
    f->setFocus();
    f->selectAll();
    QTest::keyClick(f, Qt::Key_Delete);
    QTest::keyClicks(f, text);
}

// A transfer typed in as users do, dated the working day.
std::unique_ptr<frmprzelew> typedDocument()
{
    auto w = std::make_unique<frmprzelew>(qint16(0), qint16(1));
    w->show();
    QApplication::setActiveWindow(w.get());
    fill(w.get(), {{"txtnazwa", "Hurtownia Gęśla"}, {"txtulica", "Kwiatowa 7"}, {"txtkod", "31-000"},
                   {"txtmiasto", "Kraków"}, {"txtNIP", "526-104-08-28"}, {"txtkonto", "57 1140 2004 0000 3002 0123 4567"},
                   {"txtbank", "mBank"}});
    typeInto(w.get(), QStringLiteral("txtdata"), DateText::format(ChoiceLists::workingDate()));
    fill(w.get(), {{"txtzadokument", "Faktura 12/2026"}, {"txtwartosc", "123,00"}});
    return w;
}

} // namespace

class TestBankWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup();
    void splitPaymentThroughWindow();
    void browseSendsAndMarks();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    int m_files = 0;
};

void TestBankWindows::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    FirmData firm = sampleFirm();
    firm.accounts[0] = {QStringLiteral("PKO BP"), FirmAccount, Money()};
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("bank%1.zlc").arg(++m_files)), firm));
    appState().eliksir = 0;
    printToPdf(m_env->newPath(QStringLiteral("slip%1.pdf").arg(m_files)));
}

void TestBankWindows::cleanup()
{
    CloseDb();
    m_dialogs.reset();
}

void TestBankWindows::splitPaymentThroughWindow()
{
    auto w = typedDocument();
    auto *box = child<QGroupBox>(w.get(), QStringLiteral("frmMpp"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Space);
    QVERIFY(box->isChecked());
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtMppIdc"))->text(), QStringLiteral("5261040828"));
    typeInto(w.get(), QStringLiteral("txtMppVat"), QStringLiteral("23"));
    typeInto(w.get(), QStringLiteral("txtMppInv"), QStringLiteral("FV 12/2026"));
    typeInto(w.get(), QStringLiteral("txtMppTxt"), QStringLiteral("zaplata"));
    auto *title = child<QLineEdit>(w.get(), QStringLiteral("txtzadokument"));
    QVERIFY(title->isReadOnly());
    QCOMPARE(title->text(), QStringLiteral("/VAT/23,00/IDC/5261040828/INV/FV 12/2026/TXT/zaplata"));

    // Printed on paper, it warns that banks take it only electronically.
    m_dialogs->clear();
    click(w.get(), QStringLiteral("cmdwystaw"));
    QVERIFY(m_dialogs->saw(QStringLiteral("tylko elektronicznie")));
    const qint32 id = w->currentId();

    // Corrected, the box comes back filled; untick it and the title is the user's again.
    frmprzelew again(1, 1, id);
    again.show();
    auto *box2 = child<QGroupBox>(&again, QStringLiteral("frmMpp"));
    QVERIFY(box2->isChecked());
    QCOMPARE(QStringList({child<QLineEdit>(&again, QStringLiteral("txtMppVat"))->text(), child<QLineEdit>(&again, QStringLiteral("txtMppInv"))->text(),
                          child<QLineEdit>(&again, QStringLiteral("txtMppTxt"))->text()}),
             QStringList({"23,00", "FV 12/2026", "zaplata"}));
    typeInto(&again, QStringLiteral("txtMppInv"), QStringLiteral("FV 13/2026"));
    QVERIFY(again.save());
    QCOMPARE(stored(QStringLiteral("SELECT za_dokument_nazwa FROM zlecanki")),
             QStringLiteral("/VAT/23,00/IDC/5261040828/INV/FV 13/2026/TXT/zaplata"));
    box2->setFocus();
    QTest::keyClick(box2, Qt::Key_Space);
    auto *title2 = child<QLineEdit>(&again, QStringLiteral("txtzadokument"));
    QVERIFY(!title2->isReadOnly() && title2->text().isEmpty());

    // Viewing: the box cannot be changed; a tax transfer has none.
    frmprzelew view(2, 1, id);
    QVERIFY(!child<QGroupBox>(&view, QStringLiteral("frmMpp"))->isEnabled());
    frmprzelew tax(0, 6);
    tax.show();
    QVERIFY(!child<QGroupBox>(&tax, QStringLiteral("frmMpp"))->isVisibleTo(&tax));
}

void TestBankWindows::browseSendsAndMarks()
{
    auto good = typedDocument();
    good->save();
    auto bad = typedDocument();
    typeInto(bad.get(), QStringLiteral("txtkonto"), QStringLiteral("58 1140 2004 0000 3002 0123 4567"));
    bad->save();

    frmprzegladanie browse;
    browse.show();
    auto *list = child<QAbstractItemView>(&browse, QStringLiteral("lstwynik"));
    const auto send = [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        click(&browse, QStringLiteral("cmdDoBanku"));
        return browse.findChild<frmDoBanku *>();
    };
    list->selectAll();
    auto *window = send();
    QVERIFY(window);
    const QString path = m_env->newPath(QStringLiteral("przelewy%1.pli").arg(m_files));
    typeInto(window, QStringLiteral("txtplik"), path);
    auto *problems = child<QListWidget>(window, QStringLiteral("lstproblemy"));
    QCOMPARE(problems->count(), 1); // told as soon as the window opens
    QVERIFY(!window->save());
    QVERIFY(problems->item(0)->text().contains(QStringLiteral("rachunek odbiorcy")));
    window->close();

    // Only the good one goes; it is marked in the list afterwards.
    const int row = list->model()->index(0, 0).data(Qt::UserRole).toInt() == good->currentId() ? 0 : 1;
    list->clearSelection();
    list->setCurrentIndex(list->model()->index(row, 0));
    window = send();
    QVERIFY(window);
    auto *format = child<QComboBox>(window, QStringLiteral("lstformat"));
    format->setCurrentIndex(1);
    QVERIFY(!child<QComboBox>(window, QStringLiteral("lstkodowanie"))->isEnabled());
    const QString xml = m_env->newPath(QStringLiteral("przelewy%1.xml").arg(m_files));
    typeInto(window, QStringLiteral("txtplik"), xml);
    m_dialogs->clear();
    click(window, QStringLiteral("cmdzapisz"));
    QVERIFY2(QFile::exists(xml), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(m_dialogs->saw(QStringLiteral("Zapisano przelewów: 1 na kwotę 123,00 zł")));
    QVERIFY(!list->model()->index(row, 0).data(Qt::DecorationRole).isNull());
    QVERIFY(list->model()->index(1 - row, 0).data(Qt::DecorationRole).isNull());

    // Sending it again asks first; No writes nothing more.
    list->setCurrentIndex(list->model()->index(row, 0));
    window = send();
    QVERIFY(window);
    QCOMPARE(child<QComboBox>(window, QStringLiteral("lstformat"))->currentIndex(), 1); // the firm's last choice
    typeInto(window, QStringLiteral("txtplik"), xml + QStringLiteral(".2"));
    m_dialogs->answers = {false};
    QVERIFY(!window->save());
    QVERIFY(m_dialogs->saw(QStringLiteral("zostały już wysłane do banku")));
    QVERIFY(!QFile::exists(xml + QStringLiteral(".2")));
}

QTEST_MAIN(TestBankWindows)
#include "tst_bankwindows.moc"
