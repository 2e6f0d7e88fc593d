#include "AppState.h"
#include "documents/Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ChoiceLists.h"
#include "print/CollectiveStatement.h"
#include "print/PrintEngine.h"
#include "print/SlipLayouts.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace SlipLayouts;

namespace {

const QDate Issued(2026, 3, 5);
const QString Wording = QStringLiteral("jeden tysiąc dwieście trzydzieści cztery złote pięćdziesiąt groszy");

// The settings that shape a printout, all off unless a case turns them on.
struct Settings {
    int wstawiany = 0, nowe = 0, cztery = 0, naStronie = 0, szary = 0, data = 0, drukDaty = 1, zlGr = 0;
    void apply() const
    {
        AppState &s = appState();
        s.wstawiany = wstawiany;
        s.nowe = nowe;
        s.czteryOdcinki = cztery;
        s.czteryNaStronie = naStronie;
        s.szary = szary;
        s.data = data;
        s.drukDaty = drukDaty;
        s.drukZlGr = zlGr;
        s.margLewy = s.margPrawy = 0;
    }
};

// The characters printed in a row of boxes (one word each), joined left to right.
QString boxText(const PdfContent &pdf, const Slip::Boxes &b, QPointF corner = {}, int page = 0)
{
    QList<PdfWord> in;
    for (const PdfWord &w : pdf.words) {
        const QPointF c = w.box.center() - corner;
        if (w.page == page && c.y() > b.y && c.y() < b.y + b.height && c.x() > b.x - 60 &&
            c.x() < b.x + b.count * Slip::BoxPitch)
            in << w;
    }
    std::sort(in.begin(), in.end(),
              [](const PdfWord &a, const PdfWord &z) { return a.box.left() < z.box.left(); });
    QString text;
    for (const PdfWord &w : in)
        text += w.text;
    return text;
}

// The box of a phrase printed in one piece (its words in a row); empty when not there.
QRectF phrase(const PdfContent &pdf, const QString &text, int page = -1, int nth = 0)
{
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i + parts.size() <= pdf.words.size(); ++i) {
        QRectF box;
        bool match = true;
        for (qsizetype k = 0; k < parts.size() && match; ++k) {
            const PdfWord &w = pdf.words.at(i + k);
            match = w.text == parts.at(k) && (page < 0 || w.page == page);
            box = box.united(w.box);
        }
        if (match && nth-- == 0)
            return box;
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(Settings)
Q_DECLARE_METATYPE(Slip::Boxes)

class TestSlips : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void printedText_data();
    void printedText();
    void amountInBoxesAndWords_data();
    void amountInBoxesAndWords();
    void zusAccountAndPeriod_data();
    void zusAccountAndPeriod();
    void taxIdentifierAndPeriod_data();
    void taxIdentifierAndPeriod();
    void partsOnSheets_data();
    void partsOnSheets();
    void statement_data();
    void statement();
    void backSideAfterTurnOver_data();
    void backSideAfterTurnOver();
    void depositSlipCopies();

private:
    PdfContent print(const PaymentDocument &doc, const Settings &settings,
                     const QString &procedure = QStringLiteral("dprzelew"));
    PdfContent printJob(const QString &procedure, const QVariant &parameter);
    QString m_pdf;
    std::unique_ptr<TestEnv> m_env;
};

void TestSlips::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    RecordingDialogs quiet;
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma.zlc")), sampleFirm()));
    m_pdf = m_env->newPath(QStringLiteral("wydruk.pdf"));
    printToPdf(m_pdf);
}

PdfContent TestSlips::printJob(const QString &procedure, const QVariant &parameter)
{
    QFile::remove(m_pdf);
    if (!PrintEngine::instance().Drukuj(procedure, parameter, QPageLayout::Portrait, false,
                                        QStringLiteral("Test")))
        return {};
    // For a person to look at: every slip as PNG pictures.
    const QString shots = qEnvironmentVariable("ZLECANKI_SCREENSHOTS");
    if (!shots.isEmpty()) {
        QDir().mkpath(shots);
        QString name = QLatin1String(QTest::currentTestFunction()) + QLatin1Char('-') +
                       QLatin1String(QTest::currentDataTag() ? QTest::currentDataTag() : "");
        name.replace(QRegularExpression(QStringLiteral("[^\\w-]+")), QStringLiteral("_"));
        QProcess::execute(QStringLiteral("pdftoppm"),
                          {QStringLiteral("-r"), QStringLiteral("60"), QStringLiteral("-png"), m_pdf,
                           shots + QLatin1Char('/') + name});
    }
    return readPdf(m_pdf);
}

