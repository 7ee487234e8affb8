#pragma once

#include "dao/postgresql/ServerAddress.h"
#include <QSet>
#include <QString>
#include <atomic>
#include <chrono>
#include <libpq-fe.h>
#include <memory>
#include <mutex>

namespace dao::postgresql {

struct ConnectionCloser {
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
using ConnectionHandle = std::unique_ptr<PGconn, ConnectionCloser>;

// A password that all copies have in common, so that each connection of a session is made with what it is by
// then. May be used on any thread.
class SharedPassword {
public:
    SharedPassword(const QByteArray& password = {}) : m_state(std::make_shared<State>(password)) {}
    QByteArray Get() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->password;
    }
    void Set(const QByteArray& password)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->password = password;
    }

private:
    struct State {
        explicit State(const QByteArray& first) : password(first) {}
        std::mutex mutex;
        QByteArray password;
    };
    std::shared_ptr<State> m_state;
};

// The server's processes that work for the sessions of one logon, so that none of these takes what another
// one does for a foreign change. All copies have them in common. May be used on any thread.
class SharedBackends {
public:
    void Add(int process)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->processes.insert(process);
    }
    void Remove(int process)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->processes.remove(process);
    }
    bool Contains(int process) const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->processes.contains(process);
    }

private:
    struct State {
        std::mutex mutex;
        QSet<int> processes;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

// As whom and where a connection is made.
struct Logon {
    ServerAddress address;
    QByteArray database;
    QByteArray role;         // empty: as libpq chooses
    SharedPassword password; // empty: as libpq finds it
    std::chrono::milliseconds lockTimeout{2000};
    // The server has to ask for the password: one that lets everybody in would make every password right.
    bool passwordRequired = true;
    SharedBackends backends{};
};

// Tries the hosts in their order, each at most two seconds, so that a window never waits long. Reads no state
// and may run on any thread; gives up early (Kind::ServerAway) once `stop` is set. Kind::WrongPassword,
// Kind::ServerAway when no host answers or can be written to, Kind::ServerRefused when one answers and
// refuses for another reason, Kind::ServerTrusts.
ConnectionHandle Connect(const Logon& logon, const std::atomic<bool>* stop = nullptr);

// The role of an account of a database: "fleet.olga". Roles belong to the whole server, so their names begin
// with the database's. What is too long for the server is replaced by a digest (as kyn_role_name does).
QByteArray RoleName(const QString& database, const QString& userName);

// The server refuses an empty password. It is stored as this text instead, and a logon with an empty password
// sends it.
inline constexpr auto EmptyPassword = "veltorkyn: no password yet";

// What the server is given for a password as it was typed.
QByteArray PasswordBytes(const QString& password);

} // namespace dao::postgresql
