#pragma once

#include "CommandLine.h"

class QApplication;

// The desktop start: splash, the one-copy guard, paths, the main window with its firm,
// the screen check; then the event loop until the user quits. Returns the exit code.
int Main(QApplication &app, const CommandLine::StartOptions &options);