PdfContent TestSlips::print(const PaymentDocument &doc, const Settings &settings, const QString &procedure)
{
    settings.apply();
    PaymentDocument stored = doc;
    const auto id = DocumentStore::insert(Db(), stored);
    if (!id)
        return {};
    return printJob(procedure, *id);
}

void TestSlips::printedText_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    const Settings plain, old{.nowe = 1}, prePrinted{.wstawiany = 1};
    QTest::newRow("transfer") << 1 << plain
                              << QStringList{"Polecenie przelewu", "l.k. nr rachunku odbiorcy", "kwota słownie (wpłata)",
                                             "odcinek dla banku zleceniodawcy", "odcinek dla zleceniodawcy"}
                              << QStringList{"Wpłata gotówkowa", "odcinek dla odbiorcy"};
    QTest::newRow("simplified slip") << 1 << old << QStringList{"numer rachunku odbiorcy cd.", "odbiorca:", "słownie:"}
                                     << QStringList{"Polecenie przelewu", "nr rachunku odbiorcy"};
    QTest::newRow("tax form") << 6 << plain
                              << QStringList{"Nazwa organu podatkowego cd.", "typ identyfikatora",
                                             "okres (rok, typ okresu, nr okresu)", "symbol formul. lub płatn."}
                              << QStringList{"tytułem"};
    QTest::newRow("tax on the old bank form")
        << 6 << old << QStringList{"Nazwa odbiorcy", "NIP lub identyfikator uzup. zobowiązanego"}
        << QStringList{"tytułem", "Nazwa organu podatkowego"};
    QTest::newRow("ZUS") << 5 << plain
                         << QStringList{"Zakład Ubezpieczeń Społecznych", "01. Nr rachunku bankowego ZUS",
                                        "04. Kwota słownie", "Typ. wpł.", "odcinek dla płatnika"}
                         << QStringList{};
    QTest::newRow("postal order to an account")
        << 3 << plain
        << QStringList{"Odcinek dla Poczty(Banku)", "Potwierdzenie dla wpłacającego", "Rodzaj zobowiązania:"}
        << QStringList{};
    QTest::newRow("named postal order")
        << 4 << plain << QStringList{"PRZEKAZ", "POCZTOWY", "Dowód nadania", "Miejsce na korespondencję"}
        << QStringList{"Przekaz Pocztowy"};
    QTest::newRow("named postal order, fields only")
        << 4 << prePrinted << QStringList{"Przekaz Pocztowy", "Hurtownia Gęśla"}
        << QStringList{"PRZEKAZ", "Dowód nadania", "Nadawca:"};
    QTest::newRow("bank deposit slip")
        << 2 << plain << QStringList{"BANKOWY DOWÓD WPŁATY", "Na dobro rachunku nr:", "w (Banku): mBank", "Stempel banku"}
        << QStringList{};
    // The amount outside boxes in the firm's format, and the issue date when both the firm and user want it.
    QTest::newRow("deposit, 123,45 zł") << 2 << Settings{.nowe = 1, .zlGr = 1} << QStringList{"1 234,50 zł", Wording}
                                        << QStringList{};
    QTest::newRow("postal, 123 zł 45 gr") << 3 << Settings{.nowe = 1, .zlGr = 2}
                                          << QStringList{"1 234 zł 50 gr", Wording} << QStringList{};
    QTest::newRow("transfer, dated") << 1 << Settings{.data = 1} << QStringList{"05-03-2026"} << QStringList{};
    QTest::newRow("transfer, user turned dates off")
        << 1 << Settings{.data = 1, .drukDaty = 0} << QStringList{} << QStringList{"05-03-2026"};
}

void TestSlips::printedText()
{
    QFETCH(int, kind);
    QFETCH(Settings, settings);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    RecordingDialogs d;
    const PdfContent pdf = print(sampleDocument(kind), settings);
    QVERIFY(pdf.ok);
    for (const QString &text : present)
        QVERIFY2(!phrase(pdf, text).isEmpty(), qPrintable(text));
    for (const QString &text : absent)
        QVERIFY2(phrase(pdf, text).isEmpty(), qPrintable(text));
}

