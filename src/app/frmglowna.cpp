#include "frmglowna.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "SettingsStore.h"
#include "StartupSettings.h"
#include "DateText.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/ServerFirms.h"
#include "documents/ui/frmKontrahenci.h"
#include "documents/ui/frmZbiorowka.h"
#include "documents/EntryRules.h"
#include "documents/ui/frmfirma.h"
#include "documents/ui/frmprzegladanie.h"
#include "documents/ui/frmprzelew.h"
#include "documents/ui/frmslzapl_term.h"
#include "documents/ui/frmzap_term.h"
#include "documents/Accounts.h"
#include "exchange/ui/frmImport.h"
#include "exchange/ui/frmImportFirm.h"
#include "frmFirmaOpen.h"
#include "users/ui/frmLogin.h"
#include "users/Users.h"
#include "users/ui/frmOchrona.h"
#include "RightsGuard.h"
#include "settings/ui/frmUstawienia.h"
#include "frmglowna_img.h"
#include "frmhotline.h"
#include "frmo.h"
#include "reports/ui/frmraport_kryteria.h"
#include "base/ui/WindowUtil.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTime>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <optional>

namespace {

const QString Title = QStringLiteral("Zlecanki");

// Windows that the frame never closes or minimises on its own.
bool spared(const QString &name)
{
    static const QStringList names = {QStringLiteral("frmFirmaOpen"), QStringLiteral("frmglowna"),
                                      QStringLiteral("frmglowna_img"), QStringLiteral("frmmsg"),
                                      QStringLiteral("frmstart")};
    return names.contains(name);
}

// The name of one command of a numbered group ("mnuzlecanki" 0 is "mnuzlecanki_0").
QString indexed(const char *name, int index)
{
    return QLatin1String(name) + QLatin1Char('_') + QString::number(index);
}

} // namespace

frmglowna::frmglowna(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmglowna"));
    setWindowTitle(Title);
    setWindowIcon(programIcon());
    resize(1024, 720);

    m_mdi = new QMdiArea(this);
    m_mdi->setObjectName(QStringLiteral("mdiArea"));
    m_mdi->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdi->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdi->setTabsClosable(true);
    m_mdi->setTabsMovable(true);
    setCentralWidget(m_mdi);

    buildMenus();
    buildToolbar();
    buildStatusBar();

    if (SettingsStore::loadBool(QStringLiteral("show_picture"), true)) {
        m_picture = new frmglowna_img(m_mdi);
        m_picture->setVisible(m_mdi->viewMode() == QMdiArea::SubWindowView);
    }

    StartupSettings::loadFontsAndPrintOptions();

    connect(&FirmEvents::instance(), &FirmEvents::opened, this, &frmglowna::LoadFirma);
    connect(&FirmEvents::instance(), &FirmEvents::closed, this, &frmglowna::UkryjMenu);
    connect(&FirmEvents::instance(), &FirmEvents::openFailed, this, &frmglowna::UkryjMenu);
    // Queued: the alarm window opens once the opening has finished and the menus are shown.
    connect(&FirmEvents::instance(), &FirmEvents::paymentsDue, this, &frmglowna::showDueAlarm, Qt::QueuedConnection);
    connect(&FirmEvents::instance(), &FirmEvents::progress, this, [this](const QString &text, int percent) {
        if (percent >= 100)
            statusBar()->clearMessage();
        else
            statusBar()->showMessage(text + QStringLiteral("... ") + QString::number(percent) + QLatin1Char('%'));
    });
    connect(m_mdi, &QMdiArea::subWindowActivated, this, &frmglowna::updateWindowList);

    if (isFirmOpen())
        LoadFirma();
    else
        UkryjMenu();
    guardByRights(*this);
}

frmglowna::~frmglowna()
{
    // The work area announces its windows going away while this window is half destroyed.
    disconnect(m_mdi, nullptr, this, nullptr);
}

