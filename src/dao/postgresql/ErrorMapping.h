#pragma once

#include "dao/base/Error.h"
#include <libpq-fe.h>

namespace dao::postgresql {

// A statement's failure as an Error; `server` is the address to be named in it.
Error MakeError(const PGresult* result, const QString& server);

// The five characters that tell what kind of failure it is.
QByteArray StateOf(const PGresult* result);

// The server ended a statement to untie several that waited for each other; it can be tried again.
bool IsDeadlock(const PGresult* result);

// The server is going down or has turned into one that only answers: the connection is of no more use.
bool EndsConnection(const PGresult* result);

} // namespace dao::postgresql
