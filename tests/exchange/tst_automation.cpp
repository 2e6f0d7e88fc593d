#include "DateText.h"
#include "documents/Firm.h"
#include "PdfReader.h"
#include "TestEnv.h"
#include "TestFirm.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <memory>

// The automation object as the suite's programs use it: the bus starts the program by its
// service file, calls come from other processes (gdbus, and this test's own connection),
// and the firm database is checked afterwards.
class TestAutomation : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void issues_data();
    void issues();
    void badCallsStoreNothing_data();
    void badCallsStoreNothing();
    void printsPdf();
    void openAndClose();
    void thousandInARow();
    void quitsWhenIdleAndStartsAgain();

private:
    QStringList values(const QString &name = QStringLiteral("Hurtownia Gęśla")) const;
    // gdbus call on the automation object; its standard output, or the error text.
    QString gdbus(const QString &method, const QStringList &args, bool *ok);
    QDBusMessage call(const QString &method, const QVariantList &args);
    qlonglong count(const QString &sql) { return stored(sql).toLongLong(); }

    std::unique_ptr<TestEnv> m_env;
    QString m_firm;
};

namespace {

const QString Service = QStringLiteral("pl.kontorian.Zlecanki");

QString gvariant(const QString &text)
{
    QString s = text;
    s.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + s + QLatin1Char('\'');
}

QString gvariant(const QStringList &list)
{
    QStringList items;
    for (const QString &s : list)
        items << gvariant(s);
    return QLatin1Char('[') + items.join(QStringLiteral(", ")) + QLatin1Char(']');
}

} // namespace

void TestAutomation::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "run under dbus-run-session");
    // The program the bus starts lives in this test's private home.
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QMap<QString, QString> env;
    const QProcessEnvironment pe = m_env->processEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME", "QT_QPA_PLATFORM"})
        env.insert(QLatin1String(name), pe.value(QLatin1String(name)));
    env.insert(QStringLiteral("ZLECANKI_AUTOMATION_IDLE"), QStringLiteral("3"));
    QDBusMessage update = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                                         QStringLiteral("org.freedesktop.DBus"),
                                                         QStringLiteral("UpdateActivationEnvironment"));
    update << QVariant::fromValue(env);
    QCOMPARE(QDBusConnection::sessionBus().call(update).type(), QDBusMessage::ReplyMessage);

    FirmData firm = sampleFirm();
    for (int i : {0, 1}) {
        firm.accounts[size_t(i)].bankName = QStringLiteral("Bank %1").arg(i + 1);
        firm.accounts[size_t(i)].number = QStringLiteral("12 1020 1026 0000 1234 5678 901%1").arg(i);
        firm.accounts[size_t(i)].balance = Money::fromZlote(10000);
    }
    m_firm = m_env->newPath(QStringLiteral("firma.zlc"));
    QVERIFY(openNewFirm(m_firm, firm));
}

QStringList TestAutomation::values(const QString &name) const
{
    return {m_firm, QString(), QString(), name, QStringLiteral("Kwiatowa 7"), QStringLiteral("31-000"),
            QStringLiteral("Kraków"), QStringLiteral("mBank"), QStringLiteral("FVZ"), QStringLiteral("12/2026"),
            QStringLiteral("1234,50"), QStringLiteral("05-03-2026"), QStringLiteral("45 1140 2004 0000 3002 0123 4567"),
            QStringLiteral("526-000-00-00")};
}

QString TestAutomation::gdbus(const QString &method, const QStringList &args, bool *ok)
{
    QProcess p;
    p.start(QStringLiteral("gdbus"), QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                                                 Service, QStringLiteral("--object-path"), QStringLiteral("/clsSerwer"),
                                                 QStringLiteral("--method"),
                                                 QStringLiteral("pl.kontorian.Zlecanki.clsSerwer.") + method} +
                                         args);
    *ok = p.waitForFinished(30000) && p.exitCode() == 0;
    return QString::fromUtf8(*ok ? p.readAllStandardOutput() : p.readAllStandardError()).trimmed();
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
    QTest::addColumn<int>("newContractors");
    QTest::addColumn<qlonglong>("units");

    QTest::newRow("new contractor, purchase invoice")
        << "Hurtownia Gęśla" << "FVZ" << "12/2026" << "1234,50" << "" << "Zapłata za: 12/2026" << 1 << 12345000LL;
    QTest::newRow("same name again, its correction")
        << "Hurtownia Gęśla" << "fvzk" << "K/3" << "100" << "2" << "Zapłata za: K/3" << 0 << 1000000LL;
    QTest::newRow("another kind keeps the number")
        << "Sklep \"Pod O'Brienem\"" << "PAR" << "7" << "0,01" << "1" << "7" << 1 << 100LL;
}

