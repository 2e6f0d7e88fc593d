#include "RecordingDialogs.h"
#include "validation/ui/FieldCheck.h"

#include <QApplication>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <tuple>

// A window with tagged fields on two tab pages, created in one order and tabbed through in
// another: the amount comes before the postal code. A field the window hides itself (a
// block of another document kind) holds a wrong amount that is never reported.
class Form : public QWidget {
public:
    Form()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(tabs = new QTabWidget(this));
        QFormLayout *pages[] = {new QFormLayout(new QWidget), new QFormLayout(new QWidget)};
        tabs->addTab(pages[0]->parentWidget(), QStringLiteral("Dokument"));
        tabs->addTab(pages[1]->parentWidget(), QStringLiteral("Odbiorca"));
        for (const auto &[name, kind, label, page] :
             {std::tuple{"txtdata", "data", "Data:", 0}, {"txtkod", "kodpoczt", "Kod:", 1},
              {"txtnip", "nip", "NIP:", 1}, {"txtwartosc", "cur", "Wartość:", 0}, {"txtnazwa", "", "Nazwa:", 1}}) {
            auto *f = new QLineEdit(this);
            f->setObjectName(QLatin1String(name));
            if (*kind)
                FieldCheck::setKind(f, QLatin1String(kind));
            pages[page]->addRow(QString::fromUtf8(label), f);
        }
        FieldCheck::setLimit(field("txtnazwa"), 20);
        auto *hidden = new QLineEdit(QStringLiteral("12,34,5"), this);
        FieldCheck::setKind(hidden, QStringLiteral("cur"));
        layout->addWidget(hidden);
        hidden->hide();
        const char *order[] = {"txtdata", "txtwartosc", "txtkod", "txtnip", "txtnazwa"};
        for (int i = 0; i + 1 < 5; ++i)
            setTabOrder(field(order[i]), field(order[i + 1]));
    }
    QLineEdit *field(const char *name) { return findChild<QLineEdit *>(QLatin1String(name)); }
    QTabWidget *tabs;
};

class TestFieldCheck : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void firstWrongFieldInTabOrderReported_data();
    void firstWrongFieldInTabOrderReported();
    void requiredFields();
    void typingIsFiltered();

private:
    std::unique_ptr<Form> m_form;
    std::unique_ptr<RecordingDialogs> m_dialogs;
};

void TestFieldCheck::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    m_form = std::make_unique<Form>();
    m_form->show();
    QApplication::setActiveWindow(m_form.get());
    QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
}

void TestFieldCheck::cleanup()
{
    m_form.reset();
    m_dialogs.reset();
}

void TestFieldCheck::firstWrongFieldInTabOrderReported_data()
{
    QTest::addColumn<QStringList>("values"); // data, kod, nip, wartosc, nazwa
    QTest::addColumn<QString>("failed");     // empty: all pass
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("title");
    QTest::newRow("all correct") << QStringList{"05-03-2026", "00-950", "123-456-78-90", "1 234,56", "Hurtownia"} << ""
                                 << "" << "";
    QTest::newRow("amount before postal code")
        << QStringList{"05-03-2026", "00950", "123-456-78-90", "12,34,5", ""} << "txtwartosc"
        << "'12,34,5' nie jest kwotą." << "";
    QTest::newRow("postal code on the page not in view, before NIP")
        << QStringList{"05-03-2026", " 00950 ", "1234567890", "1,00", ""} << "txtkod"
        << "'00950' nie jest kodem pocztowym." << "Nieprawidłowa ilość znaków";
    QTest::newRow("text longer than its field")
        << QStringList{"05-03-2026", "", "", "1,00", "Hurtownia Gęśla i Synowie"} << "txtnazwa"
        << "Tekst w polu Nazwa jest za długi: pole mieści najwyżej 20 znaków." << "";
}

