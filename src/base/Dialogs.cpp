#include "Dialogs.h"

#include "Messages.h"

#include <cstdio>

namespace {

ConsoleDialogs &consoleDialogs()
{
    static ConsoleDialogs console;
    return console;
}

Dialogs *g_dialogs = nullptr;

void printLine(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

} // namespace

Dialogs &dialogs()
{
    return g_dialogs ? *g_dialogs : consoleDialogs();
}

Dialogs *setDialogs(Dialogs *d)
{
    Dialogs *previous = g_dialogs;
    g_dialogs = d;
    return previous;
}

void ConsoleDialogs::message(const QString &text, const QString &title, Icon)
{
    printLine(title.isEmpty() ? text.trimmed() : title + QStringLiteral(": ") + text.trimmed());
}

bool ConsoleDialogs::question(const QString &text, const QString &title)
{
    printLine(title + QStringLiteral(": ") + text + QStringLiteral(" [Tak]"));
    return true;
}

std::optional<QString> ConsoleDialogs::input(const QString &prompt, const QString &title, const QString &)
{
    printLine(title + QStringLiteral(": ") + prompt);
    return std::nullopt;
}

QString ConsoleDialogs::openFileName(const QString &, const QString &, const QString &)
{
    return {};
}

QString ConsoleDialogs::saveFileName(const QString &, const QString &, const QString &)
{
    return {};
}

void ConsoleDialogs::beep() {}

Dialogs::UrlResult ConsoleDialogs::openUrl(const QUrl &url)
{
    printLine(url.toString());
    return UrlResult::Failed;
}

std::optional<Dialogs::PrintChoice> ConsoleDialogs::printCopies(int copies, bool preview)
{
    return PrintChoice{copies, preview};
}

QString errorReportText(const QString &description, int number)
{
    return QStringLiteral("\nPrzechwycony błąd:\n") + description + QStringLiteral("\nNumer: ") +
           QString::number(number);
}

void ErrorReport(const QString &description, int number)
{
    dialogs().beep();
    dialogs().message(errorReportText(description, number), Msg(51), Dialogs::Icon::Exclamation);
}
