#pragma once

#include <QString>
#include <QTemporaryDir>
#include <sys/types.h>

// A PostgreSQL server of this process's own, in a temporary folder and on a socket there; gone with the
// process. The role "postgres" needs no password, all others need theirs.
class TestServer {
public:
    // The tests are to run on a server: VELTORKYN_TEST_ENGINE is "postgresql".
    static bool IsWanted();
    // PostgreSQL's programs are on this machine.
    static bool IsInstalled();
    // Started at the first call. Throws when it cannot be.
    static TestServer& Get();

    ~TestServer();

    // A database of that name, for the role "postgres".
    QString Target(const QString& database) const;
    // A name that no database has had yet.
    QString NewName();
    QString SocketFolder() const { return m_folder.path(); }

    void Start();
    // As if it had crashed.
    void StopAtOnce();
    // All its processes stand still until they may go on.
    void Hold(bool on) const;

private:
    TestServer();

    QTemporaryDir m_folder;
    pid_t m_process = 0;
    int m_names = 0;
};