void TestSlips::amountInBoxesAndWords_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<Slip::Boxes>("amount");
    QTest::addColumn<Slip::Boxes>("currency");
    QTest::addColumn<bool>("printed"); // false: the job is told to leave the amount out
    QTest::newRow("transfer") << 1 << Bank.amount << Bank.currency << true;
    QTest::newRow("ZUS") << 5 << Zus.amount << Zus.currency << true;
    QTest::newRow("transfer, amount left out") << 1 << Bank.amount << Bank.currency << false;
}

void TestSlips::amountInBoxesAndWords()
{
    QFETCH(int, kind);
    QFETCH(Slip::Boxes, amount);
    QFETCH(Slip::Boxes, currency);
    QFETCH(bool, printed);
    RecordingDialogs d;
    if (!printed)
        PrintEngine::instance().setAmountPrinted(false);
    const PdfContent pdf = print(sampleDocument(kind), {});
    QVERIFY(pdf.ok);
    if (!printed) {
        QCOMPARE(boxText(pdf, amount), QString());
        QVERIFY(!pdf.text().contains(QStringLiteral("tysiąc")));
        QVERIFY(!pdf.text().remove(QLatin1Char(' ')).contains(QStringLiteral("1234.50")));
        // The next job prints the amount again.
        QVERIFY(!phrase(print(sampleDocument(kind), {}), Wording).isEmpty());
        return;
    }
    QCOMPARE(boxText(pdf, amount), QStringLiteral("1234.50"));
    QCOMPARE(boxText(pdf, currency), QStringLiteral("PLN"));
    QVERIFY(!phrase(pdf, Wording).isEmpty());
    // Right-aligned: the last digit stands in the last box.
    int inLastBox = 0;
    const qreal lastBox = Slip::boxX(amount.x, amount.count - 1);
    for (const PdfWord &w : pdf.words)
        inLastBox += w.page == 0 && w.box.left() > lastBox && w.box.right() < lastBox + Slip::BoxWidth &&
                     w.box.center().y() > amount.y && w.box.center().y() < amount.y + amount.height;
    QCOMPARE(inLastBox, 1);
}

void TestSlips::zusAccountAndPeriod_data()
{
    QTest::addColumn<int>("wstawiany");
    QTest::newRow("FP i FGŚP") << 0;
    QTest::newRow("FP i FGŚP, fields only") << 1;
}

void TestSlips::zusAccountAndPeriod()
{
    QFETCH(int, wstawiany);
    const QString account = QStringLiteral("73101010230000261395300000");
    RecordingDialogs d;
    PaymentDocument doc = sampleDocument(5);
    doc.zus.nrRachunku = 2;
    doc.zus.typWplaty = 6; // "A": only the whole form has a box for it
    doc.zus.miesiac = 0;
    const QStringList years = ChoiceLists::zusYears();
    doc.zus.rok = qint16(years.size() - 1); // the last year the list was extended with
    const PdfContent pdf = print(doc, Settings{.wstawiany = wstawiany}, QStringLiteral("dprzelewZus"));
    QCOMPARE(boxText(pdf, Zus.account), account);
    QCOMPARE(boxText(pdf, Zus.account, {0, Slip::StackedPitch}), account); // the payer's part too
    QCOMPARE(boxText(pdf, Zus.declaration), QStringLiteral("01") + years.last());
    QCOMPARE(boxText(pdf, Zus.nip), QStringLiteral("5261040828"));
    QCOMPARE(boxText(pdf, Zus.identifierType), QStringLiteral("R"));
    QCOMPARE(boxText(pdf, Zus.paymentType), wstawiany ? QString() : QStringLiteral("A"));
    QCOMPARE(boxText(pdf, Zus.payer), QStringLiteral("ŻÓŁĆSPÓŁKA")); // the short name
}

void TestSlips::taxIdentifierAndPeriod_data()
{
    QTest::addColumn<int>("identifierType");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("periodType");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("letter");
    QTest::addColumn<QString>("period");
    QTest::newRow("NIP, month") << 0 << "" << 2024 << 0 << "01" << "N" << "24M01";
    QTest::newRow("PESEL, quarter") << 2 << "80010112345" << 2023 << 3 << "04" << "P" << "23K04";
    const int next = QDate::currentDate().year() + 1;
    QTest::newRow("year the list grew by")
        << 0 << "" << next << 0 << "12" << "N" << QString::number(next).right(2) + QStringLiteral("M12");
}

