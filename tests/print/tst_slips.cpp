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
    int wstawiany = 0, nowe = 0, cztery = 0, naStronie = 0, data = 0, drukDaty = 1, zlGr = 0;
    void apply() const
    {
        AppState &s = appState();
        s.wstawiany = wstawiany;
        s.nowe = nowe;
        s.czteryOdcinki = cztery;
        s.czteryNaStronie = naStronie;
        s.szary = 0;
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
    void zusSlips();
    void partsOnSheets_data();
    void partsOnSheets();
    void statement();
    void backSideAfterTurnOver();
    void depositSlipCopies();
    void valueRows_data();
    void valueRows();
    void taxIdentifierAndPeriod(); // after the value rows: it changes the firm's identifier
    void printerCalibration();
    void paymentQrCode_data();
    void paymentQrCode();
    void longestValuesDoNotOverlap_data(); // last: it leaves the firm's longest values behind
    void longestValuesDoNotOverlap();

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
        static int shot = 0; // numbered: a test may print more than one slip
        QString name = QStringLiteral("%1-").arg(++shot, 3, 10, QLatin1Char('0')) +
                       QLatin1String(QTest::currentTestFunction()) + QLatin1Char('-') +
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

// An account closed since 2017 still prints on the ZUS form, with a warning; a firm with its
// own contribution account (NRS) pays ZUS with a plain transfer to it.
void TestSlips::zusSlips()
{
    const QString account = QStringLiteral("73101010230000261395300000"); // FP i FGŚP
    RecordingDialogs d;
    FirmData firm = *FirmStore::read(Db());
    firm.nrs = QStringLiteral("44 6000 0002 0260 0152 6104 0828");
    QVERIFY(FirmStore::save(Db(), firm, {}));
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
        QCOMPARE(boxText(pdf, Zus.paymentType, corner), wstawiany ? QString() : QStringLiteral("A"));
        QCOMPARE(boxText(pdf, Zus.payer, corner), QStringLiteral("ŻÓŁĆSPÓŁKA")); // the short name
    }
    QVERIFY(d.saw(QStringLiteral("Rachunek ZUS \"FP i FGŚP\" zamknięto z końcem 2017 roku")));
    d.clear();
    doc = sampleDocument(5);
    doc.zus.nrRachunku = qint16(ZusAccount::Individual);
    // Account and title stand one character per box: compare without the gaps between them.
    const QString text = print(doc, Settings{.data = 1}, QStringLiteral("dprzelewZus")).text().remove(QLatin1Char(' '));
    for (const QString p : {"Polecenieprzelewu", "ZakładUbezpieczeńSpołecznych", "SkładkiZUS", "03/2026,dekl.",
                            "44600000020260015261040828", "05-03-2026"})
        QVERIFY2(text.contains(p), qPrintable(p));
    QVERIFY(!text.contains(QStringLiteral("Hurtownia")) && !text.contains(QStringLiteral("01.NrrachunkubankowegoZUS")));
    QVERIFY(d.calls.isEmpty());
}

void TestSlips::partsOnSheets_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QList<bool>>("answers"); // to "print the parts down the columns?"
    QTest::addColumn<int>("pages");
    QTest::addColumn<QPointF>("secondPart"); // where the second part stands from the first
    const QPointF below(0, Slip::StackedPitch);
    // Four parts fill a landscape sheet: on plain paper they shrink to stay off its edges.
    const qreal shrunk = (11906 - 2 * PrintEngine::SafeMargin) / 11906;
    const Settings onA4{.cztery = 1, .naStronie = 1};
    QTest::newRow("two parts") << Settings{} << QList<bool>{} << 1 << below;
    QTest::newRow("four on A4, down the columns") << onA4 << QList<bool>{true} << 1 << QPointF(0, Slip::GridRow) * shrunk;
    QTest::newRow("four on A4, along the rows") << onA4 << QList<bool>{false, true} << 1
                                                << QPointF(Slip::GridColumn, 0) * shrunk;
    QTest::newRow("four on A4 refused: two sheets") << onA4 << QList<bool>{false, false} << 2 << below;
}

void TestSlips::partsOnSheets()
{
    QFETCH(Settings, settings);
    QFETCH(QList<bool>, answers);
    QFETCH(int, pages);
    QFETCH(QPointF, secondPart);
    RecordingDialogs d;
    d.answers = answers;
    PrintEngine::instance().setNextCopies(2); // the answer holds for every copy
    const PdfContent pdf = print(sampleDocument(1), settings);
    QCOMPARE(pdf.pages, 2 * pages);
    const QStringList labels = settings.cztery
                                   ? QStringList{"odcinek dla banku odbiorcy", "odcinek dla odbiorcy"}
                                   : QStringList{"odcinek dla banku zleceniodawcy", "odcinek dla zleceniodawcy"};
    const QRectF first = phrase(pdf, labels.at(0), 0);
    const QRectF second = phrase(pdf, labels.at(1), 0);
    QVERIFY(!first.isEmpty() && !second.isEmpty());
    QVERIFY(qAbs(second.right() - first.right() - secondPart.x()) < 6);
    QVERIFY(qAbs(second.top() - first.top() - secondPart.y()) < 6);
}

