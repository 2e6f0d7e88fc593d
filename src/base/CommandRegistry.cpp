#include "CommandRegistry.h"

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

} // namespace CommandLine
