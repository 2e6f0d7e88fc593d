#include "AppState.h"
#include "Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/FirmData.h"
#include "documents/ScheduledPayments.h"
#include "documents/frmprzelew.h"
#include "documents/frmslzapl_term.h"
#include "documents/frmzap_term.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

#include <memory>

class TestScheduledWindows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup() { CloseDb(); }

    void savingRefused_data();
    void savingRefused();
    void savedPaymentIsDueAtOnce();
    void issueFromAlarm();
    void issueWithNothingChosenBeeps();
    void issueWhenTheAccountIsGone();

private:
    std::unique_ptr<TestEnv> m_env;
    int m_files = 0;
};

void TestScheduledWindows::init()
{
    RecordingDialogs quiet;
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_files)), sampleFirm()));
    appState().today = QDate(2026, 3, 5);
    ScheduledPayment existing;
    existing.nazwa = QStringLiteral("Czynsz");
    existing.months[2] = true;
    existing.dzienAlarmu = 1;
    existing.dzienPlatnosci = 10;
    QCOMPARE(ScheduledPayments::insert(Db(), existing), ScheduledPayments::SaveResult::Saved);
}

void TestScheduledWindows::savingRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("payDay");
    QTest::addColumn<QString>("alarmDay");
    QTest::addColumn<QString>("told");
    QTest::newRow("no alarm day") << QStringLiteral("Woda") << QStringLiteral("10") << QString()
                                  << QStringLiteral("Wypełnij pola nazwa, dzień alarmu i płatności");
    QTest::newRow("day 32") << QStringLiteral("Woda") << QStringLiteral("32") << QStringLiteral("5")
                            << QStringLiteral("Miesiąc ma tylko 31 dni");
    QTest::newRow("name taken") << QStringLiteral("Czynsz") << QStringLiteral("10") << QStringLiteral("5")
                                << QStringLiteral("Taka zapłata już istnieje");
}

void TestScheduledWindows::savingRefused()
{
    QFETCH(QString, name);
    QFETCH(QString, payDay);
    QFETCH(QString, alarmDay);
    QFETCH(QString, told);

    RecordingDialogs dialogs;
    frmslzapl_term w;
    w.show();
    QVERIFY(QTest::qWaitForWindowActive(&w));
    auto *tabs = child<QTabWidget>(&w, QStringLiteral("zakladki"));
    click(&w, QStringLiteral("cmdnowy"));
    child<QLineEdit>(&w, QStringLiteral("txtnazwazaplaty"))->setText(name);
    child<QLineEdit>(&w, QStringLiteral("txtdzien"))->setText(payDay);
    child<QLineEdit>(&w, QStringLiteral("txtalarm"))->setText(alarmDay);
    tabs->setCurrentIndex(1);
    child<QLineEdit>(&w, QStringLiteral("txtnazwa"))->setFocus();
    click(&w, QStringLiteral("cmdok"));

    QVERIFY2(dialogs.saw(told), qPrintable(told));
    QVERIFY(w.isEditing());
    QCOMPARE(ScheduledPayments::names(Db()).value(), QStringList{QStringLiteral("Czynsz")});
    if (told == QLatin1String("Taka zapłata już istnieje")) {
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(QApplication::focusWidget(), child(&w, QStringLiteral("txtnazwazaplaty")));
    }
}

void TestScheduledWindows::savedPaymentIsDueAtOnce()
{
    RecordingDialogs dialogs;
    frmslzapl_term w;
    click(&w, QStringLiteral("cmdnowy"));
    fill(&w, {{"txtnazwazaplaty", "Woda"}, {"txtdzien", "7"}, {"txtalarm", "3"}, {"txtNIP", ""}, {"txtwartosc", "150,25"}});
    for (QCheckBox *box : w.findChildren<QCheckBox *>(QStringLiteral("chkmiesiac")))
        box->setChecked(box->property("Index").toInt() == 2); // March
    click(&w, QStringLiteral("cmdok"));

    QVERIFY(!w.isEditing());
    QCOMPARE(ScheduledPayments::read(Db(), QStringLiteral("Woda"))->wartosc, Money::fromGrosze(15025));
    frmzap_term alarm;
    const auto *list = child<QListWidget>(&alarm, QStringLiteral("lstzaplaty"));
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), QStringLiteral("7 - Woda"));
}

