#pragma once

#include <QWidget>

class QComboBox;
class QLineEdit;

// "Zmień użytkownika": logs a user in by name and password. Asked at start once users
// exist; until somebody logs in, every protected area stays closed.
class frmLogin : public QWidget {
    Q_OBJECT
public:
    explicit frmLogin(QWidget *parent = nullptr);

private:
    void logIn();
    QComboBox *m_user = nullptr;
    QLineEdit *m_password = nullptr;
};
