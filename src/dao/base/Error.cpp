#include "dao/base/Error.h"
#include "dao/base/Location.h"
#include "dao/base/TextIds.h"

namespace dao {

namespace {

struct KindInfo {
    Kind kind;
    int textId;
    const char* name;
};

constexpr KindInfo Kinds[] = {
    {Kind::NoSuchFile, DaoText::NoSuchFile, "no such file"},
    {Kind::FileExists, DaoText::FileExists, "file exists"},
    {Kind::CannotCreate, DaoText::CannotCreate, "cannot create"},
    {Kind::NoSuchSystemGroup, DaoText::NoSuchSystemGroup, "no such group of the system"},
    {Kind::FolderNotShared, DaoText::FolderNotShared, "folder not shared"},
    {Kind::FolderOutOfReach, DaoText::FolderOutOfReach, "folder out of reach"},
    {Kind::NotADatabase, DaoText::NotADatabase, "not a database"},
    {Kind::NotReadable, DaoText::NotReadable, "not readable"},
    {Kind::ReadOnly, DaoText::ReadOnly, "read-only"},
    {Kind::Newer, DaoText::Newer, "newer schema"},
    {Kind::Locked, DaoText::Locked, "locked"},
    {Kind::Damaged, DaoText::Damaged, "damaged"},
    {Kind::DiskFull, DaoText::DiskFull, "disk full"},
    {Kind::Replaced, DaoText::Replaced, "deleted or replaced"},
    {Kind::WorkgroupMissing, DaoText::WorkgroupMissing, "workgroup file missing"},
    {Kind::WorkgroupMismatch, DaoText::WorkgroupMismatch, "workgroup file of another database"},
    {Kind::FilesOnly, DaoText::FilesOnly, "not with a database on a server"},
    {Kind::MigrationFailed, DaoText::MigrationFailed, "migration failed"},
    {Kind::BadServerAddress, DaoText::BadServerAddress, "server address not understood"},
    {Kind::BadDatabaseName, DaoText::BadDatabaseName, "database name not accepted"},
    {Kind::ServerAway, DaoText::ServerAway, "server away"},
    {Kind::GivenUp, DaoText::GivenUp, "given up"},
    {Kind::Busy, DaoText::Busy, "busy"},
    {Kind::ServerRefused, DaoText::ServerRefused, "server refuses"},
    {Kind::ServerTrusts, DaoText::ServerTrusts, "server asks for no password"},
    {Kind::Older, DaoText::Older, "older schema"},
    {Kind::WrongPassword, DaoText::WrongPassword, "wrong user name or password"},
    {Kind::BadPassword, DaoText::BadPassword, "password not accepted"},
    {Kind::BadUserName, DaoText::BadUserName, "user name not accepted"},
    {Kind::NoSuchUser, DaoText::NoSuchUser, "no such user"},
    {Kind::NoSuchGroup, DaoText::NoSuchGroup, "no such group"},
    {Kind::UserExists, DaoText::UserExists, "user exists"},
    {Kind::GroupExists, DaoText::GroupExists, "group exists"},
    {Kind::AlreadyMember, DaoText::AlreadyMember, "already a member"},
    {Kind::NotAMember, DaoText::NotAMember, "not a member"},
    {Kind::LastAdministrator, DaoText::LastAdministrator, "last administrator"},
    {Kind::NotPermitted, DaoText::NotPermitted, "not permitted"},
    {Kind::NotOwner, DaoText::NotOwner, "not the owner"},
    {Kind::NoSuchQuery, DaoText::NoSuchQuery, "no such query"},
    {Kind::NoSuchParameter, DaoText::NoSuchParameter, "no such parameter"},
    {Kind::MissingParameter, DaoText::MissingParameter, "parameter not set"},
    {Kind::NoSuchTable, DaoText::NoSuchTable, "no such table"},
    {Kind::NoSuchField, DaoText::NoSuchField, "no such field"},
    {Kind::NoSuchIndex, DaoText::NoSuchIndex, "no such index"},
    {Kind::BadSeek, DaoText::BadSeek, "wrong number of key values"},
    {Kind::BadCriterion, DaoText::BadCriterion, "bad criterion"},
    {Kind::NoCurrentRecord, DaoText::NoCurrentRecord, "no current record"},
    {Kind::NotEditing, DaoText::NotEditing, "no record is being edited"},
    {Kind::RecordGone, DaoText::RecordGone, "record was deleted"},
    {Kind::RecordChanged, DaoText::RecordChanged, "record was changed"},
    {Kind::DuplicateKey, DaoText::DuplicateKey, "duplicate key"},
    {Kind::BadValue, DaoText::BadValue, "value not allowed"},
    {Kind::InUse, DaoText::InUse, "reference violated"},
    {Kind::Refused, DaoText::Refused, "records can only be appended"},
    {Kind::NotUpdatable, DaoText::NotUpdatable, "recordset cannot be changed"},
    {Kind::WrongUse, DaoText::WrongUse, "cannot be used in this way"},
    {Kind::InTransaction, DaoText::InTransaction, "a transaction is open"},
    {Kind::NoTransaction, DaoText::NoTransaction, "no transaction is open"},
    {Kind::Closed, DaoText::Closed, "closed"},
    {Kind::Engine, DaoText::Engine, "database engine"},
};

const KindInfo& InfoOf(Kind kind)
{
    for (const KindInfo& info : Kinds)
        if (info.kind == kind)
            return info;
    return Kinds[std::size(Kinds) - 1];
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
        return DaoText::DuplicateCallsign;
    if (error.kind == Kind::DuplicateKey && error.values.value(0) == "i_ident")
        return DaoText::DuplicateIdent;
    if (error.kind == Kind::FileExists && IsServerTarget(error.values.value(0)))
        return DaoText::DatabaseExists;
    if (error.kind == Kind::ServerAway && error.values.value(2) == ChangeSent)
        return DaoText::ServerAwayChangeSent;
    return TextId(error.kind);
}

} // namespace dao
