#pragma once

#include "dao/base/Error.h"
#include <QString>

struct sqlite3;

namespace dao::sqlite {

// What a trigger that guards rights says; becomes Kind::NotPermitted.
inline constexpr auto NotPermittedMessage = "needs an administrator";

// The engine's last failure on `handle` as an Error. `code` is the (extended) result code, `path` the file to
// be named in it.
Error MakeError(sqlite3* handle, int code, const QString& path);

} // namespace dao::sqlite
