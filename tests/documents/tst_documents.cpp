#include "AppState.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/BrowseQuery.h"
#include "documents/Firm.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentKinds.h"
#include "documents/EntryRules.h"
#include "documents/ScheduledPayments.h"

#include <QHash>
#include <QProcess>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTest>

#include <cstdio>

namespace {

Money zl(const char *text)
{
    return Money::parse(QString::fromUtf8(text)).value();
}

int count(const char *table)
{
    return stored(QStringLiteral("SELECT count(*) FROM ") + QLatin1String(table)).toInt();
}

Money storedBalance(int n)
{
    return Money::fromUnits(stored(QStringLiteral("SELECT STAN_KONTA%1 FROM firma").arg(n)).toLongLong());
}

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
    return p;
}

struct Stored {
    int kind;
    const char *date; // ISO
    const char *recipient;
    const char *bank;
};

// Dates around the edges of March 2024, March of other years and other months; in March,
// each of month, contractor and account leaves out one document the others let through.
const Stored Documents[] = {
    {1, "2024-02-29", "Alfa", "PKO BP"}, {2, "2024-03-01", "Beta", "PKO BP"},
    {5, "2024-03-15", "Alfa", "PKO BP"}, {6, "2024-03-31", "Beta", "mBank"},
    {1, "2024-04-01", "Alfa", "PKO BP"}, {3, "2023-03-10", "Beta", "PKO BP"},
    {4, "2025-12-31", "Beta", "PKO BP"},
};

QDate day(const char *iso)
{
    return QDate::fromString(QLatin1String(iso), Qt::ISODate);
}

} // namespace

Q_DECLARE_METATYPE(Browse::Filter)

class TestDocuments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { SKIP_WITHOUT_SERVER(); }
    void init();
    void cleanup() { CloseDb(); }

    void yearListsReachNextYear();
    void balanceRules_data();
    void balanceRules();
    void blocksStoredWhateverTheKind_data();
    void blocksStoredWhateverTheKind();
    void balancesGuarded();
    void contractorSearch_data();
    void contractorSearch();
    void offeredAccounts();
    void browseFilters_data();
    void browseFilters();
    void browsePages();
    void dueCheck_data();
    void dueCheck();
    void dueRenamedAndTold();
    void twoWritersLoseNothing();

private:
    TestEnv m_env;
};

void TestDocuments::init()
{
    RecordingDialogs quiet;
    QVERIFY(openNewFirm(m_env.newPath(QStringLiteral("firma.zlc"))));
}

void TestDocuments::yearListsReachNextYear()
{
    QCOMPARE(ChoiceLists::zusYears(QDate(2026, 7, 15)).constLast(), QStringLiteral("2027"));
}

void TestDocuments::balanceRules_data()
{
    // A document of 100,00 is paid from account 1 (balance 1 000,00; account 2 has
    // 500,00), corrected to `corrected` on `correctedAccount`, and optionally deleted
    // after account 1 was renamed.
    QTest::addColumn<QString>("corrected");
    QTest::addColumn<int>("correctedAccount");
    QTest::addColumn<bool>("renameAndDelete");
    QTest::addColumn<QString>("balances"); // of accounts 1 and 2
    QTest::newRow("correction 100 to 80") << "80,00" << 1 << false << "920,00|500,00";
    QTest::newRow("moved to account 2") << "120,00" << 2 << false << "900,00|480,00";
    QTest::newRow("delete after correction") << "80,00" << 1 << true << "1 000,00|500,00";
    // The document now names account 2: deleting gives its amount back there.
    QTest::newRow("delete after move") << "100,00" << 2 << true << "900,00|600,00";
}

