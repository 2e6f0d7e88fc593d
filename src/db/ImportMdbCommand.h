#pragma once

#include <QStringList>

// "zlecanki import-mdb STARY.mdb NOWA_BAZA": converts a firm file of the earlier Windows
// version into a new firm database and prints the rows copied from each table.
// Registers the command with the command line.
void registerImportMdbCommand();

// The command itself, given the arguments after "import-mdb"; returns the exit code.
int importMdbCommand(const QStringList &args);
