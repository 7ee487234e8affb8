#include "dao/postgresql/ServerWait.h"
#include "dao/base/Error.h"

namespace dao::postgresql {

namespace {

// How long a window waits at most for the answer to a change, which cannot be given up.
constexpr std::chrono::seconds LongestStore{30};

} // namespace

Result ServerWait::AnswerTo(PGconn* connection, int sent)
{
    if (sent == 0)
        return Result(PQmakeEmptyPGresult(connection, PGRES_FATAL_ERROR));
    ++m_count;
    const Scope waiting(*this);
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
    const Scope waiting(*this);
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
        WaitForSocket(connection, Patience::Wait::Ready::Either);
        if (PQconsumeInput(connection) == 0)
            return;
    }
}

// Until a result can be taken without waiting.
void ServerWait::UntilReadable(PGconn* connection)
{
    while (PQisBusy(connection) != 0) {
        WaitForSocket(connection, Patience::Wait::Ready::Readable);
        if (PQconsumeInput(connection) == 0)
            return;
    }
}

void ServerWait::WaitForSocket(PGconn* connection, Patience::Wait::Ready ready)
{
    Patience::Wait wait{.where = m_owner.server, .socket = PQsocket(connection), .ready = ready};
    if (m_storing) {
        wait.mayGiveUp = false;
        if (Patience::IsUsed())
            wait.limit = LongestStore;
    }
    const Patience::End end = Patience::AwaitHere(wait);
    if (end == Patience::End::Ready)
        return;
    const QString reason = QStringLiteral("no answer");
    m_owner.lose(reason);
    if (m_storing)
        throw Error(Kind::ServerAway, {m_owner.server, reason}, reason);
    throw Error(Kind::GivenUp, {m_owner.server}, reason);
}

void ServerWait::SetWaiting(bool waiting)
{
    m_waiting = waiting;
    m_owner.waiting(waiting);
}

} // namespace dao::postgresql
