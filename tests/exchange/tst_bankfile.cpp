#include "AppState.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "documents/ChoiceLists.h"
#include "documents/DocumentStore.h"
#include "exchange/BankFile.h"
#include "exchange/Elixir.h"
#include "SettingsStore.h"
#include "db/FirmDatabase.h"
#include "documents/ZusAccount.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTest>
#include <QXmlStreamReader>

#include <memory>

namespace {

// Valid account numbers (check digits and sort code check digit).
const QString FirmAccount = QStringLiteral("13 1020 2964 0000 1234 5678 9012");
const QString OtherFirmAccount = QStringLiteral("22102029640000999988887777");
const QString PayeeAccount = QStringLiteral("PL57 1140 2004 0000 3002 0123 4567");
const QString TaxAccount = QStringLiteral("16101000712222526104082800");
const QString NrsAccount = QStringLiteral("44600000020260015261040828");

// One Elixir-O line split into its fields, each quoted one still in its quotes.
QStringList elixirFields(const QString &line)
{
    QStringList out{QString()};
    bool inQuotes = false;
    for (QChar c : line) {
        if (c == u',' && !inQuotes) {
            out << QString();
        } else {
            out.last() += c;
            inQuotes ^= c == u'"';
        }
    }
    return out;
}

} // namespace

class TestBankFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_env = std::make_unique<TestEnv>(); }
    void init();
    void cleanup() { CloseDb(); }
    void elixirLines_data();
    void elixirLines();
    void xmlAgainstSchema();
    void refusedBatchWritesNothing_data();
    void refusedBatchWritesNothing();
    void existingFileAndWrapping();
    void commandLine_data();
    void commandLine();
    // The file of transfers written as each one is issued.
    void recordLine_data();
    void recordLine();
    void fileStep();

private:
    PaymentDocument stored(int kind, const std::function<void(PaymentDocument &)> &change = {});
    QString m_path;
    std::unique_ptr<TestEnv> m_env;
    int m_firm = 0;
};

void TestBankFile::init()
{
    FirmData firm = sampleFirm();
    firm.accounts[0] = BankAccount{QStringLiteral("PKO BP"), FirmAccount, Money()};
    firm.accounts[1] = BankAccount{QStringLiteral("PKO BP 2"), OtherFirmAccount, Money()};
    firm.nrs = NrsAccount;
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma%1.zlc").arg(++m_firm)), firm));
    m_path = m_env->newPath(QStringLiteral("wyjscie%1").arg(m_firm));
}

PaymentDocument TestBankFile::stored(int kind, const std::function<void(PaymentDocument &)> &change)
{
    PaymentDocument d = sampleDocument(kind, QDate(2026, 11, 23));
    d.kontoFirmy = FirmAccount;
    d.klientKonto = PayeeAccount;
    if (change)
        change(d);
    if (!DocumentStore::insert(Db(), d))
        qWarning("not stored");
    return d;
}

void TestBankFile::elixirLines_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("title"); // as written, its lines joined by '|'; a transfer's is typed so
    QTest::addColumn<QString>("classification");
    QTest::newRow("transfer cp1250") << 1 << "cp1250" << "Faktura 12/2026" << "51";
    QTest::newRow("split payment") << 1 << "cp1250" << "/VAT/230,84/IDC/5261040828/INV/FV |12/2026/TXT/zaplata" << "53";
    QTest::newRow("tax") << 6 << "cp852" << "/TI/N5261040828/OKR/26M10/SFP/VAT-7" << "71";
    QTest::newRow("zus on nrs") << 5 << "iso-8859-2" << "Składki ZUS 10/2026, dekl. 01, typ |S" << "51";
}

