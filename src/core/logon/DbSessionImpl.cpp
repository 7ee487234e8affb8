#include "core/logon/DbSessionImpl.h"

#include "core/base/AppPaths.h"
#include "core/base/ProgramLog.h"
#include "core/logon/FirstRunChoice.h"
#include "core/logon/frmFirstRun.h"
#include "core/logon/frmLogon.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/FilePicker.h"
#include "dao/base/FileAccess.h"
#include "dao/tables/SessionReadings.h"

#include <QApplication>
#include <QFileInfo>
#include <QRandomGenerator>

namespace {

constexpr auto DatabaseKey = "databasefile";
constexpr auto WorkgroupKey = "workgroupfile";
constexpr auto LastUserKey = "lastuser";
constexpr auto LogonNoteKey = "logonnote"; // a demonstration names its accounts

QString DefaultDatabaseFile()
{
    return AppPaths::DataFolder() + u'/' + AppPaths::Title + ".kyndb";
}

// The path, or an empty text if it has been cleared.
QString PathOrEmpty(const std::function<QString()>& read)
{
    try {
        return read();
    } catch (const Error& error) {
        if (error.Code() != ErrorCode::NoFile)
            throw;
        return {};
    }
}

bool IsChosen(const dao::Location& location)
{
    return !location.database.isEmpty() &&
           (dao::IsServerTarget(location.database) || !location.workgroup.isEmpty());
}

bool IsThere(const dao::Location& location)
{
    return IsChosen(location) &&
           (dao::IsServerTarget(location.database) || QFileInfo::exists(location.database));
}

QString PickExisting(FilePicker::Kind kind, const QString& start, const IStringSource& strings)
{
    const bool isPath = !start.isEmpty() && !dao::IsServerTarget(start);
    const FilePicker picker{kind, false, isPath ? start : DefaultDatabaseFile()};
    QString file = picker.Pick(strings, QApplication::activeWindow());
    if (file.isEmpty())
        throw Error(ErrorCode::General, strings.LoadString(CoreText::NoFileChosen));
    return file;
}

} // namespace

DbSession::DbSession(Settings& settings, const IStringSource& strings, const Clock& clock,
                     dao::OpenOptions options)
    : m_settings(settings),
      m_strings(strings),
      m_pause(clock),
      m_options(std::move(options))
{
    if (!m_options.now)
        m_options.now = [&clock] { return clock.Now(); };
}

DbSession::~DbSession() = default;

dao::Workspace& DbSession::Workspace()
{
    if (!m_workspace)
        throw Error(ErrorCode::General, m_strings.LoadString(CoreText::NobodyLoggedOn));
    return *m_workspace;
}

dao::Database& DbSession::Database()
{
    return Workspace().Database();
}

QString DbSession::MakePID(const QString&, const QString&)
{
    constexpr QLatin1String alphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
    constexpr int length = 20;
    QString pid;
    for (int i = 0; i < length; ++i)
        pid += alphabet[QRandomGenerator::system()->bounded(alphabet.size())];
    return pid;
}

QString DbSession::DatabaseFile() const
{
    QString path = m_settings.Read(m_section, DatabaseKey, DefaultDatabaseFile());
    if (path.isEmpty())
        throw Error(ErrorCode::NoFile, m_strings.LoadString(CoreText::NoDatabaseFile));
    return path;
}

void DbSession::SetDatabaseFile(const QString& path)
{
    m_settings.Write(m_section, DatabaseKey, path);
}

QString DbSession::WorkgroupFile() const
{
    // By default beside the database, wherever that is.
    const QString database = m_settings.Read(m_section, DatabaseKey, DefaultDatabaseFile());
    QString path = m_settings.Read(m_section, WorkgroupKey, dao::WorkgroupFileFor(database));
    if (path.isEmpty() && !dao::IsServerTarget(database))
        throw Error(ErrorCode::NoFile, m_strings.LoadString(CoreText::NoWorkgroupFile));
    return path;
}

void DbSession::SetWorkgroupFile(const QString& path)
{
    m_settings.Write(m_section, WorkgroupKey, path);
}

// Both parameters are always true: nobody is logged on without being asked, nor without a database.
void DbSession::Logon(bool, bool)
{
    Logoff();
    dao::Location location = StoredLocation();
    if (!IsThere(location) && m_assistant && m_settings.Read(m_section, LastUserKey, QString()).isEmpty()) {
        RunAssistant();
        location = StoredLocation();
    } else if (!IsThere(location)) {
        location = SetUpDatabase(IsChosen(location) ? location.database : QString());
    }
    LogOnPrepared(location);
    if (!m_workspace)
        AskUser(location);
    Remember(location);
    WatchDatabase();
}

void DbSession::RunAssistant()
{
    m_assistant();
    if (!IsThere(StoredLocation()))
        RaiseCancelled();
}

// One that does not succeed ends in the dialog, like any other.
void DbSession::LogOnPrepared(const dao::Location& location)
{
    const auto next = std::exchange(m_next, {});
    if (m_workspace || next.userName.isEmpty())
        return;
    try {
        m_workspace = dao::OpenWorkspace(location, next.userName, next.password, m_options);
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_strings));
    }
}

