#include "exchange/ExportFile.h"

#include <QStringEncoder>
#include <QTest>

namespace {

// One block of `lines` lines: marker, five unused lines, the ten values.
QByteArray block(int n, int lines = 16)
{
    QStringList values = {QStringLiteral("Odbiorca %1").arg(n), QStringLiteral("cd"), QStringLiteral("Długa 1"),
                          QStringLiteral("90-001"), QStringLiteral("Łódź"), QStringLiteral("PKO"), QStringLiteral("12 3456"),
                          QStringLiteral("Faktura %1").arg(n),
                          QStringLiteral("%1,50").arg(n * 100), QStringLiteral("05-03-2026")};
    QStringList out = {QStringLiteral("*** blok %1").arg(n)};
    for (int i = 1; i <= 5; ++i)
        out << QStringLiteral("naglowek%1").arg(i);
    for (int i = 0; i < 10; ++i)
        out << QStringLiteral("pole%1=").arg(i) + values.at(i);
    out = out.mid(0, lines);
    QStringEncoder cp1250("windows-1250");
    return cp1250(out.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
}

QByteArray blocks(int count)
{
    QByteArray out = "wstep programu\r\n";
    for (int i = 0; i < count; ++i)
        out += block(i);
    return out;
}

QStringList names(const ExportFile::Listing &l)
{
    QStringList out;
    for (const auto &e : l.entries)
        out << e.name;
    return out;
}

} // namespace

class TestExportFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void listing_data();
    void listing();
    void takeOver_data();
    void takeOver();
};

void TestExportFile::listing_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("firstEntry");
    QTest::addColumn<int>("errorNumber");
    QTest::newRow("three blocks") << blocks(3) << QStringList{"Odbiorca 0", "Odbiorca 1", "Odbiorca 2"}
                                  << QStringLiteral("Odbiorca 0; Faktura 0; 0,50") << 0;
    QTest::newRow("no marker") << QByteArray("pole=1\r\npole=2\r\n") << QStringList() << QString() << 0;
    QTest::newRow("short last block") << (block(1) + block(2, 12)) << QStringList{"Odbiorca 1"}
                                      << QStringLiteral("Odbiorca 1; Faktura 1; 100,50") << 62;
    QTest::newRow("amount not money") << (block(1) + block(2).replace("200,50", "dwieście")) << QStringList{"Odbiorca 1"}
                                      << QStringLiteral("Odbiorca 1; Faktura 1; 100,50") << 13;
    QTest::newRow("lone LF lines") << QByteArray(blocks(2)).replace("\r\n", "\n") << QStringList{"Odbiorca 0", "Odbiorca 1"}
                                   << QStringLiteral("Odbiorca 0; Faktura 0; 0,50") << 0;
}

void TestExportFile::listing()
{
    QFETCH(QByteArray, data);
    QFETCH(QStringList, names);
    QFETCH(QString, firstEntry);
    QFETCH(int, errorNumber);
    const ExportFile::Listing l = ExportFile::listBlocks(data);
    QCOMPARE(::names(l), names);
    QCOMPARE(l.entries.isEmpty() ? QString() : l.entries.first().text(), firstEntry);
    QCOMPARE(l.error ? l.error->number : 0, errorNumber);
}

void TestExportFile::takeOver_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("values"); // joined by '|', empty when refused
    QTest::newRow("block 1") << blocks(3) << 1
                             << QStringLiteral("Odbiorca 1|cd|Długa 1|90-001|Łódź|PKO|12 3456|Faktura 1|100,50|05-03-2026");
    QTest::newRow("short block takes the next") << (block(0, 12) + block(1)) << 0
                                                << QStringLiteral("Odbiorca 0|cd|Długa 1|90-001|Łódź|PKO|*** blok 1|naglowek1|naglowek2|naglowek3");
    QTest::newRow("past the end") << block(0, 14) << 0 << QString();
    QTest::newRow("no such block") << blocks(2) << 2 << QString();
}

void TestExportFile::takeOver()
{
    QFETCH(QByteArray, data);
    QFETCH(int, index);
    QFETCH(QString, values);
    ExportFile::ReadError error;
    const auto got = ExportFile::takeOverBlock(data, index, &error);
    QCOMPARE(got ? got->join(QLatin1Char('|')) : QString(), values);
    QCOMPARE(got.has_value(), error.description.isEmpty());
}

QTEST_GUILESS_MAIN(TestExportFile)
#include "tst_exportfile.moc"
