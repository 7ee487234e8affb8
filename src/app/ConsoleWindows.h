#pragma once

#include "admin/AdminServices.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/Windows.h"
#include "numbering/NumberingServices.h"

#include <functional>
#include <memory>

class QDialog;
class QWidget;
class HealthCollector;
class HelpGuide;
class HelpKey;
class LogIndexer;
class frmAddressManager;
class frmDiagnostics;
class frmHelp;
class frmLogbook;
class frmNumInfoDiagnostics;
class frmRegroupHistory;
class frmShiftReport;
class frmWhoIsWhere;
struct INumberingView;

// The windows around the main window, on the application's services.
class ConsoleWindows : public IWindows {
public:
    explicit ConsoleWindows(const Services& services);
    ~ConsoleWindows() override;

    // Shows the assistant in front of a window. True when a database can be opened then.
    void SetAssistant(std::function<bool(QWidget*)> assistant) { m_assistant = std::move(assistant); }

    // The window that keeps what the radio reports of its numbering.
    INumberingView& NumberingView();

    void OpenUserManager(winMain& owner) override;
    void OpenNumbering(winMain& owner) override;
    void OpenNumberingSelection(winMain& owner) override;
    void OpenNumberingDiagnostics(winMain& owner) override;
    void OpenAddressDirectory(winMain& owner) override;
    void OpenStatusEditor(winMain& owner) override;
    void OpenLogbook(winMain& owner) override;
    void OpenShiftReport(winMain& owner) override;
    void OpenWhoIsWhere(winMain& owner) override;
    void OpenRegroupHistory(qint32 addressId, const QString& callsign) override;
    bool OpenSetUp(winMain& owner) override;
    void OpenHelp(winMain& owner) override;
    void OpenAbout(winMain& owner) override;
    void OpenDiagnostics(winMain& owner) override;

private:
    AdminServices Admin() const;
    NumberingServices ForNumbering() const;
    QStringList OwnNames() const;
    void ShowDialog(winMain& owner, const std::function<std::unique_ptr<QDialog>()>& make);

    // Opens the guide at a page; at its contents for an empty one. Says so when there is no guide.
    void ShowHelp(const QString& page);

    std::function<bool(QWidget*)> m_assistant;
    Services m_services; // its `windows` is null: they are this object
    std::unique_ptr<frmNumInfoDiagnostics> m_diagnostics;
    std::unique_ptr<frmAddressManager> m_directory; // kept hidden between uses
    std::unique_ptr<HelpGuide> m_guide;
    std::unique_ptr<frmHelp> m_help;
    std::unique_ptr<HelpKey> m_helpKey;
    std::unique_ptr<LogIndexer> m_indexer;
    std::unique_ptr<frmLogbook> m_logbook;   // kept hidden between uses
    std::unique_ptr<frmShiftReport> m_shift; // likewise
    std::unique_ptr<frmWhoIsWhere> m_where;
    std::unique_ptr<frmRegroupHistory> m_regroupings;
    std::unique_ptr<HealthCollector> m_health;
    std::unique_ptr<frmDiagnostics> m_healthWindow;
};
