#pragma once

#include <QFileDevice>
#include <QString>
#include <QStringList>
#include <sys/types.h>

class QSaveFile;

// Which accounts of the operating system may open what the program makes. What is there already keeps its
// rights.
namespace dao {

// For QFile::open and the like: the owner alone.
inline constexpr QFileDevice::Permissions OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// Makes a folder, and those above it that are missing, for their owner alone. False when it is not there
// afterwards.
bool MakePrivateFolder(const QString& folder);

// How a file is made.
struct FileAccess {
    mode_t mode = 0600;
    gid_t group = static_cast<gid_t>(-1); // -1: that of the process
};

// For the owner alone without a group; otherwise 0660 in the folder of `file`, which is made, 2770, when it
// is missing, and has to be so when it is there: the journals that accounts of the group leave behind have to
// be the group's as well. Kind::NoSuchSystemGroup, Kind::FolderNotShared, Kind::FolderOutOfReach,
// Kind::CannotCreate.
FileAccess AccessFor(const QString& file, const QString& group);

// For a copy of a file: shared like the file, if it is shared by a group.
FileAccess AccessOfCopy(const QString& file);

// Puts what was written in the place of the file, and only when all of it has reached the disk: committing
// alone does not tell of a disk that is full. False when it has not; errorString says why.
bool Commit(QSaveFile& file);

// What was made, renamed or removed in the folder is not taken back by a power cut. What cannot be done about
// that is left.
void SyncFolder(const QString& folder);

// Makes an empty file. False when there is one, when it cannot be made, or when its group cannot be set.
bool MakeFile(const QString& file, const FileAccess& access);

// The groups to which this account of the system belongs, its own group last.
QStringList SystemGroups();

// How the rights of a file are, for whoever looks after the database.
enum class Sharing { Owner, Group, GroupInPart, Everybody };
Sharing SharingOf(const QString& file);
QString GroupOf(const QString& file);

} // namespace dao
