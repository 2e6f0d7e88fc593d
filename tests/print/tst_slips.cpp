#include "AppState.h"
#include "documents/Firm.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ChoiceLists.h"
#include "documents/ZusAccount.h"
#include "print/CollectiveStatement.h"
#include "print/PaymentQr.h"
#include "print/PrinterCalibration.h"
#include "print/PrintEngine.h"
#include "print/SlipLayouts.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
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
QString boxText(const PdfContent &pdf, const Slip::Boxes &b, QPointF corner = Slip::SafeShift, int page = 0)
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

// The first two words whose boxes overlap (a hair's breadth of touching allowed); empty when none.
QString overlapping(const PdfContent &pdf)
{
    for (qsizetype i = 0; i < pdf.words.size(); ++i)
        for (qsizetype k = i + 1; k < pdf.words.size(); ++k) {
            const PdfWord &a = pdf.words.at(i), &b = pdf.words.at(k);
            if (a.page == b.page && a.box.adjusted(15, 15, -15, -15).intersects(b.box.adjusted(15, 15, -15, -15)))
                return QStringLiteral("\"%1\" and \"%2\" on page %3").arg(a.text, b.text).arg(a.page + 1);
        }
    return {};
}

// The longest texts each field accepts.
QString longest(const QString &start, int length)
{
    QString text = start;
    while (text.size() < length)
        text += QStringLiteral(" Wąż");
    return text.left(length).trimmed();
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
    void zusAccountAndPeriod();
    void zusContributionAccount_data();
    void zusContributionAccount();
    void taxIdentifierAndPeriod_data();
    void taxIdentifierAndPeriod();
    void partsOnSheets_data();
    void partsOnSheets();
    void statement_data();
    void statement();
    void backSideAfterTurnOver_data();
    void backSideAfterTurnOver();
    void depositSlipCopies();
    void valueRows_data();
    void valueRows();
    void longestValuesDoNotOverlap_data();
    void longestValuesDoNotOverlap();
    void printerCalibration();
    void paymentQrCode_data();
    void paymentQrCode();

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
    QTest::addColumn<bool>("printed"); // false: the job is told to leave the amount out
    QTest::newRow("cash deposit") << 1 << true;
    QTest::newRow("ZUS, cash") << 5 << true;
    QTest::newRow("cash deposit, amount left out") << 1 << false;
}

void TestSlips::amountInBoxesAndWords()
{
    QFETCH(int, kind);
    QFETCH(bool, printed);
    const Slip::Boxes amount = kind == 5 ? Zus.amount : Bank.amount, currency = kind == 5 ? Zus.currency : Bank.currency;
    RecordingDialogs d;
    if (!printed)
        PrintEngine::instance().setAmountPrinted(false);
    PaymentDocument doc = sampleDocument(kind);
    doc.kontoFirmy.clear(); // paid in cash: the words take the payer's account row
    const PdfContent pdf = print(doc, {});
    QVERIFY(pdf.ok);
    if (!printed) {
        QCOMPARE(boxText(pdf, amount), QString());
        QVERIFY(!pdf.text().contains(QStringLiteral("tysiąc")));
        QVERIFY(!pdf.text().remove(QLatin1Char(' ')).contains(QStringLiteral("1234,50")));
        // The next job prints the amount again.
        QVERIFY(!phrase(print(doc, {}), Wording).isEmpty());
        return;
    }
    QCOMPARE(boxText(pdf, amount), QStringLiteral("1234,50"));
    QCOMPARE(boxText(pdf, currency), QStringLiteral("PLN"));
    QVERIFY(!phrase(pdf, Wording).isEmpty());
    // Right-aligned: the last digit stands in the last box.
    int inLastBox = 0;
    const qreal lastBox = Slip::boxX(amount.x, amount.count - 1);
    for (const PdfWord &w : pdf.words) {
        const QRectF box = w.box.translated(-Slip::SafeShift);
        inLastBox += w.page == 0 && box.left() > lastBox && box.right() < lastBox + Slip::BoxWidth &&
                     box.center().y() > amount.y && box.center().y() < amount.y + amount.height;
    }
    QCOMPARE(inLastBox, 1);
}