void frmglowna::showDueAlarm()
{
    // A protected program shows the due payments to the first user who logs in with the
    // right to documents, never to the login screen.
    UserSession &session = UserSession::instance();
    if (!session.allowed(QStringLiteral("Dokumenty"))) {
        if (!m_alarmWaitsForLogin)
            m_alarmWaitsForLogin = connect(&session, &UserSession::changed, this, [this] {
                if (!UserSession::instance().allowed(QStringLiteral("Dokumenty")))
                    return;
                disconnect(m_alarmWaitsForLogin);
                m_alarmWaitsForLogin = {};
                if (isFirmOpen())
                    showDueAlarm();
            });
        return;
    }
    if (auto *alarm = qobject_cast<frmzap_term *>(showChild(new frmzap_term)))
        alarm->fillList();
}

QAction *frmglowna::addCommand(QMenu *menu, const QString &name, const QString &caption, std::function<void()> handler)
{
    auto *a = new QAction(caption, this);
    a->setObjectName(name);
    if (handler)
        connect(a, &QAction::triggered, this, [handler] { handler(); });
    // A command with no handler has its window not yet part of this version.
    m_commandStates.insert(a, CommandState{bool(handler)});
    if (menu)
        menu->addAction(a);
    return a;
}

void frmglowna::addSeparator(QMenu *menu, const QString &name)
{
    menu->addSeparator()->setObjectName(name);
}

