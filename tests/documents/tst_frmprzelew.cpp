#include "AppState.h"
#include "PdfReader.h"
#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "documents/ContractorStore.h"
#include "documents/Firm.h"
#include "documents/ui/frmKontrahenci.h"
#include "documents/ui/frmprzelew.h"
#include "exchange/Elixir.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QSqlQuery>
#include <QTest>

namespace {

// A document of `kind` filled in as a user would, paid from "mBank" (account 3).
std::unique_ptr<frmprzelew> filledWindow(int kind, const char *name = "Hurtownia Gęśla")
{
    auto w = std::make_unique<frmprzelew>(qint16(0), qint16(kind));
    w->show();
    child<QComboBox>(w.get(), QStringLiteral("lstbank"))->setCurrentIndex(1);
    fill(w.get(), {{"txtnazwa", name}, {"txtulica", "Kwiatowa 7"}, {"txtkod", "31-000"}, {"txtmiasto", "Kraków"},
                   {"txtbank", "Bank Odbiorcy"}, {"txtkonto", "45 1140 2004"}, {"txtzadokument", "Faktura 12/2026"},
                   {"txtwartosc", "1 234,50"}, {"txtdata", "05-03-2026"}});
    if (kind == 5) {
        fill(w.get(), {{"txtWartoscZus", "1234,5"}});
        child<QComboBox>(w.get(), QStringLiteral("lstTypWpl"))->setCurrentIndex(6);
    }
    if (kind == 6) {
        fill(w.get(), {{"txtWartoscPod", "1234,50"}, {"txtsymbol", "VAT-7"}, {"txtNrOkresu", "03"}});
        child<QComboBox>(w.get(), QStringLiteral("lstTypOkresu"))->setCurrentIndex(3);
    }
    return w;
}

qint32 issued(int kind)
{
    auto w = filledWindow(kind);
    click(w.get(), QStringLiteral("cmdwystaw"));
    return w->currentId();
}

} // namespace

class TestFrmPrzelew : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void issueEachKind_data();
    void issueEachKind();
    void correction_data();
    void correction();
    void slipAidsWhileTyping();
    void refusedSave_data();
    void refusedSave();
    void zusAndTaxAccounts_data();
    void zusAndTaxAccounts();

private:
    TestEnv m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QString m_pdf;
    QStringList m_jobs; // every slip printed
    int m_files = 0;
};

void TestFrmPrzelew::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    FirmData firm = sampleFirm();
    firm.accounts[0] = {QStringLiteral("PKO BP"), QStringLiteral("11 1111"), Money()};
    firm.accounts[2] = {QStringLiteral("mBank"), QStringLiteral("33 3333"), Money::fromZlote(5000)};
    // Each firm in a folder of its own, as is its bank file.
    const QString folder = m_env.newPath(QStringLiteral("dok%1").arg(++m_files));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(openNewFirm(folder + QStringLiteral("/dok.zlc"), firm));
    appState().eliksir = 0;
    m_pdf = m_env.newPath(QStringLiteral("slip%1.pdf").arg(m_files));
    m_jobs.clear();
    printToPdf(m_pdf, &m_jobs);
    m_dialogs->clear();
}

void TestFrmPrzelew::cleanup()
{
    CloseDb();
    m_dialogs.reset();
}

void TestFrmPrzelew::issueEachKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("printed"); // a word of the slip
    QTest::addColumn<bool>("amountPrinted"); // the answer to "Czy drukowac kwotę?"
    QTest::addColumn<QString>("job");
    QTest::newRow("transfer") << 1 << "Gęśla" << true << "dprzelew landscape";
    QTest::newRow("deposit, amount left out") << 2 << "Gęśla" << false << "dprzelew portrait";
    QTest::newRow("ZUS") << 5 << "Społecznych" << true << "dprzelewZus portrait";
    QTest::newRow("tax") << 6 << "VAT-7" << true << "dprzelew landscape";
}