void TestScheduledWindows::issueFromAlarm()
{
    ScheduledPayment p = ScheduledPayments::read(Db(), QStringLiteral("Czynsz")).value();
    p.nazwa = QStringLiteral("ZUS - marzec");
    p.klientNazwa = QStringLiteral("Administracja");
    p.klientNip = QStringLiteral("6762000000");
    p.wartosc = Money::fromZlote(500);
    QCOMPARE(ScheduledPayments::insert(Db(), p), ScheduledPayments::SaveResult::Saved);

    RecordingDialogs dialogs;
    frmzap_term alarm;
    auto *list = child<QListWidget>(&alarm, QStringLiteral("lstzaplaty"));
    const auto found = list->findItems(QStringLiteral("10 - ZUS - marzec"), Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->setCurrentItem(found.first());
    std::unique_ptr<frmprzelew> entry(alarm.issue());
    QVERIFY(entry);

    const PaymentDocument doc = entry->gather();
    QCOMPARE(doc.klientNazwa, QStringLiteral("Administracja"));
    QVERIFY(doc.klientNip.isEmpty());
    QCOMPARE(doc.wartosc, Money::fromZlote(500));
    QCOMPARE(ScheduledPayments::read(Db(), p.nazwa)->lastWystAWM, 3);
    QVERIFY(list->findItems(QStringLiteral("10 - ZUS - marzec"), Qt::MatchExactly).isEmpty());
}

void TestScheduledWindows::issueWithNothingChosenBeeps()
{
    RecordingDialogs dialogs;
    frmzap_term alarm;
    QCOMPARE(alarm.issue(), nullptr);
    QCOMPARE(dialogs.beeps, 1);

    // The list taking the focus makes its first line current, not chosen.
    alarm.show();
    QVERIFY(QTest::qWaitForWindowActive(&alarm));
    auto *list = child<QListWidget>(&alarm, QStringLiteral("lstzaplaty"));
    QVERIFY(list->count() > 0);
    list->setFocus(Qt::TabFocusReason);
    QVERIFY(list->currentItem());
    click(&alarm, QStringLiteral("cmdwystaw"));
    QCOMPARE(dialogs.beeps, 2);
    QCOMPARE(ScheduledPayments::read(Db(), QStringLiteral("Czynsz"))->lastWystAWM, 0);
}

void TestScheduledWindows::issueWhenTheAccountIsGone()
{
    FirmData firm = sampleFirm();
    firm.accounts[0] = BankAccount{QStringLiteral("PKO BP"), QStringLiteral("12 1020 1026 0000 1234 5678 9012"), {}};
    firm.accounts[1] = BankAccount{QStringLiteral("mBank"), QStringLiteral("61 1090 1014 0000 0712 1981 2874"), {}};
    QVERIFY(FirmStore::save(Db(), firm, {}));
    for (const char *bank : {"mBank", "Bank Zamknięty"}) {
        ScheduledPayment p = ScheduledPayments::read(Db(), QStringLiteral("Czynsz")).value();
        p.bankFirmy = QString::fromUtf8(bank);
        QCOMPARE(ScheduledPayments::update(Db(), QStringLiteral("Czynsz"), p), ScheduledPayments::SaveResult::Saved);
        QVERIFY(ScheduledPayments::markIssued(Db(), p.nazwa, 0)); // due again

        RecordingDialogs dialogs;
        frmzap_term alarm;
        auto *list = child<QListWidget>(&alarm, QStringLiteral("lstzaplaty"));
        list->setCurrentRow(0);
        std::unique_ptr<frmprzelew> entry(alarm.issue());
        QVERIFY(entry);
        const auto *account = child<QComboBox>(entry.get(), QStringLiteral("lstbank"));
        const QString number = child<QLabel>(entry.get(), QStringLiteral("lblbankkonto"))->text();
        if (p.bankFirmy == QLatin1String("mBank")) {
            QCOMPARE(account->currentText(), QStringLiteral("mBank"));
            QCOMPARE(number, QStringLiteral("61 1090 1014 0000 0712 1981 2874"));
            QVERIFY(dialogs.calls.isEmpty());
        } else {
            // Told, and left to be chosen rather than paid silently from another account.
            QVERIFY(dialogs.saw(QStringLiteral("Bank Zamknięty")));
            QCOMPARE(account->currentIndex(), -1);
            QVERIFY(number.isEmpty());
        }
    }
}

QTEST_MAIN(TestScheduledWindows)
#include "tst_scheduledwindows.moc"
