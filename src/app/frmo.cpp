#include "frmo.h"

#include "Messages.h"
#include "Version.h"
#include "base/ui/WindowUtil.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmo::frmo(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmo"));
    setWindowTitle(QStringLiteral("Info"));
    auto *layout = new QVBoxLayout(this);
    auto *name = new QLabel(QStringLiteral("<h2>Zlecanki</h2>"), this);
    name->setObjectName(QStringLiteral("lblnazwa"));
    auto *version = new QLabel(QStringLiteral("Wersja ") + QLatin1String(ZLECANKI_VERSION), this);
    version->setObjectName(QStringLiteral("lblwersja"));
    auto *about = new QLabel(QStringLiteral(
                                 "Dokumenty płatnicze małej firmy: polecenia przelewu, bankowe dowody wpłaty,\n"
                                 "przekazy pocztowe, przelewy do ZUS i urzędu skarbowego,\n"
                                 "wydruk na blankietach z kwotą słownie, zbiorówka, raporty.\n\n"
                                 "Program pakietu Kontorian."),
                             this);
    about->setObjectName(QStringLiteral("lblopis"));
    auto *qt = new QLabel(QStringLiteral("Qt ") + QLatin1String(qVersion()), this);
    auto *ok = new QPushButton(Msg(1), this);
    ok->setObjectName(QStringLiteral("cmdok"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { closeWindow(this); });
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(about);
    layout->addWidget(qt);
    layout->addWidget(ok, 0, Qt::AlignRight);
}
