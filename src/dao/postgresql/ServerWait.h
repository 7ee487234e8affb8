#pragma once

#include "dao/postgresql/Result.h"
#include <vector>

namespace dao::postgresql {

// The one place where a session waits for its server, and the count of these waits. The connection is set to
// not block (PQsetnonblocking), so that nothing else of libpq waits.
class ServerWait {
public:
    // The whole answer to what one of PQsend... was just given, whose return value is `sent`: of several
    // results the last. A failure of libpq is a result, too.
    Result AnswerTo(PGconn* connection, int sent);

    // The answers to what was just sent in pipeline mode: `parts` says how many statements stand before each
    // synchronisation. One answer for each statement; where the end of a part fails, its last one has failed.
    // False when the connection broke or libpq lost count.
    bool AnswersTo(PGconn* connection, const std::vector<int>& parts, std::vector<Result>& answers);

    // How often the server was waited for, whatever the length of its answers.
    int Count() const { return m_count; }

private:
    static bool TakePart(PGconn* connection, int statements, std::vector<Result>& answers);
    static void UntilSent(PGconn* connection);
    static void UntilReadable(PGconn* connection);

    int m_count = 0;
};

} // namespace dao::postgresql
