#include "documents/Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "print/PrintEngine.h"
#include "reports/ReportRegister.h"
#include "reports/ReportWorkbook.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

#include <memory>

using namespace Reports;

namespace {

Period range(const QString &first, const QString &last)
{
    return Period{PeriodKind::Range, 0, 1, first, last};
}

// Every cell of a worksheet as "value" (a number, a formula's cached value or the text),
// with the number format it is shown with; read from the unzipped XML of the workbook.
struct Sheet {
    QHash<QString, QString> values, formats, formulas;
};

QByteArray unzip(const QString &file, const QString &member)
{
    QProcess p;
    p.start(QStringLiteral("unzip"), {QStringLiteral("-p"), file, member});
    p.waitForFinished();
    return p.readAllStandardOutput();
}

Sheet readSheet(const QString &file)
{
    QHash<int, QString> numFmts;
    QList<QString> xfFormats;
    QXmlStreamReader styles(unzip(file, QStringLiteral("xl/styles.xml")));
    bool inXfs = false;
    while (!styles.atEnd()) {
        styles.readNext();
        if (styles.isStartElement() && styles.name() == QLatin1String("numFmt"))
            numFmts.insert(styles.attributes().value(QLatin1String("numFmtId")).toInt(),
                           styles.attributes().value(QLatin1String("formatCode")).toString());
        if (styles.name() == QLatin1String("cellXfs"))
            inXfs = styles.isStartElement();
        if (inXfs && styles.isStartElement() && styles.name() == QLatin1String("xf"))
            xfFormats << numFmts.value(styles.attributes().value(QLatin1String("numFmtId")).toInt());
    }
    Sheet sheet;
    QXmlStreamReader xml(unzip(file, QStringLiteral("xl/worksheets/sheet1.xml")));
    QString cell;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("c")) {
            cell = xml.attributes().value(QLatin1String("r")).toString();
            sheet.formats.insert(cell, xfFormats.value(xml.attributes().value(QLatin1String("s")).toInt()));
        } else if (xml.name() == QLatin1String("v") || xml.name() == QLatin1String("t")) {
            sheet.values.insert(cell, xml.readElementText());
        } else if (xml.name() == QLatin1String("f")) {
            sheet.formulas.insert(cell, xml.readElementText());
        }
    }
    return sheet;
}

// The printed line on which `word` stands: the words of that height, left to right.
QString lineOf(const PdfContent &content, const PdfWord &word)
{
    QList<PdfWord> line;
    for (const PdfWord &w : content.words)
        if (w.page == word.page && qAbs(w.box.center().y() - word.box.center().y()) < 40)
            line << w;
    std::sort(line.begin(), line.end(), [](const PdfWord &a, const PdfWord &b) { return a.box.x() < b.box.x(); });
    QStringList texts;
    for (const PdfWord &w : line)
        texts << w.text;
    return texts.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(Reports::Period)

class TestReports : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void register__data();
    void register_();
    void workbook();
    void printedPages();
    void commandLine_data();
    void commandLine();

private:
    Report marchReport();
    std::unique_ptr<TestEnv> m_env;
    QString m_firm;
};

void TestReports::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    m_firm = m_env->newPath(QStringLiteral("raporty.zlc"));
    QVERIFY(openNewFirm(m_firm, sampleFirm()));
    const struct {
        int kind;
        QDate day;
        const char *name;
        qint64 units; // -1: no amount stored
    } documents[] = {
        {1, {2005, 2, 28}, "Alfa", 1000000}, {1, {2005, 3, 1}, "Beta", 105000}, {1, {2005, 3, 31}, "Alfa", 10050},
        {1, {2005, 3, 31}, "Gamma", 10050},  {1, {2005, 3, 15}, "Beta", -1},    {1, {2005, 4, 1}, "Alfa", 70000},
        {2, {2005, 3, 10}, "Alfa", 50000},   {1, {2006, 3, 5}, "Gamma", 30000},
    };
    for (const auto &d : documents) {
        PaymentDocument doc = sampleDocument(d.kind, d.day);
        doc.klientNazwa = QLatin1String(d.name);
        doc.wartosc = Money::fromUnits(qMax<qint64>(0, d.units));
        const auto id = DocumentStore::insert(Db(), doc);
        QVERIFY(id);
        if (d.units < 0)
            QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("UPDATE zlecanki SET WARTOSC=NULL WHERE ID=%1").arg(*id)));
    }
}

