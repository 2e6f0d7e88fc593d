#include "documents/EntryRules.h"

#include <QTest>

class TestEntryRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void requiredFields_data();
    void requiredFields();
    void offeredAccounts_data();
    void offeredAccounts();
};

void TestEntryRules::requiredFields_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("fields");
    const QStringList general{"txtnazwa", "txtzadokument", "txtwartosc"};
    const QStringList bank{"txtbank", "txtkonto"};
    QTest::newRow("transfer") << 1 << general + bank;
    QTest::newRow("named postal: no bank") << 4 << general;
    QTest::newRow("ZUS: its amount only") << 5 << QStringList{"txtWartoscZus"};
    QTest::newRow("tax: the office's bank") << 6 << bank;
}

void TestEntryRules::requiredFields()
{
    QFETCH(int, kind);
    QFETCH(QStringList, fields);
    QCOMPARE(EntryRules::requiredFields(kind), fields);
}

void TestEntryRules::offeredAccounts_data()
{
    QTest::addColumn<QList<int>>("named");
    QTest::addColumn<int>("keep");
    QTest::addColumn<QList<int>>("offered");
    QTest::newRow("none named") << QList<int>{} << 0 << QList<int>{};
    QTest::newRow("gaps keep their numbers") << QList<int>{2, 7, 40} << 0 << QList<int>{2, 7, 40};
    QTest::newRow("a stored document's unnamed account") << QList<int>{2, 40} << 5 << QList<int>{2, 5, 40};
    QTest::newRow("a stored document's named account") << QList<int>{2, 40} << 40 << QList<int>{2, 40};
}

void TestEntryRules::offeredAccounts()
{
    QFETCH(QList<int>, named);
    QFETCH(int, keep);
    QFETCH(QList<int>, offered);
    Accounts::List accounts;
    for (int n : named)
        accounts[n - 1].bankName = QStringLiteral("Bank ") + QString::number(n);
    accounts[10].bankName = QStringLiteral("   "); // blanks name no account
    accounts[11].number = QStringLiteral("12 3456"); // nor does a number alone
    QCOMPARE(EntryRules::offeredAccounts(accounts, keep), offered);
}

QTEST_GUILESS_MAIN(TestEntryRules)
#include "tst_entryrules.moc"
