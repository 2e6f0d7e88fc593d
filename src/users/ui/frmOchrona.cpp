#include "frmOchrona.h"

#include "Dialogs.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmOchrona::frmOchrona(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmOchrona"));
    setWindowTitle(QStringLiteral("Ochrona"));
    auto *layout = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstuzytkownicy"));
    layout->addWidget(m_list);

    auto *right = new QVBoxLayout;
    auto *form = new QFormLayout;
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("txtnazwa"));
    m_password = new QLineEdit(this);
    m_password->setObjectName(QStringLiteral("txthaslo"));
    m_password->setEchoMode(QLineEdit::Password);
    m_repeat = new QLineEdit(this);
    m_repeat->setObjectName(QStringLiteral("txthaslo2"));
    m_repeat->setEchoMode(QLineEdit::Password);
    form->addRow(QStringLiteral("Użytkownik:"), m_name);
    form->addRow(QStringLiteral("Hasło:"), m_password);
    form->addRow(QStringLiteral("Powtórz hasło:"), m_repeat);
    right->addLayout(form);
    auto *rights = new QGroupBox(QStringLiteral("Prawa"), this);
    auto *rightsLayout = new QVBoxLayout(rights);
    for (int i = 0; i < Users::areas().size(); ++i) {
        auto *box = new QCheckBox(Users::areas().at(i), rights);
        box->setObjectName(QStringLiteral("chkprawo_") + QString::number(i));
        rightsLayout->addWidget(box);
        m_rights << box;
    }
    right->addWidget(rights);

    auto *buttons = new QHBoxLayout;
    const struct {
        const char *name;
        int caption;
        void (frmOchrona::*slot)();
    } commands[] = {{"cmdnowy", 6, &frmOchrona::addUser},
                    {"cmdzmien", 7, &frmOchrona::changeUser},
                    {"cmdusun", 8, &frmOchrona::removeUser}};
    for (const auto &c : commands) {
        auto *b = new QPushButton(Msg(c.caption), this);
        b->setObjectName(QLatin1String(c.name));
        connect(b, &QPushButton::clicked, this, c.slot);
        buttons->addWidget(b);
    }
    auto *close = new QPushButton(Msg(4), this);
    close->setObjectName(QStringLiteral("cmdkoniec"));
    auto *help = new QPushButton(Msg(3), this);
    help->setObjectName(QStringLiteral("cmdpomoc"));
    buttons->addWidget(close);
    buttons->addWidget(help);
    right->addLayout(buttons);
    right->addStretch();
    layout->addLayout(right);

    connect(m_list, &QListWidget::currentRowChanged, this, &frmOchrona::showUser);
    connect(close, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(help, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("Spis")); });
    refresh();
}

void frmOchrona::refresh(const QString &select)
{
    QString error;
    const auto users = Users::load(&error);
    if (!users)
        dialogs().exclamation(error, Msg(51));
    m_users = users.value_or(QList<Users::User>{});
    const QSignalBlocker block(m_list);
    m_list->clear();
    int row = m_users.isEmpty() ? -1 : 0;
    for (int i = 0; i < m_users.size(); ++i) {
        m_list->addItem(m_users.at(i).name);
        if (m_users.at(i).name == select)
            row = i;
    }
    m_list->setCurrentRow(row);
    showUser();
}

void frmOchrona::showUser()
{
    const int row = m_list->currentRow();
    const bool none = row < 0 || row >= m_users.size();
    m_name->setText(none ? QString() : m_users.at(row).name);
    m_password->clear();
    m_repeat->clear();
    for (int i = 0; i < m_rights.size(); ++i)
        // The first user gets every right: someone must be able to come back here.
        m_rights.at(i)->setChecked(none ? m_users.isEmpty() : m_users.at(row).rights.contains(Users::areas().at(i)));
}

QStringList frmOchrona::chosenRights() const
{
    QStringList rights;
    for (int i = 0; i < m_rights.size(); ++i)
        if (m_rights.at(i)->isChecked())
            rights << Users::areas().at(i);
    return rights;
}

bool frmOchrona::store(const QList<Users::User> &changed)
{
    QString error;
    if (!Users::save(changed, &error)) {
        dialogs().exclamation(error, Msg(51));
        return false;
    }
    UserSession::instance().reload();
    return true;
}

void frmOchrona::addUser()
{
    QString error;
    if (m_password->text() != m_repeat->text()) {
        dialogs().exclamation(QStringLiteral("Hasło i jego powtórzenie się różnią."), Msg(55));
        return;
    }
    const bool wasOpen = m_users.isEmpty();
    QList<Users::User> changed = m_users;
    const QString name = m_name->text();
    if (!Users::addUser(changed, name, m_password->text(), chosenRights(), &error)) {
        dialogs().exclamation(error, Msg(55));
        return;
    }
    if (!store(changed))
        return;
    if (wasOpen)
        UserSession::instance().adopt(name);
    refresh(name);
}

void frmOchrona::changeUser()
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_users.size()) {
        dialogs().beep();
        return;
    }
    if (m_password->text() != m_repeat->text()) {
        dialogs().exclamation(QStringLiteral("Hasło i jego powtórzenie się różnią."), Msg(55));
        return;
    }
    const QString name = m_users.at(row).name;
    const std::optional<QString> password =
        m_password->text().isEmpty() ? std::nullopt : std::optional<QString>(m_password->text());
    QList<Users::User> changed = m_users;
    QString error;
    if (!Users::changeUser(changed, name, password, chosenRights(), &error)) {
        dialogs().exclamation(error, Msg(55));
        return;
    }
    if (store(changed))
        refresh(name);
}

void frmOchrona::removeUser()
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_users.size()) {
        dialogs().beep();
        return;
    }
    const QString name = m_users.at(row).name;
    if (!dialogs().question(Msg(56) + name + QStringLiteral(" ?"), QStringLiteral("Ochrona")))
        return;
    QList<Users::User> changed = m_users;
    QString error;
    if (!Users::removeUser(changed, name, &error)) {
        dialogs().exclamation(error, Msg(55));
        return;
    }
    if (store(changed))
        refresh();
}