void TestFrmPrzelew::issueEachKind()
{
    QFETCH(int, kind);
    QFETCH(QString, printed);
    QFETCH(bool, amountPrinted);
    QFETCH(QString, job);
    m_dialogs->answers = {amountPrinted};
    auto w = filledWindow(kind);
    click(w.get(), QStringLiteral("cmdwystaw"));

    QCOMPARE(m_dialogs->callsOf(QStringLiteral("question")).value(0).text, QStringLiteral("Czy drukowac kwotę?"));
    QCOMPARE(m_jobs, QStringList{job + QLatin1Char(' ') + QString::number(w->currentId())});
    const QString where = QStringLiteral(" FROM zlecanki WHERE id=") + QString::number(w->currentId());
    QCOMPARE(stored(QStringLiteral("SELECT rodzaj || '|' || banknr || '|' || bank_firmy || '|' || konto_firmy || '|' || "
                                   "wartosc || '|' || data_dokumentu") + where),
             QStringLiteral("%1|3|mBank|33 3333|12345000|2026-03-05").arg(kind));
    if (kind == 5)
        QCOMPARE(stored(QStringLiteral("SELECT ZUS_TypWplaty || '|' || ZUS_NrDeklaracji") + where), QStringLiteral("6|01"));
    if (kind == 6)
        QCOMPARE(stored(QStringLiteral("SELECT POD_TypOkresu || '|' || POD_Symbol") + where), QStringLiteral("3|VAT-7"));
    const PdfContent pdf = readPdf(m_pdf);
    // Character boxes hold one letter each.
    const QString text = pdf.text().remove(QLatin1Char(' '));
    QVERIFY2(text.contains(printed), qPrintable(pdf.text()));
    // The transfer forms spell the amount only for a cash deposit: a transfer has the payer's account there.
    const bool spelt = kind >= 2 && kind <= 4;
    QCOMPARE(text.contains(QStringLiteral("tysiąc")), amountPrinted && spelt);
    QCOMPARE(text.contains(QStringLiteral("1234.50")) || text.contains(QStringLiteral("1234,50")), amountPrinted);

    // Ready for the next document, from the same account and date.
    const auto field = [&w](const char *name) -> QString { return child<QLineEdit>(w.get(), name)->text() + '|'; };
    QCOMPARE(field("txtnazwa") + field("txtwartosc") + field("txtdata") + child<QComboBox>(w.get(), "lstbank")->currentText(),
             QStringLiteral("||05-03-2026|mBank"));
}

// The kind, the new amount (empty: left as it is), paid from "PKO BP" instead, then the print job.
using Correction = std::tuple<int, QString, bool, QString>;
Q_DECLARE_METATYPE(Correction)

void TestFrmPrzelew::correction_data()
{
    QTest::addColumn<Correction>("row");
    QTest::newRow("tax raised") << Correction{6, "2000", false, "dprzelew landscape"};
    // Moved: the account paid from before keeps its charge; the user is told so first.
    QTest::newRow("ZUS moved to another account") << Correction{5, "", true, "dprzelewZus portrait"};
}

