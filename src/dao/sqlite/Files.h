#pragma once

#include "dao/base/FileAccess.h"
#include <QString>
#include <chrono>
#include <functional>

namespace dao::sqlite {

class Connection;

enum class FileKind { Database, Workgroup };

// What a file says about itself in its table file_info.
struct FileInfo {
    int version = 0;
    QString databaseId; // the same in a database and in its workgroup file
};

// Raises what keeps the file from being used: Kind::NoSuchFile (or WorkgroupMissing), NotADatabase (a folder,
// a device), NotReadable, ReadOnly.
void RequireUsableFile(const QString& path, FileKind kind);

// Reads the file_info of one of the connection's schemas. Kind::NotADatabase when it is no file of this kind.
FileInfo ReadFileInfo(Connection& connection, const QString& schema, const QString& path, FileKind kind);

// Kind::FileExists when there is something at `path`, Kind::CannotCreate when its folder is missing or not
// writable.
void RequireFreePath(const QString& path);

// A file under construction beside its final place. Deleted again unless Publish was reached.
class NewFile {
public:
    explicit NewFile(const QString& path); // as RequireFreePath
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    const QString& TemporaryPath() const { return m_temporary; }
    // Makes it, empty; SQLite gives the journal the rights of its file. Kind::CannotCreate.
    void Make(const FileAccess& access);
    // Gives the file its name without ever replacing another one. Kind::FileExists, Kind::CannotCreate.
    void Publish();
    // From here on the published file stays.
    void Keep() { m_keep = true; }

private:
    QString m_path;
    QString m_temporary;
    bool m_published = false;
    bool m_keep = false;
};

// Writes a consistent copy of a file into an empty one, while others may have it open. `told` is called with
// the part that is done, in percent, many times a second.
void CopyContents(const QString& from, const QString& to, std::chrono::milliseconds busyTimeout,
                  const std::function<void(int percent)>& told = {});

} // namespace dao::sqlite
