#include "dao/Error.h"
#include "dao/Location.h"
#include "dao/TextIds.h"

namespace dao {

namespace {

struct KindInfo {
    Kind kind;
    int textId;
    const char* name;
};

constexpr KindInfo kinds[] = {
    {Kind::NoSuchFile, textNoSuchFile, "no such file"},
    {Kind::FileExists, textFileExists, "file exists"},
    {Kind::CannotCreate, textCannotCreate, "cannot create"},
    {Kind::NoSuchSystemGroup, textNoSuchSystemGroup, "no such group of the system"},
    {Kind::FolderNotShared, textFolderNotShared, "folder not shared"},
    {Kind::FolderOutOfReach, textFolderOutOfReach, "folder out of reach"},
    {Kind::NotADatabase, textNotADatabase, "not a database"},
    {Kind::NotReadable, textNotReadable, "not readable"},
    {Kind::ReadOnly, textReadOnly, "read-only"},
    {Kind::Newer, textNewer, "newer schema"},
    {Kind::Locked, textLocked, "locked"},
    {Kind::Damaged, textDamaged, "damaged"},
    {Kind::DiskFull, textDiskFull, "disk full"},
    {Kind::WorkgroupMissing, textWorkgroupMissing, "workgroup file missing"},
    {Kind::WorkgroupMismatch, textWorkgroupMismatch, "workgroup file of another database"},
    {Kind::FilesOnly, textFilesOnly, "not with a database on a server"},
    {Kind::MigrationFailed, textMigrationFailed, "migration failed"},
    {Kind::BadServerAddress, textBadServerAddress, "server address not understood"},
    {Kind::BadDatabaseName, textBadDatabaseName, "database name not accepted"},
    {Kind::ServerAway, textServerAway, "server away"},
    {Kind::ServerRefused, textServerRefused, "server refuses"},
    {Kind::ServerTrusts, textServerTrusts, "server asks for no password"},
    {Kind::Older, textOlder, "older schema"},
    {Kind::WrongPassword, textWrongPassword, "wrong user name or password"},
    {Kind::BadPassword, textBadPassword, "password not accepted"},
    {Kind::BadUserName, textBadUserName, "user name not accepted"},
    {Kind::NoSuchUser, textNoSuchUser, "no such user"},
    {Kind::NoSuchGroup, textNoSuchGroup, "no such group"},
    {Kind::UserExists, textUserExists, "user exists"},
    {Kind::GroupExists, textGroupExists, "group exists"},
    {Kind::AlreadyMember, textAlreadyMember, "already a member"},
    {Kind::NotAMember, textNotAMember, "not a member"},
    {Kind::LastAdministrator, textLastAdministrator, "last administrator"},
    {Kind::NotPermitted, textNotPermitted, "not permitted"},
    {Kind::NoSuchQuery, textNoSuchQuery, "no such query"},
    {Kind::NoSuchParameter, textNoSuchParameter, "no such parameter"},
    {Kind::MissingParameter, textMissingParameter, "parameter not set"},
    {Kind::NoSuchTable, textNoSuchTable, "no such table"},
    {Kind::NoSuchField, textNoSuchField, "no such field"},
    {Kind::NoSuchIndex, textNoSuchIndex, "no such index"},
    {Kind::BadSeek, textBadSeek, "wrong number of key values"},
    {Kind::BadCriterion, textBadCriterion, "bad criterion"},
    {Kind::NoCurrentRecord, textNoCurrentRecord, "no current record"},
    {Kind::NotEditing, textNotEditing, "no record is being edited"},
    {Kind::RecordGone, textRecordGone, "record was deleted"},
    {Kind::RecordChanged, textRecordChanged, "record was changed"},
    {Kind::DuplicateKey, textDuplicateKey, "duplicate key"},
    {Kind::BadValue, textBadValue, "value not allowed"},
    {Kind::InUse, textInUse, "reference violated"},
    {Kind::Refused, textRefused, "records can only be appended"},
    {Kind::NotUpdatable, textNotUpdatable, "recordset cannot be changed"},
    {Kind::WrongUse, textWrongUse, "cannot be used in this way"},
    {Kind::InTransaction, textInTransaction, "a transaction is open"},
    {Kind::NoTransaction, textNoTransaction, "no transaction is open"},
    {Kind::Closed, textClosed, "closed"},
    {Kind::Engine, textEngine, "database engine"},
};

const KindInfo& InfoOf(Kind kind)
{
    for (const KindInfo& info : kinds)
        if (info.kind == kind)
            return info;
    return kinds[std::size(kinds) - 1];
}

} // namespace

Error::Error(Kind errorKind, QStringList placeholderValues, QString textOfEngine)
    : kind(errorKind),
      values(std::move(placeholderValues)),
      engineText(std::move(textOfEngine))
{
    m_what = QByteArray("dao: ") + InfoOf(kind).name;
    if (!values.isEmpty())
        m_what += ": " + values.join(", ").toUtf8();
    if (!engineText.isEmpty() && !values.contains(engineText))
        m_what += " (" + engineText.toUtf8() + ")";
}

int TextId(Kind kind)
{
    return InfoOf(kind).textId;
}

int TextId(const Error& error)
{
    if (error.kind == Kind::DuplicateKey && error.values.value(0) == "i_callsign")
        return textDuplicateCallsign;
    if (error.kind == Kind::DuplicateKey && error.values.value(0) == "i_ident")
        return textDuplicateIdent;
    if (error.kind == Kind::FileExists && IsServerTarget(error.values.value(0)))
        return textDatabaseExists;
    return TextId(error.kind);
}

} // namespace dao
