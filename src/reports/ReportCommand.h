#pragma once

#include <QStringList>

// "zlecanki raport --firma PLIK --rodzaj 1..4 (--rok RRRR | --miesiac M | --od dd-mm-rrrr
// --do dd-mm-rrrr) [--xlsx PLIK.xlsx] [--pdf PLIK.pdf]": the register of one list for
// every contractor, as text lines on standard output, and the files asked for.
// Registers the command with the command line.
void registerReportCommand();

// The command itself, given the arguments after "raport"; returns the exit code.
int reportCommand(const QStringList &args);
