#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The program's command line: headless subcommands ("zlecanki nowa-firma PLIK") and the
// options of a desktop start ("zlecanki --dzis 05-03-2026 firma.zlc").
namespace CommandLine {

// True when `args` ask for a headless subcommand, "--help" or "--version".
bool isCommand(const QStringList &args);
// Runs a headless subcommand, "--help" or "--version" and returns the exit code;
// nothing when `args` (program name first) ask for a desktop start.
std::optional<int> run(const QStringList &args);

struct StartOptions {
    bool automation = false;
    bool quitAfterStart = false;
    std::optional<QDate> today;
    QString firmFile;
    QString error; // not empty: the options are wrong, this says why
};
StartOptions parseStart(const QStringList &args);

QString usage();

// A subcommand added at run time by a part of the program outside the core, such as
// printing ("drukuj"), which needs the windows library: `zlecanki --help` lists it after
// the built-in ones, and it runs under a QApplication (see needsApplication). The handler
// gets the arguments after the command's name and returns the exit code.
using Handler = std::function<int(const QStringList &args)>;
void addCommand(const QString &name, const QString &synopsis, const QString &description, Handler handler);
// True when `args` ask for a command added at run time.
bool needsApplication(const QStringList &args);

} // namespace CommandLine
