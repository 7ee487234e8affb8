#include "dao/postgresql/ErrorMapping.h"

namespace dao::postgresql {

namespace {

QString Field(const PGresult* result, int field)
{
    return QString::fromUtf8(PQresultErrorField(result, field));
}

struct Refusal {
    const char* message; // of the schema's function kyn_refuse
    Kind kind;
};

constexpr Refusal Refusals[] = {
    {"NotPermitted", Kind::NotPermitted},   {"Refused", Kind::Refused},
    {"BadPassword", Kind::BadPassword},     {"NoSuchUser", Kind::NoSuchUser},
    {"UserExists", Kind::UserExists},       {"LastAdministrator", Kind::LastAdministrator},
    {"NoSuchGroup", Kind::NoSuchGroup},     {"GroupExists", Kind::GroupExists},
    {"AlreadyMember", Kind::AlreadyMember}, {"NotAMember", Kind::NotAMember},
};

Error OwnRefusal(const QString& message)
{
    for (const Refusal& refusal : Refusals)
        if (message == QLatin1String(refusal.message))
            return Error(refusal.kind, {}, message);
    return Error(Kind::Engine, {message}, message);
}

// The name of the index as programs know it.
QString IndexName(const QString& constraint)
{
    return constraint.endsWith("_pkey") ? QStringLiteral("PrimaryKey") : constraint;
}

} // namespace

QByteArray StateOf(const PGresult* result)
{
    return PQresultErrorField(result, PG_DIAG_SQLSTATE);
}

bool IsDeadlock(const PGresult* result)
{
    const QByteArray state = StateOf(result);
    return state == "40P01" || state == "40001";
}

bool EndsConnection(const PGresult* result)
{
    const QByteArray state = StateOf(result);
    return state.startsWith("57P") || state == "25006";
}

Error MakeError(const PGresult* result, const QString& server)
{
    const QByteArray state = StateOf(result);
    const QString message = Field(result, PG_DIAG_MESSAGE_PRIMARY);
    if (state == "KYERR")
        return OwnRefusal(message);
    // To a role that belongs to no group any more the schema's tables and functions do not even exist.
    if (state == "42501" || state == "28000" || state == "42883" || state == "42P01")
        return Error(Kind::NotPermitted, {}, message);
    if (state == "23505")
        return Error(Kind::DuplicateKey, {IndexName(Field(result, PG_DIAG_CONSTRAINT_NAME)), QString()},
                     message);
    if (state == "23503" || state == "23001")
        return Error(Kind::InUse, {}, message);
    if (state == "23514")
        return Error(Kind::BadValue, {Field(result, PG_DIAG_CONSTRAINT_NAME)}, message);
    if (state.startsWith("22") || state.startsWith("23"))
        return Error(Kind::BadValue, {Field(result, PG_DIAG_COLUMN_NAME)}, message);
    if (state == "55P03" || state == "40P01" || state == "40001")
        return Error(Kind::Locked, {server}, message);
    if (state == "53100")
        return Error(Kind::DiskFull, {server}, message);
    if (EndsConnection(result))
        return Error(Kind::ServerAway, {server, message}, message);
    return Error(Kind::Engine, {message}, message);
}

} // namespace dao::postgresql
