#include "AppState.h"
#include "Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "db/FirmDatabase.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentKinds.h"
#include "documents/DocumentStore.h"
#include "documents/FirmData.h"

#include <QSignalSpy>
#include <QSqlQuery>
#include <QTest>

#include <memory>

namespace {

Money zl(const char *text)
{
    return Money::parse(QString::fromUtf8(text)).value();
}

// A value of the open firm's database, straight from SQL.
QVariant stored(const QString &sql)
{
    QSqlQuery q(Db());
    if (!q.exec(sql) || !q.next())
        return QStringLiteral("<brak>");
    return q.value(0);
}

Money storedBalance(int n)
{
    return Money::fromUnits(stored(QStringLiteral("SELECT STAN_KONTA%1 FROM firma").arg(n)).toLongLong());
}

} // namespace

class TestDocuments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup() { CloseDb(); }

    void kindNames_data();
    void kindNames();
    void fixedLists_data();
    void fixedLists();
    void yearListsGrowAtTheEnd_data();
    void yearListsGrowAtTheEnd();
    void balanceRules_data();
    void balanceRules();
    void blocksStoredWhateverTheKind_data();
    void blocksStoredWhateverTheKind();
    void chargeAccount_data();
    void chargeAccount();
    void firstSaveCreatesFirmRow();
    void failedSaveChangesNothing();
    void recipientJoinsDictionaryOnce();
    void contractorSearch_data();
    void contractorSearch();

private:
    std::unique_ptr<TestEnv> m_env;
    int m_files = 0;
};

void TestDocuments::init()
{
    const QString path = m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_files));
    QString error;
    QVERIFY2(FirmDatabase::create(path, &error), qPrintable(error));
    RecordingDialogs quiet;
    QVERIFY(OpenDb(path));
}

void TestDocuments::kindNames_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("singular");
    QTest::addColumn<QString>("plural");
    QTest::newRow("1") << 1 << "Przelew bankowy" << "Zlecanki Bankowe";
    QTest::newRow("2") << 2 << "Bankowy dowod wpłaty" << "Bankowe Dowody Wpłaty";
    QTest::newRow("3") << 3 << "Przekaz pocztowy na konto" << "Przekazy Pocztowe na konto";
    QTest::newRow("4") << 4 << "Przekaz imienny" << "Przekazy Imienne";
    QTest::newRow("5") << 5 << "Przelew na konto ZUS" << "Zlecanki na konto ZUS";
    QTest::newRow("6") << 6 << "Przelew na podatki" << "Zlecanki na podatki";
    QTest::newRow("0") << 0 << "" << "";
    QTest::newRow("7") << 7 << "" << "";
    QTest::newRow("-1") << -1 << "" << "";
    QTest::newRow("max") << 32767 << "" << "";
}

void TestDocuments::kindNames()
{
    QFETCH(int, code);
    QFETCH(QString, singular);
    QFETCH(QString, plural);
    QCOMPARE(DocumentKinds::name(static_cast<qint16>(code)), singular);
    QCOMPARE(DocumentKinds::pluralName(static_cast<qint16>(code)), plural);
    // The browse filter lists each kind at the position of its code, "all" at 0.
    QCOMPARE(DocumentKinds::browseFilterItems().value(code),
             code == 0 ? DocumentKinds::AllKinds : code <= 6 ? plural : QString());
}

void TestDocuments::fixedLists_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("lastLetter"); // what a slip prints for the last item
    QTest::newRow("ZUS accounts") << ChoiceLists::zusAccounts()
                                  << QStringList{"Ubezpieczenie społeczne", "Ubezpieczenie zdrowotne", "FP i FGŚP",
                                                 "Fund. Emerytur Pomostowych"}
                                  << "Fund. Emerytur Pomostowych";
    QTest::newRow("ZUS payment types")
        << ChoiceLists::zusPaymentTypes()
        << QStringList{"S - składka za 1 m-c",  "M - składka dłuższa niż m-c", "U - układ ratalny",
                       "T - odroczenie terminu", "D - opłata dodatkowa",       "E - koszty egzekucyjne",
                       "A - dodatkowa opłata za błędy płatnika"}
        << "A";
    QTest::newRow("tax period types") << ChoiceLists::taxPeriodTypes()
                                      << QStringList{"M - miesiąc", "P - półrocze", "R - rok", "K - kwartał",
                                                     "D - dekada"}
                                      << "D";
    QTest::newRow("ZUS identifier types") << ChoiceLists::zusIdentifierTypes()
                                          << QStringList{"R - REGON", "P - PESEL", "1 - Dowód osobisty", "2 - Paszport"}
                                          << "2";
    QTest::newRow("tax identifier types") << ChoiceLists::taxIdentifierTypes()
                                          << QStringList{"N - NIP", "R - REGON", "P - PESEL", "1 - Dowód osobisty",
                                                         "2 - Paszport"}
                                          << "2";
}

