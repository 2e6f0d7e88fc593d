#include "frmFirmaOpen.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/ServerFirms.h"
#include "exchange/basKONTORIAN.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString SuiteMark = QStringLiteral("kontorm:");

// The name a firm file gives itself, read without changing anything in it.
QString firmName(const QString &path)
{
    QString name;
    const QString connection = QStringLiteral("zlecanki-list-") + path;
    {
        bool readOnly = true;
        QString error;
        if (auto db = FirmDatabase::open(path, connection, &readOnly, &error))
            name = firmOwnName(*db);
    }
    FirmDatabase::close(connection);
    return name;
}

} // namespace

frmFirmaOpen::frmFirmaOpen(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmFirmaOpen"));
    setWindowTitle(QStringLiteral("Otwórz firmę"));
    auto *layout = new QVBoxLayout(this);
    auto *caption = new QLabel(QStringLiteral("Firmy:"), this);
    layout->addWidget(caption);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstfirmy"));
    caption->setBuddy(m_list);
    layout->addWidget(m_list);

    auto *buttons = new QHBoxLayout;
    auto *file = new QPushButton(QStringLiteral("&Inny plik..."), this);
    file->setObjectName(QStringLiteral("cmdplik"));
    auto *server = new QPushButton(QStringLiteral("&Firma na serwerze..."), this);
    server->setObjectName(QStringLiteral("cmdFirmaSerwer"));
    server->setToolTip(QStringLiteral("Firma w bazie PostgreSQL biura, podana adresem"));
    m_forget = new QPushButton(QStringLiteral("Usuń z &listy"), this);
    m_forget->setObjectName(QStringLiteral("cmdUsunZListy"));
    m_forget->setToolTip(QStringLiteral("Zdejmuje firmę na serwerze z tej listy; jej dane zostają na serwerze"));
    auto *ok = new QPushButton(Msg(1), this);
    ok->setObjectName(QStringLiteral("cmdok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(Msg(2), this);
    cancel->setObjectName(QStringLiteral("cmdanuluj"));
    auto *help = new QPushButton(Msg(3), this);
    help->setObjectName(QStringLiteral("cmdpomoc"));
    buttons->addWidget(file);
    buttons->addWidget(server);
    buttons->addWidget(m_forget);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addWidget(help);
    layout->addLayout(buttons);

    connect(ok, &QPushButton::clicked, this, &frmFirmaOpen::chooseSelected);
    connect(m_list, &QListWidget::itemActivated, this, &frmFirmaOpen::chooseSelected);
    connect(file, &QPushButton::clicked, this, &frmFirmaOpen::chooseFile);
    connect(server, &QPushButton::clicked, this, &frmFirmaOpen::chooseServer);
    connect(m_forget, &QPushButton::clicked, this, &frmFirmaOpen::forgetServer);
    connect(m_list, &QListWidget::currentRowChanged, this, &frmFirmaOpen::updateButtons);
    connect(cancel, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(help, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("Spis")); });
    refresh();
    resize(460, 320);
}

void frmFirmaOpen::refresh()
{
    m_list->clear();
    auto add = [this](const QString &text, const QString &path) {
        auto *item = new QListWidgetItem(text, m_list);
        item->setData(Qt::UserRole, path);
        item->setToolTip(ServerFirms::shown(path));
    };
    add(StandardFirmName, standardFirmPath());
    // The suite's firms; one without a database of this program yet gets it when chosen.
    for (const basKONTORIAN::SuiteFirm &f : basKONTORIAN::firms())
        add(f.name + QStringLiteral("  (Kontorian)"), f.database.isEmpty() ? SuiteMark + f.code : f.database);
    auto listed = [this](const QString &path) {
        for (int i = 0; i < m_list->count(); ++i)
            if (m_list->item(i)->data(Qt::UserRole).toString() == path)
                return true;
        return false;
    };
    const QFileInfoList files = QDir(appState().bazyPath)
                                    .entryInfoList({QStringLiteral("*.") + FirmDatabase::Extension}, QDir::Files,
                                                   QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &fi : files) {
        if (fi.absoluteFilePath() == QFileInfo(standardFirmPath()).absoluteFilePath() || listed(fi.absoluteFilePath()))
            continue;
        const QString name = firmName(fi.absoluteFilePath());
        add(name.isEmpty() ? fi.completeBaseName() : name + QStringLiteral("  (") + fi.fileName() + QLatin1Char(')'),
            fi.absoluteFilePath());
    }
    // The office's firms on a server, each under the name it gave itself when last open
    // here: the list never waits for a server that is down. The open firm's name is read now.
    for (const QString &address : ServerFirms::remembered()) {
        QString name = ServerFirms::rememberedName(address);
        if (isFirmOpen() && ServerFirms::same(address, firmFile())) {
            name = firmOwnName(Db());
            ServerFirms::rememberName(address, name);
        }
        add(name.isEmpty() ? address : name + QStringLiteral("  (") + address + QLatin1Char(')'), address);
    }
    const int current = [&] {
        for (int i = 0; i < m_list->count(); ++i)
            if (ServerFirms::same(m_list->item(i)->data(Qt::UserRole).toString(), firmFile()))
                return i;
        return 0;
    }();
    m_list->setCurrentRow(current);
    updateButtons();
}

void frmFirmaOpen::updateButtons()
{
    const QListWidgetItem *item = m_list->currentItem();
    m_forget->setEnabled(item && Dialect::isAddress(item->data(Qt::UserRole).toString()));
}

void frmFirmaOpen::choose(const QString &path)
{
    // Close first: opening a firm closes the program's windows anyway.
    closeWindow(this);
    Q_EMIT chosen(path);
}

void frmFirmaOpen::chooseSelected()
{
    QListWidgetItem *item = m_list->currentItem();
    if (!item) {
        dialogs().beep();
        return;
    }
    QString path = item->data(Qt::UserRole).toString();
    if (path.startsWith(SuiteMark)) {
        QString error;
        std::optional<QString> made;
        for (const basKONTORIAN::SuiteFirm &f : basKONTORIAN::firms())
            if (f.code == path.mid(SuiteMark.size()))
                made = basKONTORIAN::ensureDatabase(f, &error);
        if (!made) {
            dialogs().exclamation(error, Msg(51));
            return;
        }
        path = *made;
    }
    if (path == standardFirmPath()) {
        QString error;
        if (!ensureStandardFirm(&error)) {
            dialogs().exclamation(error, Msg(51));
            return;
        }
    }
    choose(path);
}

void frmFirmaOpen::chooseFile()
{
    const QString path = dialogs().openFileName(QStringLiteral("Otwórz firmę"), appState().bazyPath,
                                                QStringLiteral("Bazy przelewów (*.zlc *.mdb *.MDB);;Wszystkie pliki (*)"));
    if (!path.isEmpty())
        choose(path);
}

void frmFirmaOpen::chooseServer()
{
    // Offered: the chosen server firm, else the last one opened here.
    QString offer = QStringLiteral("postgresql://serwer:5432/biuro?schema=firma");
    const QListWidgetItem *item = m_list->currentItem();
    const QStringList servers = ServerFirms::remembered();
    if (item && Dialect::isAddress(item->data(Qt::UserRole).toString()))
        offer = item->data(Qt::UserRole).toString();
    else if (!servers.isEmpty())
        offer = servers.last();
    if (const auto address = askServerAddress(QStringLiteral("Adres firmy na serwerze PostgreSQL"),
                                              QStringLiteral("Firma na serwerze"), offer))
        choose(*address);
}

std::optional<QString> askServerAddress(const QString &prompt, const QString &title, const QString &offer)
{
    const std::optional<QString> given = dialogs().input(
        prompt + QStringLiteral("\n(postgresql://serwer:port/baza?schema=firma, hasło w pliku ~/.pgpass):"), title, offer);
    if (!given || given->trimmed().isEmpty())
        return std::nullopt;
    QString error;
    const auto address = Dialect::parseAddress(*given, &error);
    if (!address) {
        dialogs().exclamation(error, Msg(51));
        return std::nullopt;
    }
    return Dialect::addressText(*address);
}

void frmFirmaOpen::forgetServer()
{
    const QListWidgetItem *item = m_list->currentItem();
    const QString address = item ? item->data(Qt::UserRole).toString() : QString();
    if (!Dialect::isAddress(address)) {
        dialogs().beep();
        return;
    }
    if (!dialogs().question(QStringLiteral("Usunąć z listy firmę\n") + item->text() +
                                QStringLiteral("?\nJej dane na serwerze pozostaną bez zmian."),
                            QStringLiteral("Otwórz firmę")))
        return;
    ServerFirms::forget(address);
    refresh();
}
