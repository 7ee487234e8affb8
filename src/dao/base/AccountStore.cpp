#include "dao/base/AccountStore.h"
#include "dao/base/TextMatch.h"

namespace dao {

bool AccountStore::IsOwn(const QString& user) const
{
    return Fold(user) == Fold(m_ownName);
}

} // namespace dao
