#pragma once

#include <QString>

class DatabaseChanges;
class SessionMemory;
namespace dao {
class Database;
class Workspace;
} // namespace dao

// What is open: the operator's database session. Members are named as its users know them. For the window's
// thread only.
struct IDbSession {
    virtual ~IDbSession() = default;

    // The workspace of the logged-on operator and the open database. Raise Error while nobody is logged on.
    virtual dao::Workspace& Workspace() = 0;
    virtual dao::Database& Database() = 0;
    virtual bool IsOpen() const = 0;

    // Whether the logged-on account belongs to a group ("Admins").
    virtual bool IsMemberOf(const QString& group) = 0;

    // A personal identifier for a new account: 20 characters from a cryptographic random source.
    virtual QString MakePID(const QString& userName, const QString& seed) = 0;

    // What other consoles do, and whether the database can be reached.
    virtual DatabaseChanges& Changes() = 0;
    // What was read, for all that the radio brings.
    virtual SessionMemory& Memory() = 0;
};

// How it is opened and closed, and with which files.
struct IDbLogon {
    virtual ~IDbLogon() = default;

    // Asks for user name and password and opens workspace and database. Raises ErrorCode::LogonCancelled when
    // the operator cancels, another Error for every other failure. Both options are always passed as true.
    virtual void Logon(bool askUser, bool openDatabase) = 0;
    virtual void Logoff() = 0;

    // Paths kept in the settings. A cleared path stays empty; reading it then raises ErrorCode::NoFile.
    virtual QString WorkgroupFile() const = 0;
    virtual void SetWorkgroupFile(const QString& path) = 0;
    virtual QString DatabaseFile() const = 0;
    virtual void SetDatabaseFile(const QString& path) = 0;

    // Let the operator pick a file. Raise Error (ErrorCode::General) when nothing was picked.
    virtual QString SelectWorkgroupFile() = 0;
    virtual QString SelectDatabaseFile() = 0;
};
