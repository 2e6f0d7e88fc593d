#include "AppState.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ScheduledPayments.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

// A payment due on `payDay` in the months given, alarmed from `alarmDay`.
ScheduledPayment payment(const QString &name, std::initializer_list<int> months, int alarmDay, int payDay)
{
    ScheduledPayment p;
    p.nazwa = name;
    for (int m : months)
        p.months[size_t(m - 1)] = true;
    p.dzienAlarmu = alarmDay;
    p.dzienPlatnosci = payDay;
    p.rodzaj = DocumentKinds::PrzelewBankowy;
    p.bankFirmy = QStringLiteral("Bank Śląski");
    p.kontoFirmy = QStringLiteral("11 2222 3333");
    p.klientNazwa = QStringLiteral("Spółdzielnia Mieszkaniowa");
    p.klientNip = QStringLiteral("6762000000");
    p.wartosc = Money::parse(u"1 234,56").value();
    return p;
}

QStringList dueLines(const QDate &today)
{
    const QList<DuePayment> due = ScheduledPayments::due(Db(), today).value();
    QStringList lines;
    for (const DuePayment &p : due)
        lines << ScheduledPayments::alarmLine(p);
    return lines;
}

} // namespace

class TestScheduled : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        SKIP_WITHOUT_SERVER();
        m_env = std::make_unique<TestEnv>();
    }
    void init();
    void cleanup() { CloseDb(); }

    void dueCheck_data();
    void dueCheck();
    void dueInOrderAndRenamed();
    void firmOpeningTellsOfDuePayments();

private:
    std::unique_ptr<TestEnv> m_env;
    QString m_path;
    int m_files = 0;
};

void TestScheduled::init()
{
    RecordingDialogs quiet;
    m_path = m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_files));
    QVERIFY(openNewFirm(m_path));
}

void TestScheduled::dueCheck_data()
{
    QTest::addColumn<QDate>("today");
    QTest::addColumn<int>("alarmDay");
    QTest::addColumn<int>("payDay");
    QTest::addColumn<int>("issuedIn"); // 0: never issued from the alarm
    QTest::addColumn<bool>("listed");

    const QDate march5(2026, 3, 5);
    QTest::newRow("alarm day reached") << march5 << 5 << 10 << 2 << true;
    QTest::newRow("alarm day tomorrow") << march5 << 6 << 10 << 2 << false;
    QTest::newRow("issued in March of a past year") << QDate(2027, 3, 5) << 1 << 10 << 3 << false;
    QTest::newRow("alarm after payment day, before it") << QDate(2026, 3, 19) << 20 << 10 << 0 << false;
    QTest::newRow("alarm after payment day, on it") << QDate(2026, 3, 20) << 20 << 10 << 0 << true;
    QTest::newRow("month not flagged") << QDate(2026, 5, 20) << 1 << 10 << 0 << false;
}

void TestScheduled::dueCheck()
{
    QFETCH(QDate, today);
    QFETCH(int, alarmDay);
    QFETCH(int, payDay);
    QFETCH(int, issuedIn);
    QFETCH(bool, listed);

    const ScheduledPayment p = payment(QStringLiteral("Czynsz"), {3, 4}, alarmDay, payDay);
    QCOMPARE(ScheduledPayments::insert(Db(), p), ScheduledPayments::SaveResult::Saved);
    if (issuedIn != 0)
        QVERIFY(ScheduledPayments::markIssued(Db(), p.nazwa, issuedIn));

    const QStringList expected = listed ? QStringList{QString::number(payDay) + QStringLiteral(" - Czynsz")} : QStringList{};
    QCOMPARE(dueLines(today), expected);
}

void TestScheduled::dueInOrderAndRenamed()
{
    for (const auto &[name, day] : {std::pair{"Woda", 25}, std::pair{"ZUS", 15}, std::pair{"Prąd", 5}})
        QCOMPARE(ScheduledPayments::insert(Db(), payment(QString::fromUtf8(name), {3}, 1, day)),
                 ScheduledPayments::SaveResult::Saved);
    QCOMPARE(dueLines(QDate(2026, 3, 5)), (QStringList{QStringLiteral("5 - Prąd"), QStringLiteral("15 - ZUS"), QStringLiteral("25 - Woda")}));

    // A rename onto a name in use is refused; otherwise the month issued stays with the payment.
    QCOMPARE(ScheduledPayments::update(Db(), QStringLiteral("Woda"), payment(QStringLiteral("ZUS"), {2}, 2, 2)),
             ScheduledPayments::SaveResult::Duplicate);
    QVERIFY(ScheduledPayments::markIssued(Db(), QStringLiteral("Woda"), 3));
    ScheduledPayment renamed = *ScheduledPayments::read(Db(), QStringLiteral("Woda"));
    renamed.nazwa = QStringLiteral("Woda lokal");
    renamed.wartosc = Money::fromZlote(900);
    QCOMPARE(ScheduledPayments::update(Db(), QStringLiteral("Woda"), renamed), ScheduledPayments::SaveResult::Saved);
    const auto back = ScheduledPayments::read(Db(), renamed.nazwa);
    QVERIFY(back.has_value());
    QCOMPARE(back->lastWystAWM, 3);
    QCOMPARE(back->wartosc, Money::fromZlote(900));
    QCOMPARE(ScheduledPayments::names(Db()).value(), (QStringList{QStringLiteral("Prąd"), QStringLiteral("Woda lokal"), QStringLiteral("ZUS")}));
}

void TestScheduled::firmOpeningTellsOfDuePayments()
{
    QCOMPARE(ScheduledPayments::insert(Db(), payment(QStringLiteral("Czynsz"), {3}, 5, 10)), ScheduledPayments::SaveResult::Saved);
    CloseDb();

    RecordingDialogs quiet;
    const auto previous = appState().todayForRun;
    appState().todayForRun = QDate(2026, 3, 5);
    QSignalSpy spy(&FirmEvents::instance(), &FirmEvents::paymentsDue);
    const bool opened = OpenDb(firmLocation(m_path));
    appState().todayForRun = previous;
    QVERIFY(opened);
    QCOMPARE(spy.count(), 1);
}

QTEST_GUILESS_MAIN(TestScheduled)
#include "tst_scheduled.moc"