void TestAutomation::issues()
{
    QFETCH(QString, name);
    QFETCH(QString, kind);
    QFETCH(QString, number);
    QFETCH(QString, amount);
    QFETCH(QString, account);
    QFETCH(QString, title);
    QFETCH(int, newContractors);
    QFETCH(qlonglong, units);

    const int bank = account.isEmpty() ? 1 : account.toInt();
    const QString balance = QStringLiteral("SELECT STAN_KONTA%1 FROM firma").arg(bank);
    const qlonglong before = count(balance);
    const qlonglong contractors = count(QStringLiteral("SELECT count(*) FROM kontrahenci"));
    QStringList v = values(name);
    v[1] = account;
    v[8] = kind;
    v[9] = number;
    v[10] = amount;
    bool ok = false;
    const QString out = gdbus(QStringLiteral("WystawPrzelew"), {gvariant(v), gvariant(QStringLiteral("FZ 12/2026"))}, &ok);
    QVERIFY2(ok, qPrintable(out));
    const int id = out.mid(1, out.indexOf(QLatin1Char(',')) - 1).toInt();
    QVERIFY2(id > 0, qPrintable(out));

    QCOMPARE(count(QStringLiteral("SELECT count(*) FROM kontrahenci")), contractors + newContractors);
    const QString row = QStringLiteral(" FROM zlecanki z JOIN kontrahenci k ON k.ID = z.KLIENT_ID WHERE z.ID = %1").arg(id);
    QCOMPARE(stored(QStringLiteral("SELECT z.ZA_DOKUMENT_NAZWA || '|' || k.NAZWA || '|' || z.KLIENT_NAZWA1 || '|' || "
                                   "z.RODZAJ || '|' || z.BANKNR || '|' || z.KONTO_FIRMY || '|' || z.DATA_DOKUMENTU || '|' "
                                   "|| z.DATA_SESJI") + row),
             QStringList({title, name, QString(), QStringLiteral("1"), QString::number(bank),
                          QStringLiteral("12 1020 1026 0000 1234 5678 901%1").arg(bank - 1), QStringLiteral("2026-03-05"),
                          DateText::toIso(QDate::currentDate())})
                 .join(QLatin1Char('|')));
    QCOMPARE(count(QStringLiteral("SELECT WARTOSC FROM zlecanki WHERE ID = %1").arg(id)), units);
    QCOMPARE(count(balance), before - units);
}

void TestAutomation::badCallsStoreNothing_data()
{
    QTest::addColumn<int>("position"); // 0: drop the last value
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("message");

    QTest::newRow("thirteen values") << 0 << "" << "Oczekiwano 14 wartości";
    QTest::newRow("amount") << 11 << "12,3x" << "Nieprawidłowa kwota";
    QTest::newRow("zero amount") << 11 << "0,00" << "większa od zera";
    QTest::newRow("date") << 12 << "31-02-2026" << "Nieprawidłowa data dokumentu";
    QTest::newRow("missing database") << 1 << "/nie/ma/firmy.zlc" << "Nie ma pliku bazy firmy";
    QTest::newRow("account out of range") << 2 << "41" << "numer rachunku firmy";
    QTest::newRow("account without a number") << 2 << "7" << "nie ma numeru";
    QTest::newRow("unknown printer") << 3 << "brak-takiej-drukarki" << "Nie ma drukarki";
    QTest::newRow("relative PDF") << 3 << "pdf:wydruk.pdf" << "pełną ścieżką";
    QTest::newRow("no recipient") << 4 << "  " << "nazwy odbiorcy";
}

