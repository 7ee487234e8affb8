#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <exception>

namespace dao {

// What went wrong, so that a caller can decide without reading a text. The comment names the values that come
// with the kind; they fill the placeholders #01, #02 ... of its catalogue sentence (see TextId).
enum class Kind {
    NoSuchFile,        // path
    FileExists,        // path; nothing is ever overwritten
    CannotCreate,      // path
    NoSuchSystemGroup, // group of the operating system; or this account of the system is not in it
    FolderNotShared,   // group of the operating system, folder
    FolderOutOfReach,  // group of the operating system, folder that it may not enter
    NotADatabase,      // path
    NotReadable,       // path; refused by the operating system
    ReadOnly,          // path; the file, or the folder that has to hold its journal
    Newer,             // path, version found, newest version known
    Locked,            // path; another program kept it longer than the busy timeout
    Damaged,           // path
    DiskFull,          // path
    Replaced,          // path; it was deleted, or another database stands in its place
    WorkgroupMissing,  // path
    WorkgroupMismatch, // path of the workgroup file, path of the database
    FilesOnly,         // target; what cannot be done with a database on a server
    MigrationFailed,   // path, version aimed at; the file is as it was
    BadServerAddress,  // target, without its password; reason
    BadDatabaseName,   // name of a database to be made on a server
    ServerAway,        // target, reason, and after a change ChangeSent
    GivenUp,           // target, or path; the operator did not want to wait any longer. Nothing was stored.
    Busy,              // none: used while it waits for the answer to something else
    ServerRefused,     // target, reason
    ServerTrusts,      // target; the server asks operators for no password
    Older,             // target, version found, version of this program
    WrongPassword,     // none: says not which of user name and password was wrong
    BadPassword,       // none: a new password that is not accepted
    BadUserName,       // name: empty, too long or with control characters
    NoSuchUser,        // name
    NoSuchGroup,       // name
    UserExists,        // name
    GroupExists,       // name
    AlreadyMember,     // user, group
    NotAMember,        // user, group
    LastAdministrator, // user
    NotPermitted,      // none: needs an administrator
    NotOwner,          // path, account of the operating system that it belongs to
    NoSuchQuery,       // name
    NoSuchParameter,   // query, parameter
    MissingParameter,  // query, parameter
    NoSuchTable,       // table
    NoSuchField,       // field
    NoSuchIndex,       // table, index
    BadSeek,           // index, number of key values that it takes
    BadCriterion,      // criterion
    NoCurrentRecord,   // none
    NotEditing,        // none: a field written, or Update called, without AddNew or Edit
    RecordGone,        // none: somebody deleted the record meanwhile
    RecordChanged,     // none: somebody changed the record since it was read
    DuplicateKey,      // index, the value that is there already
    BadValue,          // field
    InUse,         // none: other records refer to the one to be deleted, or the one referred to is missing
    Refused,       // none: records that can only be appended
    NotUpdatable,  // none: the recordset is read-only, forward-only or append-only
    WrongUse,      // query or operation that does not fit: a select executed, Seek on a snapshot ...
    InTransaction, // none: BeginTrans within a transaction
    NoTransaction, // none: CommitTrans or Rollback outside
    Closed,        // none: workspace, database or recordset was closed before
    Engine,        // the engine's own text
};

// Third value of a ServerAway: a change had been sent, and whether it was stored is not known.
inline const QString ChangeSent = QStringLiteral("change sent");

// The one exception of this library. It carries no sentence: TextId names the catalogue entry and `values`
// fill it.
class Error : public std::exception {
public:
    explicit Error(Kind errorKind, QStringList placeholderValues = {}, QString textOfEngine = {});

    // For programmers and log files.
    const char* what() const noexcept override { return m_what.constData(); }

    Kind kind;
    QStringList values;
    QString engineText; // what the database engine or the system said; may be empty

private:
    QByteArray m_what;
};

// The catalogue id of a kind's sentence.
int TextId(Kind kind);

// The same, but more telling where the values allow it (which key was a duplicate). Placeholders are those of
// `error.values`.
int TextId(const Error& error);

} // namespace dao