void TestReports::register__data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<Period>("period");
    QTest::addColumn<QStringList>("ticked");
    QTest::addColumn<QStringList>("rows"); // the period's caption, date and amount of each line, the total line
    const Period year2005{PeriodKind::Year, 2005, 1, {}, {}};
    const QString in2005 = QStringLiteral("Za rok 2005");
    // Both end days belong to a range, the day before does not; amounts count as shown
    // (1,005 is 1,01 twice) and an empty amount as 0.
    QTest::newRow("range") << 0 << range("01-03-2005", "31-03-2005") << QStringList{}
                           << QStringList{"Za okres od 01-03-2005 do 31-03-2005", "01-03-2005 10,50", "15-03-2005 0,00",
                                          "31-03-2005 1,01", "31-03-2005 1,01", "Ogółem 12,52"};
    QTest::newRow("month of every year")
        << 0 << Period{PeriodKind::Month, 0, 3, {}, {}} << QStringList{}
        << QStringList{"Za miesiąc 3", "01-03-2005 10,50", "15-03-2005 0,00", "31-03-2005 1,01", "31-03-2005 1,01",
                       "05-03-2006 3,00", "Ogółem 15,52"};
    QTest::newRow("ticked contractor") << 0 << year2005 << QStringList{"Alfa"}
                                       << QStringList{in2005, "28-02-2005 100,00", "31-03-2005 1,01", "01-04-2005 7,00",
                                                      "Ogółem 108,01"};
    QTest::newRow("second list") << 1 << year2005 << QStringList{} << QStringList{in2005, "10-03-2005 5,00", "Ogółem 5,00"};
    QTest::newRow("empty period") << 0 << Period{PeriodKind::Year, 2004, 1, {}, {}} << QStringList{}
                                  << QStringList{"Za rok 2004", "Ogółem 0,00"};
    QTest::newRow("index above 3") << 4 << year2005 << QStringList{} << QStringList{in2005};
}

void TestReports::register_()
{
    QFETCH(int, index);
    QFETCH(Period, period);
    QFETCH(QStringList, ticked);
    const ContractorChoice choice = ticked.isEmpty() ? ContractorChoice::All : ContractorChoice::Ticked;
    // Marks left by an earlier report count for nothing.
    QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("UPDATE kontrahenci SET WYBRANY=1 WHERE NAZWA IN ('Beta','Gamma')")));
    QList<qint32> ids;
    for (const QString &name : ticked)
        ids << stored(QStringLiteral("SELECT ID FROM kontrahenci WHERE NAZWA='%1'").arg(name)).toInt();
    QVERIFY(MarkChosenContractors(Db(), choice, ids));
    const auto list = buildRegister(Db(), Criteria{index, period, choice, ticked, false, {}});
    QVERIFY(list);
    // The values travel bound, never inside the SQL text.
    const Condition c = BuildPeriodCondition(period, QStringLiteral("DATA_DOKUMENTU"));
    for (const QVariant &v : c.values)
        QVERIFY2(!c.sql.contains(v.toString()), qPrintable(c.sql));
    QCOMPARE(c.sql.count(u'?'), c.values.size());
    QStringList rows{BuildPeriodCaption(period)};
    for (const QString &line : list->lines())
        rows << line.section(u'\t', 0, 0) + u' ' + line.section(u'\t', 3, 3);
    QTEST(rows, "rows");
    // Every report clears the marks.
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci WHERE WYBRANY<>0")), QStringLiteral("0"));
    // A firm that cannot be written holds the choice in memory: the same rows, no marks.
    const auto kept = buildRegister(Db(), Criteria{index, period, choice, ticked, true, ids});
    QVERIFY(kept);
    QCOMPARE(kept->lines(), list->lines());
}

Report TestReports::marchReport()
{
    const Criteria c{0, range("01-03-2005", "31-03-2005"), ContractorChoice::All, {}, false, {}};
    return Report{makeHeading(Db(), c, QDate(2026, 3, 5)), buildRegister(Db(), c).value_or(Register{})};
}

