#pragma once

#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "dao/Workspace.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/tables/SessionReadings.h"
#include "support/TestServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <stdexcept>

// A real database with one administrator: on a server when that is wanted, otherwise in a folder of its own.
// Files take a while to make, so they are made once and then copied.
class TestDatabase {
    QTemporaryDir m_folder;
    const QString m_server;
    const bool m_isKept = false;

public:
    static constexpr auto userName = "admin";
    static constexpr auto password = "secret";

    TestDatabase()
        : TestDatabase(TestServer::IsWanted() ? TestServer::Get().Target(TestServer::Get().NewName())
                                              : QString())
    {
    }

    // `server`: the address of a new database there; empty for files.
    explicit TestDatabase(const QString& server) : m_server(server)
    {
        if (!m_server.isEmpty()) {
            dao::CreateDatabase(location, userName, password);
            return;
        }
        const dao::Location model = Model();
        if (!QFile::copy(model.database, location.database) ||
            !QFile::copy(model.workgroup, location.workgroup))
            throw std::runtime_error("the test database cannot be copied");
    }

    // A database that stays, made when it is not there.
    explicit TestDatabase(const dao::Location& kept) : m_isKept(true), location(kept)
    {
        try {
            Open();
        } catch (const dao::Error&) {
            dao::CreateDatabase(location, userName, password, dao::PasswordCost::Lowest());
        }
    }

    ~TestDatabase()
    {
        if (!m_server.isEmpty() && !m_isKept)
            dao::postgresql::DropServerDatabase(dao::postgresql::ServerAddress::Parse(location.database));
    }

    static dao::OpenOptions Options()
    {
        dao::OpenOptions options;
        options.passwordCost = dao::PasswordCost::Lowest();
        return options;
    }

    std::unique_ptr<dao::Workspace> Open(const QString& user = userName, const QString& pass = password,
                                         const dao::OpenOptions& options = Options()) const
    {
        return dao::OpenWorkspace(location, user, pass, options);
    }

    // Adds an operator, a member of "Users" without a profile.
    void AddOperator(const QString& name, const QString& pass) const
    {
        const auto workspace = Open();
        workspace->Users().Append(*workspace->CreateUser(name, "PID0123456789", pass));
        workspace->Users().Item(name)->Groups().Append(dao::UsersGroupName);
    }

    QString Folder() const { return m_folder.path(); }

    const dao::Location location =
        dao::LocationOf(m_server.isEmpty() ? m_folder.filePath("test.kyndb") : m_server);

private:
    static dao::Location Model()
    {
        static const QTemporaryDir folder;
        static const dao::Location model = [] {
            const dao::Location made = dao::LocationOf(folder.filePath("model.kyndb"));
            dao::CreateDatabase(made, userName, password, dao::PasswordCost::Lowest());
            return made;
        }();
        return model;
    }
};

// A session that is logged on without a dialog.
class TestSession : public IDbSession, public IDbLogon {
public:
    explicit TestSession(const TestDatabase& database,
                         const dao::OpenOptions& options = TestDatabase::Options())
        : m_database(database),
          m_options(options)
    {
        Logon(true, true);
    }

    // Called before every use of the workspace and the database; what it raises the user gets.
    std::function<void()> onUse;
    // With whom Logon logs on.
    QString logonName = TestDatabase::userName;
    QString logonPassword = TestDatabase::password;

    dao::Workspace& Workspace() override
    {
        if (onUse)
            onUse();
        if (!m_workspace)
            throw Error(ErrorCode::General, "nobody is logged on");
        return *m_workspace;
    }
    dao::Database& Database() override { return Workspace().Database(); }
    QString MakePID(const QString&, const QString&) override { return "PID01234567890123456"; }
    QString WorkgroupFile() const override { return m_database.location.workgroup; }
    void SetWorkgroupFile(const QString&) override {}
    QString DatabaseFile() const override { return m_database.location.database; }
    void SetDatabaseFile(const QString&) override {}
    void Logon(bool, bool) override
    {
        m_workspace = m_database.Open(logonName, logonPassword, m_options);
        m_workspace->Watch({[this](const QString& table) { m_changes.Tell(table); },
                            [this](bool away) { m_changes.SetAway(away); }});
        m_workspace->Database().ReadAhead(dao::SessionReadings(m_workspace->UserName()));
        m_changes.Open([this] { return Workspace().ChangedElsewhere(); });
    }
    DatabaseChanges& Changes() override { return m_changes; }
    SessionMemory& Memory() override { return m_memory; }
    void Logoff() override
    {
        m_changes.Close();
        m_workspace.reset();
    }
    bool IsOpen() const override { return m_workspace != nullptr; }
    QString SelectWorkgroupFile() override { return {}; }
    QString SelectDatabaseFile() override { return {}; }
    bool IsMemberOf(const QString& group) override
    {
        return Workspace().Users().IsMember(m_workspace->UserName(), group);
    }

private:
    const TestDatabase& m_database;
    dao::OpenOptions m_options;
    DatabaseChanges m_changes;
    SessionMemory m_memory{*this, m_changes};
    std::unique_ptr<dao::Workspace> m_workspace;
};
