#include "DateText.h"
#include "documents/Firm.h"
#include "PdfReader.h"
#include "TestBus.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "exchange/clsSerwer.h"
#include "print/PrintSurface.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

#include <csignal>

#include <memory>

// The automation object as the suite's programs use it: the bus starts the program by its
// service file, calls come from another process (this test's own connection),
// and the firm database is checked afterwards.
class TestAutomation : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void issues_data();
    void issues();
    void badCallsStoreNothing_data();
    void badCallsStoreNothing();
    void notPrintedThenRepeated();
    void killedDuringCalls();
    void quitsWhenIdleAndStartsAgain();

private:
    QStringList values(const QString &name = QStringLiteral("Hurtownia Gęśla")) const;
    QDBusMessage call(const QString &method, const QVariantList &args);
    qlonglong count(const QString &sql) { return stored(sql).toLongLong(); }

    std::unique_ptr<TestEnv> m_env;
    QString m_firm;
};

const QString Service = QStringLiteral("pl.kontorian.Zlecanki");

void TestAutomation::initTestCase()
{
    SKIP_WITHOUT_SERVER();
    m_env = std::make_unique<TestEnv>();
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "run under dbus-run-session");
    // The program the bus starts lives in this test's private home.
    QVERIFY(startProgramsInTestHome(*m_env, 3));

    FirmData firm = sampleFirm();
    for (int i : {0, 1}) {
        firm.accounts[size_t(i)].bankName = QStringLiteral("Bank %1").arg(i + 1);
        firm.accounts[size_t(i)].number = QStringLiteral("12 1020 1026 0000 1234 5678 901%1").arg(i);
    }
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma.zlc")), firm));
    m_firm = firmFile();
}

QStringList TestAutomation::values(const QString &name) const
{
    return {m_firm, QString(), QString(), name, QStringLiteral("Kwiatowa 7"), QStringLiteral("31-000"),
            QStringLiteral("Kraków"), QStringLiteral("mBank"), QStringLiteral("FVZ"), QStringLiteral("12/2026"),
            QStringLiteral("1234,50"), QStringLiteral("05-03-2026"), QStringLiteral("45 1140 2004 0000 3002 0123 4567"),
            QStringLiteral("526-000-00-00")};
}

QDBusMessage TestAutomation::call(const QString &method, const QVariantList &args)
{
    QDBusMessage m = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                    QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"), method);
    m.setArguments(args);
    return QDBusConnection::sessionBus().call(m, QDBus::Block, 30000);
}

void TestAutomation::issues_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("title");
    QTest::addColumn<qlonglong>("units");
    QTest::addColumn<bool>("toPdf");

    QTest::newRow("purchase invoice to a PDF file")
        << "Hurtownia Gęśla" << "FVZ" << "12/2026" << "1234,50" << "" << "Zapłata za: 12/2026" << 12345000LL << true;
    QTest::newRow("another kind keeps the number, account 2")
        << "Sklep \"Pod O'Brienem\"" << "PAR" << "7" << "0,01" << "2" << "7" << 100LL << false;
}

void TestAutomation::issues()
{
    QFETCH(QString, name);
    QFETCH(QString, kind);
    QFETCH(QString, number);
    QFETCH(QString, amount);
    QFETCH(QString, account);
    QFETCH(QString, title);
    QFETCH(qlonglong, units);
    QFETCH(bool, toPdf);

    const int bank = account.isEmpty() ? 1 : account.toInt();
    QStringList v = values(name);
    v[1] = account;
    v[8] = kind;
    v[9] = number;
    v[10] = amount;
    const QString pdf = m_env->newPath(QStringLiteral("przelew.pdf"));
    if (toPdf)
        v[2] = QStringLiteral("pdf:") + pdf;
    const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QString(kind + QLatin1Char(' ') + number)});
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
    const int id = reply.arguments().value(0).toInt();

    const QString row = QStringLiteral(" FROM zlecanki z JOIN kontrahenci k ON k.ID = z.KLIENT_ID WHERE z.ID = %1").arg(id);
    QCOMPARE(stored(QStringLiteral("SELECT z.ZA_DOKUMENT_NAZWA || '|' || k.NAZWA || '|' || z.KLIENT_NAZWA1 || '|' || "
                                   "z.RODZAJ || '|' || z.BANKNR || '|' || z.KONTO_FIRMY || '|' || z.DATA_DOKUMENTU || '|' "
                                   "|| z.DATA_SESJI || '|' || z.WARTOSC") + row),
             QStringList({title, name, QString(), QStringLiteral("1"), QString::number(bank),
                          QStringLiteral("12 1020 1026 0000 1234 5678 901%1").arg(bank - 1), QStringLiteral("2026-03-05"),
                          DateText::toIso(QDate::currentDate()), QString::number(units)})
                 .join(QLatin1Char('|')));
    if (toPdf) {
        // Values stand one letter to a box: compared without the blanks between them.
        const QString text = readPdf(pdf).text().remove(QLatin1Char(' '));
        for (const char *part : {"Gęśla", "Zapłata", "12/2026"})
            QVERIFY2(text.contains(QString::fromUtf8(part)), qPrintable(text));
    }
}

