#include "app/ConsoleWindows.h"

#include "admin/frmUserManager.h"
#include "core/ShowModal.h"
#include "mainwindow/winMain.h"

// A window that is not built yet has a command that is disabled.

void ConsoleWindows::OpenUserManager(winMain& owner)
{
    frmUserManager window(Admin());
    ShowModal(window, owner);
}

void ConsoleWindows::OpenNumbering(winMain&) {}

void ConsoleWindows::OpenNumberingSelection(winMain&) {}

void ConsoleWindows::OpenNumberingDiagnostics(winMain&) {}

void ConsoleWindows::OpenAddressDirectory(winMain&) {}

void ConsoleWindows::OpenStatusEditor(winMain&) {}

void ConsoleWindows::OpenHelp(winMain&) {}

void ConsoleWindows::OpenAbout(winMain&) {}

AdminServices ConsoleWindows::Admin() const
{
    return {m_services.session, m_services.prompt, m_services.executive, m_services.strings};
}