void TestDocuments::fixedLists()
{
    QFETCH(QStringList, list);
    QFETCH(QStringList, expected);
    QFETCH(QString, lastLetter);
    QCOMPARE(list, expected);
    QCOMPARE(ChoiceLists::letterAt(list, static_cast<int>(list.size() - 1)), lastLetter);
    QCOMPARE(ChoiceLists::letterAt(list, static_cast<int>(list.size())), QString());
    QCOMPARE(ChoiceLists::letterAt(list, -1), QString());
}

void TestDocuments::yearListsGrowAtTheEnd_data()
{
    QTest::addColumn<bool>("tax");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::newRow("tax, long ago") << true << QDate(2003, 5, 1) << "1999" << "2022";
    QTest::newRow("tax, 2021") << true << QDate(2021, 12, 31) << "1999" << "2022";
    QTest::newRow("tax, 2025") << true << QDate(2025, 1, 1) << "1999" << "2026";
    QTest::newRow("tax, 2026") << true << QDate(2026, 7, 15) << "1999" << "2027";
    QTest::newRow("ZUS, 2010") << false << QDate(2010, 3, 3) << "1995" << "2024";
    QTest::newRow("ZUS, 2026") << false << QDate(2026, 7, 15) << "1995" << "2027";
}

void TestDocuments::yearListsGrowAtTheEnd()
{
    QFETCH(bool, tax);
    QFETCH(QDate, today);
    QFETCH(QString, first);
    QFETCH(QString, last);
    const QStringList years = tax ? ChoiceLists::taxYears(today) : ChoiceLists::zusYears(today);
    QCOMPARE(years.first(), first);
    QCOMPARE(years.last(), last);
    // One item per year, none missing: stored positions count years from the first.
    QCOMPARE(ChoiceLists::yearPosition(years, last.toInt()), last.toInt() - first.toInt());
    QCOMPARE(years.size(), last.toInt() - first.toInt() + 1);
}

void TestDocuments::balanceRules_data()
{
    // A document of `amount` is issued from account 1 (balance 1 000,00; account 2 has
    // 500,00), then optionally corrected to `corrected` on `correctedAccount`, account 1
    // optionally renamed, and the document optionally deleted.
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("corrected"); // "" no correction
    QTest::addColumn<int>("correctedAccount");
    QTest::addColumn<bool>("renameAndDelete");
    QTest::addColumn<QString>("balance1");
    QTest::addColumn<QString>("balance2");
    QTest::newRow("insert") << "100,00" << "" << 1 << false << "900,00" << "500,00";
    QTest::newRow("insert a grosz") << "0,01" << "" << 1 << false << "999,99" << "500,00";
    QTest::newRow("correction 100 to 80") << "100,00" << "80,00" << 1 << false << "920,00" << "500,00";
    QTest::newRow("correction 80 to 100") << "80,00" << "100,00" << 1 << false << "900,00" << "500,00";
    QTest::newRow("correction unchanged") << "100,00" << "100,00" << 1 << false << "900,00" << "500,00";
    QTest::newRow("moved to account 2") << "100,00" << "120,00" << 2 << false << "900,00" << "480,00";
    QTest::newRow("delete") << "100,00" << "" << 1 << true << "1 000,00" << "500,00";
    QTest::newRow("delete after correction") << "100,00" << "80,00" << 1 << true << "1 000,00" << "500,00";
    // The document now names account 2: deleting gives its amount back there.
    QTest::newRow("delete after move") << "100,00" << "100,00" << 2 << true << "900,00" << "600,00";
}