void TestBankFile::elixirLines()
{
    QFETCH(int, kind);
    QFETCH(QString, encoding);
    QFETCH(QString, title);
    QFETCH(QString, classification);
    const PaymentDocument doc = stored(kind, [&](PaymentDocument &d) {
        d.zaDokumentNazwa = kind == 1 ? QString(title).remove(u'|') : QString();
        d.zus.nrRachunku = qint16(kind == 5 ? ZusAccount::Individual : 0);
        d.zus.miesiac = 9;
        d.zus.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::zusYears(), 2026));
        d.pod.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::taxYears(), 2026));
        d.pod.nrOkresu = QStringLiteral("10");
        d.pod.symbol = QStringLiteral("vat-7");
        if (kind == 6)
            d.klientKonto = TaxAccount;
    });
    BankFile::Options o;
    o.encoding = *BankFile::encodingByName(encoding);
    o.today = QDate(2026, 11, 20);
    const BankFile::Outcome out = BankFile::send(Db(), {doc.id}, o, m_path, false);
    QVERIFY2(out.written, qPrintable(out.problems.join(QLatin1Char('\n'))));

    const QByteArray bytes = readFile(m_path);
    QVERIFY(bytes.endsWith("\r\n"));
    QCOMPARE(bytes.count('\n'), 1);
    // Read back by the code page's own name, not through the program's choice.
    QStringDecoder dec(encoding == u"cp852" ? "IBM852" : encoding == u"iso-8859-2" ? "ISO-8859-2" : "windows-1250");
    QStringList fields = elixirFields(QString(dec.decode(bytes)).chopped(2));
    QList<bool> quoted;
    for (QString &field : fields) {
        quoted << field.startsWith(u'"');
        field.remove(u'"');
    }
    QCOMPARE(quoted, QList<bool>({false, false, false, false, false, true, true, true, true, false, false, true, true,
                                  true, true, true}));
    QCOMPARE(fields.mid(0, 4), QStringList({"110", "20261123", "123450", "10202964"}));
    QCOMPARE(fields.at(5), BankFile::accountDigits(FirmAccount));
    const QString payeeAccount = BankFile::accountDigits(kind == 5 ? NrsAccount : doc.klientKonto);
    QCOMPARE(fields.at(6), payeeAccount);
    QCOMPARE(fields.at(7), QStringLiteral("Zakład Ślusarski Żółć|Długa 5|90-001 Łódź"));
    QCOMPARE(fields.at(8), kind == 5 ? QStringLiteral("Zakład Ubezpieczeń Społecznych") : QStringLiteral("Hurtownia Gęśla|Kwiatowa 7|31-000 Kraków"));
    QCOMPARE(fields.at(11), title);
    QCOMPARE(fields.at(14), classification);
    QCOMPARE(SentStore::sentAmong(Db(), {doc.id, doc.id + 1}), QList<qint32>{doc.id});
}

