#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "users/Users.h"
#include "AppState.h"
#include "documents/Firm.h"
#include "SettingsStore.h"
#include "exchange/basKONTORIAN.h"
#include "app/frmFirmaOpen.h"
#include "app/frmglowna.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include <memory>

// Users, passwords and rights: the file, the rules, the login and the areas of the frame.
class TestUsers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void rules_data();
    void rules();
    void firstUserAndLogin();
    void areaAnswersToRight_data();
    void areaAnswersToRight();
    void suiteFirmsOffered();
    void dueAlarmWaitsForLogin();

private:
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    std::unique_ptr<frmglowna> m_main;
    QString m_hash; // of "tajne hasło"
};

namespace {
const QString Password = QStringLiteral("tajne hasło");
}

void TestUsers::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
    m_dialogs = std::make_unique<RecordingDialogs>();
    QVERIFY(openNewFirm(m_env->newPath(QStringLiteral("firma.zlc")), sampleFirm()));
    m_hash = Users::hashPassword(Password);
    m_main = std::make_unique<frmglowna>();
}

void TestUsers::cleanup()
{
    QFile::remove(Users::filePath());
    UserSession::instance().reload();
    m_dialogs->clear();
}

void TestUsers::rules_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("message");

    QTest::newRow("name taken, letter case aside") << "add" << "EWA" << "x" << "już istnieje";
    QTest::newRow("blank at the end") << "add" << "Jan " << "x" << "odstępem";
    QTest::newRow("empty password") << "add" << "Jan" << "" << "nie może być puste";
    QTest::newRow("last admin loses the right") << "revoke" << "Ewa" << "" << "prawem \"Admin\"";
    QTest::newRow("last admin removed while others stay") << "remove" << "Ewa" << "" << "prawem \"Admin\"";
    QTest::newRow("unknown user") << "remove" << "Nikt" << "" << "Nie ma użytkownika";
}

void TestUsers::rules()
{
    QFETCH(QString, step);
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(QString, message);
    QList<Users::User> users = {{QStringLiteral("Ewa"), m_hash, Users::areas()},
                                {QStringLiteral("Jan"), m_hash, {QStringLiteral("Dokumenty")}}};
    if (step == QLatin1String("add"))
        users.removeLast();
    const QList<Users::User> before = users;
    QString error;
    bool ok = true;
    if (step == QLatin1String("add"))
        ok = Users::addUser(users, name, password, {}, &error);
    else if (step == QLatin1String("revoke"))
        ok = Users::changeUser(users, name, std::nullopt, {QStringLiteral("Dokumenty")}, &error);
    else
        ok = Users::removeUser(users, name, &error);
    QVERIFY(!ok);
    QVERIFY2(error.contains(message), qPrintable(error));
    QCOMPARE(users.size(), before.size());
    QCOMPARE(users.constFirst().rights, before.constFirst().rights);
}

void TestUsers::firstUserAndLogin()
{
    // Nobody is defined: everything is open, and whoever adds the first user becomes it.
    QVERIFY(m_main->command(QStringLiteral("mnuochrona"))->isEnabled());
    m_main->command(QStringLiteral("mnuochrona"))->trigger();
    QWidget *ochrona = m_main->childWindow(QStringLiteral("frmOchrona"));
    QVERIFY(ochrona);
    fill(ochrona, {{"txtnazwa", "Ewa"}, {"txthaslo", "tajne hasło"}, {"txthaslo2", "tajne hasło"}});
    click(ochrona, QStringLiteral("cmdnowy"));
    QCOMPARE(UserSession::instance().currentUser(), QStringLiteral("Ewa"));
    QVERIFY(UserSession::instance().allowed(Users::Admin));
    // A second user, with documents only; the password typed twice differently is refused.
    fill(ochrona, {{"txtnazwa", "Jan"}, {"txthaslo", "abc"}, {"txthaslo2", "abd"}});
    click(ochrona, QStringLiteral("cmdnowy"));
    QVERIFY(m_dialogs->saw(QStringLiteral("różnią")));
    fill(ochrona, {{"txtnazwa", "Jan"}, {"txthaslo", "abc"}, {"txthaslo2", "abc"}});
    for (int i = 0; i < Users::areas().size(); ++i)
        child<QAbstractButton>(ochrona, QStringLiteral("chkprawo_%1").arg(i))->setChecked(Users::areas().at(i) == QLatin1String("Dokumenty"));
    click(ochrona, QStringLiteral("cmdnowy"));
    QCOMPARE(UserSession::instance().userNames(), QStringList({QStringLiteral("Ewa"), QStringLiteral("Jan")}));

    m_main->command(QStringLiteral("mnuuser"))->trigger();
    QWidget *login = m_main->childWindow(QStringLiteral("frmLogin"));
    QVERIFY(login);
    child<QComboBox>(login, QStringLiteral("txtuzytkownik"))->setCurrentText(QStringLiteral("Jan"));
    fill(login, {{"txthaslo", "abd"}});
    click(login, QStringLiteral("cmdok"));
    QVERIFY(m_dialogs->saw(QStringLiteral("Nieprawidłowa nazwa użytkownika lub hasło.")));
    QCOMPARE(UserSession::instance().currentUser(), QStringLiteral("Ewa"));
    fill(login, {{"txthaslo", "abc"}});
    click(login, QStringLiteral("cmdok"));
    QCOMPARE(UserSession::instance().currentUser(), QStringLiteral("Jan"));
    m_main->closeAllWindows();

    // The file holds salted hashes only, for the owner's eyes; names match in any letter case.
    QFile f(Users::filePath());
    QCOMPARE(int(f.permissions() & 0x77), 0);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray text = f.readAll();
    QVERIFY(!text.contains(Password.toUtf8()) && text.count("$argon2id$") == 2);
    QVERIFY(Users::hashPassword(Password) != Users::hashPassword(Password));
    UserSession::instance().logout(); // nobody logged in: nothing allowed
    QVERIFY(!UserSession::instance().allowed(QStringLiteral("Dokumenty")));
    QVERIFY(UserSession::instance().login(QStringLiteral("ewa"), Password));
    QVERIFY(UserSession::instance().allowed(Users::Admin));
}