void TestSlips::taxIdentifierAndPeriod()
{
    QFETCH(int, identifierType);
    QFETCH(QString, identifier);
    QFETCH(int, year);
    QFETCH(int, periodType);
    QFETCH(QString, number);
    QFETCH(QString, letter);
    QFETCH(QString, period);
    RecordingDialogs d;
    FirmData firm = *FirmStore::read(Db());
    firm.typIdentPod = identifierType;
    firm.identPod = identifier;
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = sampleDocument(6);
    doc.pod.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::taxYears(), year));
    doc.pod.typOkresu = qint16(periodType);
    doc.pod.nrOkresu = number;
    doc.pod.symbol = QStringLiteral("VAT-7");
    for (const Settings &s : {Settings{}, Settings{.nowe = 1}}) {
        const bool old = s.nowe != 0;
        const PdfContent pdf = print(doc, s);
        QCOMPARE(boxText(pdf, old ? TaxFieldsOnBank.identifierType : Tax.identifierType), letter);
        QCOMPARE(boxText(pdf, old ? TaxFieldsOnBank.identifier : Tax.identifier),
                 identifier.isEmpty() ? QStringLiteral("5261040828") : identifier);
        QCOMPARE(boxText(pdf, old ? TaxFieldsOnBank.period : Tax.period), period);
        QCOMPARE(boxText(pdf, old ? TaxFieldsOnBank.symbol : Tax.symbol), QStringLiteral("VAT-7"));
    }
}

void TestSlips::partsOnSheets_data()
{
    QTest::addColumn<int>("cztery");
    QTest::addColumn<int>("naStronie");
    QTest::addColumn<QList<bool>>("answers");
    QTest::addColumn<int>("questions");
    QTest::addColumn<int>("pages");
    QTest::addColumn<QPointF>("secondPart"); // where the second part stands from the first
    const QPointF below(0, Slip::StackedPitch);
    QTest::newRow("two parts") << 0 << 0 << QList<bool>{} << 0 << 1 << below;
    QTest::newRow("four parts, two sheets") << 1 << 0 << QList<bool>{} << 0 << 2 << below;
    QTest::newRow("four on A4, down the columns")
        << 1 << 1 << QList<bool>{true} << 1 << 1 << QPointF(0, Slip::GridRow);
    QTest::newRow("four on A4, along the rows")
        << 1 << 1 << QList<bool>{false, true} << 2 << 1 << QPointF(Slip::GridColumn, 0);
    QTest::newRow("four on A4 refused") << 1 << 1 << QList<bool>{false, false} << 2 << 2 << below;
}

void TestSlips::partsOnSheets()
{
    QFETCH(int, cztery);
    QFETCH(int, naStronie);
    QFETCH(QList<bool>, answers);
    QFETCH(int, questions);
    QFETCH(int, pages);
    QFETCH(QPointF, secondPart);
    RecordingDialogs d;
    d.answers = answers;
    PrintEngine::instance().setNextCopies(2); // the answer holds for every copy
    const PdfContent pdf = print(sampleDocument(1), Settings{.cztery = cztery, .naStronie = naStronie});
    QCOMPARE(d.callsOf(QStringLiteral("question")).size(), questions);
    if (questions > 0)
        QCOMPARE(d.callsOf(QStringLiteral("question")).first().text,
                 QStringLiteral("Czy drukować odcinki w pionie ?"));
    QCOMPARE(pdf.pages, 2 * pages);
    const QStringList labels =
        cztery ? QStringList{"odcinek dla banku odbiorcy", "odcinek dla odbiorcy"}
               : QStringList{"odcinek dla banku zleceniodawcy", "odcinek dla zleceniodawcy"};
    const QRectF first = phrase(pdf, labels.at(0), 0);
    const QRectF second = phrase(pdf, labels.at(1), 0);
    QVERIFY(!first.isEmpty() && !second.isEmpty());
    QVERIFY(qAbs(second.right() - first.right() - secondPart.x()) < 3);
    QVERIFY(qAbs(second.top() - first.top() - secondPart.y()) < 3);
}

void TestSlips::statement_data()
{
    QTest::addColumn<QStringList>("amounts");
    QTest::addColumn<QString>("total");
    QTest::addColumn<int>("pages");
    QTest::newRow("three transfers") << QStringList{"10", "0,99", "1000000"} << "1 000 010,99" << 1;
    QStringList many;
    for (int i = 1; i <= 400; ++i)
        many << QString::number(i);
    QTest::newRow("a list longer than half a sheet") << many << "80 200,00" << 4;
}

