#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

// The program's users and their rights over the areas of the main window. The list lives
// in a file of the computer's user (~/.config/Kontorian/Zlecanki-uzytkownicy.json, next to
// the settings) that only its owner may read; a password is kept only as libsodium's salted,
// deliberately slow hash (Argon2id), never in clear.
namespace Users {

// The areas, in the order the administration window lists them.
const QStringList &areas();
inline const QString Admin = QStringLiteral("Admin");

struct User {
    QString name;
    QString hash;       // crypto_pwhash_str form ("$argon2id$...")
    QStringList rights; // the areas allowed
};

QString filePath();
// The stored users; an empty list when there is no file. Nothing (with `error`) when the
// file cannot be read or is damaged, so a damaged file never unlocks the program.
std::optional<QList<User>> load(QString *error = nullptr);
bool save(const QList<User> &users, QString *error = nullptr);

QString hashPassword(const QString &password);
bool checkPassword(const QString &hash, const QString &password);

// Changes to a list, checked: a name is given, unique (letter case aside) and has no
// blanks at its ends; a password is not empty; while users remain, one of them keeps
// the right "Admin". False, with a Polish message, when refused; the list is then as it was.
bool addUser(QList<User> &users, const QString &name, const QString &password, const QStringList &rights,
             QString *error);
bool changeUser(QList<User> &users, const QString &name, const std::optional<QString> &password,
                const QStringList &rights, QString *error);
bool removeUser(QList<User> &users, const QString &name, QString *error);

} // namespace Users

// Who works with the program now. With no users defined everything is allowed and nobody
// logs in; once there are users, an area is allowed only by the logged-in user's right.
class UserSession : public QObject {
    Q_OBJECT
public:
    static UserSession &instance();

    bool usersDefined() const { return !m_users.isEmpty(); }
    QString currentUser() const { return m_current; }
    bool allowed(const QString &area) const;

    // Logs `name` in when the password fits; otherwise a Polish message and nobody changes.
    bool login(const QString &name, const QString &password, QString *error = nullptr);
    void logout();
    // Reads the users again (after the administration saved them); a logged-in user that
    // is gone is logged out. False when the file cannot be read: then nothing is allowed.
    bool reload(QString *error = nullptr);
    // After the very first user was added by someone not logged in (nothing was protected):
    // that someone becomes the new user.
    void adopt(const QString &name);
    QStringList userNames() const;

Q_SIGNALS:
    void changed();

private:
    UserSession();
    QList<Users::User> m_users;
    bool m_broken = false;
    QString m_current;
};
