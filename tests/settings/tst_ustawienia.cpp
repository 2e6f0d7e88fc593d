#include "AppState.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "db/FirmDatabase.h"
#include "settings/ui/frmUstawienia.h"
#include "print/PaymentQr.h"
#include "print/PrinterCalibration.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTest>

#include <memory>

namespace {

const char *const Boxes[] = {"chkDrukDaty",  "chkDrukWstawiany", "chkDrukStareWzory", "chkDrukCzteryOdcinki",
                             "chkDrukCzteryNaStronie", "ChkDrukSzary", "chkElixir"};

// What the window shows: "target|printer|fonts|margins|amount format|boxes|Elixir file|today".
QString shown(QWidget *w)
{
    QStringList fonts, margins;
    QString boxes, format;
    for (int i = 0; i < 3; ++i) {
        fonts << child<QLineEdit>(w, QStringLiteral("txtFont_%1").arg(i))->text();
        if (child<QRadioButton>(w, QStringLiteral("optdrukzlgr_%1").arg(i))->isChecked())
            format = QString::number(i);
    }
    for (int i = 0; i < 2; ++i)
        margins << child<QLineEdit>(w, QStringLiteral("txtMargin_%1").arg(i))->text();
    for (const char *name : Boxes)
        boxes += child<QCheckBox>(w, QLatin1String(name))->isChecked() ? QLatin1Char('1') : QLatin1Char('0');
    return QStringList{child<QComboBox>(w, QStringLiteral("lstdrukna"))->currentText(),
                       child<QComboBox>(w, QStringLiteral("lstDrukarki"))->currentText(), fonts.join(QLatin1Char(',')),
                       margins.join(QLatin1Char(',')), format, boxes, child<QLineEdit>(w, QStringLiteral("txtPlik"))->text(),
                       child<QLineEdit>(w, QStringLiteral("txtDataDzis"))->text()}
        .join(QLatin1Char('|'));
}

QString key(const char *name)
{
    return SettingsStore::loadGet(QLatin1String(name), QStringLiteral("<brak>"));
}

// The flags and margins as the rest of the program sees them.
QString globals()
{
    const AppState &s = appState();
    QString out;
    for (int f : {s.data, s.wstawiany, s.nowe, s.czteryOdcinki, s.czteryNaStronie, s.szary, s.eliksir})
        out += QString::number(f);
    return out + QStringLiteral("|%1,%2|%3").arg(s.margLewy).arg(s.margPrawy).arg(s.drukZlGr);
}

const QString FirstRows = QStringLiteral(
    "SELECT (SELECT Data||Wstawiany||Nowe||CzteryOdcinki||CzteryNaStronie||Szary||Eliksir FROM Ustawienia "
    "ORDER BY rowid LIMIT 1) || '|' || (SELECT MargLewy||','||MargPrawy FROM Ustawienia2 ORDER BY rowid LIMIT 1)");

} // namespace

class TestUstawienia : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void savesEverywhereAtOnce();
    void qrCodeAndCalibration();
    void readOnlyFirmSavesNothing();

private:
    void openFirm(bool readOnly);
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QList<std::optional<QString>> m_fontAnswers;
    int m_files = 0;
};

void TestUstawienia::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    frmUstawienia::setPrinterSource([] { return QStringList{QStringLiteral("Biuro"), QStringLiteral("Księgowość")}; });
    frmUstawienia::setFontChooser([this](QWidget *, const QString &) { return m_fontAnswers.takeFirst(); });
}

