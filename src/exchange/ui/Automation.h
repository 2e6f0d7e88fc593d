#pragma once

class QApplication;

// The program started by the session bus for a call of the automation object
// ("zlecanki --automation"): no window and no splash, it serves "/clsSerwer" while no
// other copy of the program does, and ends after a minute without calls
// ($ZLECANKI_AUTOMATION_IDLE seconds, when set), or at once when a desktop start takes
// its place. Returns the exit code.
int runAutomation(QApplication &app);
