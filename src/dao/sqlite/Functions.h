#pragma once

#include "dao/sqlite/Handle.h"
#include <QDateTime>
#include <QString>
#include <functional>

namespace dao::sqlite {

// What the functions know of the session.
struct SessionFacts {
    using Now = std::function<QDateTime()>;

    Now now;      // empty: the system's clock
    QString user; // the account; empty before the logon
};

// The SQL functions that the schema scripts rely on; every engine has to provide them:
//   kyn_fold(text)              the text as compared without regard to case (dao::Fold)
//   kyn_match(lookfor, text...) 1 when the search text matches one of the texts (dao::LookFor), else 0
//   kyn_now()                   the present time as time stamps are stored: milliseconds since 1970 in UTC
//   kyn_user()                  the account of the session; empty before the logon
// `facts` outlives the open file.
void RegisterFunctions(const Handle& file, const SessionFacts& facts);

} // namespace dao::sqlite
