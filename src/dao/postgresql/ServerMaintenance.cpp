#include "dao/postgresql/ServerMaintenance.h"
#include "dao/base/AccountStore.h"
#include "dao/base/TextIds.h"
#include "dao/postgresql/ServerSetup.h"
#include <QRegularExpression>

namespace dao::postgresql {

namespace {

using Severity = Finding::Severity;

class ServerCheck {
public:
    explicit ServerCheck(std::shared_ptr<Connection> connection) : m_connection(std::move(connection)) {}

    QList<Finding> Run(const QString& schema)
    {
        CheckObjects(schema);
        if (m_complete) {
            CheckQueries();
            CheckAccounts();
        }
        return m_findings;
    }

private:
    void Add(Severity severity, int textId, const QStringList& values = {})
    {
        m_findings.append({severity, textId, values});
    }

    // What the scripts create has to be there; later scripts drop nothing.
    void CheckObjects(const QString& schema)
    {
        struct Object {
            const char* created; // pattern with the object's name and, unless it is one itself, its table
            const char* exists;  // takes the name and, where there is a second mark, the table
            int textId;
        };
        const Object objects[] = {
            {R"re(^CREATE TABLE "?(\w+)"?)re",
             "SELECT 1 FROM pg_tables WHERE schemaname='kyn' AND tablename=?", DaoText::CheckTableMissing},
            {R"re(^CREATE (?:UNIQUE )?INDEX "?(\w+)"? ON "?(\w+)"?)re",
             "SELECT 1 FROM pg_indexes WHERE schemaname='kyn' AND indexname=?", DaoText::CheckIndexMissing},
            {R"(^ALTER TABLE (?=\w+ ADD COLUMN (\w+))(\w+))",
             "SELECT 1 FROM information_schema.columns WHERE table_schema='kyn' AND column_name=? "
             "AND table_name=?",
             DaoText::CheckFieldMissing},
            {R"(^CREATE FUNCTION (\w+)\()",
             "SELECT 1 FROM pg_proc WHERE pronamespace='kyn'::regnamespace AND proname=?",
             DaoText::CheckFunctionMissing},
            {R"(^CREATE TRIGGER (event_\w+))", "SELECT 1 FROM pg_trigger WHERE tgname=?",
             DaoText::CheckAppendable},
            {R"(^CREATE TRIGGER (guard_\w+))", "SELECT 1 FROM pg_trigger WHERE tgname=?",
             DaoText::CheckFunctionMissing},
            {R"(^\('(\w+)', (?:NULL|'\w+'),$)", "SELECT 1 FROM stored_query WHERE name=?",
             DaoText::CheckQueryMissing},
        };
        for (const Object& object : objects) {
            const QRegularExpression created(object.created, QRegularExpression::MultilineOption);
            for (auto match = created.globalMatch(schema); match.hasNext();) {
                const QStringList names = match.next().capturedTexts();
                QVariantList values{names[1]};
                if (QByteArray(object.exists).count('?') > 1)
                    values.append(names[2]);
                if (!m_complete || m_connection->FirstRow(object.exists, values))
                    continue;
                Add(Severity::Error, object.textId,
                    names.size() > 2 ? QStringList{names[2], names[1]} : QStringList{names[1]});
                m_complete = m_complete && object.textId != DaoText::CheckTableMissing;
            }
        }
    }

    void CheckQueries()
    {
        for (const QVariantList& query : m_connection->AllRows("SELECT name::text, sql FROM stored_query")) {
            try {
                m_connection->Describe(query[1].toString());
            } catch (const Error& error) {
                Add(Severity::Error, DaoText::CheckQueryFails, {query[0].toString(), error.engineText});
            }
        }
    }

    void CheckAccounts()
    {
        if (!m_connection->FirstRow("SELECT 1 FROM membership WHERE group_name=?",
                                    {QString(AdminsGroupName)}))
            Add(Severity::Error, DaoText::CheckNoAdministrator);
        AddRows("SELECT user_name FROM account WHERE to_regrole(quote_ident(role_name)) IS NULL",
                Severity::Error, DaoText::CheckRoleMissing);
        AddRows("SELECT user_name FROM account JOIN account_group ON group_name IN ('Admins', 'Users') "
                "JOIN pg_roles ON rolname = role_name "
                "WHERE EXISTS (SELECT 1 FROM membership m WHERE m.account_id = account.account_id "
                "AND m.group_name = account_group.group_name) <> EXISTS (SELECT 1 FROM pg_auth_members a "
                "WHERE a.member = pg_roles.oid AND a.roleid::regrole::text = "
                "quote_ident(kyn_group_role(account_group.group_name)))",
                Severity::Error, DaoText::CheckMembership);
        AddRows("SELECT user_name FROM account WHERE NOT EXISTS (SELECT 1 FROM user_profile "
                "WHERE kyn_fold(\"UserName\")=kyn_fold(user_name))",
                Severity::Warning, DaoText::CheckNoProfile);
        AddRows("SELECT \"UserName\" FROM user_profile WHERE NOT EXISTS (SELECT 1 FROM account "
                "WHERE kyn_fold(user_name)=kyn_fold(\"UserName\"))",
                Severity::Warning, DaoText::CheckNoAccount);
    }

    void AddRows(const QString& sql, Severity severity, int textId)
    {
        for (const QVariantList& row : m_connection->AllRows(sql))
            Add(severity, textId, {row.first().toString()});
    }

    std::shared_ptr<Connection> m_connection;
    QList<Finding> m_findings;
    bool m_complete = true; // all tables are there, so that the contents can be looked at
};

void RequireKnownVersion(const ServerAddress& address, int version, int newest)
{
    if (version > newest)
        throw Error(Kind::Newer, {address.Shown(), QString::number(version), QString::number(newest)});
}

} // namespace

QList<Finding> CheckServerDatabase(const ServerAddress& address)
{
    const auto connection = ConnectAsServerAdministrator(address);
    const QList<Migration> migrations = SchemaScripts("postgresql/");
    const int version = SchemaVersionOf(*connection);
    const int newest = migrations.last().version;
    RequireKnownVersion(address, version, newest);
    if (version < newest)
        return {{Severity::Warning,
                 DaoText::CheckServerOlder,
                 {address.Shown(), QString::number(version), QString::number(newest)}}};
    QString schema;
    for (const Migration& migration : migrations)
        schema += migration.sql;
    return ServerCheck(connection).Run(schema);
}

MigrationReport MigrateServerDatabase(const ServerAddress& address, const QList<Migration>& migrations,
                                      const MigrationProgress& told)
{
    const auto connection = ConnectAsServerAdministrator(address);
    const int newest = migrations.last().version;
    connection->Begin(); // others wait, so that the version stays as it is read
    const int version = SchemaVersionOf(*connection);
    RequireKnownVersion(address, version, newest);
    if (version == newest)
        return {version, version, {}};
    try {
        // Nothing that takes long may stand in a script, since all other sessions wait: one step a script.
        RunScripts(*connection, address.Database(), migrations, version, [&](int done, int steps) {
            if (told)
                told(address.Shown(), 100 * done / (steps + 1));
        });
        connection->Commit();
        if (told)
            told(address.Shown(), 100);
    } catch (const Error& error) {
        if (error.kind == Kind::ServerAway)
            throw;
        throw Error(Kind::MigrationFailed, {address.Shown(), QString::number(newest)},
                    error.engineText.isEmpty() ? QString::fromUtf8(error.what()) : error.engineText);
    }
    return {version, newest, {}};
}

} // namespace dao::postgresql
