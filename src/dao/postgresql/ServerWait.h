#pragma once

#include "dao/base/Patience.h"
#include "dao/postgresql/Result.h"
#include <functional>
#include <vector>

namespace dao::postgresql {

// The one place where a session waits for its server, and the count of these waits. The connection is set to
// not block (PQsetnonblocking), so that nothing else of libpq waits. It waits as its thread's Patience does;
// nothing may use the connection from within that.
class ServerWait {
public:
    struct Owner {
        QString server;                                  // as it is shown
        std::function<void(bool waiting)> waiting;       // told at the beginning and at the end of each wait
        std::function<void(const QString& reason)> lose; // the connection is of no more use
    };

    explicit ServerWait(Owner owner) : m_owner(std::move(owner)) {}

    // The whole answer to what one of PQsend... was just given, whose return value is `sent`: of several
    // results the last. A failure of libpq is a result, too. Kind::GivenUp, and Kind::ServerAway when a
    // window has waited too long for what may have been stored; the connection is lost then.
    Result AnswerTo(PGconn* connection, int sent);

    // The answers to what was just sent in pipeline mode: `parts` says how many statements stand before each
    // synchronisation. One answer for each statement; where the end of a part fails, its last one has failed.
    // False when the connection broke or libpq lost count. Errors as AnswerTo.
    bool AnswersTo(PGconn* connection, const std::vector<int>& parts, std::vector<Result>& answers);

    // How often the server was waited for, whatever the length of its answers.
    int Count() const { return m_count; }

    // A wait is in progress.
    bool IsWaiting() const { return m_waiting; }

    // A wait that this class does not do itself.
    class Scope {
    public:
        explicit Scope(ServerWait& wait) : m_wait(wait) { m_wait.SetWaiting(true); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { m_wait.SetWaiting(false); }

    private:
        ServerWait& m_wait;
    };

    // While it lives, what is sent may be stored although its answer is not waited for.
    class Storing {
    public:
        Storing(ServerWait& wait, bool on) : m_wait(wait), m_before(wait.m_storing) { wait.m_storing |= on; }
        Storing(const Storing&) = delete;
        Storing& operator=(const Storing&) = delete;
        ~Storing() { m_wait.m_storing = m_before; }

    private:
        ServerWait& m_wait;
        bool m_before;
    };

private:
    bool TakePart(PGconn* connection, int statements, std::vector<Result>& answers);
    void UntilSent(PGconn* connection);
    void UntilReadable(PGconn* connection);
    void WaitForSocket(PGconn* connection, Patience::Wait::Ready ready);
    void SetWaiting(bool waiting);

    const Owner m_owner;
    int m_count = 0;
    bool m_waiting = false;
    bool m_storing = false;
};

} // namespace dao::postgresql
