#include "dao/sqlite/Handle.h"
#include "dao/sqlite/ErrorMapping.h"
#include <sqlite3.h>

namespace dao::sqlite {

void Handle::Open(const QString& path, int flags)
{
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &m_handle, flags, nullptr);
    if (result != SQLITE_OK)
        throw MakeError(result);
}

void Handle::Close() noexcept
{
    if (!m_handle)
        return;
    while (sqlite3_stmt* statement = sqlite3_next_stmt(m_handle, nullptr))
        sqlite3_finalize(statement);
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
}

sqlite3* Handle::Get() const
{
    if (!m_handle)
        throw Error(Kind::Closed);
    return m_handle;
}

Error Handle::MakeError(int code) const
{
    return sqlite::MakeError(m_handle, code, m_errorPath);
}

} // namespace dao::sqlite
