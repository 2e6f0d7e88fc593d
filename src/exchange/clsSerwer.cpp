#include "clsSerwer.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "SafeOutput.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "db/Structure.h"
#include "documents/Accounts.h"
#include "documents/ChoiceLists.h"
#include "documents/ContractorStore.h"
#include "documents/DocumentStore.h"
#include "print/DocumentSlips.h"
#include "print/PrintEngine.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString Connection = QStringLiteral("Zlecanki");
const QString Procedure = QStringLiteral("dprzelewSerwer");

// The slip being printed by the server's driver.
const SlipRecords *printing = nullptr;

// Nobody sits at the server: questions take their first answer, hints are dropped, and
// what went wrong is kept for the caller.
class ServerDialogs : public ConsoleDialogs {
public:
    ServerDialogs() { m_previous = setDialogs(this); }
    ~ServerDialogs() override { setDialogs(m_previous); }
    ServerDialogs(const ServerDialogs &) = delete;
    ServerDialogs &operator=(const ServerDialogs &) = delete;

    void message(const QString &text, const QString &, Icon icon) override
    {
        if (icon == Icon::Exclamation || icon == Icon::Critical)
            errors << text.trimmed();
    }
    bool question(const QString &, const QString &) override { return true; }
    void beep() override {}

    QStringList errors;

private:
    Dialogs *m_previous = nullptr;
};

bool fail(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

// The same firm: one file by its real path, or one schema of one database on one server
// however its address was spelt.
bool sameFirm(const QString &a, const QString &b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    if (Dialect::isAddress(a) || Dialect::isAddress(b)) {
        const auto x = Dialect::parseAddress(a);
        const auto y = Dialect::parseAddress(b);
        return x && y && Dialect::addressText(*x) == Dialect::addressText(*y);
    }
    return QFileInfo(a).canonicalFilePath() == QFileInfo(b).canonicalFilePath();
}

// The firm named by a caller: a server address in its usual spelling, or a file's full path;
// a Polish message when it names none.
std::optional<QString> firmNamed(const QString &name, QString *error)
{
    if (Dialect::isAddress(name)) {
        const auto address = Dialect::parseAddress(name, error);
        if (!address)
            return std::nullopt;
        return Dialect::addressText(*address);
    }
    const QFileInfo fi(name);
    if (name.trimmed().isEmpty() || !fi.isFile()) {
        fail(QStringLiteral("Nie ma pliku bazy firmy: %1").arg(QDir::toNativeSeparators(name)), error);
        return std::nullopt;
    }
    return fi.absoluteFilePath();
}

} // namespace

clsSerwer::clsSerwer()
{
    PrintEngine::instance().setDriver(Procedure, [](PrintEngine &engine) {
        if (printing)
            DrukPrzelewu(engine, *printing);
    });
}

clsSerwer::~clsSerwer()
{
    ZamknijBaze();
}

bool clsSerwer::OtworzBaze(const QString &path, QString *error)
{
    ZamknijBaze();
    const auto firm = firmNamed(path, error);
    if (!firm)
        return false;
    bool readOnly = false;
    QString why;
    auto db = FirmDatabase::open(*firm, Connection, &readOnly, &why);
    if (!db) {
        FirmDatabase::close(Connection);
        return fail(why, error);
    }
    if (!readOnly)
        Structure::UpgradeStructure(*db);
    m_path = *firm;
    m_readOnly = readOnly;
    return true;
}

void clsSerwer::ZamknijBaze()
{
    if (m_path.isEmpty())
        return;
    FirmDatabase::close(Connection);
    m_path.clear();
    m_readOnly = false;
}

bool clsSerwer::UruchomZBaza(const QString &path, QString *error)
{
    std::optional<QString> firm = QString();
    if (!path.isEmpty() && !(firm = firmNamed(path, error)))
        return false;
    if (!m_starter)
        return fail(QStringLiteral("Ten proces nie może uruchomić okna programu."), error);
    m_starter(*firm);
    return true;
}

bool clsSerwer::reconnectWhenLost(QString *error)
{
    QSqlDatabase db = QSqlDatabase::database(Connection, false);
    if (!Dialect::isPostgres(db))
        return true;
    // A server restarted since the last call leaves a connection that looks sound until it is
    // used: one plain question finds out before anything is written.
    if (!Dialect::broken(db)) {
        QSqlQuery probe(db);
        if (probe.exec(QStringLiteral("SELECT 1")) || !Dialect::connectionLost(probe.lastError()))
            return true;
    }
    const auto address = Dialect::parseAddress(m_path);
    QString why;
    if (address && Dialect::reconnect(db, *address, &why))
        return true;
    return fail(QStringLiteral("Utracono połączenie z serwerem bazy danych firmy i nie udało się go nawiązać ponownie. "
                               "Nic nie zostało zapisane.\n") +
                    why,
                error);
}