void TestDocuments::balanceRules()
{
    QFETCH(QString, corrected);
    QFETCH(int, correctedAccount);
    QFETCH(bool, renameAndDelete);
    QFETCH(QString, balances);

    FirmData firm;
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("11 1020"), zl("1000")};
    firm.accounts[1] = {QStringLiteral("mBank"), QStringLiteral("22 1140"), zl("500")};
    QVERIFY(FirmStore::save(Db(), firm, {}));

    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzelewBankowy, QDate(2025, 3, 10));
    doc.banknr = 1;
    doc.klientNazwa = QStringLiteral("Odbiorca");
    doc.wartosc = zl("100");
    QString error;
    const auto id = DocumentStore::insert(Db(), doc, &error);
    QVERIFY2(id, qPrintable(error));

    PaymentDocument again = DocumentStore::read(Db(), *id).value();
    again.wartosc = Money::parse(corrected).value();
    again.banknr = static_cast<qint16>(correctedAccount);
    QVERIFY2(DocumentStore::update(Db(), again, &error), qPrintable(error));
    if (renameAndDelete) {
        firm = FirmStore::read(Db()).value();
        firm.accounts[0] = {QStringLiteral("Inny bank"), QStringLiteral("99 0000"), firm.accounts[0].balance};
        QVERIFY(FirmStore::save(Db(), firm, {}));
        QVERIFY2(DocumentStore::remove(Db(), *id, &error), qPrintable(error));
    }

    // The stored balances, and the in-memory list the same, to the grosz.
    QCOMPARE(storedBalance(1).kwota() + QLatin1Char('|') + storedBalance(2).kwota(), balances);
    QCOMPARE(Accounts::list()[1].balance, storedBalance(2));
}

void TestDocuments::blocksStoredWhateverTheKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("zusType");
    QTest::newRow("bank transfer keeps ZUS defaults") << 1 << 0;
    QTest::newRow("ZUS, type A") << 5 << 6;
    QTest::newRow("tax") << 6 << 0;
}

void TestDocuments::blocksStoredWhateverTheKind()
{
    QFETCH(int, kind);
    QFETCH(int, zusType);
    PaymentDocument doc = PaymentDocument::newDocument(static_cast<qint16>(kind), QDate(2026, 4, 20));
    doc.zus.typWplaty = static_cast<qint16>(zusType);
    doc.wartosc = zl("12,34");
    const auto id = DocumentStore::insert(Db(), doc);
    QVERIFY(id);
    // Account, type, year (2026 counted from 1995) and month (April is 3) of the ZUS block,
    // then the tax block (years from 1999); the amount in exact units, no floating point.
    QCOMPARE(stored(QStringLiteral("SELECT ZUS_NrRachunku || '|' || ZUS_TypWplaty || '|' || ZUS_Rok || '|' || "
                                   "ZUS_Miesiac || '|' || ZUS_NrDeklaracji || '|' || ZUS_CzyZus || '|' || POD_Rok || "
                                   "'|' || POD_TypOkresu || '|' || POD_CzyPodatki || '|' || WARTOSC FROM zlecanki")),
             QStringLiteral("0|%1|31|3|01|%2|27|0|%3|123400").arg(zusType).arg(int(kind == 5)).arg(int(kind == 6)));
    // Read back, the slip prints the type's letter: the last of the list for A, the first by default.
    QCOMPARE(ChoiceLists::letterAt(ChoiceLists::zusPaymentTypes(), DocumentStore::read(Db(), *id)->zus.typWplaty),
             zusType ? QStringLiteral("A") : QStringLiteral("S"));
}

