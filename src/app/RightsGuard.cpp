#include "RightsGuard.h"

#include "users/Users.h"
#include "frmglowna.h"

#include <QAction>
#include <QMenu>
#include <QPointer>

namespace {

// The commands of each area; a menu's own command stands for the whole menu.
const QList<QPair<QString, QStringList>> &areaCommands()
{
    static const QList<QPair<QString, QStringList>> map = {
        {QStringLiteral("Admin"), {QStringLiteral("mnuochrona"), QStringLiteral("mnufirmabiz"), QStringLiteral("mnuImportWin"),
                                    QStringLiteral("mnufirmaserwer")}},
        {QStringLiteral("Dane firmy"), {QStringLiteral("mnufirmadane")}},
        {QStringLiteral("Dokumenty"), {QStringLiteral("mnudokumentybar")}},
        {QStringLiteral("Raporty"), {QStringLiteral("mnuraportybar")}},
        {QStringLiteral("Slowniki"), {QStringLiteral("mnuslownikibar")}},
        {QStringLiteral("Ustawienia"), {QStringLiteral("mnuustawbar")}},
    };
    return map;
}

void apply(frmglowna &main)
{
    const UserSession &session = UserSession::instance();
    for (const auto &[area, names] : areaCommands()) {
        const bool allowed = session.allowed(area);
        for (const QString &name : names) {
            QAction *a = main.command(name);
            if (!a)
                continue;
            main.setCommandAllowed(a, allowed);
            // The commands inside a menu too, so that neither a shortcut nor the toolbar opens them.
            if (QMenu *menu = a->menu())
                for (QAction *inside : menu->actions())
                    main.setCommandAllowed(inside, allowed);
        }
    }
    main.updateCommands();
}

} // namespace

void guardByRights(frmglowna &main)
{
    QObject::connect(&UserSession::instance(), &UserSession::changed, &main,
                     [window = QPointer<frmglowna>(&main)] {
                         if (window)
                             apply(*window);
                     });
    apply(main);
}
