#pragma once

#include <QStringList>

// "zlecanki przenies ZRODLO CEL": copies a firm into a new one, a SQLite file to a firm on a
// PostgreSQL server or back (file to file and server to server too), prints the rows of
// every table on both sides and compares them. The source is only read; a target that
// exists is refused, and a target the copy failed to fill is removed again.
// Registers the command with the command line.
void registerMoveFirmCommand();

// The command itself, given the arguments after "przenies"; returns the exit code.
int moveFirmCommand(const QStringList &args);