void TestDocuments::balancesGuarded()
{
    // A firm without its row yet: a number outside 1..40 is refused and adds nothing.
    QVERIFY(!FirmStore::read(Db()));
    for (int n : {0, 41}) {
        QString error;
        QVERIFY(!Accounts::charge(Db(), n, zl("1"), &error));
        QVERIFY2(error.contains(QStringLiteral("od 1 do 40")), qPrintable(error));
    }
    QCOMPARE(count("firma"), 0);
    // Charging adds the row, from zero balances; a negative amount gives back.
    QVERIFY(Accounts::charge(Db(), 3, zl("150")));
    QVERIFY(Accounts::charge(Db(), 40, zl("-0,01")));
    QCOMPARE(storedBalance(3).kwota() + QLatin1Char('|') + storedBalance(40).kwota(), QStringLiteral("-150,00|0,01"));

    // A document the store refuses changes nothing.
    FirmData firm;
    firm.accounts[0].balance = zl("100");
    QVERIFY(FirmStore::save(Db(), firm, std::bitset<Accounts::Count>().set()));
    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzelewBankowy, QDate(2025, 1, 2));
    doc.klientNazwa = QStringLiteral("Nowy odbiorca");
    doc.zaDokumentNazwa = QString(151, QLatin1Char('x'));
    doc.wartosc = zl("10");
    QString error;
    QVERIFY(!DocumentStore::insert(Db(), doc, &error));
    QVERIFY2(error.contains(QStringLiteral("za długi")), qPrintable(error));
    QCOMPARE(count("zlecanki") + count("kontrahenci"), 0);
    QCOMPARE(storedBalance(1), zl("100"));

    // A too long firm name: the row stays as it was.
    firm.nazwa = QString(51, QLatin1Char('N'));
    firm.accounts[0].balance = zl("5");
    QVERIFY(!FirmStore::save(Db(), firm, std::bitset<Accounts::Count>().set(), &error));
    QCOMPARE(storedBalance(1), zl("100"));

    // A balance that the charge would carry past what can be held: refused, never wrapped.
    QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("UPDATE firma SET STAN_KONTA1 = -9223372036854775000")));
    doc.zaDokumentNazwa = QStringLiteral("Faktura 1");
    QVERIFY(!DocumentStore::insert(Db(), doc, &error));
    QVERIFY2(error.contains(QStringLiteral("poza zakres")), qPrintable(error));
    QCOMPARE(storedBalance(1), Money::fromUnits(-9223372036854775000LL));
}

void TestDocuments::contractorSearch_data()
{
    QTest::addColumn<int>("by");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("found"); // names, in name order
    QTest::newRow("town, blanks around") << 2 << "  KRAKÓW " << QStringList{"Hurtownia ŁAD"};
    QTest::newRow("street with a quote") << 1 << "o'hara" << QStringList{"Andrzej Nowak"};
    QTest::newRow("percent is no wildcard") << 1 << "%" << QStringList{};
    QTest::newRow("NIP part") << 3 << "45-67" << QStringList{"Hurtownia ŁAD"};
}

void TestDocuments::contractorSearch()
{
    QFETCH(int, by);
    QFETCH(QString, text);
    QFETCH(QStringList, found);
    // Id, name, second name line, street, postal code, town, NIP, bank, account.
    for (const Contractor &c : {Contractor{0, "Źródło s.c.", "Oddział Bałuty", "Piotrkowska 1", "", "ŁÓDŹ", "", "", ""},
                                Contractor{0, "Hurtownia ŁAD", "", "Długa 5", "", "Kraków", "123-45-67-890", "", ""},
                                Contractor{0, "Andrzej Nowak", "ODDZIAŁ 2", "ul. O'Hara 3", "", "Łódź", "", "", ""}})
        QVERIFY(ContractorStore::insert(Db(), c));

    const auto ids = ContractorStore::search(Db(), static_cast<ContractorStore::SearchBy>(by), text);
    QVERIFY(ids);
    QStringList names;
    for (qint32 id : *ids)
        names << ContractorStore::read(Db(), id)->nazwa;
    QCOMPARE(names, found);
}

void TestDocuments::offeredAccounts()
{
    // Numbers kept through the gaps, and the unnamed account of a stored document (5) kept.
    Accounts::List accounts;
    for (int n : {2, 40})
        accounts[n - 1].bankName = QStringLiteral("Bank ") + QString::number(n);
    accounts[10].bankName = QStringLiteral("   "); // blanks name no account
    accounts[11].number = QStringLiteral("12 3456"); // nor does a number alone
    QCOMPARE(EntryRules::offeredAccounts(accounts, 5), (QList<int>{2, 5, 40}));
}

void TestDocuments::browseFilters_data()
{
    QTest::addColumn<Browse::Filter>("filter");
    QTest::addColumn<QString>("contractor"); // by name; empty for every contractor
    QTest::addColumn<QString>("dates");      // the dates listed, in date order

    auto year = [](int y, int kind = 0, std::optional<QString> bank = std::nullopt) {
        Browse::Filter f;
        f.year = y;
        f.kind = kind;
        f.bankName = std::move(bank);
        return f;
    };
    auto month = [](int m, std::optional<QString> bank = std::nullopt) {
        Browse::Filter f;
        f.period = Browse::Period::Month;
        f.month = m;
        f.bankName = std::move(bank);
        return f;
    };
    QTest::newRow("a year, leap day included")
        << year(2024) << "" << "2024-02-29 2024-03-01 2024-03-15 2024-03-31 2024-04-01";
    QTest::newRow("kind by its position") << year(2024, 1) << "" << "2024-02-29 2024-04-01";
    QTest::newRow("month, contractor and account together")
        << month(3, QStringLiteral("PKO BP")) << "Beta" << "2023-03-10 2024-03-01";
    QTest::newRow("a quote in the bank name is only text")
        << year(2024, 0, QStringLiteral("x' OR '1'='1")) << "" << "";
}