void TestUsers::areaAnswersToRight_data()
{
    QTest::addColumn<QString>("area");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("window");

    QTest::newRow("Raporty") << "Raporty" << "mnuraporty_0" << "frmraport_kryteria";
    QTest::newRow("Dokumenty") << "Dokumenty" << "mnuzlecanki_0" << "frmprzelew_1";
    QTest::newRow("Slowniki") << "Slowniki" << "mnukontrahenci" << "frmKontrahenci";
    QTest::newRow("Ustawienia") << "Ustawienia" << "mnuustawbar" << "frmUstawienia";
    QTest::newRow("Dane firmy") << "Dane firmy" << "mnufirmadane" << "frmfirma";
    QTest::newRow("Admin") << "Admin" << "mnuochrona" << "frmOchrona";
}

void TestUsers::areaAnswersToRight()
{
    QFETCH(QString, area);
    QFETCH(QString, command);
    QFETCH(QString, window);
    QStringList others = Users::areas();
    others.removeAll(area);
    for (const bool granted : {false, true}) {
        QVERIFY(Users::save({{QStringLiteral("Ewa"), m_hash, {Users::Admin}},
                             {QStringLiteral("Jan"), m_hash, granted ? Users::areas() : others}}));
        QVERIFY(UserSession::instance().reload());
        QVERIFY(UserSession::instance().login(QStringLiteral("Jan"), Password));
        QAction *a = m_main->command(command);
        // The menu of the command (or the command itself in the menu bar) answers too.
        const QString bar = area == QLatin1String("Raporty") ? QStringLiteral("mnuraportybar") : command;
        QCOMPARE(m_main->command(bar)->isEnabled(), granted);
        a->trigger();
        QCOMPARE(m_main->childWindow(window) != nullptr, granted);
        m_main->closeAllWindows();
    }
}

// "Otwórz firmę..." offers the suite's firms; the first choice of one makes its database.
void TestUsers::suiteFirmsOffered()
{
    using SettingsStore::Suite;
    SettingsStore::save(Suite, basKONTORIAN::ListaFirm, QStringLiteral("Pl7"), QStringLiteral("12"));
    SettingsStore::save(Suite, QStringLiteral("Spl12"), QStringLiteral("Nazwa"), QStringLiteral("Biuro Sowa"));
    SettingsStore::save(Suite, basKONTORIAN::ListaFirm, QStringLiteral("Pl3"), QString()); // no identifier
    QCOMPARE(basKONTORIAN::firmValue(QStringLiteral("7"), QStringLiteral("Brak")), QStringLiteral("0"));

    frmFirmaOpen w;
    auto *list = child<QListWidget>(&w, QStringLiteral("lstfirmy"));
    QCOMPARE(list->item(1)->text(), QStringLiteral("Biuro Sowa  (Kontorian)"));
    QSignalSpy chosen(&w, &frmFirmaOpen::chosen);
    list->setCurrentRow(1);
    click(&w, QStringLiteral("cmdok"));
    QCOMPARE(chosen.size(), 1);
    const QString path = chosen.constFirst().constFirst().toString();
    QCOMPARE(path, appState().bazyPath + QStringLiteral("kontorm_7.zlc"));
    QVERIFY(QFile::exists(path));
    QCOMPARE(basKONTORIAN::firmValue(QStringLiteral("7"), basKONTORIAN::DatabaseKey), path);
}


// The due-payments alarm of a protected program waits for a user with the right to documents.
void TestUsers::dueAlarmWaitsForLogin()
{
    QVERIFY(Users::save({{QStringLiteral("Ewa"), m_hash, {Users::Admin}},
                         {QStringLiteral("Jan"), m_hash, {QStringLiteral("Dokumenty")}}}));
    QVERIFY(UserSession::instance().reload());
    UserSession::instance().logout();
    Q_EMIT FirmEvents::instance().paymentsDue();
    QCoreApplication::processEvents();
    QVERIFY(!m_main->childWindow(QStringLiteral("frmzap_term")));
    QVERIFY(UserSession::instance().login(QStringLiteral("Ewa"), Password));
    QVERIFY(!m_main->childWindow(QStringLiteral("frmzap_term")));
    QVERIFY(UserSession::instance().login(QStringLiteral("Jan"), Password));
    QVERIFY(m_main->childWindow(QStringLiteral("frmzap_term")));
    m_main->closeAllWindows();
}

QTEST_MAIN(TestUsers)
#include "tst_users.moc"
