#include "PrintCommand.h"

#include "AppState.h"
#include "CommandRegistry.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "print/PrintEngine.h"
#include "PrinterSurface.h"
#include "print/SlipDrivers.h"
#include "SafeOutput.h"
#include "StartupSettings.h"
#include "documents/DocumentStore.h"

#include <QDir>
#include <QFileInfo>
#include <QPrinterInfo>

#include <cstdio>
#include <optional>

namespace {

const QString Usage = QStringLiteral("Użycie: zlecanki drukuj --firma PLIK --id NR (--pdf PLIK.pdf | "
                                     "--drukarka KOLEJKA) [--kopie N] [--bez-kwoty] [--nadpisz] [--qr | --bez-qr]");

using CommandLine::err;
using CommandLine::out;

// No questions on the command line: each takes its first answer. Errors still go to
// standard error; the hints for a person at a printer ("turn the sheet over") only when
// the printout goes to a printer.
class CommandDialogs : public ConsoleDialogs {
public:
    explicit CommandDialogs(bool toPrinter) : m_toPrinter(toPrinter) { m_previous = setDialogs(this); }
    ~CommandDialogs() override { setDialogs(m_previous); }
    void message(const QString &text, const QString &title, Icon icon) override
    {
        if (icon == Icon::Information && !m_toPrinter)
            return;
        ConsoleDialogs::message(text, title, icon);
        // The back of a two-sided form waits until the sheet is back in the printer.
        if (m_toPrinter && title == QLatin1String("Druk dwustronny")) {
            std::fputs("Naciśnij Enter, gdy kartka będzie w drukarce.\n", stderr);
            char line[256];
            if (!std::fgets(line, sizeof line, stdin))
                return;
        }
    }
    bool question(const QString &, const QString &) override { return true; }

private:
    bool m_toPrinter;
    Dialogs *m_previous = nullptr;
};

struct Options {
    QString firm, pdf, queue;
    qint32 id = 0;
    int copies = 1;
    bool withAmount = true;
    bool replace = false;
    std::optional<bool> qr; // over the firm's "Kod QR na przelewach"
    QString error;
};

Options parse(const QStringList &args)
{
    Options o;
    const CommandLine::Arguments given = CommandLine::parseArguments(
        args,
        {QStringLiteral("--firma"), QStringLiteral("--id"), QStringLiteral("--pdf"), QStringLiteral("--drukarka"),
         QStringLiteral("--kopie")},
        {QStringLiteral("--bez-kwoty"), QStringLiteral("--nadpisz"), QStringLiteral("--qr"), QStringLiteral("--bez-qr")});
    if (!given.error.isEmpty()) {
        o.error = given.error;
        return o;
    }
    o.firm = given.value(QStringLiteral("--firma"));
    o.pdf = given.value(QStringLiteral("--pdf"));
    o.queue = given.value(QStringLiteral("--drukarka"));
    o.withAmount = !given.has(QStringLiteral("--bez-kwoty"));
    o.replace = given.has(QStringLiteral("--nadpisz"));
    // Of the two, the one given last holds.
    for (const QString &a : args)
        if (a == QLatin1String("--qr") || a == QLatin1String("--bez-qr"))
            o.qr = a == QLatin1String("--qr");
    const auto bad = [&](const QString &name) {
        o.error = QStringLiteral("Nieprawidłowa wartość opcji %1: \"%2\"").arg(name, given.value(name));
        return o;
    };
    bool ok = true;
    bool haveId = false;
    if (given.has(QStringLiteral("--id"))) {
        o.id = given.value(QStringLiteral("--id")).toInt(&ok);
        if (!ok || o.id <= 0)
            return bad(QStringLiteral("--id"));
        haveId = true;
    }
    if (given.has(QStringLiteral("--kopie"))) {
        o.copies = given.value(QStringLiteral("--kopie")).toInt(&ok);
        if (!ok || o.copies < 1 || o.copies > 255)
            return bad(QStringLiteral("--kopie"));
    }
    if (o.firm.isEmpty() || !haveId)
        o.error = QStringLiteral("Podaj plik firmy (--firma) i numer dokumentu (--id).");
    else if (o.pdf.isEmpty() == o.queue.isEmpty())
        o.error = QStringLiteral("Podaj jedno: plik PDF (--pdf) albo drukarkę (--drukarka).");
    return o;
}

} // namespace