void TestReports::workbook()
{
    const QString folder = m_env->newPath(QStringLiteral("arkusze"));
    QVERIFY(QDir().mkpath(folder));
    const QString name = reportName(0);
    const QString path = ReportWorkbook::freeFileName(folder, name);
    QCOMPARE(QFileInfo(path).fileName(), name + QStringLiteral(".xlsx"));
    QString error;
    QVERIFY2(ReportWorkbook::write(path, marchReport(), SafeOutput::Existing::Keep, &error), qPrintable(error));
    QCOMPARE(QFileInfo(ReportWorkbook::freeFileName(folder, name)).fileName(), name + QStringLiteral("_1.xlsx"));

    const Sheet s = readSheet(path);
    QCOMPARE(s.values.value("A1"), QStringLiteral("Zakład Ślusarski Żółć"));
    QCOMPARE(s.values.value("A4"), QStringLiteral("Raport Zlecanki bankowe"));
    QCOMPARE(s.values.value("A6"), QStringLiteral("  (OKRES - Za okres od 01-03-2005 do 31-03-2005)"));
    QCOMPARE(s.values.value("A9"), QStringLiteral("Na dzień 05-03-2026"));
    // 1 March 2005 is day 38412 of the spreadsheet calendar.
    QCOMPARE(s.values.value("B13"), QStringLiteral("38412"));
    QCOMPARE(s.formats.value("B13"), QStringLiteral("dd-mm-yyyy"));
    QCOMPARE(s.values.value("C13"), QStringLiteral("Beta"));
    QCOMPARE(s.values.value("E13"), QStringLiteral("10.5"));
    QCOMPARE(s.formats.value("E13"), QStringLiteral("#,##0.00"));
    QCOMPARE(s.values.value("B17"), QStringLiteral("Ogółem"));
    QCOMPARE(s.formulas.value("E17"), QStringLiteral("SUM(E13:E16)"));
    QCOMPARE(s.values.value("E17"), QStringLiteral("12.52"));

    const QString nowhere = m_env->newPath(QStringLiteral("brak/raport.xlsx"));
    QVERIFY(!ReportWorkbook::write(nowhere, marchReport(), SafeOutput::Existing::Keep, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!QFile::exists(nowhere));

    QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (office.isEmpty())
        office = QStandardPaths::findExecutable(QStringLiteral("libreoffice"));
    if (office.isEmpty()) {
        qInfo("LibreOffice (soffice) is not installed: the conversion check is skipped");
        return;
    }
    QProcess p;
    p.setWorkingDirectory(folder);
    p.start(office, {QStringLiteral("--headless"), QStringLiteral("-env:UserInstallation=file://") + folder + "/lo",
                     QStringLiteral("--convert-to"), QStringLiteral("csv:Text - txt - csv (StarCalc):44,34,76"), path,
                     QStringLiteral("--outdir"), folder});
    QVERIFY(p.waitForFinished(120000));
    const QString text = QString::fromUtf8(readFile(folder + u'/' + name + QStringLiteral(".csv")));
    // Written as UTF-8 (76); amounts shown as formatted, with the decimal separator of the
    // locale LibreOffice runs in.
    QVERIFY2(text.contains(QStringLiteral("Ogółem")) && text.contains(QStringLiteral("01-03-2005")) &&
                 (text.contains(QStringLiteral("12.52")) || text.contains(QStringLiteral("12,52"))),
             qPrintable(text + p.readAllStandardError()));
}

void TestReports::printedPages()
{
    RecordingDialogs quiet;
    const QString pdf = m_env->newPath(QStringLiteral("raport.pdf"));
    printToPdf(pdf);
    Report report = marchReport();
    // Enough rows for three pages, each with its number at the foot, below every row.
    for (int i = 0; i < 150; ++i)
        report.list.rows << ReportRow{QDate(2005, 3, 31), QStringLiteral("Kontrahent %1").arg(i),
                                      QStringLiteral("Bardzo długi tytuł przelewu, który nie mieści się w kolumnie "
                                                     "i musi zostać skrócony"),
                                      Money::fromZlote(1)};
    report.list.total += Money::fromZlote(150);
    QVERIFY(PrintEngine::instance().Drukuj(QStringLiteral("raport"), QVariant::fromValue(report),
                                           QPageLayout::Portrait, false, QStringLiteral("test")));
    const PdfContent content = readPdf(pdf);
    QVERIFY(content.ok);
    QCOMPARE(content.pages, 3);
    const QString first = content.text(0);
    for (const char *part : {"Zakład Ślusarski Żółć", "Długa 5", "Raport Zlecanki bankowe", "KRYTERIA",
                             "(OKRES - Za okres od 01-03-2005 do 31-03-2005)", "(Dokumenty - Zlecanki Bankowe)",
                             "(Kontrahenci - wszyscy)", "Na dzień 05-03-2026"})
        QVERIFY2(first.contains(QString::fromUtf8(part)), qPrintable(first));
    QCOMPARE(lineOf(content, content.find(QStringLiteral("LP"), 1)), QStringLiteral("LP Data Kontrahent Treść Wartość"));
    for (int page = 0; page < content.pages; ++page) {
        const PdfWord mark = content.find(QStringLiteral("nr:"), page);
        QCOMPARE(lineOf(content, mark), QStringLiteral("strona nr: %1").arg(page + 1));
        for (const PdfWord &w : content.words)
            if (w.page == page && qAbs(w.box.center().y() - mark.box.center().y()) >= 40)
                QVERIFY2(w.box.bottom() < mark.box.top() && w.box.right() <= 11906 - 850 + 5, qPrintable(w.text));
    }
    // The last row, its long title cut short before the amount's column.
    const QString last = lineOf(content, content.find(QStringLiteral("154"), 2));
    QVERIFY2(last.startsWith(QStringLiteral("154 31-03-2005 Kontrahent 149 Bardzo")) &&
                 last.endsWith(QStringLiteral("... 1,00")),
             qPrintable(last));
    QCOMPARE(lineOf(content, content.find(QStringLiteral("Ogółem"), 2)), QStringLiteral("Ogółem 162,52"));
}

void TestReports::commandLine_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("firm"); // empty: the test's firm; "tylko-odczyt", "duze-kwoty": copies of it
    QTest::newRow("range") << QStringList{"--rodzaj", "1", "--od", "01-03-2005", "--do", "31-03-2005"} << 0
                           << "01-03-2005\tBeta\tFaktura 12/2026\t10,50" << "";
    QTest::newRow("a firm that cannot be written") << QStringList{"--rodzaj", "2", "--rok", "2005"} << 0
                                                   << "Ogółem\t\t\t5,00" << "tylko-odczyt";
    QTest::newRow("a total too large to hold") << QStringList{"--rodzaj", "4", "--rok", "2030"} << 1
                                               << "Suma dokumentów tego okresu jest za duża" << "duze-kwoty";
    QTest::newRow("no such list") << QStringList{"--rodzaj", "5", "--rok", "2005"} << 2 << "--rodzaj" << "";
    QTest::newRow("two periods") << QStringList{"--rodzaj", "1", "--rok", "2005", "--miesiac", "3"} << 2 << "okres" << "";
    QTest::newRow("backwards") << QStringList{"--rodzaj", "1", "--od", "02-03-2005", "--do", "01-03-2005"} << 2
                               << "późniejsza" << "";
}