// Two copies of the list on a sheet, a list longer than half a sheet going on over the next ones.
void TestSlips::statement()
{
    RecordingDialogs d;
    Settings{}.apply();
    CollectiveStatement s{QStringLiteral("Bank Śląski"), QStringLiteral("11 2222 3333"), Issued, {}};
    for (int i = 1; i <= 400; ++i)
        s.amounts << Money::fromGrosze(i * 100 + i % 2);
    const PdfContent pdf = printJob(QStringLiteral("zbiorowka"), QVariant::fromValue(s));
    QCOMPARE(pdf.pages, 4);
    QCOMPARE(pdf.text().count(QStringLiteral("Ilość przelewów: 400")), 2);
    QCOMPARE(pdf.text().count(QStringLiteral("Razem: 80 202,00")), 2);
    for (const Money &m : s.amounts)
        QVERIFY(pdf.text().contains(Kwota(m)));
}

// The user is told to turn the sheet over once the front is printed, the back is a page of its own.
void TestSlips::backSideAfterTurnOver()
{
    // Records how many pages were begun when the user is told to turn the sheet over.
    struct Turning : RecordingDialogs {
        int pagesWhenAsked = -1;
        void message(const QString &text, const QString &title, Icon icon) override
        {
            pagesWhenAsked = PrintEngine::instance().pageCount();
            RecordingDialogs::message(text, title, icon);
        }
    };
    Turning d;
    const PdfContent pdf = print(sampleDocument(4), Settings{.nowe = 1, .zlGr = 2});
    QVERIFY(!phrase(pdf, QStringLiteral("1 234 zł 50 gr")).isEmpty()); // the firm's amount format
    QCOMPARE(d.callsOf(QStringLiteral("message")).size(), 1);
    QVERIFY(d.calls.first().text.contains(QStringLiteral("przełóż kartkę na drugą stronę"), Qt::CaseInsensitive));
    QCOMPARE(d.pagesWhenAsked, 1);
    const QString back = QStringLiteral("Znamiona dowodu tożsamości");
    QVERIFY(phrase(pdf, back, 0).isEmpty() && !phrase(pdf, back, 1).isEmpty());
}

