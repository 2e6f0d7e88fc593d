#include "RecordingDialogs.h"
#include "words/Slownie.h"

#include <QHash>
#include <QRandomGenerator>
#include <QTest>

namespace {

// Reads a wording back into grosze without looking at how it was made. Besides the
// number it checks every magnitude word's form by Polish grammar, with the one deliberate
// exception of the slips: a group of a hundred or more ending in 12-14 takes the 2-4 form.
struct Reading {
    qint64 grosze = -1;
    QString error;
};

enum class Form { One, Few, Many };

Form expectedForm(qint64 v)
{
    if (v == 1)
        return Form::One;
    const qint64 lastTwo = v % 100, last = v % 10;
    if (lastTwo >= 12 && lastTwo <= 14)
        return v >= 100 ? Form::Few : Form::Many;
    return last >= 2 && last <= 4 ? Form::Few : Form::Many;
}

Reading readBack(const QString &wording)
{
    static const QHash<QString, int> numbers = {
        {"jeden", 1},         {"dwa", 2},           {"trzy", 3},          {"cztery", 4},          {"pięć", 5},
        {"sześć", 6},         {"siedem", 7},        {"osiem", 8},         {"dziewięć", 9},        {"dziesięć", 10},
        {"jedenaście", 11},   {"dwanaście", 12},    {"trzynaście", 13},   {"czternaście", 14},    {"piętnaście", 15},
        {"szesnaście", 16},   {"siedemnaście", 17}, {"osiemnaście", 18},  {"dziewiętnaście", 19}, {"dwadzieścia", 20},
        {"trzydzieści", 30},  {"czterdzieści", 40}, {"pięćdziesiąt", 50}, {"sześćdziesiąt", 60},  {"siedemdziesiąt", 70},
        {"osiemdziesiąt", 80}, {"dziewięćdziesiąt", 90}, {"sto", 100},    {"dwieście", 200},      {"trzysta", 300},
        {"czterysta", 400},   {"pięćset", 500},     {"sześćset", 600},    {"siedemset", 700},     {"osiemset", 800},
        {"dziewięćset", 900}};
    struct Magnitude {
        qint64 scale;
        Form form;
    };
    static const QHash<QString, Magnitude> magnitudes = {
        {"miliard", {1000000000, Form::One}}, {"miliardy", {1000000000, Form::Few}}, {"miliardów", {1000000000, Form::Many}},
        {"milion", {1000000, Form::One}},     {"miliony", {1000000, Form::Few}},     {"milionów", {1000000, Form::Many}},
        {"tysiąc", {1000, Form::One}},        {"tysiące", {1000, Form::Few}},        {"tysięcy", {1000, Form::Many}}};
    static const QHash<QString, Form> zlote = {{"złoty", Form::One}, {"złote", Form::Few}, {"złotych", Form::Many}};
    static const QHash<QString, Form> grosze = {{"grosz", Form::One}, {"grosze", Form::Few}, {"groszy", Form::Many}};

    if (wording.isEmpty())
        return {0, {}};
    if (wording != wording.trimmed() || wording.contains(QStringLiteral("  ")) || wording.contains(QStringLiteral("zero")))
        return {-1, QStringLiteral("blanks or zero")};
    qint64 total = 0, group = 0, lastScale = 0;
    bool seenZlote = false;
    for (const QString &word : wording.split(QLatin1Char(' '))) {
        if (numbers.contains(word)) {
            group += numbers[word];
        } else if (magnitudes.contains(word)) {
            const Magnitude m = magnitudes[word];
            if (group == 0 || (lastScale && m.scale >= lastScale) || expectedForm(group) != m.form)
                return {-1, QStringLiteral("magnitude ") + word};
            total += group * m.scale;
            lastScale = m.scale;
            group = 0;
        } else if (zlote.contains(word)) {
            total += group;
            if (total == 0 || seenZlote || expectedForm(group) != zlote[word])
                return {-1, QStringLiteral("złote word ") + word};
            seenZlote = true;
            group = 0;
        } else if (grosze.contains(word)) {
            if (group == 0 || group > 99 || expectedForm(group) != grosze[word])
                return {-1, QStringLiteral("grosze word ") + word};
            return {total * 100 + group, {}};
        } else {
            return {-1, QStringLiteral("unknown word ") + word};
        }
    }
    if (group != 0 || !seenZlote)
        return {-1, QStringLiteral("dangling number")};
    return {total * 100, {}};
}

} // namespace

