#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/Firm.h"
#include "documents/ui/frmZbiorowka.h"

#include <QComboBox>
#include <QListWidget>
#include <QTest>

#include <memory>

class TestZbiorowka : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void editingTheList();
    void printedStatement();

private:
    std::unique_ptr<frmZbiorowka> open(const QString &day, int accountIndex);
    QStringList lines(QWidget *w);
    TestEnv m_env;
};

void TestZbiorowka::initTestCase()
{
    FirmData firm = sampleFirm();
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("12 1020 1026 0000 1234 5678 9012"), {}};
    firm.accounts[1] = {QStringLiteral("mBank"), QStringLiteral("45 1140 2004 0000 3002 0123 4567"), {}};
    QVERIFY(openNewFirm(m_env.newPath(QStringLiteral("zbiorowka.zlc")), firm));
    const struct {
        int kind, account;
        QDate day;
        const char16_t *amount;
    } documents[] = {
        {1, 1, {2026, 3, 5}, u"10"},        {1, 1, {2026, 3, 5}, u"0,99"},   {1, 1, {2026, 3, 5}, u"1000000"},
        {2, 1, {2026, 3, 5}, u"500"},       {1, 2, {2026, 3, 5}, u"77"},     {1, 1, {2026, 3, 6}, u"33"},
        {2, 1, {2026, 3, 9}, u"44"},
    };
    for (const auto &d : documents) {
        PaymentDocument doc = sampleDocument(d.kind, d.day);
        doc.banknr = qint16(d.account);
        doc.wartosc = *Money::parse(d.amount);
        QVERIFY(DocumentStore::insert(Db(), doc));
    }
}

std::unique_ptr<frmZbiorowka> TestZbiorowka::open(const QString &day, int accountIndex)
{
    auto w = std::make_unique<frmZbiorowka>();
    w->show();
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(accountIndex);
    auto *date = child<QLineEdit>(w.get(), QStringLiteral("txtData"));
    date->setText(day);
    Q_EMIT date->editingFinished();
    return w;
}

QStringList TestZbiorowka::lines(QWidget *w)
{
    QStringList out;
    auto *list = child<QListWidget>(w, QStringLiteral("lstkwoty"));
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

void TestZbiorowka::editingTheList()
{
    RecordingDialogs d;
    // Only bank transfers of that account and day.
    auto w = open(QStringLiteral("5-3-2026"), 1);
    QCOMPARE(lines(w.get()), QStringList{"77,00"});
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtrazem"))->text(), QStringLiteral("77,00"));
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(0);
    auto *list = child<QListWidget>(w.get(), QStringLiteral("lstkwoty"));
    click(w.get(), QStringLiteral("cmdzmien")); // nothing chosen
    QCOMPARE(d.beeps, 1);
    list->setCurrentRow(0);
    d.inputs << QStringLiteral("25,5");
    click(w.get(), QStringLiteral("cmdzmien"));
    d.inputs << QStringLiteral("abc") << std::nullopt << QStringLiteral("1");
    click(w.get(), QStringLiteral("cmdnowa"));
    QVERIFY(d.saw(QStringLiteral("To nie jest kwota")));
    click(w.get(), QStringLiteral("cmdnowa")); // cancelled
    click(w.get(), QStringLiteral("cmdnowa"));
    QCOMPARE(lines(w.get()), (QStringList{"25,50", "0,99", "1 000 000,00", "1,00"}));
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtrazem"))->text(), QStringLiteral("1 000 027,49"));
    list->setCurrentRow(2);
    d.answers << false << true;
    click(w.get(), QStringLiteral("cmdusun"));
    QCOMPARE(list->count(), 4);
    click(w.get(), QStringLiteral("cmdusun"));
    QCOMPARE(lines(w.get()), (QStringList{"25,50", "0,99", "1,00"}));
    // The list is the window's own copy: the stored documents are as they were.
    QCOMPARE(stored(QStringLiteral("SELECT group_concat(WARTOSC) FROM zlecanki WHERE RODZAJ=1 AND BANKNR=1 "
                                   "AND DATA_DOKUMENTU='2026-03-05'")),
             QStringLiteral("100000,9900,10000000000"));
    click(w.get(), QStringLiteral("cmdZeruj"));
    QCOMPARE(list->count(), 0);
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtrazem"))->text(), QStringLiteral("0,00"));
}

void TestZbiorowka::printedStatement()
{
    RecordingDialogs d;
    const QString pdf = m_env.newPath(QStringLiteral("zbiorowka.pdf"));
    printToPdf(pdf);
    // A day with only a deposit slip: nothing to print, a beep.
    auto w = open(QStringLiteral("09-03-2026"), 0);
    QCOMPARE(lines(w.get()), QStringList());
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtrazem"))->text(), QStringLiteral("0,00"));
    click(w.get(), QStringLiteral("cmdwystaw"));
    QCOMPARE(d.beeps, 1);
    QVERIFY(d.callsOf(QStringLiteral("copies")).isEmpty());
    // Another day typed and printed at once with Alt+W: the statement is of the day
    // typed, as if the field had been left.
    QApplication::setActiveWindow(w.get());
    QVERIFY(QTest::qWaitForWindowActive(w.get()));
    auto *date = child<QLineEdit>(w.get(), QStringLiteral("txtData"));
    date->setFocus();
    date->selectAll();
    QTest::keyClicks(date, QStringLiteral("6/3/2026"));
    QTest::keyClick(date, Qt::Key_W, Qt::AltModifier);
    QTRY_COMPARE(d.callsOf(QStringLiteral("copies")).size(), 1);
    QCOMPARE(date->text(), QStringLiteral("06-03-2026"));
    QCOMPARE(lines(w.get()), QStringList{"33,00"});
    const PdfContent content = readPdf(pdf);
    const QString text = content.text();
    QVERIFY2(text.contains(QStringLiteral("Ilość przelewów: 1")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("PKO BP")));
    QVERIFY(text.contains(QStringLiteral("Razem: 33,00")));
    QVERIFY(text.contains(QStringLiteral("Data: 06-03-2026")));
}

QTEST_MAIN(TestZbiorowka)
#include "tst_zbiorowka.moc"
