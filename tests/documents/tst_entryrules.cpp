#include "documents/EntryRules.h"

#include <QTest>

class TestEntryRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void printRoute_data();
    void printRoute();
    void requiredFields_data();
    void requiredFields();
    void captions_data();
    void captions();
    void offeredAccounts_data();
    void offeredAccounts();
};

void TestEntryRules::printRoute_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("procedure");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    const auto wide = QPageLayout::Landscape;
    const auto tall = QPageLayout::Portrait;
    for (int mode : {0, 1}) {
        const QByteArray m = mode == 0 ? QByteArrayLiteral("issued") : QByteArrayLiteral("corrected");
        QTest::newRow(QByteArray(m + " transfer").constData()) << mode << 1 << "dprzelew" << wide;
        QTest::newRow(QByteArray(m + " deposit").constData()) << mode << 2 << "dprzelew" << tall;
        QTest::newRow(QByteArray(m + " postal to account").constData()) << mode << 3 << "dprzelew" << wide;
        QTest::newRow(QByteArray(m + " named postal").constData()) << mode << 4 << "dprzelew" << tall;
        QTest::newRow(QByteArray(m + " ZUS").constData()) << mode << 5 << "dprzelewZus" << tall;
        QTest::newRow(QByteArray(m + " tax").constData()) << mode << 6 << "dprzelew" << wide;
    }
    QTest::newRow("viewed transfer") << 2 << 1 << "dprzelew" << wide;
    QTest::newRow("viewed deposit") << 2 << 2 << "dprzelew" << tall;
    QTest::newRow("viewed postal to account") << 2 << 3 << "dprzelew" << wide;
    QTest::newRow("viewed named postal") << 2 << 4 << "dprzelew" << tall;
    QTest::newRow("viewed ZUS") << 2 << 5 << "dprzelew" << tall;
    QTest::newRow("viewed tax") << 2 << 6 << "dprzelew" << tall;
}

void TestEntryRules::printRoute()
{
    QFETCH(int, mode);
    QFETCH(int, kind);
    QFETCH(QString, procedure);
    QFETCH(QPageLayout::Orientation, orientation);
    const EntryRules::PrintRoute route = EntryRules::printRoute(mode, kind);
    QCOMPARE(route.procedure, procedure);
    QCOMPARE(route.orientation, orientation);
}

void TestEntryRules::requiredFields_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("fields");
    const QStringList general{"txtnazwa", "txtzadokument", "txtwartosc"};
    const QStringList bank{"txtbank", "txtkonto"};
    QTest::newRow("transfer") << 1 << general + bank;
    QTest::newRow("deposit") << 2 << general + bank;
    QTest::newRow("postal to account") << 3 << general + bank;
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

void TestEntryRules::captions_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("button");
    QTest::newRow("new") << 0 << "Dokument - [Wprowadzanie]" << "&Wystaw";
    QTest::newRow("correction") << 1 << "Dokument - [Wprowadzanie]" << "&Popraw";
    QTest::newRow("viewing") << 2 << "Dokument [Przeglądanie]" << "&Drukuj";
}

void TestEntryRules::captions()
{
    QFETCH(int, mode);
    QFETCH(QString, caption);
    QFETCH(QString, button);
    QCOMPARE(EntryRules::caption(mode), caption);
    QCOMPARE(EntryRules::issueButtonText(mode), button);
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
