#include "dao/postgresql/ServerWait.h"
#include <cerrno>
#include <poll.h>

namespace dao::postgresql {

namespace {

// Errors of the socket count as readiness: libpq finds them.
void WaitForSocket(PGconn* connection, short events)
{
    pollfd socket{PQsocket(connection), events, 0};
    while (poll(&socket, 1, -1) < 0 && errno == EINTR)
        continue;
}

} // namespace

Result ServerWait::AnswerTo(PGconn* connection, int sent)
{
    if (sent == 0)
        return Result(PQmakeEmptyPGresult(connection, PGRES_FATAL_ERROR));
    ++m_count;
    UntilSent(connection);
    Result answer(nullptr);
    for (;;) {
        UntilReadable(connection);
        PGresult* next = PQgetResult(connection);
        if (next == nullptr)
            return answer;
        answer = Result(next);
        if (PQstatus(connection) == CONNECTION_BAD)
            return answer;
    }
}

// The server may want its answers read before it reads on.
void ServerWait::UntilSent(PGconn* connection)
{
    while (PQflush(connection) == 1) {
        WaitForSocket(connection, POLLIN | POLLOUT);
        if (PQconsumeInput(connection) == 0)
            return;
    }
}

// Until a result can be taken without waiting.
void ServerWait::UntilReadable(PGconn* connection)
{
    while (PQisBusy(connection) != 0) {
        WaitForSocket(connection, POLLIN);
        if (PQconsumeInput(connection) == 0)
            return;
    }
}

} // namespace dao::postgresql
