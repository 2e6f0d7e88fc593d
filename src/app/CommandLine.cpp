#include "CommandLine.h"

#include "AppState.h"
#include "DateText.h"
#include "Messages.h"
#include "Money.h"
#include "Version.h"
#include "validation/CheckDigits.h"
#include "validation/Sprawdz.h"
#include "words/Slownie.h"
#include "db/FirmDatabase.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>
#include <functional>

namespace CommandLine {

namespace {

void out(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
    std::fputc('\n', stdout);
}

void err(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fputc('\n', stderr);
}

struct Command {
    QString name;
    QString synopsis;
    QString description;
    std::function<int(const QStringList &)> run; // arguments after the command's name
};

int newFirm(const QStringList &args)
{
    if (args.size() != 1) {
        err(QStringLiteral("Użycie: zlecanki nowa-firma PLIK"));
        return 2;
    }
    QString path = args.first();
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + FirmDatabase::Extension;
    QString error;
    if (!FirmDatabase::create(path, &error)) {
        err(error);
        return 1;
    }
    out(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
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

QList<Command> &addedCommands()
{
    static QList<Command> list;
    return list;
}

const QList<Command> &builtInCommands()
{
    static const QList<Command> list = {
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

void addCommand(const QString &name, const QString &synopsis, const QString &description, Handler handler)
{
    QList<Command> &added = addedCommands();
    for (Command &c : added) {
        if (c.name == name) {
            c = Command{name, synopsis, description, std::move(handler)};
            return;
        }
    }
    added.append(Command{name, synopsis, description, std::move(handler)});
}

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
            o.firmFile = QFileInfo(a).absoluteFilePath();
        } else {
            o.error = QStringLiteral("Można podać tylko jeden plik firmy.");
            return o;
        }
    }
    return o;
}

} // namespace CommandLine
