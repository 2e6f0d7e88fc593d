#pragma once

#include <QHash>
#include <QList>
#include <QSet>
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

// What a command was given: "--name VALUE" or "--name=VALUE" for the options that take a
// value, a bare "--name" for the switches. A repeated option keeps its last value.
struct Arguments {
    QHash<QString, QString> values;
    QSet<QString> switches;
    QString error; // the first unknown option or missing value, in the user's words
    bool has(const QString &name) const { return values.contains(name) || switches.contains(name); }
    QString value(const QString &name) const { return values.value(name); }
};
Arguments parseArguments(const QStringList &args, const QStringList &valued, const QStringList &switches = {});

// A line of a command's answer to standard output, or of its complaint to standard error,
// in the system's encoding.
void out(const QString &text);
void err(const QString &text);

} // namespace CommandLine
