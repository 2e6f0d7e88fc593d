#include "Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ZusAccount.h"
#include "print/PrintEngine.h"

#include <QTest>

#include <memory>

// ZUS documents as a firm with its own contribution account (NRS) prints them.
class TestContributions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void zusDocumentPrinted_data();
    void zusDocumentPrinted();

private:
    QString m_pdf;
    std::unique_ptr<TestEnv> m_env;
};

namespace {
const QString Nrs = QStringLiteral("44 6000 0002 0260 0152 6104 0828");
}

void TestContributions::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    RecordingDialogs quiet;
    FirmData firm = sampleFirm();
    firm.nrs = Nrs;
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma.zlc")), firm));
    m_pdf = m_env->newPath(QStringLiteral("wydruk.pdf"));
    printToPdf(m_pdf);
}

void TestContributions::zusDocumentPrinted_data()
{
    QTest::addColumn<int>("zusAccount");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    QTest::addColumn<QString>("warning"); // part of the box shown before printing; empty: none
    const QString nrsDigits = QStringLiteral("44600000020260015261040828");
    QTest::newRow("on the NRS") << int(ZusAccount::Individual)
                                << QStringList{"Polecenie przelewu", "Zakład Ubezpieczeń Społecznych",
                                               "SkładkiZUS", "03/2026,dekl.", nrsDigits}
                                << QStringList{"01. Nr rachunku bankowego ZUS", "Hurtownia"} << "";
    QTest::newRow("on a closed account")
        << 1 << QStringList{"01. Nr rachunku bankowego ZUS", "78101010230000261395200000"}
        << QStringList{"Polecenie przelewu", nrsDigits}
        << "Rachunek ZUS \"Ubezpieczenie zdrowotne\" zamknięto z końcem 2017 roku";
}

void TestContributions::zusDocumentPrinted()
{
    QFETCH(int, zusAccount);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    QFETCH(QString, warning);
    RecordingDialogs d;
    PaymentDocument doc = sampleDocument(5);
    doc.zus.nrRachunku = qint16(zusAccount);
    QCOMPARE(ZusAccount::transferTitle(doc.zus), QStringLiteral("Składki ZUS 03/2026, dekl. 01, typ S"));
    const auto id = DocumentStore::insert(Db(), doc);
    QVERIFY(id);
    QFile::remove(m_pdf);
    QVERIFY(PrintEngine::instance().Drukuj(QStringLiteral("dprzelewZus"), *id, QPageLayout::Portrait, false,
                                           QStringLiteral("Test")));
    const PdfContent pdf = readPdf(m_pdf);
    QVERIFY(pdf.ok);
    // Account and title stand one character per box: compare without the gaps between them.
    const QString text = pdf.text().simplified();
    const QString digits = QString(text).remove(QLatin1Char(' '));
    for (const QString &p : present)
        QVERIFY2(text.contains(p) || digits.contains(p), qPrintable(p));
    for (const QString &a : absent)
        QVERIFY2(!text.contains(a) && !digits.contains(a), qPrintable(a));
    QCOMPARE(d.saw(QStringLiteral("zamknięto z końcem 2017")), !warning.isEmpty());
    if (!warning.isEmpty())
        QVERIFY(d.saw(warning));
}

QTEST_MAIN(TestContributions)
#include "tst_contributions.moc"