void TestUstawienia::openFirm(bool readOnly)
{
    const QString path = m_env->newPath(QStringLiteral("ustawienia%1.zlc").arg(++m_files));
    QVERIFY(FirmDatabase::create(path, nullptr));
    if (readOnly)
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(OpenDb(path));
    QSqlQuery q(Db());
    q.exec(QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=0, Nowe=0, CzteryOdcinki=0, CzteryNaStronie=0"));
    appState().today = QDate(2026, 4, 30);
    m_dialogs->clear();
}

void TestUstawienia::init()
{
    m_env->clearSettings();
    m_dialogs = std::make_unique<RecordingDialogs>();
    openFirm(false);
}

void TestUstawienia::cleanup()
{
    QFile::setPermissions(firmFile(), QFile::ReadOwner | QFile::WriteOwner);
    CloseDb();
    m_dialogs.reset();
}

void TestUstawienia::savesEverywhereAtOnce()
{
    // Second rows are never the ones that count.
    QSqlQuery q(Db());
    QVERIFY(q.exec(QStringLiteral("INSERT INTO Ustawienia2 (MargLewy, MargPrawy) VALUES (9, 9)")));
    frmUstawienia w;
    QCOMPARE(shown(&w), QStringLiteral("Drukarce|Drukarka domyślna systemu|Arial CE,Arial CE,Courier New CE|"
                                       "0,0|0|0000000|Przelew.pli|30-04-2026"));
    QCOMPARE(key("Eliksir"), QStringLiteral("<brak>")); // opening writes nothing
    w.show();
    child<QComboBox>(&w, QStringLiteral("lstdrukna"))->setCurrentIndex(1);
    child<QComboBox>(&w, QStringLiteral("lstDrukarki"))->setCurrentIndex(2);
    m_fontAnswers = {QStringLiteral("DejaVu Serif"), std::nullopt, QStringLiteral("Liberation Mono")};
    for (const char *b : {"cmdZmienFont_0", "cmdZmienFont_1", "cmdZmienFont_2"}) // the second one cancelled
        click(&w, b);
    auto *margin = child<QLineEdit>(&w, QStringLiteral("txtMargin_0"));
    margin->setText(QStringLiteral("2,5"));
    child<QLineEdit>(&w, QStringLiteral("txtMargin_1"))->setText(QStringLiteral("-12"));
    child<QCheckBox>(&w, QStringLiteral("chkDrukStareWzory"))->setChecked(true);
    child<QCheckBox>(&w, QStringLiteral("chkElixir"))->setChecked(true);
    child<QRadioButton>(&w, QStringLiteral("optdrukzlgr_1"))->setChecked(true);
    // A wrong field on a page not in view is shown and nothing at all is saved.
    auto *tabs = child<QTabWidget>(&w, QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(2);
    const QString before = stored(FirstRows) + globals();
    click(&w, "cmdok");
    QCOMPARE(m_dialogs->calls.size(), 1);
    QCOMPARE(m_dialogs->calls[0].text, QStringLiteral("'2,5' nie jest liczbą całkowitą."));
    QVERIFY(w.isVisible() && tabs->currentWidget()->isAncestorOf(margin));
    QCOMPARE(w.focusWidget(), margin);
    QCOMPARE(key("DrukujNa") + stored(FirstRows) + globals(), QStringLiteral("<brak>") + before);
    m_dialogs->clear();
    margin->setText(QStringLiteral("4"));
    click(&w, "cmdok");

    QVERIFY2(m_dialogs->calls.isEmpty(), qPrintable(m_dialogs->calls.value(0).text));
    QCOMPARE(QStringList({key("DrukujNa"), key("Drukarka"), key("NazwaFontuScreen"), key("NazwaFontuPrinter"),
                          key("NazwaFontuLista"), key("DrukZlGr"), key("Eliksir")}),
             (QStringList{"1", "1", "DejaVu Serif", "Arial CE", "Liberation Mono", "1", "1"}));
    QCOMPARE(stored(FirstRows), QStringLiteral("0010001|4,-12"));
    QCOMPARE(globals(), QStringLiteral("0010001|4,-12|1"));
    const AppState &s = appState();
    QCOMPARE(QStringList({s.fontScreen, s.fontPrinter, s.fontLista}),
             (QStringList{"DejaVu Serif", "Arial CE", "Liberation Mono"}));

    // The next opening of the firm reads it all back.
    QVERIFY(OpenDb(firmFile()));
    QCOMPARE(globals(), QStringLiteral("0010001|4,-12|1"));
    frmUstawienia again;
    QCOMPARE(shown(&again).section(QLatin1Char('|'), 0, 6),
             QStringLiteral("Ekranie|Księgowość|DejaVu Serif,Arial CE,Liberation Mono|4,-12|1|0010001|Przelew.pli"));
}

// The firm's QR setting (on in a new firm) saved with the rest, and the working date for
// this run only; a printer's calibration kept as it is typed, under the printer's name.
void TestUstawienia::qrCodeAndCalibration()
{
    QVERIFY(PaymentQr::firmSetting(Db()));
    frmUstawienia w;
    w.show();
    QApplication::setActiveWindow(&w);
    auto *tabs = child<QTabWidget>(&w, QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(1);
    auto *qr = child<QCheckBox>(&w, QStringLiteral("ChkKodQR"));
    QVERIFY(qr->isChecked() && qr->isVisible());
    qr->setFocus();
    QTest::keyClick(qr, Qt::Key_Space);
    QVERIFY(!qr->isChecked());
    child<QLineEdit>(&w, QStringLiteral("txtDataDzis"))->setText(QStringLiteral("3-1-2027"));
    click(&w, "cmdzmien");
    QVERIFY2(m_dialogs->calls.isEmpty(), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(w.isVisible()); // "Zmień" saves and stays
    QVERIFY(!PaymentQr::firmSetting(Db()));
    QCOMPARE(appState().today, QDate(2027, 1, 3));
    QVERIFY(!appState().todayForRun);
    QCOMPARE(child<QLineEdit>(&w, QStringLiteral("txtDataDzis"))->text(), QStringLiteral("03-01-2027"));
    QFile settings(SettingsStore::fileName(SettingsStore::App));
    QVERIFY(settings.open(QIODevice::ReadOnly));
    QVERIFY(!settings.readAll().contains("2027"));

    tabs->setCurrentIndex(tabs->count() - 1);
    QCOMPARE(tabs->tabText(tabs->currentIndex()), QStringLiteral("Kalibracja"));
    auto *printer = child<QComboBox>(&w, QStringLiteral("lstKalibracjaDrukarka"));
    printer->setCurrentIndex(printer->findText(QStringLiteral("PDF")));
    auto *right = child<QSpinBox>(&w, QStringLiteral("txtKalibracjaX"));
    right->setFocus();
    right->selectAll();
    QTest::keyClicks(right, QStringLiteral("-15"));
    auto *scale = child<QSpinBox>(&w, QStringLiteral("txtKalibracjaSkala"));
    scale->setFocus();
    QTest::keyClick(scale, Qt::Key_Up);
    QCOMPARE(PrinterCalibration::load(QStringLiteral("PDF")), (PrinterCalibration{-15, 0, 1001}));
    QVERIFY(child<QPushButton>(&w, QStringLiteral("cmdKalibracja"))->isEnabled());
    PrinterCalibration{}.save(QStringLiteral("PDF"));
    QVERIFY(PaymentQr::saveFirmSetting(Db(), true));
    QVERIFY(OpenDb(firmFile()));
    QCOMPARE(appState().today, QDate::currentDate());
}

void TestUstawienia::readOnlyFirmSavesNothing()
{
    CloseDb();
    openFirm(true);
    QVERIFY(firmReadOnly());
    const QString before = stored(FirstRows) + globals();
    frmUstawienia w;
    w.show();
    child<QComboBox>(&w, QStringLiteral("lstdrukna"))->setCurrentIndex(1);
    child<QCheckBox>(&w, QStringLiteral("ChkDrukSzary"))->toggle();
    child<QLineEdit>(&w, QStringLiteral("txtDataDzis"))->setText(QStringLiteral("01-01-2030"));
    click(&w, "cmdok");
    QVERIFY2(m_dialogs->saw(QStringLiteral("tylko do odczytu")), qPrintable(m_dialogs->calls.value(0).text));
    QVERIFY(w.isVisible());
    QCOMPARE(key("DrukujNa") + stored(FirstRows) + globals(), QStringLiteral("<brak>") + before);
    QCOMPARE(appState().today, QDate(2026, 4, 30));
}

QTEST_MAIN(TestUstawienia)
#include "tst_ustawienia.moc"