void TestBankFile::xmlAgainstSchema()
{
    const QString xsd = qEnvironmentVariable("ZLECANKI_SHARED") + QStringLiteral("/testdata/iso20022/pain.001.001.03.xsd");
    if (!QFile::exists(xsd))
        QSKIP("the pain.001.001.03 schema is not in the shared test data");
    if (QStandardPaths::findExecutable(QStringLiteral("xmllint")).isEmpty())
        QSKIP("xmllint (libxml2-utils) is not installed");
    QList<qint32> ids;
    ids << stored(1).id
        << stored(1, [](PaymentDocument &d) {
               d.zaDokumentNazwa = QStringLiteral("/VAT/10,00/IDC/5261040828/INV/FV <1> & \"2\"/TXT/");
               d.wartosc = Money::fromGrosze(5001);
           }).id
        << stored(6, [](PaymentDocument &d) {
               d.klientKonto = TaxAccount;
               d.pod.symbol = QStringLiteral("PIT-4R");
               d.pod.nrOkresu = QStringLiteral("3");
               d.pod.identyfikacja = QStringLiteral("decyzja 1/2026");
           }).id
        << stored(1, [](PaymentDocument &d) {
               d.kontoFirmy = OtherFirmAccount;
               d.wartosc = Money::fromGrosze(1);
           }).id
        << stored(1, [](PaymentDocument &d) { d.dataDokumentu = QDate(2026, 11, 30); }).id;
    BankFile::Options o;
    o.format = BankFile::Format::Xml;
    o.today = QDate(2026, 11, 23);
    const BankFile::Outcome out = BankFile::send(Db(), ids, o, m_path, false);
    QVERIFY2(out.written, qPrintable(out.problems.join(QLatin1Char('\n'))));

    QProcess lint;
    lint.start(QStringLiteral("xmllint"), {QStringLiteral("--noout"), QStringLiteral("--schema"), xsd, m_path});
    QVERIFY(lint.waitForFinished(60000));
    QVERIFY2(lint.exitCode() == 0, lint.readAllStandardError().constData());

    // Transactions and their sum for the whole file, then for each block: account 1 on the 23rd,
    // account 2 on the 23rd, account 1 on the 30th.
    QXmlStreamReader r(readFile(m_path));
    QStringList stated, titles;
    while (!r.atEnd()) {
        if (r.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (r.name() == u"NbOfTxs" || r.name() == u"CtrlSum")
            stated << r.readElementText();
        else if (r.name() == u"Ustrd")
            titles << r.readElementText();
    }
    QCOMPARE(stated.join(QLatin1Char(' ')), QStringLiteral("5 3753.52 3 2519.01 1 0.01 1 1234.50"));
    QVERIFY(titles.contains(QStringLiteral("/TI/N5261040828/OKR/26M03/SFP/PIT-4R/TXT/decyzja 1/2026")));
    QVERIFY(titles.contains(QStringLiteral("/VAT/10,00/IDC/5261040828/INV/FV <1> & \"2\"/TXT/")));
}

void TestBankFile::refusedBatchWritesNothing_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("problem");
    QTest::newRow("payee check digits") << "xml" << 1 << "konto" << "58 1140 2004 0000 3002 0123 4567"
                                        << "rachunek odbiorcy: numer rachunku";
    QTest::newRow("zero amount") << "elixir" << 1 << "kwota" << "0" << "kwota musi być większa od zera";
    QTest::newRow("over the limit") << "xml" << 1 << "kwota" << "1000000000" << "przekracza";
    QTest::newRow("no payee name") << "elixir" << 1 << "nazwa" << "" << "brak nazwy odbiorcy";
    QTest::newRow("title over four lines") << "elixir" << 1 << "tytul" << QString(150, QLatin1Char('x'))
                                           << "tytuł nie mieści się w 4 wierszach po 35 znaków";
    QTest::newRow("quote in title") << "elixir" << 1 << "tytul" << "FV \"12\"" << "znak \"";
    QTest::newRow("not in code page") << "elixir" << 1 << "nazwa" << "Café €uro ☃"
                                      << "których nie ma w kodowaniu ISO-8859-2: €☃";
    QTest::newRow("split payment, VAT without grosze") << "elixir" << 1 << "tytul" << "/VAT/23/IDC/5261040828/INV/1/TXT/x"
                                                      << "nie ma postaci /VAT/kwota/IDC";
    QTest::newRow("VAT over amount") << "xml" << 1 << "tytul" << "/VAT/2000,00/IDC/5261040828/INV/1/TXT/"
                                     << "kwota VAT jest większa";
    QTest::newRow("deposit slip") << "xml" << 2 << "" << "" << "to nie jest przelew";
    QTest::newRow("old ZUS account") << "xml" << 5 << "" << "" << "rachunek indywidualny (NRS)";
    QTest::newRow("tax without symbol") << "elixir" << 6 << "symbol" << "" << "brak symbolu formularza";
}

void TestBankFile::refusedBatchWritesNothing()
{
    QFETCH(QString, format);
    QFETCH(int, kind);
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, problem);
    const qint32 good = stored(1).id;
    const qint32 bad = stored(kind, [&](PaymentDocument &d) {
                           d.pod.symbol = QStringLiteral("VAT-7");
                           d.pod.nrOkresu = QStringLiteral("1");
                           const QHash<QString, QString *> texts{{"konto", &d.klientKonto}, {"nazwa", &d.klientNazwa},
                                                                 {"tytul", &d.zaDokumentNazwa}, {"symbol", &d.pod.symbol}};
                           if (field == u"kwota")
                               d.wartosc = *Money::parse(value);
                           else if (texts.contains(field))
                               *texts.value(field) = value;
                       }).id;
    BankFile::Options o;
    o.format = *BankFile::formatByName(format);
    o.encoding = BankFile::Encoding::Iso8859_2;
    o.today = QDate(2026, 11, 23);
    const BankFile::Outcome out = BankFile::send(Db(), {good, bad}, o, m_path, false);
    QVERIFY(!out.written);
    QCOMPARE(out.problems.size(), 1);
    const QString told = out.problems.first();
    QVERIFY2(told.startsWith(QStringLiteral("Dokument nr %1 (").arg(bad)) && told.contains(problem), qPrintable(told));
    QVERIFY(!QFile::exists(m_path));
    QVERIFY(SentStore::entries(Db()).isEmpty());
}

