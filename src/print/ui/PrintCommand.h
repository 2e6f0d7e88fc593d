#pragma once

#include <QStringList>

// "zlecanki drukuj --firma PLIK --id NR (--pdf PLIK.pdf | --drukarka KOLEJKA) [--kopie N]
// [--bez-kwoty]": prints one stored document as its kind's print procedure would, with
// no window and no question (the arrangement questions take their first answer).
// Registers the command with the command line.
void registerPrintCommand();

// The command itself, given the arguments after "drukuj"; returns the exit code.
int printCommand(const QStringList &args);
