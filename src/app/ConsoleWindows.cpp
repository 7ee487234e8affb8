#include "app/ConsoleWindows.h"

// A window that is not built yet has a command that is disabled.

void ConsoleWindows::OpenUserManager(winMain&) {}

void ConsoleWindows::OpenNumbering(winMain&) {}

void ConsoleWindows::OpenNumberingSelection(winMain&) {}

void ConsoleWindows::OpenNumberingDiagnostics(winMain&) {}

void ConsoleWindows::OpenAddressDirectory(winMain&) {}

void ConsoleWindows::OpenStatusEditor(winMain&) {}

void ConsoleWindows::OpenHelp(winMain&) {}

void ConsoleWindows::OpenAbout(winMain&) {}
