#include "CommandLine.h"

#include "CommandRegistry.h"

#include "AppState.h"
#include "DateText.h"
#include "Messages.h"
#include "Money.h"
#include "Version.h"
#include "validation/CheckDigits.h"
#include "validation/Sprawdz.h"
#include "words/Slownie.h"
#include "db/Dialect.h"
#include "db/FirmDatabase.h"
#include "documents/ChoiceLists.h"
#include "exchange/BankFile.h"
#include "documents/Firm.h"

#include <QDir>
#include <QFileInfo>

#include <functional>

namespace CommandLine {

namespace {



int newFirm(const QStringList &args)
{
    if (args.size() != 1) {
        err(QStringLiteral("Użycie: zlecanki nowa-firma PLIK"));
        return 2;
    }
    QString path = args.first();
    const bool onServer = Dialect::isAddress(path);
    if (!onServer && QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + FirmDatabase::Extension;
    QString error;
    if (!FirmDatabase::create(path, &error)) {
        err(error);
        return 1;
    }
    out(onServer ? path.trimmed() : QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
    return 0;
}

int spellAmount(const QStringList &args)
{
    if (args.size() != 1) {
        err(QStringLiteral("Użycie: zlecanki slownie KWOTA"));
        return 2;
    }
    const auto amount = Money::parse(args.first());
    if (!amount) {
        err(QLatin1Char('\'') + args.first() + Msg(101));
        return 2;
    }
    if (amount->units() % Money::GroszScale != 0) {
        err(QStringLiteral("Kwota może mieć najwyżej dwa miejsca po przecinku: ") + args.first());
        return 2;
    }
    const Wording w = wordingOf(*amount);
    if (w.overLimit) {
        out(overLimitMessage(*amount));
        out(w.text);
        return 1;
    }
    out(w.text);
    return 0;
}

int checkField(const QStringList &args)
{
    if (args.size() != 2 || !Sprawdz::isKnownKind(args.first())) {
        err(QStringLiteral("Użycie: zlecanki sprawdz RODZAJ TEKST (RODZAJ: data, cur, num, int, kodpoczt, nip, pesel)"));
        return 2;
    }
    const Sprawdz::Outcome outcome = Sprawdz::check(args.at(0), args.at(1));
    if (outcome.ok) {
        out(QStringLiteral("OK"));
        return 0;
    }
    out(outcome.message);
    if (!outcome.reason.isEmpty())
        out(outcome.reason);
    return 1;
}

// Check digits and the tax micro-account: answers on one line, exit 1 for a wrong number.
int checkDigits(const QStringList &args)
{
    using Check = std::optional<QString> (*)(const QString &);
    static const QList<std::pair<QString, Check>> checks = {
        {QStringLiteral("nrb"), CheckDigits::nrbProblem},
        {QStringLiteral("nip"), CheckDigits::nipProblem},
        {QStringLiteral("pesel"), CheckDigits::peselProblem},
        {QStringLiteral("regon"), CheckDigits::regonProblem},
    };
    if (args.size() == 2)
        for (const auto &[kind, check] : checks)
            if (kind == args.first()) {
                const auto problem = check(args.at(1));
                out(problem.value_or(QStringLiteral("OK")));
                return problem ? 1 : 0;
            }
    err(QStringLiteral("Użycie: zlecanki sprawdz-sume nrb|nip|pesel|regon TEKST"));
    return 2;
}

int microAccount(const QStringList &args)
{
    if (args.size() != 1) {
        err(QStringLiteral("Użycie: zlecanki mikrorachunek NIP|PESEL"));
        return 2;
    }
    // Eleven digits are a PESEL, ten a NIP; anything else is told as a NIP's problem.
    const bool isPesel = CheckDigits::identifierDigits(args.first()).size() == 11;
    if (const auto problem = isPesel ? CheckDigits::peselProblem(args.first()) : CheckDigits::nipProblem(args.first())) {
        out(*problem);
        return 1;
    }
    out(CheckDigits::groupAccount(*CheckDigits::taxMicroAccount(args.first(), isPesel)));
    return 0;
}

// --- bank: the chosen transfers to an Elixir-O or XML file for the bank -----------------

const QString BankUsage = QStringLiteral(
    "Użycie: zlecanki bank --firma FIRMA (--id N[,N...] | --dzien DD-MM-RRRR [--konto N]) --format elixir|xml\n"
    "       --plik PLIK [--kodowanie cp1250|iso-8859-2|cp852] [--data-wykonania DD-MM-RRRR]");

int bankFile(const QStringList &args)
{
    const Arguments given = parseArguments(
        args, {QStringLiteral("--firma"), QStringLiteral("--id"), QStringLiteral("--dzien"), QStringLiteral("--konto"),
               QStringLiteral("--format"), QStringLiteral("--plik"), QStringLiteral("--kodowanie"),
               QStringLiteral("--data-wykonania")});
    const QHash<QString, QString> &opt = given.values;
    auto usageError = [](const QString &text) {
        err(text);
        err(BankUsage);
        return 2;
    };
    if (!given.error.isEmpty())
        return usageError(given.error);
    if (opt.value(QStringLiteral("--firma")).isEmpty() || opt.value(QStringLiteral("--plik")).isEmpty())
        return usageError(QStringLiteral("Podaj firmę (--firma) i plik (--plik)."));
    if (opt.contains(QStringLiteral("--id")) == opt.contains(QStringLiteral("--dzien")))
        return usageError(QStringLiteral("Podaj jedno: numery dokumentów (--id) albo dzień (--dzien)."));
    const auto format = BankFile::formatByName(opt.value(QStringLiteral("--format")));
    if (!format)
        return usageError(QStringLiteral("Format (--format) to elixir albo xml."));
    BankFile::Options o;
    o.format = *format;
    QList<qint32> ids;
    for (const QString &part : opt.value(QStringLiteral("--id")).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool ok = false;
        const int id = part.trimmed().toInt(&ok);
        if (!ok || id <= 0)
            return usageError(QStringLiteral("Nieprawidłowy numer dokumentu: \"%1\"").arg(part));
        ids << id;
    }
    std::optional<QDate> day;
    if (opt.contains(QStringLiteral("--dzien")) && !(day = DateText::parse(opt.value(QStringLiteral("--dzien")))))
        return usageError(QStringLiteral("Nieprawidłowa data w --dzien (oczekiwano dd-mm-rrrr)."));
    int account = 0;
    if (opt.contains(QStringLiteral("--konto"))) {
        bool ok = false;
        account = opt.value(QStringLiteral("--konto")).toInt(&ok);
        if (!ok || account < 1 || account > 40)
            return usageError(QStringLiteral("Numer konta firmy (--konto) to liczba od 1 do 40."));
    }
    if (opt.contains(QStringLiteral("--data-wykonania"))) {
        o.executionDate = DateText::parse(opt.value(QStringLiteral("--data-wykonania")));
        if (!o.executionDate)
            return usageError(QStringLiteral("Nieprawidłowa data w --data-wykonania (oczekiwano dd-mm-rrrr)."));
    }
    const QString path = QFileInfo(opt.value(QStringLiteral("--plik"))).absoluteFilePath();
    if (QFileInfo::exists(path)) {
        err(QStringLiteral("Plik %1 już istnieje; podaj inną nazwę albo usuń go.").arg(QDir::toNativeSeparators(path)));
        return 1;
    }

    QString missing;
    const QString firm = firmForCommand(opt.value(QStringLiteral("--firma")), &missing);
    if (firm.isEmpty()) {
        err(missing);
        return 1;
    }
    if (!OpenDb(firm))
        return 1;
    o.encoding = BankFile::firmChoice(Db()).second;
    if (opt.contains(QStringLiteral("--kodowanie"))) {
        const auto encoding = BankFile::encodingByName(opt.value(QStringLiteral("--kodowanie")));
        if (!encoding) {
            CloseDb();
            return usageError(QStringLiteral("Kodowanie (--kodowanie) to cp1250, iso-8859-2 albo cp852."));
        }
        o.encoding = *encoding;
    }
    o.today = ChoiceLists::workingDate();
    if (day) {
        QString error;
        ids = BankFile::transfersOfDay(Db(), *day, account, &error);
        if (!error.isEmpty()) {
            err(error);
            CloseDb();
            return 1;
        }
    }
    const QList<qint32> before = SentStore::sentAmong(Db(), ids);
    const BankFile::Outcome outcome = BankFile::send(Db(), ids, o, path, false);
    CloseDb();
    if (!outcome.written) {
        for (const QString &problem : outcome.problems)
            err(problem);
        err(QStringLiteral("Nie zapisano pliku."));
        return 1;
    }
    if (!before.isEmpty()) {
        QStringList numbers;
        for (qint32 id : before)
            numbers << QString::number(id);
        err(QStringLiteral("Uwaga: dokumenty nr %1 były już wysłane do banku.").arg(numbers.join(QStringLiteral(", "))));
    }
    out(QStringLiteral("%1: przelewów %2 na kwotę %3 zł")
            .arg(QDir::toNativeSeparators(path))
            .arg(outcome.count)
            .arg(Kwota(outcome.total)));
    return 0;
}

// --- end of bank --------------------------------------------------------------------------

const QList<Command> &builtInCommands()
{
    static const QList<Command> list = {
        {QStringLiteral("bank"), QStringLiteral("bank OPCJE"),
         QStringLiteral("zapisuje przelewy do pliku dla banku (Elixir-O albo XML ISO 20022):\n"
                        "                         --firma FIRMA (--id N[,N...] | --dzien DD-MM-RRRR [--konto N])\n"
                        "                         --format elixir|xml --plik PLIK [--kodowanie cp1250|iso-8859-2|cp852]\n"
                        "                         [--data-wykonania DD-MM-RRRR]"),
         bankFile},
        {QStringLiteral("nowa-firma"), QStringLiteral("nowa-firma PLIK"),
         QStringLiteral("tworzy nową bazę danych firmy (z rozszerzeniem .zlc, gdy PLIK go nie ma)\n"
                        "                         i wypisuje jej pełną ścieżkę"),
         newFirm},
        {QStringLiteral("slownie"), QStringLiteral("slownie KWOTA"),
         QStringLiteral("wypisuje kwotę słownie, tak jak na blankiecie (\"1234,50\")"), spellAmount},
        {QStringLiteral("sprawdz"), QStringLiteral("sprawdz RODZAJ TEKST"),
         QStringLiteral("sprawdza pole: data, cur, num, int, kodpoczt, nip albo pesel;\n"
                        "                         wypisuje OK albo komunikat i przyczynę"),
         checkField},
        // Check digits and the tax micro-account.
        {QStringLiteral("sprawdz-sume"), QStringLiteral("sprawdz-sume RODZAJ TEKST"),
         QStringLiteral("sprawdza cyfry kontrolne: nrb (numer rachunku), nip, pesel albo regon;\n"
                        "                         wypisuje OK albo przyczynę błędu"),
         checkDigits},
        {QStringLiteral("mikrorachunek"), QStringLiteral("mikrorachunek NIP|PESEL"),
         QStringLiteral("wypisuje mikrorachunek podatkowy dla NIP-u albo PESEL-u"), microAccount},
    };
    return list;
}

QList<Command> commands()
{
    return builtInCommands() + addedCommands();
}

const Command *findCommand(const QStringList &args)
{
    if (args.size() < 2)
        return nullptr;
    const QList<Command> *lists[] = {&builtInCommands(), &addedCommands()};
    for (const QList<Command> *list : lists)
        for (const Command &c : *list)
            if (c.name == args.at(1))
                return &c;
    return nullptr;
}

} // namespace

bool needsApplication(const QStringList &args)
{
    if (args.size() < 2)
        return false;
    for (const Command &c : addedCommands())
        if (c.name == args.at(1))
            return true;
    return false;
}

QString usage()
{
    QString text = QStringLiteral(
        "Zlecanki %1 - dokumenty płatnicze małej firmy: przelewy, wpłaty, przekazy pocztowe,\n"
        "przelewy do ZUS i urzędu skarbowego.\n"
        "\n"
        "Użycie:\n"
        "  zlecanki [OPCJE] [PLIK_FIRMY]     uruchamia program (otwiera podaną firmę)\n"
        "  zlecanki POLECENIE [ARGUMENTY]    wykonuje polecenie bez okien\n"
        "\n"
        "Opcje:\n"
        "  --dzis dd-mm-rrrr        data robocza (\"dziś\") na czas tego uruchomienia\n"
        "  --automation             start jako obiekt automatyzacji innych programów pakietu (bez okien)\n"
        "  --zamknij-po-starcie     kończy pracę zaraz po pokazaniu głównego okna (pomiar startu)\n"
        "  -h, --help               ten opis\n"
        "  -v, --version            wersja programu\n"
        "\n"
        "Polecenia:\n")
                       .arg(QLatin1String(ZLECANKI_VERSION));
    for (const Command &c : commands())
        text += QStringLiteral("  ") + c.synopsis.leftJustified(23) + QLatin1Char(' ') + c.description + QLatin1Char('\n');
    text += QStringLiteral(
        "\n"
        "Bazy firm leżą w folderze $ZLECANKI_SUITE_ROOT/bazy/ (domyślnie ~/.local/share/Kontorian/bazy/),\n"
        "ustawienia w ~/.config/Kontorian/Zlecanki.conf.");
    return text;
}

bool isCommand(const QStringList &args)
{
    if (args.size() < 2)
        return false;
    const QString first = args.at(1);
    if (first == QLatin1String("-h") || first == QLatin1String("--help") || first == QLatin1String("-v") ||
        first == QLatin1String("--version"))
        return true;
    return findCommand(args) != nullptr;
}

std::optional<int> run(const QStringList &args)
{
    if (args.size() < 2)
        return std::nullopt;
    const QString first = args.at(1);
    if (first == QLatin1String("-h") || first == QLatin1String("--help")) {
        out(usage());
        return 0;
    }
    if (first == QLatin1String("-v") || first == QLatin1String("--version")) {
        out(QStringLiteral("zlecanki ") + QLatin1String(ZLECANKI_VERSION));
        return 0;
    }
    if (const Command *c = findCommand(args)) {
        initPaths();
        return c->run(args.mid(2));
    }
    return std::nullopt;
}

StartOptions parseStart(const QStringList &args)
{
    StartOptions o;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        if (a == QLatin1String("--automation")) {
            o.automation = true;
        } else if (a == QLatin1String("--zamknij-po-starcie")) {
            o.quitAfterStart = true;
        } else if (a == QLatin1String("--dzis") || a.startsWith(QLatin1String("--dzis="))) {
            QString value;
            if (a.contains(QLatin1Char('=')))
                value = a.section(QLatin1Char('='), 1);
            else if (i + 1 < args.size())
                value = args.at(++i);
            o.today = DateText::parse(value);
            if (!o.today) {
                o.error = QStringLiteral("Nieprawidłowa data w --dzis: \"%1\" (oczekiwano dd-mm-rrrr)").arg(value);
                return o;
            }
        } else if (a.startsWith(QLatin1Char('-'))) {
            o.error = QStringLiteral("Nieznana opcja: %1 (zlecanki --help opisuje wszystkie)").arg(a);
            return o;
        } else if (o.firmFile.isEmpty()) {
            // A firm on a server is named by its address, which is no path.
            o.firmFile = Dialect::isAddress(a) ? a.trimmed() : QFileInfo(a).absoluteFilePath();
        } else {
            o.error = QStringLiteral("Można podać tylko jeden plik firmy.");
            return o;
        }
    }
    return o;
}

} // namespace CommandLine
