#pragma once

#include "dao/postgresql/Result.h"

namespace dao::postgresql {

// The one place where a session waits for its server, and the count of these waits. The connection is set to
// not block (PQsetnonblocking), so that nothing else of libpq waits.
class ServerWait {
public:
    // The whole answer to what one of PQsend... was just given, whose return value is `sent`: of several
    // results the last. A failure of libpq is a result, too.
    Result AnswerTo(PGconn* connection, int sent);

    // How often the server was waited for, whatever the length of its answers.
    int Count() const { return m_count; }

private:
    static void UntilSent(PGconn* connection);
    static void UntilReadable(PGconn* connection);

    int m_count = 0;
};

} // namespace dao::postgresql
