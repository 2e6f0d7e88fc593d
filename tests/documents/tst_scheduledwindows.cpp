#include "AppState.h"
#include "Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ScheduledPayments.h"
#include "documents/frmprzelew.h"
#include "documents/frmslzapl_term.h"
#include "documents/frmzap_term.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <memory>

namespace {

QLineEdit *edit(QWidget *w, const char *name)
{
    return w->findChild<QLineEdit *>(QLatin1String(name));
}

void click(QWidget *w, const char *name)
{
    w->findChild<QPushButton *>(QLatin1String(name))->click();
}

} // namespace

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
    const QString fill = QStringLiteral("Wypełnij pola nazwa, dzień alarmu i płatności");
    QTest::newRow("no name") << QString() << QStringLiteral("10") << QStringLiteral("5") << fill;
    QTest::newRow("no payment day") << QStringLiteral("Woda") << QString() << QStringLiteral("5") << fill;
    QTest::newRow("no alarm day") << QStringLiteral("Woda") << QStringLiteral("10") << QString() << fill;
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
    auto *tabs = w.findChild<QTabWidget *>(QStringLiteral("zakladki"));
    click(&w, "cmdnowy");
    edit(&w, "txtnazwazaplaty")->setText(name);
    edit(&w, "txtdzien")->setText(payDay);
    edit(&w, "txtalarm")->setText(alarmDay);
    tabs->setCurrentIndex(1);
    edit(&w, "txtnazwa")->setFocus();
    click(&w, "cmdok");

    QVERIFY2(dialogs.saw(told), qPrintable(told));
    QVERIFY(w.isEditing());
    QCOMPARE(ScheduledPayments::names(Db()).value(), QStringList{QStringLiteral("Czynsz")});
    if (told == QLatin1String("Taka zapłata już istnieje")) {
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(QApplication::focusWidget(), edit(&w, "txtnazwazaplaty"));
    }
}

void TestScheduledWindows::savedPaymentIsDueAtOnce()
{
    RecordingDialogs dialogs;
    frmslzapl_term w;
    click(&w, "cmdnowy");
    edit(&w, "txtnazwazaplaty")->setText(QStringLiteral("Woda"));
    edit(&w, "txtdzien")->setText(QStringLiteral("7"));
    edit(&w, "txtalarm")->setText(QStringLiteral("3"));
    const auto boxes = w.findChildren<QCheckBox *>(QStringLiteral("chkmiesiac"));
    QCOMPARE(boxes.size(), 12);
    for (QCheckBox *box : boxes)
        box->setChecked(box->property("Index").toInt() == 2); // March
    edit(&w, "txtNIP")->setText(QString());
    edit(&w, "txtwartosc")->setText(QStringLiteral("150,25"));
    click(&w, "cmdok");

    QVERIFY(!w.isEditing());
    const auto stored = ScheduledPayments::read(Db(), QStringLiteral("Woda"));
    QVERIFY(stored.has_value());
    QCOMPARE(stored->wartosc, Money::fromGrosze(15025));
    QCOMPARE(stored->lastWystAWM, 0);
    frmzap_term alarm;
    const auto *list = alarm.findChild<QListWidget *>(QStringLiteral("lstzaplaty"));
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
    auto *list = alarm.findChild<QListWidget *>(QStringLiteral("lstzaplaty"));
    const auto found = list->findItems(QStringLiteral("10 - ZUS - marzec"), Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->setCurrentItem(found.first());
    std::unique_ptr<frmprzelew> entry(alarm.issue());
    QVERIFY(entry);

    QCOMPARE(entry->mode(), qint16(0));
    const PaymentDocument doc = entry->gather();
    QCOMPARE(doc.klientNazwa, QStringLiteral("Administracja"));
    QVERIFY(doc.klientNip.isEmpty());
    QCOMPARE(doc.wartosc, Money::fromZlote(500));
    QCOMPARE(doc.dataDokumentu, QDate(2026, 3, 5));
    QCOMPARE(ScheduledPayments::read(Db(), p.nazwa)->lastWystAWM, 3);
    QVERIFY(list->findItems(QStringLiteral("10 - ZUS - marzec"), Qt::MatchExactly).isEmpty());
    QCOMPARE(list->count(), 1);
}

void TestScheduledWindows::issueWithNothingChosenBeeps()
{
    RecordingDialogs dialogs;
    frmzap_term alarm;
    QCOMPARE(alarm.issue(), nullptr);
    QCOMPARE(dialogs.beeps, 1);
}

QTEST_MAIN(TestScheduledWindows)
#include "tst_scheduledwindows.moc"
