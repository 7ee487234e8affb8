#include "dao/sqlite/Handle.h"
#include "dao/sqlite/ErrorMapping.h"
#include <QFile>
#include <sqlite3.h>
#include <sys/stat.h>

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
    return sqlite::MakeError(m_handle, code, m_errorPath);
}

} // namespace dao::sqlite