void TestSlips::statement()
{
    QFETCH(QStringList, amounts);
    QFETCH(QString, total);
    QFETCH(int, pages);
    RecordingDialogs d;
    Settings{}.apply();
    CollectiveStatement s{QStringLiteral("Bank Śląski"), QStringLiteral("11 2222 3333"), Issued, {}};
    for (const QString &a : amounts)
        s.amounts << *Money::parse(a);
    const PdfContent pdf = printJob(QStringLiteral("zbiorowka"), QVariant::fromValue(s));
    QCOMPARE(pdf.pages, pages);
    const QString count = QStringLiteral("Ilość przelewów: ") + QString::number(amounts.size());
    QCOMPARE(pdf.text().count(count), 2);
    QCOMPARE(pdf.text().count(QStringLiteral("Razem: ") + total), 2);
    QCOMPARE(pdf.text().count(QStringLiteral("Data: 05-03-2026")), 2);
    const QRectF firm = phrase(pdf, QStringLiteral("Zakład Ślusarski Żółć"));
    QVERIFY(qAbs(phrase(pdf, QStringLiteral("W CIĘŻAR RACHUNKU FIRMY:")).top() - firm.top()) < 2);
    const QRectF street = phrase(pdf, QStringLiteral("ul. Długa 5"));
    QVERIFY(street.top() > firm.top() && qAbs(street.left() - firm.left()) < 2);
    QCOMPARE(pdf.count(QStringLiteral("/")), 0); // no flat number, no " / "
    for (const QString &a : amounts)
        QVERIFY(pdf.text().contains(Kwota(*Money::parse(a))));
}

void TestSlips::backSideAfterTurnOver_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("back");
    QTest::newRow("postal order to an account")
        << 3 << "Przełóż kartkę na drugą stronę i naciśnij dowolny klawisz"
        << "Rodzaj zobowiązania: Faktura 12/2026";
    QTest::newRow("named postal order") << 4 << "Po wydrukowaniu przełóż kartkę na drugą stronę."
                                        << "Znamiona dowodu tożsamości";
}

void TestSlips::backSideAfterTurnOver()
{
    QFETCH(int, kind);
    QFETCH(QString, message);
    QFETCH(QString, back);
    // Records how many pages were begun when the user is told to turn the sheet over.
    struct Turning : RecordingDialogs {
        int pagesWhenAsked = -1;
        void message(const QString &text, const QString &title, Icon icon) override
        {
            pagesWhenAsked = PrintEngine::instance().pageCount();
            RecordingDialogs::message(text, title, icon);
        }
    } d;
    const PdfContent pdf = print(sampleDocument(kind), {});
    QCOMPARE(d.callsOf(QStringLiteral("message")).size(), 1);
    QCOMPARE(d.calls.first().text, message);
    QCOMPARE(d.calls.first().title, QStringLiteral("Druk dwustronny"));
    QCOMPARE(d.pagesWhenAsked, 1);
    QCOMPARE(pdf.pages, 2);
    QVERIFY(phrase(pdf, back, 0).isEmpty());
    QVERIFY(!phrase(pdf, back, 1).isEmpty());
}

void TestSlips::depositSlipCopies()
{
    RecordingDialogs d;
    const PdfContent pdf = print(sampleDocument(2), {});
    QCOMPARE(pdf.pages, 1);
    const QRectF first = phrase(pdf, QStringLiteral("Hurtownia Gęśla"));
    for (int copy = 0; copy < 4; ++copy) {
        const QString number = QStringList{"I", "II", "III", "IV"}.at(copy);
        QVERIFY2(qAbs(pdf.find(number).box.top() - pdf.find(QStringLiteral("I")).box.top() -
                      copy * DepositSlip.pitch) < 3,
                 qPrintable(number));
        // The same recipient, amount and wording on every copy, one copy lower each time.
        QVERIFY(qAbs(phrase(pdf, QStringLiteral("Hurtownia Gęśla"), 0, copy).top() - first.top() -
                     copy * DepositSlip.pitch) < 2);
        QVERIFY(!phrase(pdf, QStringLiteral("1 234,50"), 0, copy).isEmpty());
        QVERIFY(!phrase(pdf, Wording, 0, copy).isEmpty());
    }
    QVERIFY(phrase(pdf, QStringLiteral("1 234,50"), 0, 4).isEmpty());
}

QTEST_MAIN(TestSlips)
#include "tst_slips.moc"