void TestAutomation::badCallsStoreNothing_data()
{
    QTest::addColumn<int>("position"); // 0: drop the last value
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("message");

    QTest::newRow("thirteen values") << 0 << "" << "Oczekiwano 14 wartości";
    QTest::newRow("zero amount") << 11 << "0,00" << "większa od zera";
    QTest::newRow("missing database") << 1 << "/nie/ma/firmy.zlc" << "Nie ma pliku bazy firmy";
    QTest::newRow("account out of range") << 2 << "41" << "numer rachunku firmy";
    QTest::newRow("account without a number") << 2 << "7" << "nie ma numeru";
    QTest::newRow("unknown printer") << 3 << "brak-takiej-drukarki" << "Nie ma drukarki";
    QTest::newRow("relative PDF") << 3 << "pdf:wydruk.pdf" << "pełną ścieżką";
    QTest::newRow("no recipient") << 4 << "  " << "nazwy odbiorcy";
    QTest::newRow("beyond any amount") << 11 << "922337203685477,58" << "999 999 999 999,99";
    QTest::newRow("relative firm") << 1 << "firma.zlc" << "pełną ścieżką";
    QTest::newRow("date with a time") << 12 << "2026-03-05T10:00" << "Nieprawidłowa data";
    QTest::newRow("year 2100") << 12 << "01-01-2100" << "lata 1900-2099";
    QTest::newRow("line break in a name") << 4 << "Hurtownia\nGęśla" << "znak sterujący";
    QTest::newRow("PDF onto the firm") << 3 << "pdf:@firm" << "otwartą bazą firmy";
    QTest::newRow("PDF onto an existing file") << 3 << "pdf:@old" << "już istnieje";
}

void TestAutomation::badCallsStoreNothing()
{
    QFETCH(int, position);
    QFETCH(QString, value);
    QFETCH(QString, message);
    if (value.contains(QLatin1String("@firm")) && firmsOnServer())
        QSKIP("the firm is no file on the server");
    const QString state = QStringLiteral("SELECT (SELECT count(*) FROM zlecanki) || '|' || (SELECT count(*) FROM "
                                         "kontrahenci) || '|' || (SELECT STAN_KONTA1 FROM firma)");
    const QString before = stored(state);
    const QString old = m_env->newPath(QStringLiteral("stary.pdf"));
    QVERIFY(writeFile(old, "stary"));
    QStringList v = values(QStringLiteral("Nikt Nowy"));
    if (position == 0)
        v.removeLast();
    else
        v[position - 1] = QString(value).replace(QStringLiteral("@firm"), m_firm).replace(QStringLiteral("@old"), old);
    const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QStringLiteral("odrzucone")});
    QCOMPARE(reply.errorName(), QStringLiteral("pl.kontorian.Zlecanki.Blad"));
    QVERIFY2(reply.errorMessage().contains(message), qPrintable(reply.errorMessage()));
    QCOMPARE(stored(state), before);
    QCOMPARE(readFile(old), QByteArray("stary"));
}

void TestAutomation::notPrintedThenRepeated()
{
    // In this process, with a printer that takes no job: the transfer is stored all the same,
    // and the caller learns that (and its Id) from the answer.
    struct Jammed : PrintSurface {
        bool begin(QPainter &) override { return false; }
        bool newPage(QPainter &) override { return false; }
        bool end(QPainter &) override { return false; }
        QSizeF pageSizeTwips() const override { return {11906, 16838}; }
        bool setOrientation(QPageLayout::Orientation) override { return true; }
        QString failure() const override { return QStringLiteral("zacięty papier"); }
    };
    clsSerwer server;
    server.setPrinterFactory([](const QString &) { return std::make_unique<Jammed>(); });
    const QString documents = QStringLiteral("SELECT count(*) FROM zlecanki");
    const qlonglong countBefore = count(documents);
    QStringList v = values(QStringLiteral("Zakłady Zacięte"));
    v[2] = QStringLiteral("drukarka-w-biurze");
    QString error;
    auto outcome = clsSerwer::Outcome::Refused;
    QVERIFY(!server.WystawPrzelew(v, QStringLiteral("FZ/7/2026"), &error, &outcome));
    QCOMPARE(outcome, clsSerwer::Outcome::NotPrinted);
    QVERIFY2(error.contains(QStringLiteral("zacięty papier")), qPrintable(error));
    const qlonglong id = count(QStringLiteral("SELECT max(ID) FROM zlecanki"));
    QVERIFY2(error.contains(QStringLiteral("Dokument nr %1 zapisano").arg(id)), qPrintable(error));

    // Called again with the same reference, over the bus as well: the same Id, nothing new,
    // even where the first call's PDF file is there by now.
    v[2].clear();
    QCOMPARE(server.WystawPrzelew(v, QStringLiteral("FZ/7/2026"), &error).value_or(0), id);
    const QString pdf = m_env->newPath(QStringLiteral("pierwszy.pdf"));
    QVERIFY(writeFile(pdf, "%PDF"));
    v[2] = QStringLiteral("pdf:") + pdf;
    const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QStringLiteral("FZ/7/2026")});
    QCOMPARE(reply.arguments().value(0).toLongLong(), id);
    QCOMPARE(count(documents), countBefore + 1);
    // An empty reference is no reference: each such call is a transfer of its own.
    v[2].clear();
    QVERIFY(server.WystawPrzelew(v, QString(), &error).value_or(id) != id);
    QCOMPARE(count(documents), countBefore + 2);
}