int printCommand(const QStringList &args)
{
    const Options o = parse(args);
    if (!o.error.isEmpty()) {
        err(o.error);
        err(Usage);
        return 2;
    }
    QString missing;
    const QString firm = firmForCommand(o.firm, &missing);
    if (firm.isEmpty()) {
        err(missing);
        return 1;
    }
    if (!o.queue.isEmpty() && QPrinterInfo::printerInfo(o.queue).isNull()) {
        err(QStringLiteral("Nie ma drukarki \"%1\" (lpstat -p pokazuje zainstalowane).").arg(o.queue));
        return 1;
    }

    const QString pdf = o.pdf.isEmpty() ? QString() : QFileInfo(o.pdf).absoluteFilePath();
    const auto existing = o.replace ? SafeOutput::Existing::Replace : SafeOutput::Existing::Keep;
    if (!pdf.isEmpty()) {
        // Checked again once the firm is open: the firm itself is never a target.
        const QString refused = SafeOutput::refusal(pdf, existing);
        if (!refused.isEmpty()) {
            err(refused);
            return 1;
        }
    }

    CommandDialogs quiet(!o.queue.isEmpty());
    StartupSettings::loadFontsAndPrintOptions();
    if (!OpenDb(firm))
        return 1;
    QString error;
    const auto doc = DocumentStore::read(Db(), o.id, &error);
    if (!doc) {
        err(error);
        CloseDb();
        return 1;
    }

    registerSlipDrivers();
    PrintEngine &engine = PrintEngine::instance();
    engine.setPrinterFactory([&]() -> std::unique_ptr<PrintSurface> {
        if (!pdf.isEmpty())
            return std::make_unique<PdfSurface>(pdf, existing, QStringLiteral("Zlecanki %1").arg(o.id));
        auto printer = std::make_unique<PrinterSurface>(o.queue);
        if (!printer->isValid())
            return nullptr;
        return printer;
    });
    engine.setNextCopies(o.copies);
    engine.setAmountPrinted(o.withAmount);
    engine.setNextQr(o.qr);
    // The procedure the entry window uses for the kind: ZUS slips print the short name.
    const QString procedure =
        doc->rodzaj == DocumentKinds::PrzelewZus ? QStringLiteral("dprzelewZus") : QStringLiteral("dprzelew");
    const bool printed =
        engine.Drukuj(procedure, o.id, QPageLayout::Portrait, false, QStringLiteral("drukuj"));
    engine.setPrinterFactory(nullptr);
    CloseDb();
    if (!printed) {
        err(QStringLiteral("Nie udało się wydrukować dokumentu nr %1.").arg(o.id));
        return 1;
    }
    out(pdf.isEmpty() ? QStringLiteral("Wysłano do drukarki %1").arg(o.queue)
                      : QDir::toNativeSeparators(pdf));
    return 0;
}

void registerPrintCommand()
{
    CommandLine::addCommand(
        QStringLiteral("drukuj"), QStringLiteral("drukuj OPCJE"),
        QStringLiteral(
            "drukuje dokument zapisany w bazie firmy, tak jak z okna dokumentu,\n"
            "                         bez okien i pytań: --firma PLIK --id NR\n"
            "                         (--pdf PLIK.pdf | --drukarka KOLEJKA) [--kopie N] [--bez-kwoty]\n"
            "                         [--nadpisz] (zastępuje istniejący plik PDF)\n"
            "                         [--qr | --bez-qr] (kod QR na przelewie mimo ustawienia firmy)"),
        printCommand);
}
