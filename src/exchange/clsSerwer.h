#pragma once

#include "ServerDocument.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class PrintSurface;

// The automation class that the suite's other programs drive: open a firm database,
// issue and print a bank transfer for a contractor, close the database, or start the
// program's window on a firm. It works on a connection of its own ("Zlecanki"), so a
// firm open in the program's window is left alone; when both are the same firm the
// window's account list and contractors are brought up to date after a store.
// No windows and no questions: failures come back as Polish messages.
class clsSerwer {
public:
    // A printer queue by name; nullptr when there is no such printer.
    using PrinterFactory = std::function<std::unique_ptr<PrintSurface>(const QString &queue)>;
    using Starter = std::function<void(const QString &firmPath)>;

    clsSerwer();
    ~clsSerwer();
    clsSerwer(const clsSerwer &) = delete;
    clsSerwer &operator=(const clsSerwer &) = delete;

    // Opens a firm database, a file or a server address (the one kept open until ZamknijBaze);
    // false, with the reason in `error`, when it is missing or is not a firm's database.
    bool OtworzBaze(const QString &path, QString *error = nullptr);
    void ZamknijBaze();
    bool isOpen() const { return !m_path.isEmpty(); }
    QString openPath() const { return m_path; }

    // Starts the program's window on the firm, through the starter the host installed.
    bool UruchomZBaza(const QString &path, QString *error = nullptr);

    // How a call that gave no Id ended.
    enum class Outcome {
        Refused,    // nothing was stored
        NotPrinted, // the document was stored (its Id is in the message) but not printed
    };

    // Issues one bank transfer from the fourteen values (see ServerRequest), prints it when
    // position 3 asks, and returns the new document's Id. A bad request stores nothing.
    // `reference` is the caller's own name for the transfer: a non-empty one already
    // stored gives that document's Id again, and nothing is stored or printed.
    std::optional<qint32> WystawPrzelew(const QStringList &values, const QString &reference, QString *error = nullptr,
                                        Outcome *outcome = nullptr);

    void setPrinterFactory(PrinterFactory factory) { m_printerFactory = std::move(factory); }
    void setStarter(Starter starter) { m_starter = std::move(starter); }

private:
    // The kept firm's server connection made again when it was lost since the last call.
    bool reconnectWhenLost(QString *error);
    bool print(const ServerRequest &request, qint32 id, std::unique_ptr<PrintSurface> surface, QString *error);

    QString m_path; // the open firm's file or server address, empty when none
    bool m_readOnly = false;
    PrinterFactory m_printerFactory;
    Starter m_starter;
};