void TestSlips::zusAccountAndPeriod()
{
    const QString account = QStringLiteral("73101010230000261395300000"); // FP i FGŚP
    RecordingDialogs d;
    PaymentDocument doc = sampleDocument(5);
    doc.zus.nrRachunku = 2;
    doc.zus.typWplaty = 6; // "A": only the whole form has a box for it
    doc.zus.miesiac = 0;
    const QStringList years = ChoiceLists::zusYears();
    doc.zus.rok = qint16(years.size() - 1); // the last year the list was extended with
    for (int wstawiany : {0, 1}) {
        const PdfContent pdf = print(doc, Settings{.wstawiany = wstawiany}, QStringLiteral("dprzelewZus"));
        const QPointF corner = wstawiany ? QPointF() : Slip::SafeShift;
        QCOMPARE(boxText(pdf, Zus.account, corner), account);
        QCOMPARE(boxText(pdf, Zus.account, corner + QPointF(0, Slip::StackedPitch)), account); // the payer's part too
        QCOMPARE(boxText(pdf, Zus.declaration, corner), QStringLiteral("01") + years.last());
        QCOMPARE(boxText(pdf, Zus.nip, corner), QStringLiteral("5261040828"));
        QCOMPARE(boxText(pdf, Zus.identifierType, corner), QStringLiteral("R"));
        QCOMPARE(boxText(pdf, Zus.paymentType, corner), wstawiany ? QString() : QStringLiteral("A"));
        QCOMPARE(boxText(pdf, Zus.payer, corner), QStringLiteral("ŻÓŁĆSPÓŁKA")); // the short name
    }
}

void TestSlips::zusContributionAccount_data()
{
    QTest::addColumn<int>("zusAccount");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QStringList>("absent");
    QTest::addColumn<QString>("warning"); // part of the box shown before printing; empty: none
    const QString nrs = QStringLiteral("44600000020260015261040828");
    QTest::newRow("on the NRS") << int(ZusAccount::Individual)
                                << QStringList{"Polecenie przelewu", "Zakład Ubezpieczeń Społecznych", "SkładkiZUS",
                                               "03/2026,dekl.", nrs}
                                << QStringList{"01. Nr rachunku bankowego ZUS", "Hurtownia"} << "";
    QTest::newRow("on a closed account")
        << 1 << QStringList{"01. Nr rachunku bankowego ZUS", "78101010230000261395200000"}
        << QStringList{"Polecenie przelewu", nrs}
        << "Rachunek ZUS \"Ubezpieczenie zdrowotne\" zamknięto z końcem 2017 roku";
}

// A firm with its own contribution account (NRS) pays ZUS with a plain transfer to it.
void TestSlips::zusContributionAccount()
{
    QFETCH(int, zusAccount);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    QFETCH(QString, warning);
    RecordingDialogs d;
    FirmData firm = *FirmStore::read(Db());
    firm.nrs = QStringLiteral("44 6000 0002 0260 0152 6104 0828");
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = sampleDocument(5);
    doc.zus.nrRachunku = qint16(zusAccount);
    QCOMPARE(ZusAccount::transferTitle(doc.zus), QStringLiteral("Składki ZUS 03/2026, dekl. 01, typ S"));
    const PdfContent pdf = print(doc, {}, QStringLiteral("dprzelewZus"));
    QVERIFY(pdf.ok);
    // Account and title stand one character per box: compare without the gaps between them.
    const QString text = pdf.text().simplified();
    const QString digits = QString(text).remove(QLatin1Char(' '));
    for (const QString &p : present)
        QVERIFY2(text.contains(p) || digits.contains(p), qPrintable(p));
    for (const QString &a : absent)
        QVERIFY2(!text.contains(a) && !digits.contains(a), qPrintable(a));
    QCOMPARE(d.saw(QStringLiteral("zamknięto z końcem 2017")), !warning.isEmpty());
    QVERIFY(warning.isEmpty() || d.saw(warning));
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
    QTest::addColumn<int>("pages");
    QTest::addColumn<QPointF>("secondPart"); // where the second part stands from the first
    const QPointF below(0, Slip::StackedPitch);
    // Four parts fill a landscape sheet: on plain paper they shrink to stay off its edges.
    const qreal shrunk = (11906 - 2 * PrintEngine::SafeMargin) / 11906;
    QTest::newRow("two parts") << 0 << 0 << QList<bool>{} << 1 << below;
    QTest::newRow("four parts, two sheets") << 1 << 0 << QList<bool>{} << 2 << below;
    QTest::newRow("four on A4, down the columns")
        << 1 << 1 << QList<bool>{true} << 1 << QPointF(0, Slip::GridRow) * shrunk;
    QTest::newRow("four on A4, along the rows")
        << 1 << 1 << QList<bool>{false, true} << 1 << QPointF(Slip::GridColumn, 0) * shrunk;
    QTest::newRow("four on A4 refused") << 1 << 1 << QList<bool>{false, false} << 2 << below;
}

