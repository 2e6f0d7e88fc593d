#include "frmhotline.h"

#include "AppState.h"
#include "documents/Firm.h"
#include "Messages.h"
#include "SettingsStore.h"
#include "Version.h"
#include "db/Dialect.h"
#include "db/ServerFirms.h"
#include "base/ui/WindowUtil.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QTextBrowser>
#include <QVBoxLayout>

frmhotline::frmhotline(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmhotline"));
    setWindowTitle(QStringLiteral("Gorąca linia"));
    auto *layout = new QVBoxLayout(this);
    // A firm on a server is not in the databases folder: its copy is made on the server.
    const bool onServer = isFirmOpen() && Dialect::isAddress(firmFile());
    auto *intro = new QLabel(QStringLiteral("Zanim zadzwonisz do pomocy technicznej, przygotuj poniższe dane.\n") +
                                 (onServer ? QStringLiteral("Kopię zapasową firmy na serwerze robi administrator "
                                                            "serwera (pg_dump).")
                                           : QStringLiteral("Kopię zapasową zrób, kopiując cały folder baz firm.")),
                             this);
    auto *details = new QTextBrowser(this);
    details->setObjectName(QStringLiteral("txtdane"));
    const AppState &s = appState();
    QString text = QStringLiteral("Program: Zlecanki ") + QLatin1String(ZLECANKI_VERSION) + QLatin1Char('\n');
    text += QStringLiteral("System: ") + QSysInfo::prettyProductName() + QStringLiteral(", Qt ") +
            QLatin1String(qVersion()) + QLatin1Char('\n');
    text += QStringLiteral("Otwarta firma: ") +
            (isFirmOpen() ? ServerFirms::shown(firmFile()) : QStringLiteral("brak")) + QLatin1Char('\n');
    text += QStringLiteral("Folder baz firm: ") + QDir::toNativeSeparators(s.bazyPath) + QLatin1Char('\n');
    text += QStringLiteral("Plik ustawień: ") + QDir::toNativeSeparators(SettingsStore::fileName(SettingsStore::App));
    details->setPlainText(text);
    auto *ok = new QPushButton(Msg(1), this);
    ok->setObjectName(QStringLiteral("cmdok"));
    connect(ok, &QPushButton::clicked, this, [this] { closeWindow(this); });
    layout->addWidget(intro);
    layout->addWidget(details);
    layout->addWidget(ok, 0, Qt::AlignRight);
    resize(520, 260);
}