void TestFrmPrzelew::correction()
{
    QFETCH(Correction, row);
    const auto &[kind, amount, moved, job] = row;
    const qint32 id = issued(kind);
    frmprzelew w(1, qint16(kind), id);
    auto fresh = filledWindow(1);
    const auto shown = [](QWidget *window) -> QString {
        return child<QComboBox>(window, QStringLiteral("lstbank"))->currentText() + QLatin1Char('|') +
               child<QLabel>(window, QStringLiteral("lblbankkonto"))->text();
    };
    // The firm's accounts renamed meanwhile: an open new document offers them as saved, its
    // choice kept; a correction keeps the account it was printed with until another is chosen.
    FirmData firm = FirmStore::read(Db()).value();
    firm.accounts[1] = {QStringLiteral("ING"), QStringLiteral("22 2222"), Money()};
    firm.accounts[2] = {QStringLiteral("mBank Nowy"), QStringLiteral("33 9999"), Money()};
    QVERIFY(FirmStore::save(Db(), firm, {}));
    QCOMPARE(shown(fresh.get()), QStringLiteral("mBank Nowy|33 9999"));
    QCOMPARE(shown(&w), QStringLiteral("mBank|33 3333"));

    const QString amountField = kind == 5 ? "txtWartoscZus" : kind == 6 ? "txtWartoscPod" : "txtwartosc";
    QCOMPARE(child<QLineEdit>(&w, amountField)->text(), QStringLiteral("1 234,50"));
    if (!amount.isEmpty())
        child<QLineEdit>(&w, amountField)->setText(amount);
    auto *account = child<QComboBox>(&w, QStringLiteral("lstbank"));
    if (moved) {
        account->setCurrentIndex(0);
    } else { // the same account chosen again: bank and number come from one entry
        account->setFocus();
        QTest::keyClick(account, Qt::Key_Up);
        QTest::keyClick(account, Qt::Key_Down);
    }
    m_dialogs->clear();
    m_jobs.clear();
    click(&w, QStringLiteral("cmdwystaw"));
    const QString state = QStringLiteral("SELECT count(*) || '|' || bank_firmy || '|' || konto_firmy || '|' || "
                                         "data_sesji FROM zlecanki");
    QVERIFY(stored(state).startsWith(moved ? QStringLiteral("1|PKO BP|11 1111|") : QStringLiteral("1|mBank Nowy|33 9999|")));
    QCOMPARE(m_dialogs->saw(QStringLiteral("Stan konta mBank nie zostanie przywrócony")), moved);

    // Viewed, it prints on the general slip and changes nothing.
    const QString before = stored(state);
    frmprzelew viewed(2, qint16(kind), id);
    QVERIFY(child<QLineEdit>(&viewed, QStringLiteral("txtnazwa"))->isReadOnly());
    click(&viewed, QStringLiteral("cmdwystaw"));
    const QString number = QLatin1Char(' ') + QString::number(id);
    QCOMPARE(m_jobs, (QStringList{job + number, QStringLiteral("dprzelew portrait") + number}));
    QCOMPARE(stored(state), before);

    // The recipient is the contractor already known, whatever the letter case and blanks.
    fill(fresh.get(), {{"txtnazwa", "  HURTOWNIA GĘŚLA "}});
    click(fresh.get(), QStringLiteral("cmdwystaw"));
    QVERIFY(fresh->currentId() > id);
    QCOMPARE(stored(QStringLiteral("SELECT count(*) FROM kontrahenci")), QStringLiteral("1"));
}

// The kind, a field set to a value ("elixir" and "database" break the save instead), the bank
// file switched on (it is opened before the fields are checked) and what the user is told.
using Refusal = std::tuple<int, QString, QString, bool, QString>;
Q_DECLARE_METATYPE(Refusal)

void TestFrmPrzelew::refusedSave_data()
{
    QTest::addColumn<Refusal>("row");
    QTest::newRow("postal code") << Refusal{1, "txtkod", "00950", true, "'00950' nie jest kodem pocztowym."};
    QTest::newRow("Elixir file") << Refusal{1, "elixir", "", true, "Przechwycony błąd:"};
    QTest::newRow("database") << Refusal{1, "database", "", false, "Przechwycony błąd:"};
    QTest::newRow("ZUS amount left at zero") << Refusal{5, "txtWartoscZus", "0,00", false, "Kwota musi być większa od zera."};
    QTest::newRow("tax amount left at zero") << Refusal{6, "txtWartoscPod", "0,00", false, "większa od zera."};
    QTest::newRow("title longer than the slip")
        << Refusal{1, "txtzadokument", QString("Faktura 12/2026 ").repeated(7), false, "Tytuł nie zmieści się"};
}

