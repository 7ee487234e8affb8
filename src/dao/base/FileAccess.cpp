#include "dao/base/FileAccess.h"
#include "dao/base/Error.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dao {

namespace {

constexpr mode_t PrivateFolder = 0700;
constexpr mode_t SharedFolder = 02770; // what is made in it belongs to its group
constexpr mode_t SharedFile = 0660;

struct stat StatusOf(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        status = {};
    return status;
}

QString NameOf(gid_t group)
{
    const struct group* entry = getgrgid(group);
    return entry ? QString::fromLocal8Bit(entry->gr_name) : QString::number(group);
}

std::vector<gid_t> OwnGroups()
{
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
    groups.resize(
        static_cast<std::size_t>(std::max(getgroups(static_cast<int>(groups.size()), groups.data()), 0)));
    std::erase(groups, getegid());
    groups.push_back(getegid());
    return groups;
}

gid_t GroupNamed(const QString& name)
{
    const struct group* entry = getgrnam(name.toLocal8Bit().constData());
    const std::vector<gid_t> own = OwnGroups();
    if (!entry || (geteuid() != 0 && std::find(own.begin(), own.end(), entry->gr_gid) == own.end()))
        throw Error(Kind::NoSuchSystemGroup, {name});
    return entry->gr_gid;
}

bool IsShared(const struct stat& folder, gid_t group)
{
    constexpr mode_t wanted = S_ISGID | S_IRWXG;
    return folder.st_gid == group && (folder.st_mode & (wanted | S_IWOTH)) == wanted;
}

// A folder that only its owner may enter keeps the group out of all that is in it.
void RequireReachable(const QString& folder, const QString& group)
{
    for (QString above = QFileInfo(folder).path(); above != "/"; above = QFileInfo(above).path())
        if (QFileInfo::exists(above) && (StatusOf(above).st_mode & (S_IXGRP | S_IXOTH)) == 0)
            throw Error(Kind::FolderOutOfReach, {group, above});
}

void MakeSharedFolder(const QString& folder, gid_t group)
{
    const QByteArray name = QFile::encodeName(folder);
    if (!QDir().mkpath(QFileInfo(folder).path()) || mkdir(name.constData(), PrivateFolder) != 0 ||
        chown(name.constData(), static_cast<uid_t>(-1), group) != 0 ||
        chmod(name.constData(), SharedFolder) != 0)
        throw Error(Kind::CannotCreate, {folder}, QString::fromLocal8Bit(strerror(errno)));
}

} // namespace

bool MakePrivateFolder(const QString& folder)
{
    const QFileInfo info(QDir::cleanPath(QDir(folder).absolutePath()));
    if (info.exists())
        return info.isDir();
    if (!MakePrivateFolder(info.path()))
        return false;
    return mkdir(QFile::encodeName(info.filePath()).constData(), PrivateFolder) == 0 || errno == EEXIST;
}

FileAccess AccessFor(const QString& file, const QString& group)
{
    if (group.isEmpty())
        return {};
    const gid_t id = GroupNamed(group);
    const QString folder = QFileInfo(file).absolutePath();
    RequireReachable(folder, group);
    if (!QFileInfo::exists(folder))
        MakeSharedFolder(folder, id);
    else if (!IsShared(StatusOf(folder), id))
        throw Error(Kind::FolderNotShared, {group, folder});
    return {SharedFile, id};
}

FileAccess AccessOfCopy(const QString& file)
{
    const struct stat status = StatusOf(file);
    return (status.st_mode & S_IWGRP) != 0 ? FileAccess{SharedFile, status.st_gid} : FileAccess{};
}

bool Commit(QSaveFile& file)
{
    return file.flush() && file.error() == QFileDevice::NoError && file.commit();
}

bool MakeFile(const QString& file, const FileAccess& access)
{
    const QByteArray name = QFile::encodeName(file);
    const int handle = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (handle < 0)
        return false;
    // The group before the rights, so that no other group ever has them.
    const bool made = (access.group == static_cast<gid_t>(-1) ||
                       fchown(handle, static_cast<uid_t>(-1), access.group) == 0) &&
                      fchmod(handle, access.mode) == 0;
    close(handle);
    if (!made)
        unlink(name.constData());
    return made;
}

void SyncFolder(const QString& folder)
{
    const int handle = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
}

QStringList SystemGroups()
{
    QStringList names;
    for (const gid_t group : OwnGroups())
        names.append(NameOf(group));
    return names;
}

Sharing SharingOf(const QString& file)
{
    const struct stat status = StatusOf(file);
    if ((status.st_mode & S_IRWXO) != 0)
        return Sharing::Everybody;
    if ((status.st_mode & S_IRWXG) == 0)
        return Sharing::Owner;
    const bool whole = (status.st_mode & SharedFile) == SharedFile &&
                       IsShared(StatusOf(QFileInfo(file).absolutePath()), status.st_gid);
    return whole ? Sharing::Group : Sharing::GroupInPart;
}

QString GroupOf(const QString& file)
{
    return NameOf(StatusOf(file).st_gid);
}

} // namespace dao
