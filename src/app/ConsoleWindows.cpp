#include "app/ConsoleWindows.h"

#include "admin/frmAbout.h"
#include "admin/frmAddressManager.h"
#include "admin/frmStatusEditor.h"
#include "admin/frmUserManager.h"
#include "core/Errors.h"
#include "core/Prompt.h"
#include "core/ShowModal.h"
#include "mainwindow/winMain.h"
#include "numbering/frmActionetSettings.h"
#include "numbering/frmFleetPlan.h"
#include "numbering/frmNumInfoDiagnostics.h"
#include "numbering/frmSelectNumbering.h"
#include "radio/Map27Executive.h"

#include <QWindow>

ConsoleWindows::ConsoleWindows(const Services& services)
    : m_services(services),
      m_diagnostics(std::make_unique<frmNumInfoDiagnostics>(services.strings, services.executive))
{
}

ConsoleWindows::~ConsoleWindows() = default;

INumberingView& ConsoleWindows::NumberingView()
{
    return *m_diagnostics;
}

NumberingServices ConsoleWindows::ForNumbering() const
{
    return {m_services.strings, m_services.prompt, m_services.session, m_services.executive};
}

void ConsoleWindows::ShowDialog(winMain& owner, const std::function<std::unique_ptr<QDialog>()>& make)
{
    try {
        const std::unique_ptr<QDialog> dialog = make();
        ShowModal(*dialog, owner);
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
}

// A window that is not built yet has a command that is disabled.

void ConsoleWindows::OpenUserManager(winMain& owner)
{
    frmUserManager window(Admin());
    ShowModal(window, owner);
}

void ConsoleWindows::OpenNumbering(winMain& owner)
{
    ShowDialog(owner, [this]() -> std::unique_ptr<QDialog> {
        if (m_services.executive.CurrentNumbering() == QLatin1String("ACTIONET"))
            return std::make_unique<frmActionetSettings>(ForNumbering());
        return std::make_unique<frmFleetPlan>(ForNumbering());
    });
}

void ConsoleWindows::OpenNumberingSelection(winMain& owner)
{
    ShowDialog(owner, [this] { return std::make_unique<frmSelectNumbering>(ForNumbering()); });
}

void ConsoleWindows::OpenNumberingDiagnostics(winMain& owner)
{
    m_diagnostics->show();
    m_diagnostics->windowHandle()->setTransientParent(owner.windowHandle());
    m_diagnostics->raise();
    m_diagnostics->activateWindow();
}

void ConsoleWindows::OpenAddressDirectory(winMain& owner)
{
    if (!m_directory)
        m_directory = std::make_unique<frmAddressManager>(Admin());
    m_directory->ReloadDir();
    ShowModal(*m_directory, owner);
}

void ConsoleWindows::OpenStatusEditor(winMain& owner)
{
    frmStatusEditor window(Admin());
    QObject::connect(&window, &frmStatusEditor::StatiChanged, &owner, &winMain::LoadStati);
    ShowModal(window, owner);
}

void ConsoleWindows::OpenHelp(winMain&) {}

void ConsoleWindows::OpenAbout(winMain& owner)
{
    frmAbout window(m_services.prompt, m_services.strings);
    ShowModal(window, owner);
}

AdminServices ConsoleWindows::Admin() const
{
    return {m_services.session, m_services.prompt, m_services.executive, m_services.strings};
}