void TestFrmPrzelew::refusedSave()
{
    QFETCH(Refusal, row);
    const auto &[kind, field, value, elixir, message] = row;
    auto w = filledWindow(kind, "Nowy Odbiorca");
    QApplication::setActiveWindow(w.get());
    appState().eliksir = elixir ? 1 : 0;
    if (field == QLatin1String("elixir")) {
        QVERIFY(QDir().mkpath(Elixir::filePath(firmFile()))); // a folder where the file should be
    } else if (field == QLatin1String("database")) {
        // The balance cannot be written: the row and the new contractor must go too.
        QSqlQuery q(Db());
        QVERIFY(q.exec(QStringLiteral("CREATE TRIGGER blokada BEFORE UPDATE ON firma "
                                      "BEGIN SELECT RAISE(ABORT, 'zablokowane'); END")));
    } else {
        child<QLineEdit>(w.get(), field)->setText(value);
    }
    click(w.get(), QStringLiteral("cmdwystaw"));
    QVERIFY2(m_dialogs->saw(message), qPrintable(m_dialogs->calls.last().text));
    if (field.startsWith(QLatin1String("txt")))
        QCOMPARE(QApplication::focusWidget(), child(w.get(), field));
    QCOMPARE(stored(QStringLiteral("SELECT (SELECT count(*) FROM zlecanki) + (SELECT count(*) FROM kontrahenci)")),
             QStringLiteral("0"));
    QVERIFY(!QFileInfo::exists(m_pdf));
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtnazwa"))->text(), QStringLiteral("Nowy Odbiorca"));
    QCOMPARE(QFileInfo::exists(Elixir::filePath(firmFile())), elixir);
    appState().eliksir = 0;
}

// While typing: Enter moves on with the value put in shape, the bank is named from the account,
// the payment QR code is shown once the account is whole, and the title's room on the slip.
void TestFrmPrzelew::slipAidsWhileTyping()
{
    auto w = filledWindow(1);
    QApplication::setActiveWindow(w.get());
    auto *amount = child<QLineEdit>(w.get(), QStringLiteral("txtwartosc"));
    amount->setText(QStringLiteral("1234,5"));
    amount->setFocus();
    QTest::keyClick(amount, Qt::Key_Return);
    QCOMPARE(amount->text(), QStringLiteral("1 234,50"));
    QCOMPARE(QApplication::focusWidget(), child(w.get(), QStringLiteral("txtdata")));

    auto *room = child<QLabel>(w.get(), QStringLiteral("lblTytulMiejsce"));
    auto *qr = child<QLabel>(w.get(), QStringLiteral("lblKodQR"));
    QVERIFY(room->isVisible() && qr->isVisible());
    auto *account = child<QLineEdit>(w.get(), QStringLiteral("txtkonto"));
    account->clear();
    child<QLineEdit>(w.get(), QStringLiteral("txtbank"))->clear();
    account->setFocus();
    QTest::keyClicks(account, QStringLiteral("PL61 1090 1014 0000 0712 1981 2874"));
    QVERIFY(!qr->pixmap().isNull());
    QVERIFY(qr->toolTip().startsWith(QStringLiteral("|PL|61109010140000071219812874|123450|Hurtownia Gęśla|")));
    QTest::keyClick(account, Qt::Key_Tab);
    QCOMPARE(child<QLineEdit>(w.get(), QStringLiteral("txtbank"))->text(), QStringLiteral("Santander Bank Polska"));
    QVERIFY(m_dialogs->calls.isEmpty());

    // An amount typed and issued at once with Alt+W is stored as leaving the field shows it.
    QVERIFY(QTest::qWaitForWindowActive(w.get()));
    amount->clear();
    amount->setFocus();
    QTest::keyClicks(amount, QStringLiteral("10,005"));
    QTest::keyClick(amount, Qt::Key_W, Qt::AltModifier);
    QTRY_VERIFY(w->currentId() > 0);
    QCOMPARE(stored(QStringLiteral("SELECT wartosc FROM zlecanki")), QStringLiteral("100100"));

    auto *title = child<QLineEdit>(w.get(), QStringLiteral("txtzadokument"));
    title->setFocus();
    QTest::keyClicks(title, QString(QStringLiteral(" za towar")).repeated(13));
    QVERIFY(room->text().endsWith(QStringLiteral("nie zmieści się!")));

    // A contractor chosen from the dictionary, opened with F2.
    const qint32 mlyn = *ContractorStore::insert(
        Db(), Contractor{0, QStringLiteral("Młyn"), {}, QStringLiteral("Polna 2"), QStringLiteral("00-950"),
                         QStringLiteral("Warszawa"), {}, QStringLiteral("Bank Młyna"), QStringLiteral("99 9999")});
    auto *name = child<QLineEdit>(w.get(), QStringLiteral("txtnazwa"));
    name->setFocus();
    QTest::keyClick(name, Qt::Key_F2);
    auto *dictionary = shownWindow<frmKontrahenci>();
    QVERIFY(dictionary && dictionary->showContractor(mlyn));
    click(dictionary, QStringLiteral("cmdwybierz"));
    QCOMPARE(name->text() + child<QLineEdit>(w.get(), "txtkod")->text() + account->text(), QStringLiteral("Młyn00-95099 9999"));

    auto zus = filledWindow(5);
    QVERIFY(!child(zus.get(), QStringLiteral("lblTytulMiejsce"))->isVisible() &&
            !child(zus.get(), QStringLiteral("lblKodQR"))->isVisible());
}

