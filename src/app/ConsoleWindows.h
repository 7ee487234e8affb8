#pragma once

#include "admin/AdminServices.h"
#include "mainwindow/Services.h"
#include "mainwindow/Windows.h"

// The windows around the main window, on the application's services.
class ConsoleWindows : public IWindows {
public:
    explicit ConsoleWindows(const Services& services) : m_services(services) {}

    void OpenUserManager(winMain& owner) override;
    void OpenNumbering(winMain& owner) override;
    void OpenNumberingSelection(winMain& owner) override;
    void OpenNumberingDiagnostics(winMain& owner) override;
    void OpenAddressDirectory(winMain& owner) override;
    void OpenStatusEditor(winMain& owner) override;
    void OpenHelp(winMain& owner) override;
    void OpenAbout(winMain& owner) override;

private:
    AdminServices Admin() const;

    Services m_services; // without windows: it is itself what they would be
};
