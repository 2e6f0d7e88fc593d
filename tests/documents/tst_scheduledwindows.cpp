#include "AppState.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/Firm.h"
#include "documents/ScheduledPayments.h"
#include "documents/ui/frmprzelew.h"
#include "documents/ui/frmslzapl_term.h"
#include "documents/ui/frmzap_term.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

class TestScheduledWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { CloseDb(); }

    void savingRefused_data();
    void savingRefused();
    void savedPaymentIssuedFromAlarm();

private:
    TestEnv m_env;
};

void TestScheduledWindows::init()
{
    RecordingDialogs quiet;
    FirmData firm = sampleFirm();
    firm.accounts[0] = BankAccount{QStringLiteral("PKO BP"), QStringLiteral("12 1020 1026 0000 1234 5678 9012"), {}};
    firm.accounts[1] = BankAccount{QStringLiteral("mBank"), QStringLiteral("61 1090 1014 0000 0712 1981 2874"), {}};
    QVERIFY(openNewFirm(m_env.newPath(QStringLiteral("firma.zlc")), firm));
    appState().today = QDate(2026, 3, 5);
    ScheduledPayment existing;
    existing.nazwa = QStringLiteral("Czynsz");
    existing.months[2] = true;
    existing.dzienAlarmu = 1;
    existing.dzienPlatnosci = 10;
    existing.klientNazwa = QStringLiteral("Administracja");
    existing.klientNip = QStringLiteral("6762000000");
    existing.wartosc = Money::fromZlote(500);
    existing.bankFirmy = QStringLiteral("Bank Zamknięty"); // no longer among the firm's accounts
    QCOMPARE(ScheduledPayments::insert(Db(), existing), ScheduledPayments::SaveResult::Saved);
}

// The name, payment day and alarm day typed, a field on the recipient page (not in view) set
// to a value, what the user is told and where they are sent back (empty: not checked).
using Refusal = std::tuple<QString, QString, QString, QString, QString, QString, QString>;
Q_DECLARE_METATYPE(Refusal)

void TestScheduledWindows::savingRefused_data()
{
    QTest::addColumn<Refusal>("row");
    QTest::newRow("no alarm day") << Refusal{"Woda", "10", "", "", "", "Wypełnij pola nazwa, dzień alarmu", ""};
    QTest::newRow("day 32") << Refusal{"Woda", "32", "5", "", "", "Miesiąc ma tylko 31 dni", "txtdzien"};
    // Before a wrong amount on the page not in view.
    QTest::newRow("negative alarm day")
        << Refusal{"Woda", "10", "-5", "txtwartosc", "x", "'-5' nie jest liczbą", "txtalarm"};
    QTest::newRow("name taken") << Refusal{"Czynsz", "10", "5", "", "", "już istnieje", "txtnazwazaplaty"};
    QTest::newRow("amount not in view")
        << Refusal{"Woda", "10", "5", "txtwartosc", "1.234,5.0", "nie jest kwotą.", "txtwartosc"};
}

void TestScheduledWindows::savingRefused()
{
    QFETCH(Refusal, row);
    const auto &[name, payDay, alarmDay, field, value, told, wrong] = row;
    RecordingDialogs dialogs;
    frmslzapl_term w;
    w.show();
    QApplication::setActiveWindow(&w);
    QVERIFY(QTest::qWaitForWindowActive(&w));
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

    QTRY_VERIFY2(dialogs.saw(told), qPrintable(told));
    QCOMPARE(dialogs.callsOf(QStringLiteral("message")).size(), 1);
    QVERIFY(w.isEditing());
    QCOMPARE(ScheduledPayments::names(Db()).value(), QStringList{QStringLiteral("Czynsz")});
    if (!wrong.isEmpty()) {
        QCOMPARE(QApplication::focusWidget(), child(&w, wrong));
        QVERIFY(tabs->currentWidget()->isAncestorOf(child(&w, wrong)));
    }
}

void TestScheduledWindows::savedPaymentIssuedFromAlarm()
{
    RecordingDialogs dialogs;
    frmslzapl_term w;
    w.show();
    QApplication::setActiveWindow(&w);
    QVERIFY(QTest::qWaitForWindowActive(&w));
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

    QVERIFY(dialogs.calls.isEmpty());
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
    QCOMPARE(dialogs.beeps, 1);
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
    QVERIFY(dialogs.saw(QStringLiteral("Bank Zamknięty")));
    QCOMPARE(child<QComboBox>(entry.get(), QStringLiteral("lstbank"))->currentIndex(), -1);
    QCOMPARE(account(), QStringLiteral("|"));
    // A payment's account is found by its bank's name.
    dialogs.clear();
    list->setCurrentRow(0);
    entry.reset(alarm.issue());
    QVERIFY(entry);
    QCOMPARE(account(), QStringLiteral("mBank|61 1090 1014 0000 0712 1981 2874"));
    QVERIFY(dialogs.calls.isEmpty());
}

QTEST_MAIN(TestScheduledWindows)
#include "tst_scheduledwindows.moc"