void TestSlips::partsOnSheets()
{
    QFETCH(int, cztery);
    QFETCH(int, naStronie);
    QFETCH(QList<bool>, answers);
    QFETCH(int, pages);
    QFETCH(QPointF, secondPart);
    RecordingDialogs d;
    d.answers = answers;
    PrintEngine::instance().setNextCopies(2); // the answer holds for every copy
    const PdfContent pdf = print(sampleDocument(1), Settings{.cztery = cztery, .naStronie = naStronie});
    QCOMPARE(d.callsOf(QStringLiteral("question")).size(), answers.size());
    if (!answers.isEmpty())
        QCOMPARE(d.callsOf(QStringLiteral("question")).first().text,
                 QStringLiteral("Czy drukować odcinki w pionie ?"));
    QCOMPARE(pdf.pages, 2 * pages);
    const QStringList labels =
        cztery ? QStringList{"odcinek dla banku odbiorcy", "odcinek dla odbiorcy"}
               : QStringList{"odcinek dla banku zleceniodawcy", "odcinek dla zleceniodawcy"};
    const QRectF first = phrase(pdf, labels.at(0), 0);
    const QRectF second = phrase(pdf, labels.at(1), 0);
    QVERIFY(!first.isEmpty() && !second.isEmpty());
    QVERIFY(qAbs(second.right() - first.right() - secondPart.x()) < 6);
    QVERIFY(qAbs(second.top() - first.top() - secondPart.y()) < 6);
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
    QVERIFY(d.calls.first().text.startsWith(message));
    QVERIFY(d.calls.first().text.contains(QStringLiteral("dłuższej krawędzi")));
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

void TestSlips::valueRows_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("cash");
    QTest::addColumn<QList<Slip::Boxes>>("rows");
    const QList<Slip::Boxes> bank = {Bank.recipient, Bank.recipientCd, Bank.recipientAccount, Bank.amount,
                                     Bank.payerAccount, Bank.payer,       Bank.payerCd,          Bank.title1,
                                     Bank.title2};
    QTest::newRow("transfer") << 1 << false << bank;
    QTest::newRow("cash deposit") << 1 << true << bank;
    QTest::newRow("tax") << 6 << false
                         << QList<Slip::Boxes>{Tax.office, Tax.officeCd, Tax.officeAccount, Tax.amount,
                                               Tax.payerAccount, Tax.payer, Tax.payerCd, Tax.identifier,
                                               Tax.period, Tax.identification};
    QTest::newRow("ZUS, cash") << 5 << true
                               << QList<Slip::Boxes>{Zus.account, Zus.amount, Zus.payerAccount, Zus.payer,
                                                     Zus.nip, Zus.paymentType};
}

// Every value of a part lands in one of the form's value rows, inside its boxes' height,
// and every row is used: on the whole form and on a pre-printed one alike.
void TestSlips::valueRows()
{
    QFETCH(int, kind);
    QFETCH(bool, cash);
    QFETCH(QList<Slip::Boxes>, rows);
    RecordingDialogs d;
    PaymentDocument doc = sampleDocument(kind);
    doc.klientNazwa1 = QStringLiteral("Oddział w Krakowie");
    doc.pod.symbol = QStringLiteral("VAT-7");
    doc.pod.identyfikacja = QStringLiteral("2026/03");
    doc.zaDokumentNazwa = QStringLiteral("Faktura 12/2026 za materiały budowlane");
    doc.klientKonto = QStringLiteral("PL45 1140 2004 0000 3002 0123 4567");
    if (cash)
        doc.kontoFirmy.clear();
    for (int wstawiany : {0, 1}) {
        const PdfContent pdf = print(doc, Settings{.wstawiany = wstawiany}, kind == 5 ? "dprzelewZus" : "dprzelew");
        if (kind != 5) // digits only, one to a box: the country code and blanks dropped
            QCOMPARE(boxText(pdf, rows.at(2), wstawiany ? QPointF() : Slip::SafeShift),
                     QStringLiteral("45114020040000300201234567"));
        QSet<int> used;
        for (const PdfWord &w : pdf.words) {
            const QPointF c = w.box.center() - (wstawiany ? QPointF() : Slip::SafeShift);
            if (w.page != 0 || c.y() > Slip::PartHeight)
                continue;
            int row = -1;
            for (int i = 0; i < rows.size(); ++i)
                if (c.y() > rows.at(i).y && c.y() < rows.at(i).y + rows.at(i).height)
                    row = i;
            if (row >= 0)
                used << row;
            else if (wstawiany) // only values on a pre-printed form, each in its row
                QFAIL(qPrintable(QStringLiteral("\"%1\" outside the rows at y %2").arg(w.text).arg(c.y())));
        }
        QCOMPARE(used.size(), rows.size());
    }
}

