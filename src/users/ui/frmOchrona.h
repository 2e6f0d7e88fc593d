#pragma once

#include "users/Users.h"

#include <QList>
#include <QWidget>

class QCheckBox;
class QLineEdit;
class QListWidget;

// "Ochrona": the users of the program, their passwords and their yes/no rights over the
// areas of the main window. Every change is saved at once.
class frmOchrona : public QWidget {
    Q_OBJECT
public:
    explicit frmOchrona(QWidget *parent = nullptr);

private:
    void refresh(const QString &select = QString());
    void showUser();
    QStringList chosenRights() const;
    // Saves `changed` as the users and tells the session; false when it could not.
    bool store(const QList<Users::User> &changed);
    void addUser();
    void changeUser();
    void removeUser();

    QList<Users::User> m_users;
    QListWidget *m_list = nullptr;
    QLineEdit *m_name = nullptr;
    QLineEdit *m_password = nullptr;
    QLineEdit *m_repeat = nullptr;
    QList<QCheckBox *> m_rights;
};