void TestDocuments::browseFilters()
{
    QFETCH(Browse::Filter, filter);
    QFETCH(QString, contractor);
    QFETCH(QString, dates);
    QHash<QString, qint32> contractors;
    for (const Stored &s : Documents) {
        PaymentDocument doc = sampleDocument(s.kind, day(s.date));
        doc.klientNazwa = QLatin1String(s.recipient);
        doc.bankFirmy = QLatin1String(s.bank);
        QVERIFY(DocumentStore::insert(Db(), doc));
        contractors.insert(doc.klientNazwa, doc.klientId);
    }
    if (!contractor.isEmpty())
        filter.contractorId = contractors.value(contractor);
    Browse::Model model;
    QString error;
    QVERIFY2(model.refresh(Db(), filter, &error), qPrintable(error));
    while (model.canFetchMore())
        model.fetchMore();
    QStringList listed;
    for (int row = 0; row < model.rowCount(); ++row)
        listed << QDate::fromString(model.index(row, 0).data().toString(), QStringLiteral("dd-MM-yyyy")).toString(Qt::ISODate);
    QCOMPARE(listed.join(QLatin1Char(' ')), dates);
}

void TestDocuments::browsePages()
{
    // More documents than a page, most of them on one day: each is listed once, by date and
    // then by number, however the pages fall.
    QSqlDatabase db = Db();
    QVERIFY(db.transaction());
    QSqlQuery q(db);
    QVERIFY(q.prepare(QStringLiteral("INSERT INTO zlecanki (rodzaj, data_dokumentu, wartosc) VALUES (1, ?, ?)")));
    const int Count = 2 * Browse::Model::PageRows + 10;
    for (int i = 0; i < Count; ++i) {
        q.addBindValue(i % 5 ? QStringLiteral("2024-05-02") : QStringLiteral("2024-05-01"));
        q.addBindValue(i);
        QVERIFY(q.exec());
    }
    QVERIFY(db.commit());
    Browse::Filter year;
    year.year = 2024;
    Browse::Model model;
    QVERIFY(model.refresh(db, year));
    QCOMPARE(model.rowCount(), Browse::Model::PageRows);
    while (model.canFetchMore())
        model.fetchMore();
    QCOMPARE(model.rowCount(), Count);
    for (int row = 1; row < Count; ++row) {
        const bool sameDay = model.index(row, 0).data() == model.index(row - 1, 0).data();
        QVERIFY2(sameDay ? model.idAt(row) > model.idAt(row - 1) : row == Count / 5 + 1, qPrintable(QString::number(row)));
    }
}

void TestDocuments::dueCheck_data()
{
    QTest::addColumn<QDate>("today");
    QTest::addColumn<int>("alarmDay"); // paid on the 10th
    QTest::addColumn<int>("issuedIn"); // 0: never issued from the alarm
    QTest::addColumn<bool>("listed");

    const QDate march5(2026, 3, 5);
    QTest::newRow("alarm day reached") << march5 << 5 << 2 << true;
    QTest::newRow("alarm day tomorrow") << march5 << 6 << 2 << false;
    QTest::newRow("issued in March of a past year") << QDate(2027, 3, 5) << 1 << 3 << false;
    QTest::newRow("month not flagged") << QDate(2026, 5, 20) << 1 << 0 << false;
}

