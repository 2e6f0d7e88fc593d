#include "Users.h"

#include "SettingsStore.h"

#include <QFile>
#include <QFileInfo>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <sodium.h>

namespace Users {

namespace {

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

qsizetype indexOf(const QList<User> &users, const QString &name)
{
    for (qsizetype i = 0; i < users.size(); ++i)
        if (users.at(i).name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

bool keepsAdmin(const QList<User> &users)
{
    if (users.isEmpty())
        return true;
    for (const User &u : users)
        if (u.rights.contains(Admin))
            return true;
    return false;
}

QStringList knownRights(const QStringList &rights)
{
    QStringList kept;
    for (const QString &a : areas())
        if (rights.contains(a))
            kept << a;
    return kept;
}

bool ready()
{
    static const bool ok = sodium_init() >= 0;
    return ok;
}

} // namespace

const QStringList &areas()
{
    static const QStringList list = QStringLiteral("Admin,Dane firmy,Dokumenty,Raporty,Slowniki,Ustawienia")
                                        .split(QLatin1Char(','));
    return list;
}

QString filePath()
{
    return QFileInfo(SettingsStore::fileName(SettingsStore::App)).absolutePath() +
           QStringLiteral("/Zlecanki-uzytkownicy.json");
}

std::optional<QList<User>> load(QString *error)
{
    QFile f(filePath());
    if (!f.exists())
        return QList<User>{};
    const QString damaged = QStringLiteral("Plik użytkowników jest uszkodzony lub nieczytelny: ") +
                            QDir::toNativeSeparators(f.fileName());
    if (!f.open(QIODevice::ReadOnly)) {
        fail(damaged, error);
        return std::nullopt;
    }
    QJsonParseError parse{};
    const QJsonDocument doc = QJsonDocument::fromJson(f.readAll(), &parse);
    if (parse.error != QJsonParseError::NoError || !doc.isObject()) {
        fail(damaged, error);
        return std::nullopt;
    }
    QList<User> users;
    for (const QJsonValue &v : doc.object().value(QStringLiteral("uzytkownicy")).toArray()) {
        const QJsonObject o = v.toObject();
        User u;
        u.name = o.value(QStringLiteral("nazwa")).toString();
        u.hash = o.value(QStringLiteral("haslo")).toString();
        for (const QJsonValue &r : o.value(QStringLiteral("prawa")).toArray())
            u.rights << r.toString();
        if (u.name.isEmpty() || u.hash.isEmpty()) {
            fail(damaged, error);
            return std::nullopt;
        }
        u.rights = knownRights(u.rights);
        users << u;
    }
    return users;
}

bool save(const QList<User> &users, QString *error)
{
    QJsonArray list;
    for (const User &u : users)
        list.append(QJsonObject{{QStringLiteral("nazwa"), u.name},
                                {QStringLiteral("haslo"), u.hash},
                                {QStringLiteral("prawa"), QJsonArray::fromStringList(u.rights)}});
    const QString path = filePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile f(path);
    // Owner only from the first byte: the temporary file gets its rights before the write.
    if (!f.open(QIODevice::WriteOnly) || !f.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return fail(QStringLiteral("Nie można zapisać pliku użytkowników: ") + QDir::toNativeSeparators(path), error);
    f.write(QJsonDocument(QJsonObject{{QStringLiteral("uzytkownicy"), list}}).toJson());
    if (!f.commit())
        return fail(QStringLiteral("Nie można zapisać pliku użytkowników: ") + QDir::toNativeSeparators(path), error);
    return true;
}

QString hashPassword(const QString &password)
{
    if (!ready())
        return QString();
    const QByteArray utf8 = password.toUtf8();
    char out[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(out, utf8.constData(), static_cast<unsigned long long>(utf8.size()),
                          crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        return QString();
    return QString::fromLatin1(out);
}

bool checkPassword(const QString &hash, const QString &password)
{
    if (!ready() || hash.isEmpty())
        return false;
    const QByteArray h = hash.toLatin1();
    const QByteArray utf8 = password.toUtf8();
    return crypto_pwhash_str_verify(h.constData(), utf8.constData(), static_cast<unsigned long long>(utf8.size())) == 0;
}

bool addUser(QList<User> &users, const QString &name, const QString &password, const QStringList &rights,
             QString *error)
{
    if (name.trimmed().isEmpty())
        return fail(QStringLiteral("Podaj nazwę użytkownika."), error);
    if (name != name.trimmed())
        return fail(QStringLiteral("Nazwa użytkownika nie może zaczynać się ani kończyć odstępem."), error);
    if (indexOf(users, name) >= 0)
        return fail(QStringLiteral("Użytkownik \"%1\" już istnieje.").arg(name), error);
    if (password.isEmpty())
        return fail(QStringLiteral("Hasło nie może być puste."), error);
    QList<User> changed = users;
    changed << User{name, hashPassword(password), knownRights(rights)};
    if (changed.constLast().hash.isEmpty())
        return fail(QStringLiteral("Nie udało się zabezpieczyć hasła."), error);
    if (!keepsAdmin(changed))
        return fail(QStringLiteral("Musi zostać co najmniej jeden użytkownik z prawem \"Admin\"."), error);
    users = changed;
    return true;
}

bool changeUser(QList<User> &users, const QString &name, const std::optional<QString> &password,
                const QStringList &rights, QString *error)
{
    const qsizetype i = indexOf(users, name);
    if (i < 0)
        return fail(QStringLiteral("Nie ma użytkownika \"%1\".").arg(name), error);
    if (password && password->isEmpty())
        return fail(QStringLiteral("Hasło nie może być puste."), error);
    QList<User> changed = users;
    changed[i].rights = knownRights(rights);
    if (password) {
        changed[i].hash = hashPassword(*password);
        if (changed[i].hash.isEmpty())
            return fail(QStringLiteral("Nie udało się zabezpieczyć hasła."), error);
    }
    if (!keepsAdmin(changed))
        return fail(QStringLiteral("Musi zostać co najmniej jeden użytkownik z prawem \"Admin\"."), error);
    users = changed;
    return true;
}

bool removeUser(QList<User> &users, const QString &name, QString *error)
{
    const qsizetype i = indexOf(users, name);
    if (i < 0)
        return fail(QStringLiteral("Nie ma użytkownika \"%1\".").arg(name), error);
    QList<User> changed = users;
    changed.removeAt(i);
    if (!keepsAdmin(changed))
        return fail(QStringLiteral("Musi zostać co najmniej jeden użytkownik z prawem \"Admin\"."), error);
    users = changed;
    return true;
}

} // namespace Users

UserSession &UserSession::instance()
{
    static UserSession session;
    return session;
}

UserSession::UserSession()
{
    reload();
}

bool UserSession::allowed(const QString &area) const
{
    if (m_broken)
        return false;
    if (m_users.isEmpty())
        return true;
    for (const Users::User &u : m_users)
        if (u.name == m_current)
            return u.rights.contains(area);
    return false;
}

bool UserSession::login(const QString &name, const QString &password, QString *error)
{
    for (const Users::User &u : std::as_const(m_users)) {
        if (u.name.compare(name.trimmed(), Qt::CaseInsensitive) == 0 && Users::checkPassword(u.hash, password)) {
            m_current = u.name;
            Q_EMIT changed();
            return true;
        }
    }
    if (error)
        *error = QStringLiteral("Nieprawidłowa nazwa użytkownika lub hasło.");
    return false;
}

void UserSession::logout()
{
    m_current.clear();
    Q_EMIT changed();
}

bool UserSession::reload(QString *error)
{
    const auto users = Users::load(error);
    m_broken = !users;
    m_users = users.value_or(QList<Users::User>{});
    bool present = false;
    for (const Users::User &u : std::as_const(m_users))
        present = present || u.name == m_current;
    if (!present)
        m_current.clear();
    Q_EMIT changed();
    return !m_broken;
}

void UserSession::adopt(const QString &name)
{
    if (m_current.isEmpty() && m_users.size() == 1 && m_users.constFirst().name == name) {
        m_current = name;
        Q_EMIT changed();
    }
}

QStringList UserSession::userNames() const
{
    QStringList names;
    for (const Users::User &u : m_users)
        names << u.name;
    return names;
}