void TestDocuments::balanceRules()
{
    QFETCH(QString, amount);
    QFETCH(QString, corrected);
    QFETCH(int, correctedAccount);
    QFETCH(bool, renameAndDelete);
    QFETCH(QString, balance1);
    QFETCH(QString, balance2);

    FirmData firm;
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("11 1020"), zl("1000")};
    firm.accounts[1] = {QStringLiteral("mBank"), QStringLiteral("22 1140"), zl("500")};
    QVERIFY(FirmStore::save(Db(), firm, {}));

    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzelewBankowy, QDate(2025, 3, 10));
    doc.banknr = 1;
    doc.klientNazwa = QStringLiteral("Odbiorca");
    doc.wartosc = Money::parse(amount).value();
    QString error;
    const auto id = DocumentStore::insert(Db(), doc, &error);
    QVERIFY2(id, qPrintable(error));
    QCOMPARE(doc.id, *id);

    if (!corrected.isEmpty()) {
        PaymentDocument again = DocumentStore::read(Db(), *id).value();
        QCOMPARE(again.wartosc, doc.wartosc);
        again.wartosc = Money::parse(corrected).value();
        again.banknr = static_cast<qint16>(correctedAccount);
        QVERIFY2(DocumentStore::update(Db(), again, &error), qPrintable(error));
        QCOMPARE(DocumentStore::read(Db(), *id)->wartosc, again.wartosc);
    }
    if (renameAndDelete) {
        firm = FirmStore::read(Db()).value();
        firm.accounts[0].bankName = QStringLiteral("Inny bank");
        firm.accounts[0].number = QStringLiteral("99 0000");
        QVERIFY(FirmStore::save(Db(), firm, {}));
        QVERIFY2(DocumentStore::remove(Db(), *id, &error), qPrintable(error));
        QVERIFY(!DocumentStore::read(Db(), *id));
    }

    // The stored balances, and the in-memory list the same, to the grosz.
    QCOMPARE(storedBalance(1).kwota(), balance1);
    QCOMPARE(storedBalance(2).kwota(), balance2);
    QCOMPARE(Accounts::list()[0].balance, storedBalance(1));
    QCOMPARE(Accounts::list()[1].balance, storedBalance(2));
}

void TestDocuments::blocksStoredWhateverTheKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("zusType");
    QTest::addColumn<int>("czyZus");
    QTest::addColumn<int>("czyPodatki");
    QTest::newRow("bank transfer keeps ZUS defaults") << 1 << -1 << 0 << 0;
    QTest::newRow("ZUS, type A") << 5 << 6 << 1 << 0;
    QTest::newRow("tax") << 6 << -1 << 0 << 1;
}

void TestDocuments::blocksStoredWhateverTheKind()
{
    QFETCH(int, kind);
    QFETCH(int, zusType);
    QFETCH(int, czyZus);
    QFETCH(int, czyPodatki);
    PaymentDocument doc = PaymentDocument::newDocument(static_cast<qint16>(kind), QDate(2026, 4, 20));
    if (zusType >= 0)
        doc.zus.typWplaty = static_cast<qint16>(zusType);
    doc.wartosc = zl("12,34");
    const auto id = DocumentStore::insert(Db(), doc);
    QVERIFY(id);
    QSqlQuery q(Db());
    QVERIFY(q.exec(QStringLiteral("SELECT ZUS_NrRachunku, ZUS_TypWplaty, ZUS_Rok, ZUS_Miesiac, ZUS_NrDeklaracji, "
                                  "ZUS_CzyZus, POD_Rok, POD_TypOkresu, POD_CzyPodatki, WARTOSC FROM zlecanki WHERE ID=") +
                   QString::number(*id)));
    QVERIFY(q.next());
    QCOMPARE(q.value(0).toInt(), 0);
    QCOMPARE(q.value(1).toInt(), qMax(0, zusType));
    QCOMPARE(ChoiceLists::itemAt(ChoiceLists::zusYears(), q.value(2).toInt()), QStringLiteral("2026"));
    QCOMPARE(ChoiceLists::itemAt(ChoiceLists::months(), q.value(3).toInt()), QStringLiteral("kwiecień"));
    QCOMPARE(q.value(4).toString(), QStringLiteral("01"));
    QCOMPARE(q.value(5).toInt(), czyZus);
    QCOMPARE(ChoiceLists::itemAt(ChoiceLists::taxYears(), q.value(6).toInt()), QStringLiteral("2026"));
    QCOMPARE(q.value(7).toInt(), 0);
    QCOMPARE(q.value(8).toInt(), czyPodatki);
    QCOMPARE(q.value(9).toLongLong(), 123400); // exact units, no floating point on the way
    if (zusType >= 0)
        QCOMPARE(ChoiceLists::letterAt(ChoiceLists::zusPaymentTypes(), DocumentStore::read(Db(), *id)->zus.typWplaty),
                 QStringLiteral("A"));
}

