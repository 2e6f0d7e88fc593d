#include "frmLogin.h"

#include "Dialogs.h"
#include "Help.h"
#include "Messages.h"
#include "users/Users.h"
#include "base/ui/WindowUtil.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmLogin::frmLogin(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("Zmień użytkownika"));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    m_user = new QComboBox(this);
    m_user->setObjectName(QStringLiteral("txtuzytkownik"));
    m_user->setEditable(true);
    m_user->addItems(UserSession::instance().userNames());
    m_user->setCurrentText(UserSession::instance().currentUser());
    m_password = new QLineEdit(this);
    m_password->setObjectName(QStringLiteral("txthaslo"));
    m_password->setEchoMode(QLineEdit::Password);
    form->addRow(QStringLiteral("Użytkownik:"), m_user);
    form->addRow(QStringLiteral("Hasło:"), m_password);
    layout->addLayout(form);

    auto *buttons = new QHBoxLayout;
    auto *ok = new QPushButton(Msg(1), this);
    ok->setObjectName(QStringLiteral("cmdok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(Msg(2), this);
    cancel->setObjectName(QStringLiteral("cmdanuluj"));
    auto *help = new QPushButton(Msg(3), this);
    help->setObjectName(QStringLiteral("cmdpomoc"));
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addWidget(help);
    layout->addLayout(buttons);

    connect(ok, &QPushButton::clicked, this, &frmLogin::logIn);
    connect(m_password, &QLineEdit::returnPressed, this, &frmLogin::logIn);
    connect(cancel, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(help, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("Spis")); });
    if (!m_user->currentText().isEmpty())
        m_password->setFocus();
}

void frmLogin::logIn()
{
    QString error;
    const bool ok = UserSession::instance().login(m_user->currentText(), m_password->text(), &error);
    m_password->clear();
    if (!ok) {
        dialogs().message(error, Msg(52), Dialogs::Icon::Exclamation);
        return;
    }
    closeWindow(this);
}
