#include "dao/sqlite/ErrorMapping.h"
#include <sqlite3.h>

namespace dao::sqlite {

namespace {

// What a constraint's message names after its colon: "UNIQUE constraint failed: address.IDENT" -> "IDENT",
// "... failed: index 'i_callsign'" -> "i_callsign", "CHECK constraint failed: status_code" -> "status_code".
QString ConstraintName(const QString& message)
{
    QString name = message.section(": ", 1);
    if (name.startsWith("index '"))
        return name.mid(7).chopped(1);
    QStringList fields;
    for (const QString& field : name.split(", "))
        fields.append(field.section('.', -1));
    return fields.join(", ");
}

Error ConstraintError(int code, const QString& message)
{
    switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
        return Error(Kind::DuplicateKey, {ConstraintName(message), QString()}, message);
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        return Error(Kind::InUse, {}, message);
    case SQLITE_CONSTRAINT_TRIGGER:
        if (message == NotPermittedMessage)
            return Error(Kind::NotPermitted, {}, message);
        // A trigger of the schema guards the key against being replaced
        if (message.startsWith("UNIQUE constraint failed"))
            return Error(Kind::DuplicateKey, {ConstraintName(message), QString()}, message);
        // RESTRICT is a trigger of the engine's own
        return Error(message.startsWith("FOREIGN KEY") ? Kind::InUse : Kind::Refused, {}, message);
    default:
        return Error(Kind::BadValue, {ConstraintName(message)}, message);
    }
}

} // namespace

Error MakeError(sqlite3* handle, int code, const QString& path)
{
    const QString message =
        handle ? QString::fromUtf8(sqlite3_errmsg(handle)) : QString::fromUtf8(sqlite3_errstr(code));
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Error(Kind::Locked, {path}, message);
    case SQLITE_READONLY:
        if (code == SQLITE_READONLY_DBMOVED)
            return Error(Kind::NoSuchFile, {path}, message);
        return Error(Kind::ReadOnly, {path}, message);
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return Error(Kind::NotReadable, {path}, message);
    case SQLITE_NOTADB:
        return Error(Kind::NotADatabase, {path}, message);
    case SQLITE_CORRUPT:
        return Error(Kind::Damaged, {path}, message);
    case SQLITE_FULL:
        return Error(Kind::DiskFull, {path}, message);
    case SQLITE_CONSTRAINT:
        return ConstraintError(code, message);
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
        return Error(Kind::BadValue, {QString()}, message);
    default:
        return Error(Kind::Engine, {message}, message);
    }
}

} // namespace dao::sqlite
