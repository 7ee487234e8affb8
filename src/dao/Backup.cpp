#include "dao/Backup.h"
#include "dao/Maintenance.h"
#include "dao/base/Error.h"
#include "dao/base/FileAccess.h"
#include "dao/base/Passwords.h"
#include "dao/postgresql/ServerAddress.h"
#include "dao/sqlite/FilesCopy.h"
#include "dao/sqlite/Session.h"
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

namespace dao {

namespace {

constexpr auto TimeFormat = "yyyyMMdd'T'HHmmss'Z'";
constexpr int TimeLength = 16; // characters
constexpr auto DatabaseEnding = ".kyndb";
constexpr int TextEvent = 2; // of a log record

QString NameOf(const Location& database)
{
    return IsServerTarget(database.database) ? postgresql::ServerAddress::Parse(database.database).Database()
                                             : QFileInfo(database.database).completeBaseName();
}

// A generation under construction. Deleted again unless Publish was reached.
class NewGeneration {
public:
    NewGeneration(const QString& folder, const QString& name, const QDateTime& time)
        : m_folder(folder),
          m_time(time),
          m_path(QDir(folder).filePath(name + '-' + time.toUTC().toString(TimeFormat))),
          m_temporary(QDir(folder).filePath('.' + QFileInfo(m_path).fileName() + '.' + RandomText(8))),
          m_files(LocationOf(QDir(m_temporary).filePath(name + DatabaseEnding)))
    {
        if (!MakePrivateFolder(folder))
            throw Error(Kind::CannotCreate, {folder});
        if (QFileInfo::exists(m_path))
            throw Error(Kind::FileExists, {m_path});
        if (!QDir().mkdir(m_temporary))
            throw Error(Kind::CannotCreate, {m_path});
    }
    NewGeneration(const NewGeneration&) = delete;
    NewGeneration& operator=(const NewGeneration&) = delete;
    ~NewGeneration() { QDir(m_temporary).removeRecursively(); }

    const Location& Files() const { return m_files; }
    const QString& Path() const { return m_path; }

    void Publish()
    {
        // Not sound on the disk is not sound.
        for (const Finding& finding : CheckDatabase(m_files))
            if (finding.severity == Finding::Severity::Error)
                throw Error(Kind::Damaged, {m_path}, finding.values.join(' '));
        WriteReceipt();
        SyncFolder(m_temporary);
        if (!QDir().rename(m_temporary, m_path))
            throw Error(Kind::CannotCreate, {m_path});
        SyncFolder(m_folder);
    }

private:
    void WriteReceipt() const
    {
        Database database(sqlite::AttachFiles(m_files, {}).connection);
        if (!EventTable::HasChains(database))
            return;
        QSaveFile file(QDir(m_temporary).filePath(LogReceipt::FileName));
        if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnerOnly) ||
            file.write(EventTable::Receipt(database, m_time).Text().toUtf8()) <= 0 || !Commit(file))
            throw Error(Kind::CannotCreate, {m_path}, file.errorString());
    }

    QString m_folder;
    QDateTime m_time;
    QString m_path;
    QString m_temporary;
    Location m_files;
};

// The two files of a generation.
Location FilesOf(const QString& backup)
{
    if (!QFileInfo(backup).isDir())
        return LocationOf(backup);
    const QDir folder(backup);
    const QStringList files = folder.entryList({QLatin1String("*") + DatabaseEnding}, QDir::Files);
    if (files.size() != 1)
        throw Error(Kind::NotADatabase, {backup});
    return LocationOf(folder.filePath(files.first()));
}

CopyReport Counted(const Location& files)
{
    CopyReport report;
    for (const auto& [table, records] : sqlite::CountRecords(files))
        report.tables.append({table, records});
    return report;
}

// The files of a backup as a database that may be written to. Examined before anything is made of it.
void CopySound(const Location& backup, const Location& to, const QString& admin, const QString& password,
               const QString& note, const EventTable::Signer& signer)
{
    sqlite::CopyRestingFiles(backup, to);
    try {
        for (const Finding& finding : CheckDatabase(to))
            if (finding.severity == Finding::Severity::Error)
                throw Error(Kind::Damaged, {backup.database}, finding.values.join(' '));
        sqlite::RequireAdministrator(to, admin, password);
        Database database(sqlite::AttachFiles(to, {}).connection);
        if (!note.isEmpty() && EventTable::HasChains(database))
            EventTable::AppendSigned(
                database, {.time = QDateTime::currentDateTimeUtc(), .kind = TextEvent, .desc = note}, signer);
    } catch (const Error&) {
        QFile::remove(to.database);
        QFile::remove(to.workgroup);
        throw;
    }
}

} // namespace

QList<Generation> GenerationsIn(const QString& folder, const Location& of)
{
    const QString begin = NameOf(of) + '-';
    QList<Generation> generations;
    for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString name = entry.fileName();
        if (!name.startsWith(begin) || name.size() != begin.size() + TimeLength)
            continue;
        QDateTime time = QDateTime::fromString(name.mid(begin.size()), TimeFormat);
        time.setTimeSpec(Qt::UTC);
        if (time.isValid())
            generations.append({entry.filePath(), time});
    }
    return generations;
}

BackupReport MakeBackup(const Location& from, const QString& folder, const QDateTime& time,
                        const QString& admin, const QString& password)
{
    if (!IsServerTarget(from.database)) {
        sqlite::RequireAdministrator(from, admin, password);
        return MakeBackupOfFiles(from, folder, time);
    }
    NewGeneration generation(folder, NameOf(from), time);
    BackupReport report{CopyDatabase(from, generation.Files(), admin, password), generation.Path()};
    generation.Publish();
    return report;
}

BackupReport MakeBackupOfFiles(const Location& from, const QString& folder, const QDateTime& time)
{
    if (IsServerTarget(from.database))
        throw Error(Kind::FilesOnly, {postgresql::ServerAddress::Parse(from.database).Shown()});
    NewGeneration generation(folder, NameOf(from), time);
    sqlite::CopyFiles(from, generation.Files());
    BackupReport report{Counted(generation.Files()), generation.Path()};
    generation.Publish();
    return report;
}

CopyReport RestoreBackup(const QString& backup, const Location& to, const QString& admin,
                         const QString& password, const QString& note, const EventTable::Signer& signer)
{
    const Location files = FilesOf(backup);
    if (!IsServerTarget(to.database)) {
        CopySound(files, to, admin, password, note, signer);
        return Counted(to);
    }
    // Brought to this program's schema on the way, which the backup itself is not.
    const QTemporaryDir scratch;
    if (!scratch.isValid())
        throw Error(Kind::CannotCreate, {scratch.path()}, scratch.errorString());
    const Location copy = LocationOf(scratch.filePath(QStringLiteral("copy") + DatabaseEnding));
    CopySound(files, copy, admin, password, note, signer);
    return CopyDatabase(copy, to, admin, password);
}

} // namespace dao