void TestAutomation::killedDuringCalls()
{
    // The caller's way through crashes: a call without an answer is made again with the same
    // reference. The automation copy is killed at random moments of its calls; afterwards every
    // reference has exactly one document and the balance is exact.
    const qlonglong balance = count(QStringLiteral("SELECT STAN_KONTA1 FROM firma"));
    const qlonglong documents = count(QStringLiteral("SELECT count(*) FROM zlecanki"));
    const int Calls = 200;
    QRandomGenerator random(16);
    qlonglong total = 0;
    int kills = 0;
    for (int i = 1; i <= Calls; ++i) {
        QStringList v = values(QStringLiteral("Odbiorca %1").arg(i % 7));
        v[10] = QStringLiteral("%1,%2").arg(i).arg(i % 100, 2, 10, QLatin1Char('0'));
        total += qlonglong(i) * 10000 + (i % 100) * 100;
        bool answered = false;
        for (int attempt = 0; attempt < 20 && !answered; ++attempt) {
            QDBusMessage m = QDBusMessage::createMethodCall(Service, QStringLiteral("/clsSerwer"),
                                                            QStringLiteral("pl.kontorian.Zlecanki.clsSerwer"),
                                                            QStringLiteral("WystawPrzelew"));
            m.setArguments({v, QStringLiteral("K/%1").arg(i)});
            QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(m, 30000);
            if (i % 10 == 0 && attempt == 0) {
                const uint pid = QDBusConnection::sessionBus().interface()->servicePid(Service).value();
                QThread::usleep(random.bounded(4000));
                if (pid > 0 && ::kill(pid_t(pid), SIGKILL) == 0)
                    ++kills;
            }
            pending.waitForFinished();
            answered = pending.reply().type() == QDBusMessage::ReplyMessage;
        }
        QVERIFY2(answered, qPrintable(QString::number(i)));
    }
    QVERIFY(kills > Calls / 20);
    QCOMPARE(count(QStringLiteral("SELECT count(*) FROM zlecanki")), documents + Calls);
    QCOMPARE(count(QStringLiteral("SELECT count(DISTINCT ZlecenieId) FROM OdwolaniaSerwera WHERE Odwolanie LIKE 'K/%'")),
             qlonglong(Calls));
    QCOMPARE(count(QStringLiteral("SELECT STAN_KONTA1 FROM firma")), balance - total);
}

void TestAutomation::quitsWhenIdleAndStartsAgain()
{
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    QTRY_VERIFY_WITH_TIMEOUT(!bus->isServiceRegistered(Service).value(), 15000);
    const auto opened = [this](const QString &firm) {
        return call(QStringLiteral("OtworzBaze"), {firm}).arguments().value(0, QStringLiteral("błąd")).toString();
    };
    QCOMPARE(opened(m_env->newPath(QStringLiteral("brak.zlc"))), QStringLiteral("false"));
    QVERIFY(bus->isServiceRegistered(Service));
    QCOMPARE(opened(m_firm), QStringLiteral("true"));
    // A transfer on the firm the caller opened leaves it open for the next call.
    QCOMPARE(call(QStringLiteral("WystawPrzelew"), {values(), QString()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(QStringLiteral("WystawPrzelew"), {values(), QString()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(QStringLiteral("ZamknijBaze"), {}).type(), QDBusMessage::ReplyMessage);
    QTRY_VERIFY_WITH_TIMEOUT(!bus->isServiceRegistered(Service).value(), 15000);
}

QTEST_MAIN(TestAutomation)
#include "tst_automation.moc"
