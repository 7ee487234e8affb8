#pragma once

struct sqlite3;

namespace dao::sqlite {

class Connection;

// The SQL functions that the schema scripts rely on; every engine has to provide them:
//   kyn_fold(text)              the text as compared without regard to case (dao::Fold)
//   kyn_match(lookfor, text...) 1 when the search text matches one of the texts (dao::LookFor), else 0
//   kyn_now()                   the present time as time stamps are stored: milliseconds since 1970 in UTC
//   kyn_user()                  the account of the session; empty before the logon
void RegisterFunctions(sqlite3* handle, const Connection& connection);

} // namespace dao::sqlite