std::optional<qint32> clsSerwer::WystawPrzelew(const QStringList &values, const QString &reference, QString *error,
                                               Outcome *outcome)
{
    if (outcome)
        *outcome = Outcome::Refused;
    for (QChar c : reference) {
        if (c.category() == QChar::Other_Control) {
            fail(QStringLiteral("Odwołanie (drugi argument) zawiera znak sterujący."), error);
            return std::nullopt;
        }
    }
    const auto request = parseServerValues(values, error);
    if (!request)
        return std::nullopt;

    // A firm the caller opened itself stays open for its next call; any other is opened
    // for this one transfer.
    const bool keepOpen = sameFirm(m_path, request->firmPath);
    if (keepOpen ? !reconnectWhenLost(error) : !OtworzBaze(request->firmPath, error))
        return std::nullopt;
    struct Closer {
        clsSerwer *server;
        bool keep;
        ~Closer()
        {
            if (!keep)
                server->ZamknijBaze();
        }
    } closer{this, keepOpen};
    // A call made again after a lost answer gets the first answer, whatever has changed since
    // (the PDF file made by then, the printer gone).
    if (const auto earlier = findServerReference(QSqlDatabase::database(Connection, false), reference))
        return earlier;
    if (m_readOnly) {
        fail(QStringLiteral("Plik firmy jest tylko do odczytu: %1").arg(QDir::toNativeSeparators(m_path)), error);
        return std::nullopt;
    }
    // The server only ever makes a new file: checked before anything is stored.
    if (request->target == ServerRequest::Target::Pdf) {
        const QString refused = SafeOutput::refusal(request->targetName, SafeOutput::Existing::Keep);
        if (!refused.isEmpty()) {
            fail(QStringLiteral("Plik PDF (pozycja 3): ") + refused, error);
            return std::nullopt;
        }
    }

    // The printer is looked up before anything is stored, so a wrong name stores nothing.
    std::unique_ptr<PrintSurface> printer;
    if (request->target == ServerRequest::Target::Printer) {
        printer = m_printerFactory ? m_printerFactory(request->targetName) : nullptr;
        if (!printer) {
            fail(QStringLiteral("Nie ma drukarki \"%1\" (pozycja 3).").arg(request->targetName), error);
            return std::nullopt;
        }
    }

    bool contractorAdded = false;
    bool repeated = false;
    const auto id = StoreServerDocument(QSqlDatabase::database(Connection, false), *request, reference,
                                        &contractorAdded, &repeated, error);
    if (!id)
        return std::nullopt;
    // A repeated call is answered with what the first one stored; its slip is not made again.
    if (repeated)
        return id;

    // The program's window works on the same firm: its accounts and contractors follow.
    if (sameFirm(firmFile(), m_path)) {
        Accounts::load(Db());
        if (contractorAdded)
            Q_EMIT ContractorEvents::instance().changed();
    }

    if (request->target != ServerRequest::Target::None) {
        QString why;
        if (!print(*request, *id, std::move(printer), &why)) {
            fail(QStringLiteral("Dokument nr %1 zapisano, ale nie udało się go wydrukować: %2").arg(*id).arg(why), error);
            if (outcome)
                *outcome = Outcome::NotPrinted;
            return std::nullopt;
        }
    }
    return id;
}

bool clsSerwer::print(const ServerRequest &request, qint32 id, std::unique_ptr<PrintSurface> surface, QString *error)
{
    QSqlDatabase db = QSqlDatabase::database(Connection, false);
    SlipRecords records;
    const auto doc = DocumentStore::read(db, id, error);
    if (!doc)
        return false;
    records.doc = *doc;
    records.firm = FirmStore::read(db).value_or(FirmData{});

    if (request.target == ServerRequest::Target::Pdf)
        surface = std::make_unique<PdfSurface>(request.targetName, SafeOutput::Existing::Keep,
                                               QStringLiteral("Zlecanki %1").arg(id));

    // The slip follows this firm's print settings in the server's own font; the program's
    // state is put back afterwards, as its window may be working on another firm.
    const AppState saved = appState();
    readFirmSettings(db);
    appState().fontPrinter = QStringLiteral("Arial CE");

    PrintEngine &engine = PrintEngine::instance();
    const PrintEngine::SurfaceFactory previous = engine.printerFactory();
    engine.setPrinterFactory([&surface]() { return std::move(surface); });
    engine.setNextCopies(1);
    ServerDialogs quiet;
    printing = &records;
    const bool printed = engine.Drukuj(Procedure, id, QPageLayout::Portrait, false, QStringLiteral("clsSerwer"));
    printing = nullptr;
    engine.setPrinterFactory(previous);
    appState() = saved;

    if (!printed || !quiet.errors.isEmpty())
        return fail(quiet.errors.isEmpty() ? QStringLiteral("drukarka odmówiła wydruku.") : quiet.errors.join(QLatin1Char(' ')),
                    error);
    return true;
}