void DbSession::WatchDatabase()
{
    m_workspace->Watch({[this](const QString& table) { m_changes.Tell(table); },
                        [this](bool away) { m_changes.SetAway(away); }});
    m_workspace->Database().ReadAhead(dao::SessionReadings(m_workspace->UserName()));
    m_changes.Open([this] { return m_workspace->ChangedElsewhere(); });
}

void DbSession::Logoff()
{
    if (m_changes.IsBusy())
        throw dao::Error(dao::Kind::Busy);
    m_changes.Close();
    m_workspace.reset();
}

QString DbSession::SelectWorkgroupFile()
{
    return PickExisting(FilePicker::Kind::Workgroup, StoredLocation().workgroup, m_strings);
}

QString DbSession::SelectDatabaseFile()
{
    return PickExisting(FilePicker::Kind::Database, StoredLocation().database, m_strings);
}

bool DbSession::IsMemberOf(const QString& group)
{
    dao::Workspace& workspace = Workspace();
    try {
        return workspace.Users().IsMember(workspace.UserName(), group);
    } catch (const dao::Error& error) {
        throw Error(ErrorCode::General, DescribeError(error, m_strings));
    }
}

dao::Location DbSession::StoredLocation() const
{
    const QString database = PathOrEmpty([this] { return DatabaseFile(); });
    if (dao::IsServerTarget(database))
        return {database, {}};
    return {FullPath(database), FullPath(PathOrEmpty([this] { return WorkgroupFile(); }))};
}

// Returns where the database is now; if it was created, its first administrator is logged on.
dao::Location DbSession::SetUpDatabase(const QString& missing)
{
    const QString proposed = missing.isEmpty() ? DefaultDatabaseFile() : missing;
    frmFirstRun dialog(
        m_strings, missing, dao::LocationOf(proposed),
        [this](const FirstRunChoice& choice) { return CarryOut(choice); }, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted)
        RaiseCancelled();
    return dialog.Choice().location;
}

QString DbSession::CarryOut(const FirstRunChoice& choice)
{
    const dao::Location& location = choice.location;
    try {
        if (!choice.create) {
            if (!dao::IsServerTarget(location.database) && !QFileInfo::exists(location.database))
                throw dao::Error(dao::Kind::NoSuchFile, {location.database});
            if (!dao::IsServerTarget(location.database) && !QFileInfo::exists(location.workgroup))
                throw dao::Error(dao::Kind::WorkgroupMissing, {location.workgroup});
            return {};
        }
        for (const QString& file : {location.database, location.workgroup}) {
            const QString folder = QFileInfo(file).absolutePath();
            if (!dao::IsServerTarget(location.database) && choice.group.isEmpty() &&
                !dao::MakePrivateFolder(folder))
                return FormatMessage(m_strings, CoreText::FolderNotCreated, {folder});
        }
        dao::CreateDatabase(location, choice.userName, choice.password, m_options.passwordCost, choice.group);
        m_workspace = dao::OpenWorkspace(location, choice.userName, choice.password, m_options);
        return {};
    } catch (const std::exception& failure) {
        return DescribeError(failure, m_strings);
    }
}

void DbSession::AskUser(const dao::Location& location)
{
    std::exception_ptr failure;
    frmLogon* shown = nullptr;
    dao::OpenOptions options = m_options;
    options.migrating = [&shown](const QString& database, int percent) {
        shown->ShowMigration(database, percent);
    };
    const auto attempt = [&](const QString& userName, const QString& password) {
        try {
            m_workspace = dao::OpenWorkspace(location, userName, password, options);
            return frmLogon::Outcome::LoggedOn;
        } catch (const dao::Error& error) {
            if (error.kind == dao::Kind::WrongPassword)
                return frmLogon::Outcome::WrongPassword;
            failure = std::make_exception_ptr(Error(ErrorCode::General, DescribeError(error, m_strings)));
        } catch (const std::exception& error) {
            failure = std::make_exception_ptr(Error(ErrorCode::General, DescribeError(error, m_strings)));
        }
        return frmLogon::Outcome::Failed;
    };
    frmLogon dialog(m_strings, m_pause, attempt, QApplication::activeWindow());
    shown = &dialog;
    dialog.SetAppName(m_appName);
    dialog.SetUserName(m_settings.Read(m_section, LastUserKey, QString()));
    dialog.SetNote(m_settings.Read(m_section, LogonNoteKey, QString()));
    dialog.exec();
    if (failure)
        std::rethrow_exception(failure);
    if (!m_workspace)
        RaiseCancelled();
}

// What the next logon suggests. Failing to store it keeps no operator from working.
void DbSession::Remember(const dao::Location& location)
{
    try {
        const QString userName = m_workspace->UserName();
        if (m_settings.Read(m_section, LastUserKey, QString()) != userName)
            m_settings.Write(m_section, LastUserKey, userName);
        if (location == StoredLocation())
            return;
        SetDatabaseFile(location.database);
        SetWorkgroupFile(location.workgroup);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("Logon: %1").arg(QString::fromUtf8(failure.what())));
    }
}

void DbSession::RaiseCancelled() const
{
    throw Error(ErrorCode::LogonCancelled, m_strings.LoadString(CoreText::LogonCancelled));
}
