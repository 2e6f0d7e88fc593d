#include "clsSerwerBus.h"

#include "clsSerwerAdaptor.h"
#include "print/ui/PrinterSurface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QPrinterInfo>

clsSerwerBus::clsSerwerBus(QObject *parent) : QObject(parent)
{
    setObjectName(QStringLiteral("clsSerwer"));
    new clsSerwerAdaptor(this);
    m_server.setPrinterFactory([](const QString &queue) -> std::unique_ptr<PrintSurface> {
        if (QPrinterInfo::printerInfo(queue).isNull())
            return nullptr;
        auto printer = std::make_unique<PrinterSurface>(queue);
        if (!printer->isValid())
            return nullptr;
        return printer;
    });
}

clsSerwerBus::~clsSerwerBus()
{
    QDBusConnection::sessionBus().unregisterObject(Path);
}

bool clsSerwerBus::registerOnBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.registerObject(Path, this);
}

void clsSerwerBus::refuse(const QString &message)
{
    if (calledFromDBus())
        sendErrorReply(ErrorName, message);
}

bool clsSerwerBus::OtworzBaze(const QString &path)
{
    Q_EMIT called();
    // A file that cannot be opened is an answer, not an error: the caller asked whether it can.
    return m_server.OtworzBaze(path);
}

void clsSerwerBus::ZamknijBaze()
{
    Q_EMIT called();
    m_server.ZamknijBaze();
}

void clsSerwerBus::UruchomZBaza(const QString &path)
{
    Q_EMIT called();
    QString error;
    if (!m_server.UruchomZBaza(path, &error))
        refuse(error);
}

int clsSerwerBus::WystawPrzelew(const QStringList &values, const QString &second)
{
    Q_EMIT called();
    QString error;
    const auto id = m_server.WystawPrzelew(values, second, &error);
    if (!id) {
        refuse(error);
        return 0;
    }
    return *id;
}