void TestReports::commandLine()
{
    QFETCH(QStringList, args);
    QFETCH(int, code);
    QFETCH(QString, output);
    QFETCH(QString, firm);
    if (!QFile::exists(programPath()))
        QSKIP("the program is not built in this configuration");
    CloseDb();
    QString file = m_firm;
    if (!firm.isEmpty()) {
        file = m_env->newPath(firm + QStringLiteral(".zlc"));
        QVERIFY(QFile::copy(m_firm, file));
        if (firm == QLatin1String("duze-kwoty")) {
            // Two amounts that the database holds, whose sum it cannot.
            QVERIFY(OpenDb(file));
            for (int i = 0; i < 2; ++i)
                QVERIFY(QSqlQuery(Db()).exec(QStringLiteral("INSERT INTO zlecanki (RODZAJ, DATA_DOKUMENTU, WARTOSC) "
                                                             "VALUES (4, '2030-01-02', 5000000000000000000)")));
            CloseDb();
        } else {
            QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadGroup));
        }
    }
    const QString xlsx = m_env->newPath(QStringLiteral("cli.xlsx"));
    const QString pdf = m_env->newPath(QStringLiteral("cli.pdf"));
    const TestEnv::Run r = m_env->run(QStringList{"raport", "--firma", file} + args + QStringList{"--xlsx", xlsx, "--pdf", pdf});
    QVERIFY(OpenDb(m_firm));
    QCOMPARE(r.code, code);
    const QString said = r.out + r.err;
    QVERIFY2(said.contains(output), qPrintable(said));
    QCOMPARE(QFile::exists(xlsx), code == 0);
    if (code == 0)
        QVERIFY(readPdf(pdf).text().contains(QStringLiteral("strona nr: 1")));
}

QTEST_MAIN(TestReports)
#include "tst_reports.moc"
