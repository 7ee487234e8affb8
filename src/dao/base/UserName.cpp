#include "dao/base/UserName.h"
#include "dao/base/Error.h"
#include <algorithm>

namespace dao {

void RequireUserName(const QString& name)
{
    constexpr int longest = 64;
    const bool printable = std::all_of(name.begin(), name.end(), [](QChar c) { return c.isPrint(); });
    if (name.isEmpty() || name.size() > longest || name != name.trimmed() || !printable)
        throw Error(Kind::BadUserName, {name});
}

} // namespace dao