void TestFieldCheck::firstWrongFieldInTabOrderReported()
{
    QFETCH(QStringList, values);
    QFETCH(QString, failed);
    QFETCH(QString, message);
    QFETCH(QString, title);
    const char *names[] = {"txtdata", "txtkod", "txtnip", "txtwartosc", "txtnazwa"};
    for (int i = 0; i < 5; ++i)
        FieldCheck::putWhole(m_form->field(names[i]), values[i]);
    m_form->field("txtdata")->setFocus();

    QCOMPARE(FieldCheck::SprawdzPola(m_form.get()), !failed.isEmpty());
    QCOMPARE(FieldCheck::validationError(), !failed.isEmpty());
    QCOMPARE(m_dialogs->calls.size(), failed.isEmpty() ? 0 : 1);
    if (failed.isEmpty())
        return;
    QCOMPARE(m_dialogs->calls[0].text, message);
    QCOMPARE(m_dialogs->calls[0].title, title);
    QCOMPARE(m_dialogs->calls[0].icon, Dialogs::Icon::Exclamation);
    QLineEdit *wrong = m_form->field(qPrintable(failed));
    QVERIFY(m_form->tabs->currentWidget()->isAncestorOf(wrong));
    QCOMPARE(QApplication::focusWidget(), wrong);
    QCOMPARE(wrong->selectedText(), wrong->text());
    QCOMPARE(wrong->text(), values[std::find(names, names + 5, failed) - names]); // nothing corrected or cut
}

void TestFieldCheck::requiredFields()
{
    m_form->field("txtdata")->setText(QStringLiteral("05-03-2026"));
    m_form->field("txtnazwa")->setText(QStringLiteral("  "));
    QVERIFY(FieldCheck::SprawdzPuste({m_form->field("txtdata"), m_form->field("txtnazwa"), m_form->field("txtkod")}));
    QCOMPARE(m_dialogs->calls.size(), 1);
    QCOMPARE(m_dialogs->calls[0].text, QStringLiteral("To pole nie może być puste"));
    QCOMPARE(QApplication::focusWidget(), m_form->field("txtnazwa"));
    QVERIFY(!FieldCheck::SprawdzPuste({m_form->field("txtdata")}));
}

void TestFieldCheck::typingIsFiltered()
{
    // The window's own key filter: quotes refused with a beep, Backspace and Polish letters
    // (sent as text alone) let through.
    QLineEdit *nazwa = m_form->field("txtnazwa");
    FieldCheck::installKeyFilter(nazwa, 5);
    QTest::keyClicks(nazwa, QStringLiteral("O'Brien \"Lodz\" x"));
    QTest::keyClick(nazwa, Qt::Key_Backspace);
    for (const QString &letter : {QStringLiteral("Ł"), QStringLiteral("ó")}) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
        QApplication::sendEvent(nazwa, &press);
    }
    QCOMPARE(nazwa->text(), QStringLiteral("OBrien Lodz Łó"));
    QCOMPARE(m_dialogs->beeps, 3);

    // Leaving a date or an amount puts it in the program's form.
    QLineEdit *data = m_form->field("txtdata");
    QLineEdit *wartosc = m_form->field("txtwartosc");
    FieldCheck::normaliseDateOnLeave(data);
    FieldCheck::normaliseAmountOnLeave(wartosc);
    data->setFocus();
    QTest::keyClicks(data, QStringLiteral("5/3/2026"));
    QTest::keyClick(data, Qt::Key_Tab);
    QCOMPARE(data->text(), QStringLiteral("05-03-2026"));
    QTest::keyClicks(wartosc, QStringLiteral("1234.5"));
    data->setFocus();
    QCOMPARE(wartosc->text(), QStringLiteral("1 234,50"));
    // A wrong value is left as typed, for the check to report.
    wartosc->setText(QStringLiteral("12,34,5"));
    wartosc->setFocus();
    data->setFocus();
    QCOMPARE(wartosc->text(), QStringLiteral("12,34,5"));

    // Checking the window before the fields are left shows them as leaving would.
    data->setText(QStringLiteral("7/3/2026"));
    wartosc->clear();
    wartosc->setFocus();
    QTest::keyClicks(wartosc, QStringLiteral("10,005"));
    QVERIFY(!FieldCheck::SprawdzPola(m_form.get()));
    QCOMPARE(data->text() + QLatin1Char('|') + wartosc->text(), QStringLiteral("07-03-2026|10,01"));
}

QTEST_MAIN(TestFieldCheck)
#include "tst_fieldcheck.moc"
