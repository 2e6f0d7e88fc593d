#include "CommandRegistry.h"

#include <cstdio>

namespace CommandLine {

namespace {
QList<Command> &registry()
{
    static QList<Command> list;
    return list;
}
} // namespace

void addCommand(const QString &name, const QString &synopsis, const QString &description, Handler handler)
{
    QList<Command> &added = registry();
    for (Command &c : added) {
        if (c.name == name) {
            c = Command{name, synopsis, description, std::move(handler)};
            return;
        }
    }
    added.append(Command{name, synopsis, description, std::move(handler)});
}

const QList<Command> &addedCommands()
{
    return registry();
}

Arguments parseArguments(const QStringList &args, const QStringList &valued, const QStringList &switches)
{
    Arguments a;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (switches.contains(args.at(i))) {
            a.switches.insert(args.at(i));
            continue;
        }
        const qsizetype equals = args.at(i).indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? args.at(i) : args.at(i).left(equals);
        if (!valued.contains(name)) {
            a.error = QStringLiteral("Nieznana opcja: %1").arg(args.at(i));
            return a;
        }
        if (equals >= 0) {
            a.values.insert(name, args.at(i).mid(equals + 1));
        } else if (i + 1 < args.size()) {
            a.values.insert(name, args.at(++i));
        } else {
            a.error = QStringLiteral("Brak wartości opcji %1.").arg(name);
            return a;
        }
    }
    return a;
}

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

} // namespace CommandLine
