#include "core/base/FileLock.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

FileLock::FileLock(QString file) : m_file(std::move(file)) {}

FileLock::~FileLock()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

FileLock::Result FileLock::TryLock()
{
    if (m_handle >= 0)
        return Result::Locked;
    const int handle = ::open(QFile::encodeName(m_file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (handle < 0)
        return Result::Failed;
    if (::flock(handle, LOCK_EX | LOCK_NB) == 0) {
        m_handle = handle;
        return Result::Locked;
    }
    const bool held = errno == EWOULDBLOCK;
    ::close(handle);
    return held ? Result::HeldByAnother : Result::Failed;
}
