#pragma once

#include "core/logon/LogonPause.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "dao/Workspace.h"

#include <functional>
#include <memory>

class Settings;
struct FirstRunChoice;
struct IStringSource;

// The session on real files, asking in real dialogs. The paths are in the given settings section ("DB"), keys
// "databasefile" and "workgroupfile"; the name suggested at the next logon is under "lastuser".
class DbSession : public IDbSession, public IDbLogon {
public:
    // Time comes from `clock`, for the pauses after wrong passwords and for queries over a period.
    DbSession(Settings& settings, const IStringSource& strings, const Clock& clock,
              dao::OpenOptions options = {});
    ~DbSession() override;

    dao::Workspace& Workspace() override;
    dao::Database& Database() override;
    QString MakePID(const QString& userName, const QString& seed) override;
    QString WorkgroupFile() const override;
    void SetWorkgroupFile(const QString& path) override;
    QString DatabaseFile() const override;
    void SetDatabaseFile(const QString& path) override;
    void SetAppName(const QString& name) { m_appName = name; }
    void SetSettingsSection(const QString& section) { m_section = section; }

    // Sets the console up instead of the dialog below, when nobody has ever logged on here.
    void SetAssistant(std::function<void()> assistant) { m_assistant = std::move(assistant); }
    // The next logon is that of this account, without a question.
    void LogOnNextAs(const QString& userName, const QString& password) { m_next = {userName, password}; }

    // When there is no database (no file at the path, or a cleared path), offers to create one with its first
    // administrator, who is logged on at once, or to open another. A session that is open is closed first.
    void Logon(bool askUser, bool openDatabase) override;
    void Logoff() override;
    bool IsOpen() const override { return m_workspace != nullptr; }
    QString SelectWorkgroupFile() override;
    QString SelectDatabaseFile() override;
    bool IsMemberOf(const QString& group) override;
    DatabaseChanges& Changes() override { return m_changes; }
    SessionMemory& Memory() override { return m_memory; }

private:
    dao::Location StoredLocation() const;
    void RunAssistant();
    void LogOnPrepared(const dao::Location& location);
    dao::Location SetUpDatabase(const QString& missing);
    QString CarryOut(const FirstRunChoice& choice);
    void AskUser(const dao::Location& location);
    void Remember(const dao::Location& location);
    void WatchDatabase();
    [[noreturn]] void RaiseCancelled() const;

    Settings& m_settings;
    const IStringSource& m_strings;
    LogonPause m_pause;
    dao::OpenOptions m_options;
    QString m_appName;
    QString m_section = "DB";
    DatabaseChanges m_changes;
    SessionMemory m_memory{*this, m_changes};
    std::unique_ptr<dao::Workspace> m_workspace;
    std::function<void()> m_assistant;
    struct {
        QString userName;
        QString password;
    } m_next; // of an account that was just made
};