void TestSlips::depositSlipCopies()
{
    RecordingDialogs d;
    // Leaving the amount out holds for one job: the copies below have it again. The issue
    // date only when both the firm and the user want it (the firm's alone: the ZUS scene).
    PrintEngine::instance().setAmountPrinted(false);
    const PdfContent bare = print(sampleDocument(1), Settings{.data = 1, .drukDaty = 0});
    QVERIFY(boxText(bare, Bank.amount).isEmpty() && phrase(bare, QStringLiteral("05-03-2026")).isEmpty());
    const PdfContent pdf = print(sampleDocument(2), Settings{.nowe = 1, .zlGr = 1});
    QCOMPARE(pdf.pages, 1);
    QVERIFY(!phrase(pdf, QStringLiteral("w (Banku): mBank")).isEmpty());
    const QRectF first = phrase(pdf, QStringLiteral("Hurtownia Gęśla"));
    for (int copy = 0; copy < 4; ++copy) {
        // The same recipient, amount and wording on every copy, one copy lower each time.
        QVERIFY(qAbs(phrase(pdf, QStringLiteral("Hurtownia Gęśla"), 0, copy).top() - first.top() -
                     copy * DepositSlip.pitch) < 2);
        QVERIFY(!phrase(pdf, QStringLiteral("1 234,50 zł"), 0, copy).isEmpty());
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
// and every row is used: on the whole form and on a pre-printed one alike. The amount stands
// right-aligned after its currency and is spelt out only where no payer's account takes the row.
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
    doc.pod.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::taxYears(), 2024));
    doc.pod.nrOkresu = QStringLiteral("01");
    doc.zaDokumentNazwa = QStringLiteral("Faktura 12/2026 za materiały budowlane");
    doc.klientKonto = QStringLiteral("PL45 1140 2004 0000 3002 0123 4567");
    if (cash)
        doc.kontoFirmy.clear();
    for (int wstawiany : {0, 1}) {
        const PdfContent pdf = print(doc, Settings{.wstawiany = wstawiany}, kind == 5 ? "dprzelewZus" : "dprzelew");
        const QPointF corner = wstawiany ? QPointF() : Slip::SafeShift;
        if (kind != 5) // digits only, one to a box: the country code and blanks dropped
            QCOMPARE(boxText(pdf, rows.at(2), corner), QStringLiteral("45114020040000300201234567"));
        const Slip::Boxes a = rows.at(kind == 5 ? 1 : 3);
        QCOMPARE(boxText(pdf, Slip::Boxes{nullptr, Slip::boxX(a.x, -4), a.y, a.count + 4, a.height}, corner),
                 QStringLiteral("PLN1234,50"));
        QCOMPARE(boxText(pdf, Slip::Boxes{nullptr, Slip::boxX(a.x, a.count - 1), a.y, 1, a.height}, corner),
                 QStringLiteral("0"));
        QCOMPARE(phrase(pdf, Wording).isEmpty(), !cash);
        if (kind == 6) // the firm's NIP with its letter, the month with its year
            QCOMPARE(boxText(pdf, Tax.identifierType, corner) + boxText(pdf, Tax.identifier, corner) +
                         boxText(pdf, Tax.period, corner),
                     QStringLiteral("N526104082824M01"));
        QSet<int> used;
        for (const PdfWord &w : pdf.words) {
            const QPointF c = w.box.center() - corner;
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
    QTest::newRow("simplified slip") << 1 << Settings{.nowe = 1, .data = 1};
    QTest::newRow("deposit slip") << 2 << Settings{.data = 1};
    QTest::newRow("postal order to an account") << 3 << Settings{.data = 1};
    QTest::newRow("named postal order") << 4 << Settings{.data = 1};
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
    firm.nazwa = longest(QStringLiteral("Przedsiębiorstwo Handlowo-Usługowe"), 50);
    firm.nazwa1 = longest(QStringLiteral("Spółka z ograniczoną odpowiedzialnością"), 50);
    firm.nazwaSkrocona = longest(QStringLiteral("PHU Żółć"), 50);
    firm.nazwaSkroconaCd = longest(QStringLiteral("Spółka"), 50);
    firm.ulica = longest(QStringLiteral("Aleja Marszałka"), 40);
    firm.nrDomu = QStringLiteral("1234567890");
    firm.nrLokalu = QStringLiteral("1234567890");
    firm.miasto = longest(QStringLiteral("Kędzierzyn-Koźle"), 30);
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = sampleDocument(kind, QDate(2026, 12, 28));
    doc.klientNazwa = longest(QStringLiteral("Hurtownia Materiałów Budowlanych"), 50);
    doc.klientNazwa1 = longest(QStringLiteral("Oddział Południowy"), 50);
    doc.klientUlica = longest(QStringLiteral("ul. Księcia Józefa Poniatowskiego"), 40);
    doc.klientMiasto = longest(QStringLiteral("Szczebrzeszyn"), 30);
    doc.klientBank = longest(QStringLiteral("Bank Spółdzielczy"), 50);
    doc.zaDokumentNazwa = longest(QStringLiteral("Faktury"), Slip::titleCapacity(kind).rows > 0 ? 108 : 150);
    doc.wartosc = *Money::parse(QStringLiteral("987654321,77"));
    doc.pod.symbol = QStringLiteral("PIT-37");
    doc.pod.identyfikacja = QStringLiteral("12345678901234567890");
    const PdfContent pdf = print(doc, settings, kind == 5 ? "dprzelewZus" : "dprzelew");
    QVERIFY(pdf.words.size() > 50);
    const QString clash = overlapping(pdf);
    QVERIFY2(clash.isEmpty(), qPrintable(clash));
    // On plain paper nothing comes nearer than 5 mm to the sheet's edges (A4 portrait here).
    const QRectF safe = QRectF(0, 0, 11906, 16838).adjusted(283, 283, -283, -283);
    for (const PdfWord &w : pdf.words)
        QVERIFY2(safe.contains(w.box), qPrintable(w.text));
}

// The PDF "printer" calibrated 10 mm to the right, 5 mm up and 2% larger: a pre-printed
// form's values move by as much, on top of the firm's margins (3 mm left, 12 mm down).
// A tax identifier of another kind and a quarter, on the old bank form's tax fields.
void TestSlips::taxIdentifierAndPeriod()
{
    RecordingDialogs d;
    FirmData firm = *FirmStore::read(Db());
    firm.typIdentPod = 2; // PESEL
    firm.identPod = QStringLiteral("80010112345");
    QVERIFY(FirmStore::save(Db(), firm, {}));
    PaymentDocument doc = sampleDocument(6);
    doc.pod.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::taxYears(), 2023));
    doc.pod.typOkresu = 3;
    doc.pod.nrOkresu = QStringLiteral("04");
    doc.pod.symbol = QStringLiteral("VAT-7");
    const PdfContent pdf = print(doc, Settings{.nowe = 1});
    QCOMPARE(boxText(pdf, TaxFieldsOnBank.identifierType), QStringLiteral("P"));
    QCOMPARE(boxText(pdf, TaxFieldsOnBank.identifier), QStringLiteral("80010112345"));
    QCOMPARE(boxText(pdf, TaxFieldsOnBank.period), QStringLiteral("23K04"));
    QCOMPARE(boxText(pdf, TaxFieldsOnBank.symbol), QStringLiteral("VAT-7"));
}

