#pragma once

#include "base/ui/WindowHost.h"
#include <QHash>
#include <QMainWindow>

#include <functional>

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QTimer;
class QToolBar;
class frmglowna_img;

// The program's frame: every other window lives in its work area. It carries the menu,
// the toolbar, the status bar with the firm and a clock, and knows whether a firm is open.
class frmglowna : public QMainWindow, public WindowHost {
    Q_OBJECT
public:
    explicit frmglowna(QWidget *parent = nullptr);
    ~frmglowna() override;

    QMdiArea *mdiArea() const { return m_mdi; }
    // A menu command by its name ("mnuopen", "mnuzlecanki_0").
    QAction *command(const QString &name) const;
    // The logged-in user's right to a command (all commands are allowed until told otherwise).
    void setCommandAllowed(QAction *command, bool allowed);
    // Enables and shows each command from three separate facts: it is part of this version,
    // the user has the right to it, and the firm it needs is open.
    void updateCommands();

    // Shows a child window in the work area. A window of the same name already open is
    // brought forward instead and `window` is deleted. Returns the window shown.
    QWidget *showChild(QWidget *window) override;
    QWidget *childWindow(const QString &name) const override;

    // Opens the firm to work with at start: the given file, else the last firm used,
    // else the default firm (created on the very first start).
    void openStartFirm(const QString &file = QString());
    // Closes the windows and opens `path` as the firm. Returns success.
    bool openFirm(const QString &path);

    void UkryjMenu();
    void LoadFirma();
    void CloseDB();
    // Closes every window but the frame's own ones; false when one refused to close.
    bool closeAllWindows();
    void minimiseAll();
    void arrangeIcons();
    // Asks "Zakończyć pracę?"; on Yes saves the placement, closes windows and the firm.
    bool QueryQuit();
    // Puts the window where it was at the last quit.
    void restorePlacement();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void showDueAlarm();
    QMetaObject::Connection m_alarmWaitsForLogin;
    void buildMenus();
    void buildToolbar();
    void buildStatusBar();
    QAction *addCommand(QMenu *menu, const QString &name, const QString &caption,
                        std::function<void()> handler = {});
    void addSeparator(QMenu *menu, const QString &name);
    void updateClock();
    void updateWindowList();
    void newFirm();
    void newServerFirm();
    void openFirmWindow();
    void toggleToolbar(bool on);
    void toggleStatus(bool on);
    void toggleOneWindow(bool on);

    QMdiArea *m_mdi = nullptr;
    QToolBar *m_toolbar = nullptr;
    QLabel *m_firmLabel = nullptr;
    QLabel *m_dateLabel = nullptr;
    QLabel *m_clockLabel = nullptr;
    QTimer *m_clock = nullptr;
    QMenu *m_windowsMenu = nullptr;
    QAction *m_windowListSeparator = nullptr;
    QList<QAction *> m_windowListActions;
    frmglowna_img *m_picture = nullptr;
    // The menus and commands that need an open firm; hidden without one.
    QList<QAction *> m_firmActions;
    struct CommandState {
        bool built = true;
        bool allowed = true;
        bool needsFirm = false;
    };
    QHash<QAction *, CommandState> m_commandStates;
};
