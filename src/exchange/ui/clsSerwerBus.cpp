#include "clsSerwerBus.h"

#include "clsSerwerAdaptor.h"
#include "db/Dialect.h"
#include "print/ui/PrinterSurface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
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

void clsSerwerBus::refuse(const QString &message, const QString &name)
{
    if (calledFromDBus())
        sendErrorReply(name, message);
}

bool clsSerwerBus::OtworzBaze(const QString &path)
{
    Q_EMIT called();
    // Only a full path names one file whatever the server's working folder is.
    if (!Dialect::isAddress(path) && !QDir::isAbsolutePath(path)) {
        refuse(QStringLiteral("Plik bazy firmy trzeba podać pełną ścieżką: \"%1\".").arg(path));
        return false;
    }
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
    if (!path.isEmpty() && !Dialect::isAddress(path) && !QDir::isAbsolutePath(path))
        refuse(QStringLiteral("Plik bazy firmy trzeba podać pełną ścieżką: \"%1\".").arg(path));
    else if (!m_server.UruchomZBaza(path, &error))
        refuse(error);
}

int clsSerwerBus::WystawPrzelew(const QStringList &values, const QString &reference)
{
    Q_EMIT called();
    QString error;
    clsSerwer::Outcome outcome = clsSerwer::Outcome::Refused;
    const auto id = m_server.WystawPrzelew(values, reference, &error, &outcome);
    if (!id) {
        refuse(error, outcome == clsSerwer::Outcome::NotPrinted ? NotPrintedName : ErrorName);
        return 0;
    }
    return *id;
}
