#include "dao/sqlite/Handle.h"
#include "dao/base/Patience.h"
#include "dao/sqlite/ErrorMapping.h"
#include <QFile>
#include <algorithm>
#include <sqlite3.h>
#include <sys/stat.h>
#include <utility>

namespace dao::sqlite {

void Handle::Open(const QString& path, int flags)
{
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &m_handle, flags, nullptr);
    if (result != SQLITE_OK)
        throw MakeError(result);
    m_path = path;
    m_identity = Identity(path);
}

void Handle::Close() noexcept
{
    if (!m_handle)
        return;
    for (sqlite3_stmt* statement : m_statements)
        sqlite3_finalize(statement);
    m_statements.clear();
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
}

void Handle::End(sqlite3_stmt* statement) const noexcept
{
    if (m_statements.erase(statement) > 0)
        sqlite3_finalize(statement);
}

sqlite3* Handle::Get() const
{
    if (!m_handle)
        throw Error(Kind::Closed);
    if (m_waiting)
        throw Error(Kind::Busy);
    return m_handle;
}

void Handle::SetLockTimeout(std::chrono::milliseconds timeout)
{
    m_lockTimeout = timeout;
    sqlite3_busy_handler(m_handle, &Handle::AwaitLock, this);
}

// Called by the engine each time it has found the lock still held; 0 ends the wait with a failure.
int Handle::AwaitLock(void* handle, int calls)
{
    constexpr std::chrono::milliseconds shortest{1};
    constexpr std::chrono::milliseconds longest{25};
    Handle& self = *static_cast<Handle*>(handle);
    if (calls == 0)
        self.m_locked.start();
    const std::chrono::milliseconds left =
        self.m_lockTimeout - std::chrono::milliseconds(self.m_locked.elapsed());
    if (left.count() <= 0 || !self.m_waitsForLocks)
        return 0;
    self.m_waiting = true;
    const auto end = Patience::AwaitHere({.what = Patience::Wait::For::Lock,
                                          .where = self.m_errorPath,
                                          .limit = std::min({left, longest, shortest * (calls + 1)})});
    self.m_waiting = false;
    self.m_givenUp = end == Patience::End::GivenUp;
    return self.m_givenUp ? 0 : 1;
}

bool Handle::IsInPlace() const
{
    return Identity(m_path) == m_identity;
}

// Empty when there is no file.
QByteArray Handle::Identity(const QString& path)
{
    struct stat found {};
    if (stat(QFile::encodeName(path).constData(), &found) != 0)
        return {};
    return QByteArray::number(static_cast<quint64>(found.st_dev)) + ' ' +
           QByteArray::number(static_cast<quint64>(found.st_ino));
}

Error Handle::MakeError(int code) const
{
    if ((code & 0xFF) == SQLITE_BUSY && std::exchange(m_givenUp, false))
        return Error(Kind::GivenUp, {m_errorPath});
    return sqlite::MakeError(m_handle, code, m_errorPath);
}

} // namespace dao::sqlite