void TestBankFile::existingFileAndWrapping()
{
    const qint32 id = stored(1, [](PaymentDocument &d) {
                          d.klientNazwa = QStringLiteral("Przedsiębiorstwo Produkcyjno-Handlowo-Usługowe");
                          d.klientNazwa1 = QStringLiteral("\"Gęśla\" spółka z o.o.");
                          d.zaDokumentNazwa = QStringLiteral("Faktury 1/2026, 2/2026, 3/2026, 4/2026, 5/2026");
                      }).id;
    QVERIFY(writeFile(m_path, "stary"));
    BankFile::Options o;
    o.format = BankFile::Format::Xml;
    o.today = QDate(2026, 11, 23);
    BankFile::Outcome out = BankFile::send(Db(), {id}, o, m_path, false);
    QVERIFY(!out.written);
    QVERIFY(out.problems.join(QString()).contains(QStringLiteral("już istnieje")));
    QCOMPARE(readFile(m_path), QByteArray("stary"));
    QVERIFY(SentStore::entries(Db()).isEmpty()); // the record went back with the refused file
    QVERIFY(BankFile::send(Db(), {id}, o, m_path, true).written);

    QCOMPARE(BankFile::wrapLines(QStringLiteral("Przedsiębiorstwo Produkcyjno-Handlowo-Usługowe \"Gęśla\" spółka z o.o.")),
             QStringList({QStringLiteral("Przedsiębiorstwo "), QStringLiteral("Produkcyjno-Handlowo-Usługowe "),
                          QStringLiteral("\"Gęśla\" spółka z o.o.")}));
}

void TestBankFile::commandLine_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("said"); // on standard output when 0, on standard error otherwise
    QTest::newRow("the day of account 1") << QStringList{"--dzien", "23-11-2026", "--konto", "1", "--format", "elixir",
                                                         "--kodowanie", "cp852"}
                                          << 0 << "przelewów 2 na kwotę 2 469,00 zł";
    QTest::newRow("by numbers, xml") << QStringList{"--id", "1", "--format", "xml", "--data-wykonania", "31-12-2099"} << 0
                                     << "przelewów 1";
    QTest::newRow("a wrong one among them") << QStringList{"--id", "1,2", "--format", "elixir"} << 1
                                            << "Dokument nr 2 (Przelew bankowy): rachunek odbiorcy";
    QTest::newRow("both id and day") << QStringList{"--id", "1", "--dzien", "23-11-2026", "--format", "xml"} << 2
                                     << "Podaj jedno";
}

void TestBankFile::commandLine()
{
    QFETCH(QStringList, options);
    QFETCH(int, exitCode);
    QFETCH(QString, said);
    stored(1);
    stored(1, [](PaymentDocument &d) {
        d.banknr = 2;
        d.kontoFirmy = OtherFirmAccount;
        d.klientKonto = QStringLiteral("11 1140 2004 0000 3002 0123 4567");
    });
    // The day's transfers include tax transfers.
    stored(6, [](PaymentDocument &d) {
        d.klientKonto = TaxAccount;
        d.pod.symbol = QStringLiteral("VAT-7");
        d.pod.nrOkresu = QStringLiteral("1");
    });
    const QString firm = firmFile();
    CloseDb();
    const TestEnv::Run r =
        m_env->run(QStringList{QStringLiteral("bank"), QStringLiteral("--firma"), firm, QStringLiteral("--plik"), m_path} + options);
    const QString output = exitCode == 0 ? r.out : r.err;
    QVERIFY2(output.contains(said), qPrintable(output + r.err));
    QCOMPARE(r.code, exitCode);
    QCOMPARE(QFile::exists(m_path), exitCode == 0);
    QVERIFY(OpenDb(firm));
    QCOMPARE(SentStore::entries(Db()).size(), exitCode == 0 ? (options.contains(QStringLiteral("--dzien")) ? 2 : 1) : 0);
}

