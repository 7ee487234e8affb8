#include "dao/sqlite/Files.h"
#include "dao/base/Passwords.h"
#include "dao/sqlite/Connection.h"
#include "dao/sqlite/ErrorMapping.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sqlite3.h>

// A database file is never opened by other means than SQLite while it may be open in this process: closing
// any descriptor of a file drops all of the process's locks on it.

namespace dao::sqlite {

namespace {

constexpr int PagesAtOnce = 1000; // of a copy, about 4 MB

} // namespace

void RequireUsableFile(const QString& path, FileKind kind)
{
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        throw Error(kind == FileKind::Workgroup ? Kind::WorkgroupMissing : Kind::NoSuchFile, {path});
    if (!file.isFile())
        throw Error(Kind::NotADatabase, {path});
    if (!file.isReadable())
        throw Error(Kind::NotReadable, {path});
    // The rollback journal is created beside the file, so the folder has to be writable as well.
    if (!file.isWritable() || !QFileInfo(file.absolutePath()).isWritable())
        throw Error(Kind::ReadOnly, {path});
}

FileInfo ReadFileInfo(Connection& connection, const QString& schema, const QString& path, FileKind kind)
{
    if (!connection
             .Value("SELECT 1 FROM " + schema + ".sqlite_schema WHERE type='table' AND name='file_info'")
             .isValid())
        throw Error(Kind::NotADatabase, {path});
    const auto read = [&](const char* name) {
        return connection.Value("SELECT value FROM " + schema + ".file_info WHERE name=?", {QString(name)})
            .toString();
    };
    bool isNumber = false;
    FileInfo info{read("schema_version").toInt(&isNumber), read("database_id")};
    if (!isNumber || read("kind") != (kind == FileKind::Database ? "database" : "workgroup"))
        throw Error(Kind::NotADatabase, {path});
    return info;
}

void RequireFreePath(const QString& path)
{
    const QFileInfo file(path);
    if (path.isEmpty())
        throw Error(Kind::CannotCreate, {path});
    if (file.exists() || file.isSymLink())
        throw Error(Kind::FileExists, {path});
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir() || !folder.isWritable())
        throw Error(Kind::CannotCreate, {path});
}

NewFile::NewFile(const QString& path) : m_path(path)
{
    RequireFreePath(path);
    const QFileInfo file(path);
    m_temporary = QDir(file.absolutePath()).filePath('.' + file.fileName() + '.' + RandomText(8) + ".new");
}

NewFile::~NewFile()
{
    QFile::remove(m_temporary);
    QFile::remove(m_temporary + "-journal");
    if (m_published && !m_keep)
        QFile::remove(m_path);
}

void NewFile::Make(const FileAccess& access)
{
    if (!MakeFile(m_temporary, access))
        throw Error(Kind::CannotCreate, {m_path});
}

void NewFile::Publish()
{
    // QFile::rename does not replace an existing file.
    QFile temporary(m_temporary);
    if (!temporary.rename(m_path))
        throw Error(QFileInfo::exists(m_path) ? Kind::FileExists : Kind::CannotCreate, {m_path},
                    temporary.errorString());
    m_published = true;
    SyncFolder(QFileInfo(m_path).absolutePath());
}

void CopyContents(const QString& from, const QString& to, std::chrono::milliseconds busyTimeout,
                  const std::function<void(int)>& told)
{
    const auto source = Connection::Open(from, Connection::Mode::ReadOnly, busyTimeout);
    const auto target = Connection::Open(to, Connection::Mode::Create, busyTimeout);
    sqlite3_backup* backup = sqlite3_backup_init(target->File(), "main", source->File(), "main");
    if (!backup)
        throw target->MakeError(sqlite3_extended_errcode(target->File()));
    // A source that is locked for a moment is waited for by the busy timeout of its connection. Then it is
    // read in one transaction, so that the copy is of one moment however many steps it takes.
    int result =
        sqlite3_exec(source->File(), "BEGIN; SELECT 1 FROM sqlite_schema", nullptr, nullptr, nullptr);
    while (result == SQLITE_OK) {
        result = sqlite3_backup_step(backup, PagesAtOnce);
        if (const int pages = sqlite3_backup_pagecount(backup); told && pages > 0)
            told(static_cast<int>(100LL * (pages - sqlite3_backup_remaining(backup)) / pages));
    }
    const int finished = sqlite3_backup_finish(backup);
    if (result != SQLITE_DONE)
        throw MakeError(nullptr, finished == SQLITE_OK ? result : finished, from);
}

} // namespace dao::sqlite
