#include "AppState.h"
#include "documents/Firm.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
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
    void cleanupTestCase();

    void savesEverywhereAtOnce();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QList<std::optional<QString>> m_fontAnswers;
};

void TestUstawienia::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    frmUstawienia::setPrinterSource([] { return QStringList{QStringLiteral("Biuro"), QStringLiteral("Księgowość")}; });
    frmUstawienia::setFontChooser([this](QWidget *, const QString &) { return m_fontAnswers.takeFirst(); });
    m_dialogs = std::make_unique<RecordingDialogs>();
    const QString path = m_env->newPath(QStringLiteral("ustawienia.zlc"));
    QVERIFY(createFirm(path, {QStringLiteral("UPDATE Ustawienia SET Data=0, Wstawiany=0, Nowe=0, CzteryOdcinki=0, CzteryNaStronie=0")}));
    QVERIFY(OpenDb(path));
    appState().today = QDate(2026, 4, 30);
}

void TestUstawienia::cleanupTestCase()
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
    QVERIFY(m_dialogs->calls.size() == 1 && m_dialogs->saw(QStringLiteral("'2,5' nie jest liczbą całkowitą.")));
    QVERIFY(w.isVisible() && tabs->currentWidget()->isAncestorOf(margin));
    QCOMPARE(w.focusWidget(), margin);
    QCOMPARE(key("DrukujNa") + stored(FirstRows) + globals(), QStringLiteral("<brak>") + before);
    m_dialogs->clear();
    margin->setText(QStringLiteral("4"));
    click(&w, "cmdok");

    QCOMPARE(QStringList({key("DrukujNa"), key("Drukarka"), key("NazwaFontuScreen"), key("NazwaFontuPrinter"),
                          key("NazwaFontuLista"), key("DrukZlGr"), key("Eliksir")}),
             (QStringList{"1", "1", "DejaVu Serif", "Arial CE", "Liberation Mono", "1", "1"}));
    QCOMPARE(stored(FirstRows), QStringLiteral("0010001|4,-12"));
    QCOMPARE(globals(), QStringLiteral("0010001|4,-12|1"));

    // The next opening of the firm reads it all back.
    QVERIFY(OpenDb(firmFile()));
    frmUstawienia again;
    QCOMPARE(shown(&again).section(QLatin1Char('|'), 0, 6),
             QStringLiteral("Ekranie|Księgowość|DejaVu Serif,Arial CE,Liberation Mono|4,-12|1|0010001|Przelew.pli"));

    // The firm's QR setting (on in a new firm) saved with the rest, and the working date for
    // this run only; a printer's calibration kept as it is typed, under the printer's name.
    again.show();
    QApplication::setActiveWindow(&again);
    tabs = child<QTabWidget>(&again, QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(1);
    auto *qr = child<QCheckBox>(&again, QStringLiteral("ChkKodQR"));
    QVERIFY(qr->isChecked() && qr->isVisible());
    qr->setFocus();
    QTest::keyClick(qr, Qt::Key_Space);
    child<QLineEdit>(&again, QStringLiteral("txtDataDzis"))->setText(QStringLiteral("3-1-2027"));
    click(&again, "cmdzmien");
    QVERIFY(again.isVisible()); // "Zmień" saves and stays
    QVERIFY(!PaymentQr::firmSetting(Db()));
    QCOMPARE(appState().today, QDate(2027, 1, 3));

    tabs->setCurrentIndex(tabs->count() - 1);
    auto *printer = child<QComboBox>(&again, QStringLiteral("lstKalibracjaDrukarka"));
    printer->setCurrentIndex(printer->findText(QStringLiteral("PDF")));
    auto *right = child<QSpinBox>(&again, QStringLiteral("txtKalibracjaX"));
    right->setFocus();
    right->selectAll();
    QTest::keyClicks(right, QStringLiteral("-15"));
    auto *scale = child<QSpinBox>(&again, QStringLiteral("txtKalibracjaSkala"));
    scale->setFocus();
    QTest::keyClick(scale, Qt::Key_Up);
    QCOMPARE(PrinterCalibration::load(QStringLiteral("PDF")), (PrinterCalibration{-15, 0, 1001}));
    QVERIFY(child<QPushButton>(&again, QStringLiteral("cmdKalibracja"))->isEnabled());

    // A read-only firm saves nothing; the working date is back to today at its opening.
    QVERIFY(QFile::setPermissions(firmFile(), QFile::ReadOwner));
    QVERIFY(OpenDb(firmFile()));
    QCOMPARE(appState().today, QDate::currentDate());
    const QString saved = key("DrukujNa") + stored(FirstRows) + globals();
    child<QComboBox>(&again, QStringLiteral("lstdrukna"))->setCurrentIndex(0);
    child<QCheckBox>(&again, QStringLiteral("ChkDrukSzary"))->toggle();
    child<QLineEdit>(&again, QStringLiteral("txtDataDzis"))->setText(QStringLiteral("01-01-2030"));
    click(&again, "cmdok");
    QVERIFY2(m_dialogs->saw(QStringLiteral("tylko do odczytu")), qPrintable(m_dialogs->calls.value(0).text));
    QCOMPARE(key("DrukujNa") + stored(FirstRows) + globals(), saved);
    QCOMPARE(appState().today, QDate::currentDate());
}

QTEST_MAIN(TestUstawienia)
#include "tst_ustawienia.moc"
