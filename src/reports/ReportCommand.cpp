#include "ReportCommand.h"

#include "AppState.h"
#include "CommandRegistry.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "ReportRegister.h"
#include "ReportWorkbook.h"
#include "SafeOutput.h"
#include "StartupSettings.h"
#include "print/PrintEngine.h"
#include "print/SlipDrivers.h"
#include "reports/ReportPrintout.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace {

const QString Usage = QStringLiteral("Użycie: zlecanki raport --firma PLIK --rodzaj 1..4 (--rok RRRR | --miesiac M | "
                                     "--od dd-mm-rrrr --do dd-mm-rrrr) [--xlsx PLIK.xlsx] [--pdf PLIK.pdf] [--nadpisz]");

using CommandLine::err;

struct Options {
    QString firm, xlsx, pdf;
    Reports::Criteria criteria;
    bool replace = false;
    QString error;
};

Options parse(const QStringList &args)
{
    Options o;
    const CommandLine::Arguments given =
        CommandLine::parseArguments(args,
                                    {QStringLiteral("--firma"), QStringLiteral("--rodzaj"), QStringLiteral("--rok"),
                                     QStringLiteral("--miesiac"), QStringLiteral("--od"), QStringLiteral("--do"),
                                     QStringLiteral("--xlsx"), QStringLiteral("--pdf")},
                                    {QStringLiteral("--nadpisz")});
    if (!given.error.isEmpty()) {
        o.error = given.error;
        return o;
    }
    o.replace = given.has(QStringLiteral("--nadpisz"));
    const QHash<QString, QString> &values = given.values;
    const auto bad = [&](const QString &name) {
        o.error = QStringLiteral("Nieprawidłowa wartość opcji %1: \"%2\"").arg(name, values.value(name));
        return o;
    };
    o.firm = values.value(QStringLiteral("--firma"));
    o.xlsx = values.value(QStringLiteral("--xlsx"));
    o.pdf = values.value(QStringLiteral("--pdf"));
    if (o.firm.isEmpty() || !values.contains(QStringLiteral("--rodzaj"))) {
        o.error = QStringLiteral("Podaj plik firmy (--firma) i rodzaj listy (--rodzaj 1..4).");
        return o;
    }
    bool ok = false;
    const int kind = values.value(QStringLiteral("--rodzaj")).toInt(&ok);
    if (!ok || kind < 1 || kind > Reports::KindCount)
        return bad(QStringLiteral("--rodzaj"));
    o.criteria.kindIndex = kind - 1;

    Reports::Period &p = o.criteria.period;
    const bool year = values.contains(QStringLiteral("--rok"));
    const bool month = values.contains(QStringLiteral("--miesiac"));
    const bool range = values.contains(QStringLiteral("--od")) || values.contains(QStringLiteral("--do"));
    if (int(year) + int(month) + int(range) != 1) {
        o.error = QStringLiteral("Podaj jeden okres: --rok, --miesiac albo --od i --do.");
        return o;
    }
    if (year) {
        p.kind = Reports::PeriodKind::Year;
        p.year = values.value(QStringLiteral("--rok")).toInt(&ok);
        if (!ok || p.year < 1900 || p.year > 9999)
            return bad(QStringLiteral("--rok"));
    } else if (month) {
        p.kind = Reports::PeriodKind::Month;
        p.month = values.value(QStringLiteral("--miesiac")).toInt(&ok);
        if (!ok || p.month < 1 || p.month > 12)
            return bad(QStringLiteral("--miesiac"));
    } else {
        p.kind = Reports::PeriodKind::Range;
        p.firstText = values.value(QStringLiteral("--od"));
        p.lastText = values.value(QStringLiteral("--do"));
        o.error = Reports::periodFault(p);
    }
    return o;
}

} // namespace

int reportCommand(const QStringList &args)
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
    const auto existing = o.replace ? SafeOutput::Existing::Replace : SafeOutput::Existing::Keep;
    for (const QString &target : {o.xlsx, o.pdf}) {
        const QString refused = target.isEmpty() ? QString() : SafeOutput::refusal(target, existing);
        if (!refused.isEmpty()) {
            err(QStringLiteral("Raport nie został zapisany: ") + refused);
            return 1;
        }
    }
    StartupSettings::loadFontsAndPrintOptions();
    if (!OpenDb(firm))
        return 1;
    QString error;
    Reports::Criteria criteria = o.criteria;
    criteria.choiceInMemory = firmReadOnly();
    const auto list = Reports::buildRegister(Db(), criteria, &error);
    if (!list) {
        err(error);
        CloseDb();
        return 1;
    }
    const Reports::Report report{Reports::makeHeading(Db(), o.criteria, appState().today), *list};

    int code = 0;
    if (!o.xlsx.isEmpty() && !ReportWorkbook::write(QFileInfo(o.xlsx).absoluteFilePath(), report, existing, &error)) {
        err(QStringLiteral("Raport nie został zapisany: ") + error);
        code = 1;
    }
    if (!o.pdf.isEmpty()) {
        const QString pdf = QFileInfo(o.pdf).absoluteFilePath();
        registerSlipDrivers();
        registerReportDriver();
        PrintEngine &engine = PrintEngine::instance();
        engine.setPrinterFactory([&]() -> std::unique_ptr<PrintSurface> {
            return std::make_unique<PdfSurface>(pdf, existing, Reports::reportName(o.criteria.kindIndex));
        });
        engine.setNextCopies(1);
        const bool printed = engine.Drukuj(QStringLiteral("raport"), QVariant::fromValue(report),
                                           QPageLayout::Portrait, false, QStringLiteral("raport"));
        engine.setPrinterFactory(nullptr);
        if (!printed) {
            err(QStringLiteral("Nie udało się wydrukować raportu do %1.").arg(QDir::toNativeSeparators(pdf)));
            code = 1;
        }
    }
    CloseDb();
    QByteArray text;
    for (const QString &line : list->lines())
        text += line.toLocal8Bit() + '\n';
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    return code;
}

void registerReportCommand()
{
    CommandLine::addCommand(
        QStringLiteral("raport"), QStringLiteral("raport OPCJE"),
        QStringLiteral("wypisuje listę dokumentów jednego rodzaju z okresu, z sumą \"Ogółem\",\n"
                       "                         i zapisuje ją do arkusza lub PDF: --firma PLIK --rodzaj 1..4\n"
                       "                         (--rok RRRR | --miesiac M | --od dd-mm-rrrr --do dd-mm-rrrr)\n"
                       "                         [--xlsx PLIK.xlsx] [--pdf PLIK.pdf]"),
        reportCommand);
}