void TestSlips::longestValuesDoNotOverlap_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<Settings>("settings");
    QTest::newRow("transfer") << 1 << Settings{.data = 1};
    QTest::newRow("transfer, cash") << -1 << Settings{.data = 1};
    QTest::newRow("simplified slip") << 1 << Settings{.nowe = 1, .data = 1};
    QTest::newRow("deposit slip") << 2 << Settings{.data = 1};
    QTest::newRow("postal order to an account") << 3 << Settings{.data = 1};
    QTest::newRow("named postal order") << 4 << Settings{.data = 1};
    QTest::newRow("named postal order, fields only") << 4 << Settings{.wstawiany = 1, .data = 1};
    QTest::newRow("ZUS") << 5 << Settings{.data = 1};
    QTest::newRow("tax") << 6 << Settings{.data = 1};
    QTest::newRow("tax, old form") << 6 << Settings{.nowe = 1, .data = 1};
}

void TestSlips::longestValuesDoNotOverlap()
{
    QFETCH(int, kind);
    QFETCH(Settings, settings);
    RecordingDialogs d;
    FirmData firm = *FirmStore::read(Db());
    const FirmData saved = firm;
    firm.nazwa = longest(QStringLiteral("Przedsiębiorstwo Handlowo-Usługowe"), 50);
    firm.nazwa1 = longest(QStringLiteral("Spółka z ograniczoną odpowiedzialnością"), 50);
    firm.nazwaSkrocona = longest(QStringLiteral("PHU Żółć"), 50);
    firm.nazwaSkroconaCd = longest(QStringLiteral("Spółka"), 50);
    firm.ulica = longest(QStringLiteral("Aleja Marszałka"), 40);
    firm.nrDomu = QStringLiteral("1234567890");
    firm.nrLokalu = QStringLiteral("1234567890");
    firm.miasto = longest(QStringLiteral("Kędzierzyn-Koźle"), 30);
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = sampleDocument(qAbs(kind), QDate(2026, 12, 28));
    if (kind < 0)
        doc.kontoFirmy.clear();
    doc.klientNazwa = longest(QStringLiteral("Hurtownia Materiałów Budowlanych"), 50);
    doc.klientNazwa1 = longest(QStringLiteral("Oddział Południowy"), 50);
    doc.klientUlica = longest(QStringLiteral("ul. Księcia Józefa Poniatowskiego"), 40);
    doc.klientMiasto = longest(QStringLiteral("Szczebrzeszyn"), 30);
    doc.klientBank = longest(QStringLiteral("Bank Spółdzielczy"), 50);
    doc.zaDokumentNazwa = longest(QStringLiteral("Faktury"), Slip::titleCapacity(qAbs(kind)).rows > 0 ? 108 : 150);
    doc.wartosc = *Money::parse(QStringLiteral("987654321,77"));
    doc.pod.symbol = QStringLiteral("PIT-37");
    doc.pod.identyfikacja = QStringLiteral("12345678901234567890");
    const PdfContent pdf = print(doc, settings, kind == 5 ? "dprzelewZus" : "dprzelew");
    QVERIFY(FirmStore::save(Db(), saved, {}));
    QVERIFY(pdf.ok);
    QVERIFY(pdf.words.size() > 50);
    const QString clash = overlapping(pdf);
    QVERIFY2(clash.isEmpty(), qPrintable(clash));
    // On plain paper nothing comes nearer than 5 mm to the sheet's edges (A4 portrait here).
    if (settings.wstawiany == 0) {
        const QRectF safe = QRectF(0, 0, 11906, 16838).adjusted(283, 283, -283, -283);
        for (const PdfWord &w : pdf.words)
            QVERIFY2(safe.contains(w.box), qPrintable(w.text));
    }
}

