#include "app/ConsoleWindows.h"

#include "admin/HelpGuide.h"
#include "admin/TextIds.h"
#include "admin/frmAbout.h"
#include "admin/frmAddressManager.h"
#include "admin/frmHelp.h"
#include "admin/frmStatusEditor.h"
#include "admin/frmUserManager.h"
#include "app/HelpKey.h"
#include "core/base/AppPaths.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "health/HealthCollector.h"
#include "health/frmDiagnostics.h"
#include "logbook/query/LogIndexer.h"
#include "logbook/window/frmLogbook.h"
#include "logbook/window/frmRegroupHistory.h"
#include "logbook/window/frmShiftReport.h"
#include "logbook/window/frmWhoIsWhere.h"
#include "mainwindow/frame/winMain.h"
#include "numbering/frmActionetSettings.h"
#include "numbering/frmFleetPlan.h"
#include "numbering/frmNumInfoDiagnostics.h"
#include "numbering/frmSelectNumbering.h"
#include "radio/facade/Map27Executive.h"

#include <QFileInfo>
#include <QWindow>

// Of this run: the demonstration and the tour have one of their own.
static QString StateFolder()
{
    return QFileInfo(ProgramLog::FileName()).path();
}

ConsoleWindows::ConsoleWindows(const Services& services)
    : m_services(services),
      m_diagnostics(std::make_unique<frmNumInfoDiagnostics>(services.strings, services.executive)),
      m_helpKey(std::make_unique<HelpKey>([this](const QString& page) { ShowHelp(page); })),
      m_indexer(std::make_unique<LogIndexer>(services.session)),
      m_health(std::make_unique<HealthCollector>(
          HealthCollector::Sources{services.settings, services.logon, services.executive, services.eventLog,
                                   services.sounds, services.clock, StateFolder()}))
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

void ConsoleWindows::OpenUserManager(winMain& owner)
{
    frmUserManager window(Admin());
    ShowModal(window, owner);
}

void ConsoleWindows::OpenNumbering(winMain& owner)
{
    ShowDialog(
        owner,
        [this]() -> std::unique_ptr<QDialog> {
            if (m_services.executive.CurrentNumbering() == QLatin1String("ACTIONET"))
                return std::make_unique<frmActionetSettings>(ForNumbering());
            return std::make_unique<frmFleetPlan>(ForNumbering());
        });
}

void ConsoleWindows::OpenNumberingSelection(winMain& owner)
{
    ShowDialog(
        owner, [this] { return std::make_unique<frmSelectNumbering>(ForNumbering()); });
}

void ConsoleWindows::OpenNumberingDiagnostics(winMain& owner)
{
    m_diagnostics->winId(); // creates the native window, which can then be given a parent
    m_diagnostics->windowHandle()->setTransientParent(owner.windowHandle());
    BringToScreen(*m_diagnostics, Activation::Take);
}

void ConsoleWindows::OpenAddressDirectory(winMain& owner)
{
    if (!m_directory) {
        m_directory = std::make_unique<frmAddressManager>(Admin());
        QObject::connect(m_directory.get(), &frmAddressManager::DirectoryChanged, &owner, [&owner] {
            owner.ReloadGrps();
            owner.ReloadInds();
        });
    }
    m_directory->ReloadDir();
    ShowModal(*m_directory, owner);
}

void ConsoleWindows::OpenStatusEditor(winMain& owner)
{
    frmStatusEditor window(Admin());
    QObject::connect(&window, &frmStatusEditor::StatiChanged, &owner, &winMain::LoadStati);
    ShowModal(window, owner);
}

QStringList ConsoleWindows::OwnNames() const
{
    return {m_services.executive.MyCallsign(), m_services.executive.MyAddress()};
}

void ConsoleWindows::OpenLogbook(winMain&)
{
    if (!m_logbook)
        m_logbook = std::make_unique<frmLogbook>(m_services.session, m_services.strings, m_services.clock,
                                                 [this] { return OwnNames(); });
    m_logbook->Open();
}

void ConsoleWindows::OpenShiftReport(winMain&)
{
    if (!m_shift)
        m_shift = std::make_unique<frmShiftReport>(m_services.session, m_services.strings, m_services.clock,
                                                   [this] { return OwnNames(); });
    m_shift->Open();
}

void ConsoleWindows::OpenWhoIsWhere(winMain&)
{
    if (!m_where) {
        m_where = std::make_unique<frmWhoIsWhere>(
            m_services.session, m_services.strings, m_services.clock, [this] { return OwnNames(); });
        QObject::connect(m_where.get(), &frmWhoIsWhere::HistoryRequested, m_where.get(),
                         [this](qint32 id, const QString& callsign) { OpenRegroupHistory(id, callsign); });
    }
    m_where->Open();
}

void ConsoleWindows::OpenRegroupHistory(qint32 addressId, const QString& callsign)
{
    if (!m_regroupings)
        m_regroupings =
            std::make_unique<frmRegroupHistory>(m_services.session, m_services.strings, m_services.clock);
    m_regroupings->Open(addressId, callsign);
}

bool ConsoleWindows::OpenSetUp(winMain& owner)
{
    return m_assistant && m_assistant(&owner);
}

void ConsoleWindows::OpenHelp(winMain&)
{
    ShowHelp({});
}

void ConsoleWindows::ShowHelp(const QString& page)
{
    try {
        if (!m_help) {
            const QString file = m_services.strings.LoadString(AdminText::HelpFile);
            m_guide = std::make_unique<HelpGuide>(AppPaths::OwnFile(file), m_services.strings);
            m_help = std::make_unique<frmHelp>(*m_guide, m_services.strings);
        }
        m_help->ShowPage(page);
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
}

void ConsoleWindows::OpenAbout(winMain& owner)
{
    frmAbout window(m_services.prompt, m_services.strings);
    ShowModal(window, owner);
}

void ConsoleWindows::OpenDiagnostics(winMain&)
{
    if (!m_healthWindow)
        m_healthWindow = std::make_unique<frmDiagnostics>(*m_health, m_services.strings, m_services.clock,
                                                          StateFolder(), Lane::Kind::OwnThread);
    m_healthWindow->Open();
}

AdminServices ConsoleWindows::Admin() const
{
    return {m_services.session, m_services.prompt, m_services.executive, m_services.strings};
}
