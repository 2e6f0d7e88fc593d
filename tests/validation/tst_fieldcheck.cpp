#include "RecordingDialogs.h"
#include "validation/ui/FieldCheck.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

// A window with tagged fields, created in one order and tabbed through in another: the
// amount comes before the postal code.
class Form : public QWidget {
public:
    Form()
    {
        auto *layout = new QVBoxLayout(this);
        for (const auto &[name, kind] : {std::pair{"txtdata", "data"}, {"txtkod", "kodpoczt"}, {"txtnip", "nip"},
                                         {"txtwartosc", "cur"}, {"txtnazwa", ""}}) {
            auto *f = new QLineEdit(this);
            f->setObjectName(QLatin1String(name));
            if (*kind)
                FieldCheck::setKind(f, QLatin1String(kind));
            layout->addWidget(f);
        }
        const char *order[] = {"txtdata", "txtwartosc", "txtkod", "txtnip", "txtnazwa"};
        for (int i = 0; i + 1 < 5; ++i)
            setTabOrder(field(order[i]), field(order[i + 1]));
    }
    QLineEdit *field(const char *name) { return findChild<QLineEdit *>(QLatin1String(name)); }
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
    void leavingNormalises();

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
    QTest::addColumn<QStringList>("values"); // data, kod, nip, wartosc
    QTest::addColumn<QString>("failed");     // empty: all pass
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("title");
    QTest::newRow("all correct") << QStringList{"05-03-2026", "00-950", "123-456-78-90", "1 234,56"} << "" << "" << "";
    QTest::newRow("amount before postal code")
        << QStringList{"05-03-2026", "00950", "123-456-78-90", "12,34,5"} << "txtwartosc" << "'12,34,5' nie jest kwotą."
        << "";
    QTest::newRow("postal code before NIP")
        << QStringList{"05-03-2026", " 00950 ", "1234567890", "1,00"} << "txtkod" << "'00950' nie jest kodem pocztowym."
        << "Nieprawidłowa ilość znaków";
}

void TestFieldCheck::firstWrongFieldInTabOrderReported()
{
    QFETCH(QStringList, values);
    QFETCH(QString, failed);
    QFETCH(QString, message);
    QFETCH(QString, title);
    const char *names[] = {"txtdata", "txtkod", "txtnip", "txtwartosc"};
    for (int i = 0; i < 4; ++i)
        m_form->field(names[i])->setText(values[i]);
    m_form->field("txtnazwa")->setFocus();

    QCOMPARE(FieldCheck::SprawdzPola(m_form.get()), !failed.isEmpty());
    QCOMPARE(FieldCheck::validationError(), !failed.isEmpty());
    QCOMPARE(m_dialogs->calls.size(), failed.isEmpty() ? 0 : 1);
    if (failed.isEmpty())
        return;
    QCOMPARE(m_dialogs->calls[0].text, message);
    QCOMPARE(m_dialogs->calls[0].title, title);
    QCOMPARE(m_dialogs->calls[0].icon, Dialogs::Icon::Exclamation);
    QLineEdit *wrong = m_form->field(qPrintable(failed));
    QCOMPARE(QApplication::focusWidget(), wrong);
    QCOMPARE(wrong->selectedText(), wrong->text());
    QCOMPARE(wrong->text(), values[std::find(names, names + 4, failed) - names]); // nothing corrected
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
    QLineEdit *kod = m_form->field("txtkod");
    QLineEdit *nazwa = m_form->field("txtnazwa");
    FieldCheck::installKeyFilter(kod, 3);
    FieldCheck::installKeyFilter(nazwa, 5);
    QTest::keyClicks(kod, QStringLiteral("0a0-9x50"));
    QCOMPARE(kod->text(), QStringLiteral("00-950"));
    QTest::keyClick(kod, Qt::Key_Backspace);
    QCOMPARE(kod->text(), QStringLiteral("00-95"));
    QTest::keyClicks(nazwa, QStringLiteral("O'Brien \"Lodz\" "));
    for (const QString &letter : {QStringLiteral("Ł"), QStringLiteral("ó")}) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
        QApplication::sendEvent(nazwa, &press);
    }
    QCOMPARE(nazwa->text(), QStringLiteral("OBrien Lodz Łó"));
    QCOMPARE(m_dialogs->beeps, 3);
}

void TestFieldCheck::leavingNormalises()
{
    QLineEdit *data = m_form->field("txtdata");
    QLineEdit *wartosc = m_form->field("txtwartosc");
    FieldCheck::normaliseDateOnLeave(data);
    FieldCheck::normaliseAmountOnLeave(wartosc);
    data->setFocus();
    QTest::keyClicks(data, QStringLiteral("5/3/2026"));
    wartosc->setFocus();
    QCOMPARE(data->text(), QStringLiteral("05-03-2026"));
    QTest::keyClicks(wartosc, QStringLiteral("1234.5"));
    data->setFocus();
    QCOMPARE(wartosc->text(), QStringLiteral("1 234,50"));
    // A wrong value is left as typed, for the check to report.
    wartosc->setText(QStringLiteral("12,34,5"));
    wartosc->setFocus();
    data->setFocus();
    QCOMPARE(wartosc->text(), QStringLiteral("12,34,5"));
}

QTEST_MAIN(TestFieldCheck)
#include "tst_fieldcheck.moc"
