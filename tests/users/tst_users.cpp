#include "RecordingDialogs.h"
#include "TestEnv.h"
#include "TestFirm.h"
#include "TestWidgets.h"
#include "users/Users.h"
#include "documents/Firm.h"
#include "app/frmglowna.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
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
    void areaAnswersToRight();

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
}

void TestUsers::rules_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("message");

    QTest::newRow("name taken, letter case aside") << "add" << "EWA" << "x" << "już istnieje";
    QTest::newRow("blank at the end") << "add" << "Ola " << "x" << "odstępem";
    QTest::newRow("empty password") << "add" << "Ola" << "" << "nie może być puste";
    QTest::newRow("last admin loses the right") << "revoke" << "Ewa" << "" << "prawem \"Admin\"";
    QTest::newRow("last admin removed while others stay") << "remove" << "Ewa" << "" << "prawem \"Admin\"";
}

void TestUsers::rules()
{
    QFETCH(QString, step);
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(QString, message);
    QList<Users::User> users = {{QStringLiteral("Ewa"), m_hash, Users::areas()},
                                {QStringLiteral("Jan"), m_hash, {QStringLiteral("Dokumenty")}}};
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
    m_main->command(QStringLiteral("mnuochrona"))->trigger();
    QWidget *ochrona = m_main->childWindow(QStringLiteral("frmOchrona"));
    QVERIFY(ochrona);
    fill(ochrona, {{"txtnazwa", "Ewa"}, {"txthaslo", "tajne hasło"}, {"txthaslo2", "tajne hasło"}});
    click(ochrona, QStringLiteral("cmdnowy"));
    QCOMPARE(UserSession::instance().currentUser(), QStringLiteral("Ewa"));
    // A second user, with documents only; the password typed twice differently is refused.
    fill(ochrona, {{"txtnazwa", "Jan"}, {"txthaslo", "abc"}, {"txthaslo2", "abd"}});
    click(ochrona, QStringLiteral("cmdnowy"));
    QVERIFY(m_dialogs->saw(QStringLiteral("różnią")));
    fill(ochrona, {{"txtnazwa", "Jan"}, {"txthaslo", "abc"}, {"txthaslo2", "abc"}});
    for (int i = 0; i < Users::areas().size(); ++i)
        child<QAbstractButton>(ochrona, QStringLiteral("chkprawo_%1").arg(i))->setChecked(Users::areas().at(i) == QLatin1String("Dokumenty"));
    click(ochrona, QStringLiteral("cmdnowy"));

    m_main->command(QStringLiteral("mnuuser"))->trigger();
    QWidget *login = m_main->childWindow(QStringLiteral("frmLogin"));
    QVERIFY(login);
    child<QComboBox>(login, QStringLiteral("txtuzytkownik"))->setCurrentText(QStringLiteral("Jan"));
    fill(login, {{"txthaslo", "abd"}});
    click(login, QStringLiteral("cmdok"));
    QVERIFY(m_dialogs->saw(QStringLiteral("Nieprawidłowa nazwa użytkownika lub hasło.")));
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

// Each command and its menu answer to their own area's right, whatever other rights the user has.
void TestUsers::areaAnswersToRight()
{
    // In the order of the areas: a command, the window it opens and its menu.
    const char *const commands[][3] = {{"mnuochrona", "frmOchrona", "mnuochrona"},
                                       {"mnufirmadane", "frmfirma", "mnufirmadane"},
                                       {"mnuzlecanki_0", "frmprzelew_1", "mnuzlecanki_0"},
                                       {"mnuraporty_0", "frmraport_kryteria", "mnuraportybar"},
                                       {"mnukontrahenci", "frmKontrahenci", "mnukontrahenci"},
                                       {"mnuustawbar", "frmUstawienia", "mnuustawbar"}};
    for (const QString &area : Users::areas()) {
        QStringList others = Users::areas();
        others.removeAll(area);
        QVERIFY(Users::save({{QStringLiteral("Ewa"), m_hash, {Users::Admin}}, {QStringLiteral("Jan"), m_hash, others}}));
        QVERIFY(UserSession::instance().reload());
        QVERIFY(UserSession::instance().login(QStringLiteral("Jan"), Password));
        for (int i = 0; i < 6; ++i) {
            const bool granted = Users::areas().at(i) != area;
            QCOMPARE(m_main->command(commands[i][2])->isEnabled(), granted);
            m_main->command(commands[i][0])->trigger();
            QCOMPARE(m_main->childWindow(commands[i][1]) != nullptr, granted);
            m_main->closeAllWindows();
        }
    }

    // The due-payments alarm of a protected program waits for a user with the right to documents.
    QVERIFY(UserSession::instance().login(QStringLiteral("Ewa"), Password));
    Q_EMIT FirmEvents::instance().paymentsDue();
    QCoreApplication::processEvents();
    QVERIFY(!m_main->childWindow(QStringLiteral("frmzap_term")));
    QVERIFY(UserSession::instance().login(QStringLiteral("Jan"), Password));
    QVERIFY(m_main->childWindow(QStringLiteral("frmzap_term")));
    m_main->closeAllWindows();
}

QTEST_MAIN(TestUsers)
#include "tst_users.moc"