void TestSlips::printerCalibration()
{
    RecordingDialogs d;
    Settings{.wstawiany = 1}.apply();
    PaymentDocument doc = sampleDocument(1);
    const auto id = DocumentStore::insert(Db(), doc);
    QVERIFY(id);
    const QRectF plain = phrase(printJob(QStringLiteral("dprzelew"), *id), QStringLiteral("H"));
    PrinterCalibration{100, -50, 1020}.save(QStringLiteral("PDF"));
    appState().margLewy = -3;
    appState().margPrawy = 12;
    const QRectF name = phrase(printJob(QStringLiteral("dprzelew"), *id), QStringLiteral("H"));
    PrinterCalibration{}.save(QStringLiteral("PDF"));
    QVERIFY(!name.isEmpty() && !plain.isEmpty());
    QVERIFY(qAbs(name.left() - (567 + 1.02 * (plain.left() - 3 * 56.7))) < 5);
    QVERIFY(qAbs(name.top() - (-283.5 + 1.02 * (plain.top() + 12 * 56.7))) < 5);
}

void TestSlips::paymentQrCode_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<bool>("firmSetting");
    QTest::addColumn<int>("override"); // -1: none, else the job's --qr / --bez-qr
    QTest::addColumn<QString>("account");
    QTest::addColumn<int>("codes");
    const QString account = QStringLiteral("PL45 1140 2004 0000 3002 0123 4567");
    QTest::newRow("transfer form") << Settings{} << true << -1 << account << 1;
    QTest::newRow("four parts: the payer's copy only") << Settings{.cztery = 1} << true << -1 << account << 1;
    QTest::newRow("simplified slip, both parts") << Settings{.nowe = 1} << true << -1 << account << 2;
    QTest::newRow("firm turned it off") << Settings{} << false << -1 << account << 0;
    QTest::newRow("turned on for the job") << Settings{} << false << 1 << account << 1;
    QTest::newRow("account of 25 digits") << Settings{} << true << -1 << account.chopped(1) << 0;
}

// The code read back from the printed pages by a scanner gives the banks' payment text.
void TestSlips::paymentQrCode()
{
    QFETCH(Settings, settings);
    QFETCH(bool, firmSetting);
    QFETCH(int, override);
    QFETCH(QString, account);
    QFETCH(int, codes);
    if (QStandardPaths::findExecutable(QStringLiteral("zbarimg")).isEmpty())
        QSKIP("zbarimg (zbar-tools) is not installed");
    RecordingDialogs d;
    QVERIFY(PaymentQr::saveFirmSetting(Db(), firmSetting));
    if (override >= 0)
        PrintEngine::instance().setNextQr(override != 0);
    PaymentDocument doc = sampleDocument(1);
    doc.klientKonto = account;
    doc.klientNip = QStringLiteral("526-104-08-28");
    doc.zaDokumentNazwa = QStringLiteral("Faktura 12/2026 | za materiały budowlane");
    const PdfContent pdf = print(doc, settings);
    const QString expected = QStringLiteral("5261040828|PL|45114020040000300201234567|123450|Hurtownia Gęśla|"
                                            "Faktura 12/2026 za materiały bud|||");
    const QString png = m_env->newPath(QStringLiteral("strona"));
    QCOMPARE(QProcess::execute(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("300"),
                                                            QStringLiteral("-png"), m_pdf, png}),
             0);
    QStringList args{QStringLiteral("-q"), QStringLiteral("--raw"), QStringLiteral("-Sbinary")};
    for (int page = 1; page <= pdf.pages; ++page)
        args << png + QStringLiteral("-%1.png").arg(page);
    QProcess zbar;
    // Raw bytes: left to guess, zbar reads UTF-8 Polish letters as Shift JIS.
    zbar.start(QStringLiteral("zbarimg"), args);
    QVERIFY(zbar.waitForFinished(60000));
    QCOMPARE(QString::fromUtf8(zbar.readAllStandardOutput()).remove(QLatin1Char('\n')), expected.repeated(codes));
}

QTEST_MAIN(TestSlips)
#include "tst_slips.moc"
