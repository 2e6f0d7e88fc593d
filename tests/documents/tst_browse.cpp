#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/BrowseQuery.h"
#include "documents/DocumentStore.h"

#include <QHash>
#include <QSqlRecord>
#include <QTest>

#include <memory>

namespace {

struct Stored {
    int kind;
    const char *date; // ISO
    const char *recipient;
    const char *bank;
};

// Dates around the edges of March 2024, March of other years and other months.
const Stored Documents[] = {
    {1, "2024-02-29", "Alfa", "PKO BP"}, {2, "2024-03-01", "Beta", "PKO BP"},
    {5, "2024-03-15", "Alfa", "mBank"},  {6, "2024-03-31", "Beta", "mBank"},
    {1, "2024-04-01", "Alfa", "PKO BP"}, {3, "2023-03-10", "Beta", "PKO BP"},
    {4, "2025-12-31", "Alfa", "mBank"},
};

QDate day(const char *iso)
{
    return QDate::fromString(QLatin1String(iso), Qt::ISODate);
}

} // namespace

Q_DECLARE_METATYPE(Browse::Filter)

class TestBrowse : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void filters_data();
    void filters();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QHash<QString, qint32> m_contractors;
};

void TestBrowse::initTestCase()
{
    SKIP_WITHOUT_SERVER();
    m_env = std::make_unique<TestEnv>();
    m_dialogs = std::make_unique<RecordingDialogs>();
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("browse.zlc")), sampleFirm()));
    for (const Stored &s : Documents) {
        PaymentDocument doc = sampleDocument(s.kind, day(s.date));
        doc.klientNazwa = QLatin1String(s.recipient);
        doc.bankFirmy = QLatin1String(s.bank);
        QString error;
        QVERIFY2(DocumentStore::insert(Db(), doc, &error), qPrintable(error));
        m_contractors.insert(doc.klientNazwa, doc.klientId);
    }
}

void TestBrowse::cleanupTestCase()
{
    CloseDb();
}

void TestBrowse::filters_data()
{
    QTest::addColumn<Browse::Filter>("filter");
    QTest::addColumn<QString>("contractor"); // by name; empty for every contractor
    QTest::addColumn<QString>("dates");      // the dates listed, in date order

    auto days = [](const char *first, const char *last) {
        Browse::Filter f;
        f.period = Browse::Period::Days;
        f.first = day(first);
        f.last = day(last);
        return f;
    };
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
    QTest::newRow("reversed days find nothing") << days("2024-03-31", "2024-03-01") << "" << "";
    QTest::newRow("a year, leap day included")
        << year(2024) << "" << "2024-02-29 2024-03-01 2024-03-15 2024-03-31 2024-04-01";
    QTest::newRow("kind by its position") << year(2024, 1) << "" << "2024-02-29 2024-04-01";
    QTest::newRow("contractor") << year(2024) << "Alfa" << "2024-02-29 2024-03-15 2024-04-01";
    QTest::newRow("account by bank name") << year(2024, 0, QStringLiteral("mBank")) << "" << "2024-03-15 2024-03-31";
    QTest::newRow("month, contractor and account together")
        << month(3, QStringLiteral("PKO BP")) << "Beta" << "2023-03-10 2024-03-01";
    QTest::newRow("a quote in the bank name is only text")
        << year(2024, 0, QStringLiteral("x' OR '1'='1")) << "" << "";
}

void TestBrowse::filters()
{
    QFETCH(Browse::Filter, filter);
    QFETCH(QString, contractor);
    QFETCH(QString, dates);
    if (!contractor.isEmpty())
        filter.contractorId = m_contractors.value(contractor);
    Browse::Model model;
    QString error;
    QVERIFY2(model.refresh(Db(), filter, &error), qPrintable(error));
    while (model.canFetchMore())
        model.fetchMore();
    QStringList listed;
    for (int row = 0; row < model.rowCount(); ++row)
        listed << model.record(row).value(QStringLiteral("data_dokumentu")).toString();
    listed.sort();
    QCOMPARE(listed.join(QLatin1Char(' ')), dates);
}

QTEST_GUILESS_MAIN(TestBrowse)
#include "tst_browse.moc"