void TestAutomation::badCallsStoreNothing()
{
    QFETCH(int, position);
    QFETCH(QString, value);
    QFETCH(QString, message);
    const QString state = QStringLiteral("SELECT (SELECT count(*) FROM zlecanki) || '|' || (SELECT count(*) FROM "
                                         "kontrahenci) || '|' || (SELECT STAN_KONTA1 FROM firma)");
    const QString before = stored(state);
    QStringList v = values(QStringLiteral("Nikt Nowy"));
    if (position == 0)
        v.removeLast();
    else
        v[position - 1] = value;
    const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QString()});
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(reply.errorName(), QStringLiteral("pl.kontorian.Zlecanki.Blad"));
    QVERIFY2(reply.errorMessage().contains(message), qPrintable(reply.errorMessage()));
    QCOMPARE(stored(state), before);
}

void TestAutomation::printsPdf()
{
    const QString pdf = m_env->newPath(QStringLiteral("przelew.pdf"));
    QStringList v = values(QStringLiteral("Drukarnia Wąsik"));
    v[2] = QStringLiteral("pdf:") + pdf;
    const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QString()});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    const PdfContent content = readPdf(pdf);
    QVERIFY(content.ok);
    QVERIFY(content.pages >= 1);
    // Values stand one letter to a box: compared without the blanks between them.
    const QString text = content.text().remove(QLatin1Char(' '));
    for (const char *part : {"Drukarnia", "Wąsik", "Zapłata", "12/2026", "Nazwaodbiorcy"})
        QVERIFY2(text.contains(QString::fromUtf8(part), Qt::CaseInsensitive), qPrintable(content.text()));
}

void TestAutomation::openAndClose()
{
    bool ok = false;
    QCOMPARE(gdbus(QStringLiteral("OtworzBaze"), {gvariant(m_env->newPath(QStringLiteral("brak.zlc")))}, &ok),
             QStringLiteral("(false,)"));
    QCOMPARE(gdbus(QStringLiteral("OtworzBaze"), {gvariant(m_firm)}, &ok), QStringLiteral("(true,)"));
    // A transfer on the firm the caller opened leaves it open for the next call.
    QCOMPARE(call(QStringLiteral("WystawPrzelew"), {values(), QString()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(QStringLiteral("WystawPrzelew"), {values(), QString()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(gdbus(QStringLiteral("ZamknijBaze"), {}, &ok), QStringLiteral("()"));
    QVERIFY(ok);
}

void TestAutomation::thousandInARow()
{
    const qlonglong balance = count(QStringLiteral("SELECT STAN_KONTA1 FROM firma"));
    const qlonglong documents = count(QStringLiteral("SELECT count(*) FROM zlecanki"));
    qlonglong total = 0;
    QSet<int> ids;
    for (int i = 1; i <= 1000; ++i) {
        QStringList v = values(QStringLiteral("Odbiorca %1").arg(i % 7));
        v[9] = QStringLiteral("SERIA/%1").arg(i);
        v[10] = QStringLiteral("%1,%2").arg(i).arg(i % 100, 2, 10, QLatin1Char('0'));
        total += qlonglong(i) * 10000 + (i % 100) * 100;
        const QDBusMessage reply = call(QStringLiteral("WystawPrzelew"), {v, QString()});
        QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
        ids.insert(reply.arguments().value(0).toInt());
    }
    QCOMPARE(ids.size(), 1000);
    QCOMPARE(count(QStringLiteral("SELECT count(*) FROM zlecanki")), documents + 1000);
    QCOMPARE(count(QStringLiteral("SELECT count(DISTINCT ZA_DOKUMENT_NAZWA) FROM zlecanki WHERE ZA_DOKUMENT_NAZWA "
                                   "LIKE 'Zapłata za: SERIA/%'")),
             1000LL);
    QCOMPARE(count(QStringLiteral("SELECT STAN_KONTA1 FROM firma")), balance - total);
}

void TestAutomation::quitsWhenIdleAndStartsAgain()
{
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    QVERIFY(bus->isServiceRegistered(Service));
    QTRY_VERIFY_WITH_TIMEOUT(!bus->isServiceRegistered(Service).value(), 15000);
    bool ok = false;
    QCOMPARE(gdbus(QStringLiteral("OtworzBaze"), {gvariant(m_firm)}, &ok), QStringLiteral("(true,)"));
    QVERIFY(bus->isServiceRegistered(Service));
    QTRY_VERIFY_WITH_TIMEOUT(!bus->isServiceRegistered(Service).value(), 15000);
}

QTEST_MAIN(TestAutomation)
#include "tst_automation.moc"