void frmglowna::buildMenus()
{
    QMenuBar *bar = menuBar();

    QMenu *system = bar->addMenu(QStringLiteral("&System"));
    system->setObjectName(QStringLiteral("mnusystembar"));
    system->menuAction()->setObjectName(QStringLiteral("mnusystembar"));
    addCommand(system, QStringLiteral("mnufirmabiz"), QStringLiteral("Nowa firma"), [this] { newFirm(); });
    addCommand(system, QStringLiteral("mnufirmaserwer"), QStringLiteral("Nowa firma na &serwerze..."),
               [this] { newServerFirm(); });
    addCommand(system, QStringLiteral("mnuopen"), QStringLiteral("Otwórz firmę..."), [this] { openFirmWindow(); });
    m_firmActions << addCommand(system, QStringLiteral("mnufirmadane"), QStringLiteral("Dane firmy"), [this] {
        auto *window = new frmfirma;
        connect(window, &frmfirma::saved, this, &frmglowna::LoadFirma);
        showChild(window);
    });
    m_firmActions << addCommand(system, QStringLiteral("mnuImportWin"), QStringLiteral("Import danych"), [this] {
        auto *window = new frmImportFirm;
        connect(window, &frmImportFirm::imported, this, [this] {
            Accounts::load(Db());
            LoadFirma();
            if (auto *browse = qobject_cast<frmprzegladanie *>(childWindow(QStringLiteral("frmprzegladanie"))))
                browse->refresh();
        });
        showChild(window);
    });
    m_firmActions << addCommand(system, QStringLiteral("mnuclosedb"), QStringLiteral("Zamknij firmę"), [this] { CloseDB(); });
    addSeparator(system, QStringLiteral("mnusep7"));
    addCommand(system, QStringLiteral("mnuochrona"), QStringLiteral("Ochrona"), [this] { showChild(new frmOchrona); });
    addCommand(system, QStringLiteral("mnuuser"), QStringLiteral("Zmień użytkownika"), [this] { showChild(new frmLogin); });
    addSeparator(system, QStringLiteral("mnusep4"));
    QAction *quit = addCommand(system, QStringLiteral("mnukoniec"), QStringLiteral("Koniec"), [this] { close(); });
    quit->setShortcut(QKeySequence(Qt::ALT | Qt::Key_F4));

    QMenu *docs = bar->addMenu(QStringLiteral("&Dokumenty"));
    docs->setObjectName(QStringLiteral("mnudokumentybar"));
    docs->menuAction()->setObjectName(QStringLiteral("mnudokumentybar"));
    const char *kinds[] = {"Zlecanki Bankowe", "Bankowy dowód wpłaty", "Przekaz pocztowy na konto",
                           "Przekaz imienny", "Przelew na konto ZUS", "Przelew za podatki"};
    for (int i = 0; i < 6; ++i) {
        const auto kind = static_cast<qint16>(i + 1);
        addCommand(docs, indexed("mnuzlecanki", i), QString::fromUtf8(kinds[i]),
                   [this, kind] { showChild(new frmprzelew(EntryRules::New, kind)); });
    }
    addSeparator(docs, QStringLiteral("mnusep5"));
    addCommand(docs, QStringLiteral("mnuzbior"), QStringLiteral("Zbiorówka do przelewów"),
               [this] { showChild(new frmZbiorowka); });
    addSeparator(docs, QStringLiteral("mnusep6"));
    addCommand(docs, QStringLiteral("mnuzaplatyterm"), QStringLiteral("Zapłaty terminowe"), [this] { showChild(new frmzap_term); });
    addSeparator(docs, QStringLiteral("mnusepar"));
    addCommand(docs, QStringLiteral("mnuimport"), QStringLiteral("Import z pliku"), [this] {
        // The block goes into an open new bank transfer, else into a new one: other kinds
        // have no place for some of its values.
        showChild(new frmImport([this]() -> QWidget * {
            for (QMdiSubWindow *sub : m_mdi->subWindowList()) {
                auto *entry = qobject_cast<frmprzelew *>(sub->widget());
                if (entry && entry->mode() == EntryRules::New && entry->kind() == DocumentKinds::PrzelewBankowy) {
                    m_mdi->setActiveSubWindow(sub);
                    return entry;
                }
            }
            command(indexed("mnuzlecanki", 0))->trigger();
            return childWindow(EntryRules::windowName(EntryRules::New, 1, 0));
        }));
    });
    addSeparator(docs, QStringLiteral("mnusep13"));
    addCommand(docs, QStringLiteral("mnuprzeglad"), QStringLiteral("Przeglądanie/Korekta"),
               [this] { showChild(new frmprzegladanie); });
    m_firmActions << docs->menuAction();

    QMenu *reports = bar->addMenu(QStringLiteral("&Raporty"));
    reports->setObjectName(QStringLiteral("mnuraportybar"));
    reports->menuAction()->setObjectName(QStringLiteral("mnuraportybar"));
    const char *lists[] = {"Lista Przelewów bankowych", "Lista Bankowych dowodów wpłat", "Lista Przekazów na konto",
                           "Lista Przekazów imiennych"};
    for (int i = 0; i < 4; ++i)
        addCommand(reports, indexed("mnuraporty", i), QString::fromUtf8(lists[i]), [this, i] {
            // One criteria window serves the four lists: an open one is told which list.
            if (auto *w = qobject_cast<frmraport_kryteria *>(showChild(new frmraport_kryteria(i))))
                w->setReportKind(i);
        });
    m_firmActions << reports->menuAction();

    QMenu *dicts = bar->addMenu(QStringLiteral("Słow&niki"));
    dicts->setObjectName(QStringLiteral("mnuslownikibar"));
    dicts->menuAction()->setObjectName(QStringLiteral("mnuslownikibar"));
    addCommand(dicts, QStringLiteral("mnukontrahenci"), QStringLiteral("Kontrahenci"), [this] { showChild(new frmKontrahenci); });
    addCommand(dicts, QStringLiteral("mnuzaplat"), QStringLiteral("Zapłaty terminowe"), [this] { showChild(new frmslzapl_term); });
    m_firmActions << dicts->menuAction();

    QAction *settings = addCommand(nullptr, QStringLiteral("mnuustawbar"), QStringLiteral("&Ustawienia"), [this] { showChild(new frmUstawienia); });
    bar->addAction(settings);
    m_firmActions << settings;

    m_windowsMenu = bar->addMenu(QStringLiteral("&Okna"));
    m_windowsMenu->setObjectName(QStringLiteral("mnuoknabar"));
    m_windowsMenu->menuAction()->setObjectName(QStringLiteral("mnuoknabar"));
    QAction *toolbar = addCommand(m_windowsMenu, QStringLiteral("mnutoolbar"), QStringLiteral("Toolbar"), [] {});
    toolbar->setCheckable(true);
    connect(toolbar, &QAction::toggled, this, &frmglowna::toggleToolbar);
    QAction *status = addCommand(m_windowsMenu, QStringLiteral("mnustatus"), QStringLiteral("Status"), [] {});
    status->setCheckable(true);
    connect(status, &QAction::toggled, this, &frmglowna::toggleStatus);
    QAction *one = addCommand(m_windowsMenu, QStringLiteral("mnujednookno"), QStringLiteral("Tylko jedno na raz"), [] {});
    one->setCheckable(true);
    one->setChecked(SettingsStore::loadBool(QStringLiteral("JednoOkno"), false));
    m_mdi->setViewMode(one->isChecked() ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
    connect(one, &QAction::toggled, this, &frmglowna::toggleOneWindow);
    addSeparator(m_windowsMenu, QStringLiteral("mnusep3"));
    addCommand(m_windowsMenu, indexed("mnuokno", 0), QStringLiteral("Kaskada"), [this] { m_mdi->cascadeSubWindows(); });
    addCommand(m_windowsMenu, indexed("mnuokno", 1), QStringLiteral("Uporządkuj ikony"), [this] { arrangeIcons(); });
    addSeparator(m_windowsMenu, QStringLiteral("mnusep2"));
    addCommand(m_windowsMenu, QStringLiteral("mnucloseall"), QStringLiteral("Zamknij wszystkie"), [this] { closeAllWindows(); });
    addCommand(m_windowsMenu, QStringLiteral("mnuminall"), QStringLiteral("Zminimalizuj wszystkie"), [this] { minimiseAll(); });
    m_windowListSeparator = m_windowsMenu->addSeparator();
    m_windowListSeparator->setVisible(false);
    connect(m_windowsMenu, &QMenu::aboutToShow, this, &frmglowna::updateWindowList);

    QMenu *help = bar->addMenu(QStringLiteral("&Pomoc"));
    help->setObjectName(QStringLiteral("mnupomocbar"));
    help->menuAction()->setObjectName(QStringLiteral("mnupomocbar"));
    QAction *contents = addCommand(help, QStringLiteral("mnuspis"), QStringLiteral("Spis treści"),
                                   [] { Help::show(QStringLiteral("Spis")); });
    contents->setShortcut(QKeySequence::HelpContents);
    addCommand(help, QStringLiteral("mnuinternet"), QStringLiteral("Internet"), [] { Help::openAddress(Help::homePage()); });
    addCommand(help, QStringLiteral("mnuhotline"), QStringLiteral("Gorąca linia"), [this] { showChild(new frmhotline); });
    addSeparator(help, QStringLiteral("mnusep11"));
    addCommand(help, QStringLiteral("mnuo"), QStringLiteral("Info"), [this] { showChild(new frmo); });

    // A menu's own command is built like the others; the commands inside a firm's menu
    // need the firm as much as the menu does (a shortcut or the toolbar reaches them too).
    for (QAction *a : bar->actions())
        m_commandStates.insert(a, m_commandStates.value(a));
    for (QAction *a : std::as_const(m_firmActions)) {
        m_commandStates[a].needsFirm = true;
        if (QMenu *menu = a->menu())
            for (QAction *inside : menu->actions())
                if (m_commandStates.contains(inside))
                    m_commandStates[inside].needsFirm = true;
    }
}

void frmglowna::buildToolbar()
{
    m_toolbar = addToolBar(QStringLiteral("Toolbar"));
    m_toolbar->setObjectName(QStringLiteral("toolbar"));
    m_toolbar->setMovable(false);
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    struct Button {
        const char *command;
        QStyle::StandardPixmap icon;
        const char *text;
    };
    const Button buttons[] = {
        {"mnuopen", QStyle::SP_DirOpenIcon, "Firma"},
        {"mnuzlecanki_0", QStyle::SP_FileIcon, "Przelew"},
        {"mnuzlecanki_4", QStyle::SP_FileIcon, "ZUS"},
        {"mnuzlecanki_5", QStyle::SP_FileIcon, "Podatki"},
        {"mnuprzeglad", QStyle::SP_FileDialogDetailedView, "Przeglądanie"},
        {"mnukontrahenci", QStyle::SP_FileDialogContentsView, "Kontrahenci"},
        {"mnuraporty_0", QStyle::SP_FileDialogListView, "Raporty"},
        {"mnuustawbar", QStyle::SP_ComputerIcon, "Ustawienia"},
        {"mnuspis", QStyle::SP_DialogHelpButton, "Pomoc"},
        {"mnukoniec", QStyle::SP_DialogCloseButton, "Koniec"},
    };
    int index = 0;
    for (const Button &b : buttons) {
        QAction *a = command(QLatin1String(b.command));
        if (!a)
            continue;
        if (!a->menu() && menuBar()->actions().contains(a)) {
            // A command that stands in the menu bar itself keeps its caption there without an
            // icon: the toolbar gets a twin that follows it.
            QAction *twin = new QAction(this);
            // It stays in its place on the toolbar, disabled while its command is.
            auto follow = [a, twin] { twin->setEnabled(a->isEnabled()); };
            connect(a, &QAction::changed, twin, follow);
            connect(twin, &QAction::triggered, a, &QAction::trigger);
            follow();
            a = twin;
        }
        if (a->icon().isNull())
            a->setIcon(style()->standardIcon(b.icon));
        a->setIconText(QString::fromUtf8(b.text));
        m_toolbar->addAction(a);
        if (QWidget *w = m_toolbar->widgetForAction(a))
            w->setObjectName(indexed("Command1", index));
        ++index;
    }
    const bool shown = SettingsStore::loadBool(QStringLiteral("Toolbar"), true);
    m_toolbar->setVisible(shown);
    m_toolbar->toggleViewAction()->setVisible(false);
    command(QStringLiteral("mnutoolbar"))->setChecked(shown);
}

void frmglowna::buildStatusBar()
{
    QStatusBar *bar = statusBar();
    bar->setObjectName(QStringLiteral("status"));
    m_firmLabel = new QLabel(bar);
    m_firmLabel->setObjectName(QStringLiteral("statusFirma"));
    m_firmLabel->setMinimumWidth(260);
    bar->addWidget(m_firmLabel, 1);
    m_dateLabel = new QLabel(bar);
    m_dateLabel->setObjectName(QStringLiteral("statusData"));
    bar->addPermanentWidget(m_dateLabel);
    m_clockLabel = new QLabel(bar);
    m_clockLabel->setObjectName(QStringLiteral("statusZegar"));
    bar->addPermanentWidget(m_clockLabel);

    m_clock = new QTimer(this);
    m_clock->setObjectName(QStringLiteral("zegar"));
    m_clock->setInterval(1000);
    connect(m_clock, &QTimer::timeout, this, &frmglowna::updateClock);
    m_clock->start();
    updateClock();

    const bool shown = SettingsStore::loadBool(QStringLiteral("Status"), true);
    bar->setVisible(shown);
    command(QStringLiteral("mnustatus"))->setChecked(shown);
}

QAction *frmglowna::command(const QString &name) const
{
    return findChild<QAction *>(name);
}

void frmglowna::updateClock()
{
    m_clockLabel->setText(QTime::currentTime().toString(QStringLiteral("HH:mm")));
    m_dateLabel->setText(isFirmOpen() ? QStringLiteral("Dziś: ") + DateText::format(appState().today) : QString());
}

void frmglowna::setCommandAllowed(QAction *command, bool allowed)
{
    const auto it = m_commandStates.find(command);
    if (it != m_commandStates.end())
        it->allowed = allowed;
}

void frmglowna::updateCommands()
{
    // Qt reports a hidden action as disabled, so the enabled state is always set from the
    // facts, never read back from an action.
    const bool open = isFirmOpen();
    for (auto it = m_commandStates.cbegin(); it != m_commandStates.cend(); ++it) {
        QAction *a = it.key();
        const CommandState &state = it.value();
        if (m_firmActions.contains(a))
            a->setVisible(open);
        a->setEnabled(state.built && state.allowed && (!state.needsFirm || open));
    }
}

void frmglowna::UkryjMenu()
{
    m_firmLabel->setText(QStringLiteral("Nie została otworzona żadna firma"));
    setWindowTitle(Title);
    updateCommands();
    command(QStringLiteral("mnutoolbar"))->setChecked(SettingsStore::loadBool(QStringLiteral("toolbar"), true));
    command(QStringLiteral("mnustatus"))->setChecked(SettingsStore::loadBool(QStringLiteral("status"), true));
    m_toolbar->setVisible(command(QStringLiteral("mnutoolbar"))->isChecked());
    statusBar()->setVisible(command(QStringLiteral("mnustatus"))->isChecked());
    updateClock();
}

void frmglowna::LoadFirma()
{
    const QString name = firmDisplayName();
    setWindowTitle(Title + QStringLiteral(" - [") + name + QLatin1Char(']') +
                   (firmReadOnly() ? QStringLiteral(" (tylko do odczytu)") : QString()));
    m_firmLabel->setText(name);
    updateCommands();
    updateClock();
}

QWidget *frmglowna::childWindow(const QString &name) const
{
    for (QMdiSubWindow *sub : m_mdi->subWindowList())
        if (sub->widget() && sub->widget()->objectName() == name)
            return sub->widget();
    return nullptr;
}

QWidget *frmglowna::showChild(QWidget *window)
{
    if (QWidget *open = childWindow(window->objectName())) {
        delete window;
        QMdiSubWindow *sub = qobject_cast<QMdiSubWindow *>(open->parentWidget());
        if (sub) {
            if (sub->isMinimized())
                sub->showNormal();
            m_mdi->setActiveSubWindow(sub);
        }
        return open;
    }
    // A window that chose its own size keeps it (within the work area); the frame would
    // otherwise shrink it to its layout's hint when shown.
    const std::optional<QSize> wanted =
        window->testAttribute(Qt::WA_Resized) ? std::optional<QSize>(window->size()) : std::nullopt;
    QMdiSubWindow *sub = m_mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(windowIcon());
    window->show();
    sub->show();
    if (wanted) {
        const QSize frame = sub->size() - window->size();
        const QSize room = m_mdi->viewport()->size();
        sub->resize((*wanted + frame).boundedTo(room).expandedTo(sub->minimumSizeHint()));
        sub->move(qBound(0, sub->x(), qMax(0, room.width() - sub->width())),
                  qBound(0, sub->y(), qMax(0, room.height() - sub->height())));
    }
    m_mdi->setActiveSubWindow(sub);
    return window;
}

bool frmglowna::closeAllWindows()
{
    for (QMdiSubWindow *sub : m_mdi->subWindowList()) {
        if (sub->widget() && spared(sub->widget()->objectName()))
            continue;
        sub->close();
    }
    // Windows of the program that stand on their own (previews and the like).
    for (QWidget *w : QApplication::topLevelWidgets()) {
        if (w == this || !w->isVisible() || spared(w->objectName()) || !w->objectName().startsWith(QLatin1String("frm")))
            continue;
        w->close();
    }
    for (QMdiSubWindow *sub : m_mdi->subWindowList())
        if (!sub->widget() || !spared(sub->widget()->objectName()))
            return false;
    return true;
}

void frmglowna::minimiseAll()
{
    for (QMdiSubWindow *sub : m_mdi->subWindowList()) {
        const QString name = sub->widget() ? sub->widget()->objectName() : QString();
        if (name != QLatin1String("frmglowna_img"))
            sub->showMinimized();
    }
}

void frmglowna::arrangeIcons()
{
    // Minimised windows in a row along the bottom of the work area, left to right.
    int x = 0;
    const int bottom = m_mdi->viewport()->height();
    for (QMdiSubWindow *sub : m_mdi->subWindowList()) {
        if (!sub->isMinimized())
            continue;
        const QSize size = sub->size();
        if (x > 0 && x + size.width() > m_mdi->viewport()->width())
            x = 0;
        sub->move(x, bottom - size.height());
        x += size.width();
    }
}

void frmglowna::updateWindowList()
{
    for (QAction *a : std::as_const(m_windowListActions)) {
        m_windowsMenu->removeAction(a);
        delete a;
    }
    m_windowListActions.clear();
    const auto subs = m_mdi->subWindowList();
    int n = 0;
    for (QMdiSubWindow *sub : subs) {
        QAction *a = m_windowsMenu->addAction(QStringLiteral("&%1 %2").arg(++n).arg(sub->windowTitle()));
        a->setCheckable(true);
        a->setChecked(sub == m_mdi->activeSubWindow());
        connect(a, &QAction::triggered, this, [this, sub = QPointer<QMdiSubWindow>(sub)] {
            if (!sub)
                return;
            if (sub->isMinimized())
                sub->showNormal();
            m_mdi->setActiveSubWindow(sub);
        });
        m_windowListActions << a;
    }
    m_windowListSeparator->setVisible(!subs.isEmpty());
}

void frmglowna::toggleToolbar(bool on)
{
    m_toolbar->setVisible(on);
    SettingsStore::loadSaveBool(QStringLiteral("Toolbar"), on);
}

void frmglowna::toggleStatus(bool on)
{
    statusBar()->setVisible(on);
    SettingsStore::loadSaveBool(QStringLiteral("Status"), on);
}

void frmglowna::toggleOneWindow(bool on)
{
    // One window at a time: the work area shows its windows as tabs, one page each.
    m_mdi->setViewMode(on ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
    if (m_picture)
        m_picture->setVisible(!on);
    SettingsStore::loadSaveBool(QStringLiteral("JednoOkno"), on);
}

void frmglowna::CloseDB()
{
    closeAllWindows();
    CloseDb();
    UkryjMenu();
}

bool frmglowna::openFirm(const QString &path)
{
    if (!closeAllWindows())
        return false;
    if (!OpenDb(path))
        return false;
    SettingsStore::loadSave(QStringLiteral("OstatniaFirma"), firmFile());
    // A firm on a server has no file in the databases folder: the firm list keeps its address.
    ServerFirms::remember(firmFile());
    ServerFirms::rememberName(firmFile(), firmOwnName(Db()));
    return true;
}

void frmglowna::openStartFirm(const QString &file)
{
    QString path = file;
    if (path.isEmpty()) {
        const QString last = SettingsStore::loadGet(QStringLiteral("OstatniaFirma"));
        path = last.isEmpty() ? standardFirmPath() : last;
    }
    if (path == standardFirmPath()) {
        QString error;
        if (!ensureStandardFirm(&error)) {
            dialogs().exclamation(error, Msg(51));
            UkryjMenu();
            return;
        }
    }
    openFirm(path);
}

void frmglowna::newFirm()
{
    QString path = dialogs().saveFileName(QStringLiteral("Nowa firma"), appState().bazyPath + QStringLiteral("nowa_firma.zlc"),
                                          FirmDatabase::FileFilter);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + FirmDatabase::Extension;
    QString error;
    if (!FirmDatabase::create(path, &error)) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    openFirm(path);
}

void frmglowna::newServerFirm()
{
    // Offered: the server and database of the last server firm, for a firm of a new name.
    QString offer = QStringLiteral("postgresql://serwer:5432/biuro?schema=nowa_firma");
    const QStringList servers = ServerFirms::remembered();
    if (!servers.isEmpty())
        if (auto last = Dialect::parseAddress(servers.last())) {
            last->schema = QStringLiteral("nowa_firma");
            offer = Dialect::addressText(*last);
        }
    const auto address = askServerAddress(QStringLiteral("Adres nowej firmy na serwerze PostgreSQL"),
                                          QStringLiteral("Nowa firma na serwerze"), offer);
    if (!address)
        return;
    QString error;
    if (!FirmDatabase::create(*address, &error)) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    openFirm(*address);
}

void frmglowna::openFirmWindow()
{
    auto *w = new frmFirmaOpen;
    connect(w, &frmFirmaOpen::chosen, this, [this](const QString &path) { openFirm(path); });
    showChild(w);
}

bool frmglowna::QueryQuit()
{
    if (!dialogs().question(QStringLiteral("Zakończyć pracę?"), QStringLiteral("Koniec - Zlecanki")))
        return false;
    using StartupSettings::WindowState;
    const WindowState state = isMinimized()   ? WindowState::Minimised
                              : isMaximized() ? WindowState::Maximised
                                              : WindowState::Normal;
    StartupSettings::savePlacement(state, geometry());
    if (!closeAllWindows())
        return false;
    CloseDb();
    return true;
}

void frmglowna::closeEvent(QCloseEvent *event)
{
    if (QueryQuit())
        event->accept();
    else
        event->ignore();
}

void frmglowna::restorePlacement()
{
    const StartupSettings::Placement p = StartupSettings::loadPlacement();
    if (p.normal) {
        const QScreen *screen = QApplication::primaryScreen();
        if (!screen || screen->availableGeometry().intersects(*p.normal))
            setGeometry(*p.normal);
    }
    if (p.maximised)
        setWindowState(windowState() | Qt::WindowMaximized);
}