void TestDocuments::chargeAccount_data()
{
    QTest::addColumn<int>("account");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("balance"); // of that account afterwards; "" refused
    QTest::newRow("account 3, 150,00") << 3 << "150,00" << "-150,00";
    QTest::newRow("account 40 given back") << 40 << "-0,01" << "0,01";
    QTest::newRow("account 0") << 0 << "1,00" << "";
    QTest::newRow("account 41") << 41 << "1,00" << "";
}

void TestDocuments::chargeAccount()
{
    QFETCH(int, account);
    QFETCH(QString, amount);
    QFETCH(QString, balance);
    // A firm without its row yet: charging still works, from a zero balance.
    QVERIFY(!FirmStore::read(Db()));
    QString error;
    const bool ok = Accounts::charge(Db(), account, Money::parse(amount).value(), &error);
    QCOMPARE(ok, !balance.isEmpty());
    if (!ok) {
        QVERIFY2(error.contains(QStringLiteral("od 1 do 40")), qPrintable(error));
        QVERIFY(!Accounts::account(account));
        QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM firma")).toInt(), 0);
        return;
    }
    QCOMPARE(storedBalance(account).kwota(), balance);
    QCOMPARE(Accounts::account(account)->balance.kwota(), balance);
}

void TestDocuments::firstSaveCreatesFirmRow()
{
    QVERIFY(!FirmStore::read(Db()));
    FirmData firm;
    firm.nazwa = QStringLiteral("Zakład Ślusarski");
    firm.kod = QStringLiteral("00-950");
    firm.typIdentZus = 3;
    firm.typIdentPod = 0;
    firm.accounts[39] = {QStringLiteral("Bank 40"), QStringLiteral("40 4040"), zl("40,40")};
    QString error;
    QVERIFY2(FirmStore::save(Db(), firm, {}, &error), qPrintable(error));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM firma")).toInt(), 1);
    QCOMPARE(Accounts::accountNumber(40), QStringLiteral("40 4040"));
    QCOMPARE(Accounts::list()[39].balance, zl("40,40"));

    // Later saves rewrite the one row; balances not marked keep what documents did to them.
    QVERIFY(Accounts::charge(Db(), 40, zl("0,40")));
    firm.nazwa = QStringLiteral("Zakład Ślusarski s.c.");
    firm.accounts[0].balance = zl("7");
    std::bitset<Accounts::Count> marked;
    marked.set(0);
    QVERIFY(FirmStore::save(Db(), firm, marked));
    const FirmData back = FirmStore::read(Db()).value();
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM firma")).toInt(), 1);
    QCOMPARE(back.nazwa, firm.nazwa);
    QCOMPARE(back.typIdentZus, 3);
    QCOMPARE(back.typIdentPod, 0);
    QCOMPARE(back.accounts[0].balance, zl("7"));
    QCOMPARE(back.accounts[39].balance, zl("40"));
    QCOMPARE(Accounts::list()[39].balance, zl("40"));
}

void TestDocuments::failedSaveChangesNothing()
{
    FirmData firm;
    firm.accounts[0].balance = zl("100");
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzelewBankowy, QDate(2025, 1, 2));
    doc.klientNazwa = QStringLiteral("Nowy odbiorca");
    doc.zaDokumentNazwa = QString(151, QLatin1Char('x'));
    doc.wartosc = zl("10");
    QSignalSpy changed(&ContractorEvents::instance(), &ContractorEvents::changed);
    QString error;
    QVERIFY(!DocumentStore::insert(Db(), doc, &error));
    QVERIFY2(error.contains(QStringLiteral("za długi")), qPrintable(error));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM zlecanki")).toInt(), 0);
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")).toInt(), 0);
    QCOMPARE(storedBalance(1), zl("100"));
    QCOMPARE(Accounts::list()[0].balance, zl("100"));
    QCOMPARE(changed.size(), 0);

    // A too long firm name: the row stays as it was.
    firm.nazwa = QString(51, QLatin1Char('N'));
    firm.accounts[0].balance = zl("5");
    QVERIFY(!FirmStore::save(Db(), firm, std::bitset<Accounts::Count>().set(), &error));
    QCOMPARE(storedBalance(1), zl("100"));
    QCOMPARE(stored(QStringLiteral("SELECT NAZWA FROM firma")).toString(), QString());
}

