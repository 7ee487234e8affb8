#include "simulator/program/SymbolicLink.h"

#include "simulator/program/Port.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace sim {

namespace {

[[noreturn]] void Fail(const QString& path, const char* what)
{
    throw PortError(path.toStdString() + ": " + what + ": " + std::strerror(errno));
}

} // namespace

// Another program may have put its own link there meanwhile, which stays.
SymbolicLink::~SymbolicLink()
{
    if (!m_target.isEmpty() && QFile::symLinkTarget(m_path) == m_target)
        QFile::remove(m_path);
}

void SymbolicLink::PointTo(const QString& target)
{
    const QByteArray path = QFile::encodeName(m_path);
    struct stat found {};
    const bool exists = ::lstat(path.constData(), &found) == 0;
    if (exists && !S_ISLNK(found.st_mode))
        throw PortError(m_path.toStdString() + ": exists and is no symbolic link; it is left as it is");
    if (!exists && errno != ENOENT)
        Fail(m_path, "cannot be examined");

    // Made beside it and moved into place, so that there always is a link.
    const QByteArray aside = path + '.' + QByteArray::number(::getpid()) + ".new";
    if (::symlink(QFile::encodeName(target).constData(), aside.constData()) != 0)
        Fail(m_path, "cannot be made");
    if (::rename(aside.constData(), path.constData()) != 0) {
        const int error = errno;
        ::unlink(aside.constData());
        errno = error;
        Fail(m_path, "cannot be made");
    }
    m_target = target;
}

} // namespace sim
