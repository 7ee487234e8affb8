#include "dao/AccountStore.h"
#include "dao/TextMatch.h"

namespace dao {

bool AccountStore::IsOwn(const QString& user) const
{
    return Fold(user) == Fold(m_ownName);
}

} // namespace dao