void TestDocuments::recipientJoinsDictionaryOnce()
{
    PaymentDocument doc = PaymentDocument::newDocument(DocumentKinds::PrzekazImienny, QDate(2025, 1, 2));
    doc.klientNazwa = QStringLiteral("Jan Kowalski");
    doc.klientMiasto = QStringLiteral("Łódź");
    QSignalSpy changed(&ContractorEvents::instance(), &ContractorEvents::changed);
    QVERIFY(DocumentStore::insert(Db(), doc));
    const qint32 contractor = doc.klientId;
    QVERIFY(contractor > 0);
    QCOMPARE(ContractorStore::read(Db(), contractor)->miasto, QStringLiteral("Łódź"));
    QCOMPARE(changed.size(), 1);

    PaymentDocument second = PaymentDocument::newDocument(DocumentKinds::PrzekazImienny, QDate(2025, 1, 3));
    second.klientNazwa = QStringLiteral("Jan Kowalski");
    second.klientMiasto = QStringLiteral("Kraków");
    QVERIFY(DocumentStore::insert(Db(), second));
    QCOMPARE(second.klientId, contractor);
    QCOMPARE(ContractorStore::read(Db(), contractor)->miasto, QStringLiteral("Łódź"));
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")).toInt(), 1);
    QCOMPARE(changed.size(), 1);
}

void TestDocuments::contractorSearch_data()
{
    QTest::addColumn<int>("by");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("found"); // names, in name order
    QTest::newRow("name, first line") << 0 << "hurt" << QStringList{"Hurtownia ŁAD"};
    QTest::newRow("name, second line only") << 0 << "oddział" << QStringList{"Andrzej Nowak", "Źródło s.c."};
    QTest::newRow("name, Polish capitals") << 0 << "ład" << QStringList{"Hurtownia ŁAD"};
    QTest::newRow("town, Polish small letters") << 2 << "łódź" << QStringList{"Andrzej Nowak", "Źródło s.c."};
    QTest::newRow("town, blanks around") << 2 << "  KRAKÓW " << QStringList{"Hurtownia ŁAD"};
    QTest::newRow("street with a quote") << 1 << "o'hara" << QStringList{"Andrzej Nowak"};
    QTest::newRow("percent is no wildcard") << 1 << "%" << QStringList{};
    QTest::newRow("underscore is no wildcard") << 2 << "_" << QStringList{};
    QTest::newRow("NIP part") << 3 << "45-67" << QStringList{"Hurtownia ŁAD"};
    QTest::newRow("nothing") << 0 << "Zenon" << QStringList{};
}

void TestDocuments::contractorSearch()
{
    QFETCH(int, by);
    QFETCH(QString, text);
    QFETCH(QStringList, found);
    auto add = [](const char *nazwa, const char *nazwa1, const char *ulica, const char *miasto, const char *nip) {
        Contractor c;
        c.nazwa = QString::fromUtf8(nazwa);
        c.nazwa1 = QString::fromUtf8(nazwa1);
        c.ulica = QString::fromUtf8(ulica);
        c.miasto = QString::fromUtf8(miasto);
        c.nip = QString::fromUtf8(nip);
        c.bankNazwa = QStringLiteral("Bank");
        c.bankKonto = QStringLiteral("1");
        return ContractorStore::insert(Db(), c).value();
    };
    add("Źródło s.c.", "Oddział Bałuty", "Piotrkowska 1", "ŁÓDŹ", "");
    add("Hurtownia ŁAD", "", "Długa 5", "Kraków", "123-45-67-890");
    add("Andrzej Nowak", "ODDZIAŁ 2", "ul. O'Hara 3", "Łódź", "");

    const auto ids = ContractorStore::search(Db(), static_cast<ContractorStore::SearchBy>(by), text);
    QVERIFY(ids);
    QStringList names;
    for (qint32 id : *ids)
        names << ContractorStore::read(Db(), id)->nazwa;
    QCOMPARE(names, found);

    // The dictionary's list is in the Polish alphabet's order as well.
    QStringList all;
    const QList<ContractorName> list = ContractorStore::list(Db()).value();
    for (const ContractorName &c : list)
        all << c.nazwa;
    QCOMPARE(all, (QStringList{"Andrzej Nowak", "Hurtownia ŁAD", "Źródło s.c."}));
}

QTEST_GUILESS_MAIN(TestDocuments)
#include "tst_documents.moc"
