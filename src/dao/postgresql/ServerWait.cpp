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

bool ServerWait::AnswersTo(PGconn* connection, const std::vector<int>& parts, std::vector<Result>& answers)
{
    ++m_count;
    UntilSent(connection);
    for (const int statements : parts)
        if (!TakePart(connection, statements, answers))
            return false;
    return true;
}

bool ServerWait::TakePart(PGconn* connection, int statements, std::vector<Result>& answers)
{
    const std::size_t end = answers.size() + static_cast<std::size_t>(statements);
    for (bool ended = false;;) {
        UntilReadable(connection);
        Result next(PQgetResult(connection));
        if (PQstatus(connection) == CONNECTION_BAD || (next.Handle() == nullptr && ended))
            return false;
        ended = next.Handle() == nullptr; // of one statement's answers
        if (ended)
            continue;
        if (PQresultStatus(next.Handle()) == PGRES_PIPELINE_SYNC)
            return answers.size() == end;
        if (answers.size() < end)
            answers.push_back(std::move(next));
        else if (!next.IsSuccess())
            answers.back() = std::move(next);
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