class TestSlownie : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void wording_data();
    void wording();
    void randomAmountsReadBack();
    void wrapping_data();
    void wrapping();
};

void TestSlownie::wording_data()
{
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("words");
    QTest::newRow("zero") << "0,00" << "";
    QTest::newRow("half a grosz rounds up") << "0,005" << "jeden grosz";
    QTest::newRow("2.05") << "2,05" << "dwa złote pięć groszy";
    QTest::newRow("112.13 keeps the slips' form") << "112,13" << "sto dwanaście złote trzynaście groszy";
    QTest::newRow("213000 keeps the slips' form") << "213000" << "dwieście trzynaście tysiące złotych";
    QTest::newRow("1 234 567 890.99")
        << "1 234 567 890,99"
        << "jeden miliard dwieście trzydzieści cztery miliony pięćset sześćdziesiąt siedem tysięcy osiemset "
           "dziewięćdziesiąt złotych dziewięćdziesiąt dziewięć groszy";
    QTest::newRow("sign dropped") << "-15,10" << "piętnaście złotych dziesięć groszy";
    // Over the limit: the user is told and the amount comes back in digits.
    QTest::newRow("a billion złoty more") << "1000000000000" << "1000000000000";
    QTest::newRow("rounds over the limit") << "999999999999,995" << "999999999999,995";
    QTest::newRow("negative over the limit") << "-1000000000000,5" << "1000000000000,5";
}

void TestSlownie::wording()
{
    QFETCH(QString, amount);
    QFETCH(QString, words);
    RecordingDialogs d;
    QCOMPARE(Slownie(*Money::parse(amount)), words);
    const bool digits = !words.isEmpty() && words.at(0).isDigit();
    QCOMPARE(d.calls.size(), digits ? 1 : 0);
    if (digits) {
        QVERIFY(d.calls[0].text.contains(QStringLiteral("- ") + words + QStringLiteral(" - jest za duża")));
        QCOMPARE(d.calls[0].icon, Dialogs::Icon::Information);
    }
}

void TestSlownie::randomAmountsReadBack()
{
    QRandomGenerator rng(20261121);
    for (int i = 0; i < 200000; ++i) {
        // Spread over every order of magnitude, up to the limit, which comes first.
        const int digits = i ? 1 + rng.bounded(14) : 14;
        qint64 grosze = 0;
        for (int d = 0; d < digits; ++d)
            grosze = grosze * 10 + (i ? rng.bounded(10) : 9);
        const Money amount = Money::fromGrosze(grosze);
        const Wording w = wordingOf(amount);
        QVERIFY(!w.overLimit);
        const Reading r = readBack(w.text);
        if (r.grosze != grosze)
            QFAIL(qPrintable(QStringLiteral("%1 gr: \"%2\" (%3)").arg(grosze).arg(w.text, r.error)));
    }
}

void TestSlownie::wrapping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("box"); // characters are 100 units wide
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("tooLong");
    QTest::newRow("broken at blanks")
        << "sto dwanaście złote trzynaście groszy" << qreal(1500)
        << QStringList{"sto dwanaście", "złote", "trzynaście", "groszy"} << false;
    QTest::newRow("blank right at the limit") << "aaaa bbbb" << qreal(450) << QStringList{"aaaa", "bbbb"} << false;
    QTest::newRow("word longer than a line") << "dziewięćdziesiąt groszy" << qreal(500)
                                             << QStringList{"dziew", "ięćdz", "iesią", "t", "grosz"} << true;
    QTest::newRow("empty") << "" << qreal(3000) << QStringList{} << false;
}

void TestSlownie::wrapping()
{
    QFETCH(QString, text);
    QFETCH(qreal, box);
    QFETCH(QStringList, lines);
    QFETCH(bool, tooLong);
    const auto width = [](const QString &s) { return qreal(s.size() * 100); };
    const WrappedWording w = wrapWording(text, width, box);
    QCOMPARE(w.lines, lines);
    QCOMPARE(w.message, tooLong ? QStringLiteral("Druk słownie - Za mało wierszy!") : QString());
    for (const QString &line : w.lines)
        QVERIFY(width(line) <= box);
}

QTEST_GUILESS_MAIN(TestSlownie)
#include "tst_slownie.moc"