void TestBankFile::recordLine_data()
{
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("g");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("half down to even") << "1234,5" << "110" << "g" << QByteArray("20050307,110 1234  b c d e PLN  f Przelew  g ");
    QTest::newRow("half up to even") << "1235,5" << "110" << "g" << QByteArray("20050307,110 1236  b c d e PLN  f Przelew  g ");
    QTest::newRow("negative half") << "-2,5" << "110" << "g" << QByteArray("20050307,110 -2  b c d e PLN  f Przelew  g ");
    // Windows-1250: Ł 0xA3, ó 0xF3, d, ź 0x9F; the euro sign is in the code page, the snowman is not.
    QTest::newRow("Polish letters") << "5" << "Łódź" << "€ ☃"
                                    << QByteArray("20050307,\xA3\xF3\x64\x9F 5  b c d e PLN  f Przelew  \x80 ? ");
}

void TestBankFile::recordLine()
{
    QFETCH(QString, amount);
    QFETCH(QString, a);
    QFETCH(QString, g);
    QFETCH(QByteArray, line);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    QVERIFY(Elixir::WriteElixirRecord(out, QDate(2005, 3, 7), *Money::parse(amount), a, QStringLiteral("f"),
                                      QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"),
                                      QStringLiteral("e"), g));
    QCOMPARE(out.data(), line + "\r\n");
}

void TestBankFile::fileStep()
{
    RecordingDialogs d;
    const QString folder = m_env->root() + QStringLiteral("/firmaA/");
    QVERIFY(FirmDatabase::create(folder + QStringLiteral("a.zlc"), nullptr) && OpenDb(folder + QStringLiteral("a.zlc")));
    const QString made = folder + QStringLiteral("Przelew.pli");
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 0));
    QVERIFY(!QFile::exists(made)); // switch off: nothing touched
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QVERIFY(QFile::exists(made) && readFile(made).isEmpty());
    QVERIFY(writeFile(made, "stary wiersz\r\n"));
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QCOMPARE(readFile(made), QByteArray("stary wiersz\r\n")); // left as it was

    // The sender's lines come from the firm's row as the form shows them.
    QVERIFY(QSqlQuery(Db()).exec(QStringLiteral(
        "INSERT INTO firma (NAZWA, NAZWA1, ULICA, NR_DOMU, NR_LOKALU, KOD, MIASTO, BANK_NAZWA1, BANK_KONTO1, firma_NIP) "
        "VALUES ('Przedsiębiorstwo Handlowo-Usługowe', 'Kowalski i Wspólnicy', 'Piotrkowska', '12', '3a', '90-001', "
        "'Łódź', 'PKO BP', '12 3456', '123-456-78-90')")));
    const Elixir::SenderLines s = Elixir::GatherSenderLines(Db());
    QCOMPARE(QStringList({s.name, s.street, s.town, s.bankName, s.nip}),
             QStringList({"Przedsiębiorstwo Handlowo-Usługowe", "Piotrkowska 12 3a", "90-001 Łódź", "PKO BP",
                          "123-456-78-90"}));
    SettingsStore::loadSave(QStringLiteral("PlikElixir"), QStringLiteral("bank.pli"));
    QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
    QVERIFY(QFile::exists(folder + QStringLiteral("bank.pli")));

    // Never the firm's own file.
    SettingsStore::loadSave(QStringLiteral("PlikElixir"), QStringLiteral("a.zlc"));
    QVERIFY(!Elixir::issueStep(Db(), firmFile(), 1));
    QVERIFY(d.saw(QStringLiteral("otwartą bazą firmy")));
    SettingsStore::remove(SettingsStore::App, SettingsStore::Load, QStringLiteral("PlikElixir"));

    // Firms on a server: each its own local folder, never a path made of the address.
    if (testServer().isEmpty())
        return;
    QStringList folders;
    for (const QString &schema : {QStringLiteral("pli_a"), QStringLiteral("pli_b")}) {
        const QString address = emptiedServerSchema(schema);
        QVERIFY(FirmDatabase::create(address, nullptr) && OpenDb(address));
        QVERIFY(Elixir::issueStep(Db(), firmFile(), 1));
        folders << Elixir::firmFolder(address);
        QVERIFY(QFile::exists(folders.last() + QStringLiteral("Przelew.pli")));
    }
    QVERIFY(folders.first() != folders.last() && folders.first().startsWith(appState().bazyPath));
    CloseDb();
}

QTEST_GUILESS_MAIN(TestBankFile)
#include "tst_bankfile.moc"
