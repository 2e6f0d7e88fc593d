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

// True when `args` ask for a command that a subsystem added (CommandRegistry.h); those run
// under a QApplication.
bool needsApplication(const QStringList &args);

} // namespace CommandLine
