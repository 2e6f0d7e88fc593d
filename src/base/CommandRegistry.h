#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// Subcommands that a subsystem adds to the program's command line, such as printing
// ("drukuj") or reports ("raport"). The subsystem registers its handler at start; the
// command-line dispatcher lists it in `zlecanki --help` after the built-in ones and runs it
// under a QApplication. A handler gets the arguments after the command's name and returns
// the exit code.
namespace CommandLine {

using Handler = std::function<int(const QStringList &args)>;

struct Command {
    QString name;
    QString synopsis;
    QString description;
    Handler run;
};

void addCommand(const QString &name, const QString &synopsis, const QString &description, Handler handler);
const QList<Command> &addedCommands();

} // namespace CommandLine