// The firm's NIP, NRS, tax identifier type (lstTypIdentPodatki: 0 NIP, 2 PESEL) and identifier,
// then where a new ZUS document starts and the micro-account filled in (empty: refused).
using TaxIds = std::tuple<QString, QString, int, QString, int, QString>;
Q_DECLARE_METATYPE(TaxIds)

void TestFrmPrzelew::zusAndTaxAccounts_data()
{
    QTest::addColumn<TaxIds>("row");
    QTest::newRow("NIP, NRS") << TaxIds{"783-191-63-66", "25 6000 0002 0260 0178 3191 6366", 0, "", 4,
                                        "56 1010 0071 2222 7831 9163 6600"};
    QTest::newRow("PESEL, no NRS") << TaxIds{"783-191-63-66", "", 2, "44051401458", 0, "69 1010 0071 2221 4405 1401 4580"};
    QTest::newRow("NIP mistyped") << TaxIds{"783-191-63-67", "", 0, "", 0, ""};
}

void TestFrmPrzelew::zusAndTaxAccounts()
{
    QFETCH(TaxIds, row);
    const auto &[nip, nrs, taxType, taxId, zusAccount, micro] = row;
    FirmData firm = *FirmStore::read(Db());
    firm.nip = nip;
    firm.nrs = nrs;
    firm.typIdentPod = taxType;
    firm.identPod = taxId;
    QVERIFY(FirmStore::save(Db(), firm, {}));

    frmprzelew zus(0, 5);
    QCOMPARE(child<QComboBox>(&zus, QStringLiteral("lstNrZus"))->currentIndex(), zusAccount);

    frmprzelew tax(0, 6);
    tax.show();
    click(&tax, QStringLiteral("cmdMikrorachunek"));
    const auto value = [&](const char *name) { return child<QLineEdit>(&tax, name)->text(); };
    QCOMPARE(value("txtkonto") + '|' + value("txtnazwa") + '|' + value("txtbank"),
             micro.isEmpty() ? QStringLiteral("||") : QString(micro + "|Urząd Skarbowy|Narodowy Bank Polski"));
    QCOMPARE(m_dialogs->saw(QStringLiteral("NIP ma błędną cyfrę kontrolną")), micro.isEmpty());
}

QTEST_MAIN(TestFrmPrzelew)
#include "tst_frmprzelew.moc"