// The PDF "printer" calibrated 10 mm to the right, 5 mm up and 2% larger: a pre-printed
// form's values move by as much, on top of the firm's margins.
void TestSlips::printerCalibration()
{
    RecordingDialogs d;
    PrinterCalibration{100, -50, 1020}.save(QStringLiteral("PDF"));
    Settings prePrinted{.wstawiany = 1};
    prePrinted.apply();
    appState().margLewy = 2;
    PaymentDocument doc = sampleDocument(1);
    const auto id = DocumentStore::insert(Db(), doc);
    QVERIFY(id);
    const PdfContent pdf = printJob(QStringLiteral("dprzelew"), *id);
    PrinterCalibration{}.save(QStringLiteral("PDF"));
    const QRectF name = phrase(pdf, QStringLiteral("H"));
    const QRectF plain = phrase(printJob(QStringLiteral("dprzelew"), *id), QStringLiteral("H"));
    appState().margLewy = 0;
    QVERIFY(!name.isEmpty() && !plain.isEmpty());
    QVERIFY(qAbs(name.left() - (567 + 1.02 * (plain.left()))) < 5);
    QVERIFY(qAbs(name.top() - (-283.5 + 1.02 * plain.top())) < 5);
}

void TestSlips::paymentQrCode_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<int>("firmSetting"); // -1: as a new firm has it
    QTest::addColumn<int>("override");    // -1: none, else the job's --qr / --bez-qr
    QTest::addColumn<QString>("account");
    QTest::addColumn<int>("codes");
    const QString account = QStringLiteral("PL45 1140 2004 0000 3002 0123 4567");
    QTest::newRow("new firm, transfer form") << Settings{} << -1 << -1 << account << 1;
    QTest::newRow("four parts: the payer's copy only") << Settings{.cztery = 1} << -1 << -1 << account << 1;
    QTest::newRow("simplified slip, both parts") << Settings{.nowe = 1} << 1 << -1 << account << 2;
    QTest::newRow("firm turned it off") << Settings{} << 0 << -1 << account << 0;
    QTest::newRow("turned on for the job") << Settings{} << 0 << 1 << account << 1;
    QTest::newRow("turned off for the job") << Settings{} << 1 << 0 << account << 0;
    QTest::newRow("account of 25 digits") << Settings{} << 1 << -1 << account.chopped(1) << 0;
}

// The code read back from the printed page by a scanner gives the banks' payment text.
void TestSlips::paymentQrCode()
{
    QFETCH(Settings, settings);
    QFETCH(int, firmSetting);
    QFETCH(int, override);
    QFETCH(QString, account);
    QFETCH(int, codes);
    if (QStandardPaths::findExecutable(QStringLiteral("zbarimg")).isEmpty())
        QSKIP("zbarimg (zbar-tools) is not installed");
    RecordingDialogs d;
    if (firmSetting < 0)
        QVERIFY(PaymentQr::firmSetting(Db()));
    else
        QVERIFY(PaymentQr::saveFirmSetting(Db(), firmSetting != 0));
    if (override >= 0)
        PrintEngine::instance().setNextQr(override != 0);
    PaymentDocument doc = sampleDocument(1);
    doc.klientKonto = account;
    doc.klientNip = QStringLiteral("526-104-08-28");
    doc.zaDokumentNazwa = QStringLiteral("Faktura 12/2026 | za materiały budowlane");
    const PdfContent pdf = print(doc, settings);
    QVERIFY(PaymentQr::saveFirmSetting(Db(), true));
    QVERIFY(pdf.ok);
    const QString expected = QStringLiteral("5261040828|PL|45114020040000300201234567|123450|Hurtownia Gęśla|"
                                            "Faktura 12/2026 za materiały bud|||");
    QString found;
    for (int page = 1; page <= pdf.pages; ++page) {
        const QString png = m_env->newPath(QStringLiteral("strona"));
        QCOMPARE(QProcess::execute(QStringLiteral("pdftoppm"),
                                   {QStringLiteral("-r"), QStringLiteral("300"), QStringLiteral("-f"),
                                    QString::number(page), QStringLiteral("-l"), QString::number(page),
                                    QStringLiteral("-png"), QStringLiteral("-singlefile"), m_pdf, png}),
                 0);
        QProcess zbar;
        // Raw bytes: left to guess, zbar reads UTF-8 Polish letters as Shift JIS.
        zbar.start(QStringLiteral("zbarimg"),
                   {QStringLiteral("-q"), QStringLiteral("--raw"), QStringLiteral("-Sbinary"), png + ".png"});
        QVERIFY(zbar.waitForFinished(60000));
        found += QString::fromUtf8(zbar.readAllStandardOutput()).remove(QLatin1Char('\n'));
    }
    QCOMPARE(found, expected.repeated(codes));
}

QTEST_MAIN(TestSlips)
#include "tst_slips.moc"