void TestDocuments::dueCheck()
{
    QFETCH(QDate, today);
    QFETCH(int, alarmDay);
    QFETCH(int, issuedIn);
    QFETCH(bool, listed);

    const ScheduledPayment p = payment(QStringLiteral("Czynsz"), {3, 4}, alarmDay, 10);
    QCOMPARE(ScheduledPayments::insert(Db(), p), ScheduledPayments::SaveResult::Saved);
    if (issuedIn != 0)
        QVERIFY(ScheduledPayments::markIssued(Db(), p.nazwa, issuedIn));

    const QList<DuePayment> due = ScheduledPayments::due(Db(), today).value();
    QStringList lines;
    for (const DuePayment &d : due)
        lines << ScheduledPayments::alarmLine(d);
    QCOMPARE(lines, listed ? QStringList{QStringLiteral("10 - Czynsz")} : QStringList{});
}

void TestDocuments::dueRenamedAndTold()
{
    for (const auto &[name, day] : {std::pair{"Woda", 25}, std::pair{"ZUS", 15}})
        QCOMPARE(ScheduledPayments::insert(Db(), payment(QString::fromUtf8(name), {3}, 1, day)),
                 ScheduledPayments::SaveResult::Saved);

    // A rename onto a name in use is refused; otherwise the month issued stays with the payment.
    QCOMPARE(ScheduledPayments::update(Db(), QStringLiteral("Woda"), payment(QStringLiteral("ZUS"), {2}, 2, 2)),
             ScheduledPayments::SaveResult::Duplicate);
    QVERIFY(ScheduledPayments::markIssued(Db(), QStringLiteral("Woda"), 3));
    ScheduledPayment renamed = *ScheduledPayments::read(Db(), QStringLiteral("Woda"));
    renamed.nazwa = QStringLiteral("Woda lokal");
    QCOMPARE(ScheduledPayments::update(Db(), QStringLiteral("Woda"), renamed), ScheduledPayments::SaveResult::Saved);
    QCOMPARE(ScheduledPayments::read(Db(), renamed.nazwa)->lastWystAWM, 3);

    // Opening the firm tells of the payments due.
    const QString path = firmFile();
    CloseDb();

    RecordingDialogs quiet;
    const auto previous = appState().todayForRun;
    appState().todayForRun = QDate(2026, 3, 5);
    QSignalSpy spy(&FirmEvents::instance(), &FirmEvents::paymentsDue);
    const bool opened = OpenDb(path);
    appState().todayForRun = previous;
    QVERIFY(opened);
    QCOMPARE(spy.count(), 1);
}

void TestDocuments::twoWritersLoseNothing()
{
    const QString path = firmFile();
    CloseDb();
    QList<QProcess *> writers;
    for (const char *tag : {"A", "B"}) {
        auto *p = new QProcess(this);
        p->setProcessEnvironment(m_env.processEnvironment());
        p->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--pisz"), path, QLatin1String(tag)});
        writers << p;
    }
    for (QProcess *p : std::as_const(writers)) {
        QVERIFY(p->waitForFinished(600000));
        QVERIFY2(p->exitStatus() == QProcess::NormalExit && p->exitCode() == 0, p->readAllStandardError().constData());
        delete p;
    }
    RecordingDialogs quiet;
    QVERIFY(OpenDb(path));
    QCOMPARE(stored(QStringLiteral("SELECT count(DISTINCT ZA_DOKUMENT_NAZWA) || '|' || count(*) FROM zlecanki")),
             QStringLiteral("3000|3000"));
    QCOMPARE(count("kontrahenci"), 1);
    QCOMPARE(storedBalance(1), zl("-3000"));
}

// "--pisz FIRMA ZNAK": a second process writing the firm at the same time as another one,
// 1,500 documents of one zloty, each titled with the mark and its number.
static int writer(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    RecordingDialogs quiet;
    if (!OpenDb(QString::fromLocal8Bit(argv[2])))
        return 1;
    for (int i = 0; i < 1500; ++i) {
        PaymentDocument d = sampleDocument(1);
        d.banknr = 1;
        d.wartosc = zl("1");
        d.zaDokumentNazwa = QString::fromLocal8Bit(argv[3]) + QString::number(i);
        QString error;
        if (!DocumentStore::insert(Db(), d, &error)) {
            std::fprintf(stderr, "%d: %s\n", i, qPrintable(error));
            return 1;
        }
    }
    CloseDb();
    return 0;
}

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--pisz") == 0)
        return writer(argc, argv);
    QCoreApplication app(argc, argv);
    TestDocuments test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_documents.moc"
