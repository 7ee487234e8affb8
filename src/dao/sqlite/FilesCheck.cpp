#include "dao/sqlite/FilesCheck.h"
#include "dao/base/AccountStore.h"
#include "dao/base/TextIds.h"
#include "dao/sqlite/Migrations.h"
#include "dao/sqlite/Session.h"
#include <QFileInfo>

namespace dao::sqlite {

namespace {

using Severity = Finding::Severity;

// A check run on the attached files. `reference` is an empty database of the same schema, in memory.
class FilesCheck {
public:
    FilesCheck(const Location& location, AttachedFiles files)
        : m_location(location),
          m_files(std::move(files))
    {
    }

    QList<Finding> Run()
    {
        CheckFile("main", m_location.database, m_files.database.version, FileKind::Database);
        CheckFile("workgroup", m_location.workgroup, m_files.workgroup.version, FileKind::Workgroup);
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

    template <typename Row> void ForEach(Connection& connection, const QString& sql, Row row)
    {
        const auto statement = connection.Prepare(sql);
        while (statement->Step())
            row(statement->Row());
    }

    void CheckFile(const QString& schema, const QString& path, int version, FileKind kind)
    {
        CheckSharing(path);
        const auto migrations = MigrationsOf(kind);
        if (version < migrations.last().version) {
            Add(Severity::Warning, DaoText::CheckOlder,
                {path, QString::number(version), QString::number(migrations.last().version)});
            m_complete = false;
        }
        Connection& files = *m_files.connection;
        ForEach(
            files, "SELECT * FROM pragma_integrity_check(100, '" + schema + "')",
            [&](const QVariantList& row) {
                if (row[0] != "ok")
                    Add(Severity::Error, DaoText::CheckDamage, {path, row[0].toString()});
            });
        ForEach(files, "SELECT \"table\", parent FROM pragma_foreign_key_check(NULL, '" + schema + "')",
                [&](const QVariantList& row) {
                    Add(Severity::Error, DaoText::CheckReference, {row[0].toString(), row[1].toString()});
                });
        if (version < migrations.last().version)
            return;
        const auto reference = Connection::Open(":memory:", Connection::Mode::Create, {});
        BuildSchema(*reference, kind, migrations, "reference");
        CompareObjects(*reference, schema);
        if (kind == FileKind::Database)
            CompareQueries(*reference);
    }

    void CheckSharing(const QString& path)
    {
        const Sharing sharing = SharingOf(path);
        if (sharing == Sharing::Everybody)
            Add(Severity::Warning, DaoText::CheckOpenToAll, {path});
        else if (sharing == Sharing::GroupInPart)
            Add(Severity::Warning, DaoText::CheckHalfShared,
                {path, GroupOf(path), QFileInfo(path).absolutePath()});
    }

    void CompareObjects(Connection& reference, const QString& schema)
    {
        const QString sql =
            "SELECT 1 FROM " + schema + ".sqlite_schema WHERE type=? AND name=? AND tbl_name=?";
        ForEach(reference, "SELECT type, name, tbl_name FROM main.sqlite_schema",
                [&](const QVariantList& row) {
                    if (m_files.connection->Value(sql, row).isValid())
                        return;
                    const QString name = row[1].toString();
                    const QString type = row[0].toString();
                    if (type == "table")
                        Add(Severity::Error, DaoText::CheckTableMissing, {name});
                    else if (type == "trigger")
                        AddMissingTrigger(schema, row[2].toString(), name);
                    else
                        Add(Severity::Error, DaoText::CheckIndexMissing, {row[2].toString(), name});
                    m_complete = m_complete && type != "table";
                });
        CompareFields(reference, schema);
    }

    void CompareFields(Connection& reference, const QString& schema)
    {
        const QString sql = "SELECT 1 FROM pragma_table_info(?, '" + schema + "') WHERE name=?";
        ForEach(
            reference,
            "SELECT t.name, f.name FROM main.sqlite_schema AS t, pragma_table_info(t.name) AS f "
            "WHERE t.type='table' AND t.name NOT LIKE 'sqlite_%'",
            [&](const QVariantList& row) {
                const bool tableIsThere =
                    m_files.connection
                        ->Value("SELECT 1 FROM " + schema + ".sqlite_schema WHERE type='table' AND name=?",
                                {row[0]})
                        .isValid();
                if (tableIsThere && !m_files.connection->Value(sql, row).isValid())
                    Add(Severity::Error, DaoText::CheckFieldMissing, {row[0].toString(), row[1].toString()});
            });
    }

    // Those of a missing table are not worth a word of their own.
    void AddMissingTrigger(const QString& schema, const QString& table, const QString& trigger)
    {
        const QVariant tableIsThere = m_files.connection->Value(
            "SELECT 1 FROM " + schema + ".sqlite_schema WHERE type='table' AND name=?", {table});
        if (table == "event")
            Add(Severity::Error, DaoText::CheckAppendable, {trigger});
        else if (tableIsThere.isValid())
            Add(Severity::Error, DaoText::CheckNotCounted, {table, trigger});
    }

    void CompareQueries(Connection& reference)
    {
        if (!m_complete)
            return;
        ForEach(reference, "SELECT name FROM main.stored_query", [&](const QVariantList& row) {
            if (!m_files.connection->Value("SELECT 1 FROM main.stored_query WHERE name=?", row).isValid())
                Add(Severity::Error, DaoText::CheckQueryMissing, {row[0].toString()});
        });
    }

    void CheckQueries()
    {
        ForEach(
            *m_files.connection, "SELECT name, sql FROM main.stored_query",
            [&](const QVariantList& row) {
                try {
                    m_files.connection->Prepare(row[1].toString());
                } catch (const Error& error) {
                    Add(Severity::Error, DaoText::CheckQueryFails, {row[0].toString(), error.engineText});
                }
            });
    }

    void CheckAccounts()
    {
        Connection& files = *m_files.connection;
        if (files
                .Value("SELECT count(*) FROM workgroup.membership WHERE group_name=?",
                       {QString(AdminsGroupName)})
                .toInt() == 0)
            Add(Severity::Error, DaoText::CheckNoAdministrator);
        ForEach(
            files,
            "SELECT user_name FROM workgroup.account WHERE NOT EXISTS "
            "(SELECT 1 FROM main.user_profile WHERE kyn_fold(\"UserName\")=kyn_fold(user_name))",
            [&](const QVariantList& row) {
                Add(Severity::Warning, DaoText::CheckNoProfile, {row[0].toString()});
            });
        ForEach(files,
                "SELECT \"UserName\" FROM main.user_profile WHERE NOT EXISTS "
                "(SELECT 1 FROM workgroup.account WHERE kyn_fold(user_name)=kyn_fold(\"UserName\"))",
                [&](const QVariantList& row) {
                    Add(Severity::Warning, DaoText::CheckNoAccount, {row[0].toString()});
                });
    }

    Location m_location;
    AttachedFiles m_files;
    QList<Finding> m_findings;
    bool m_complete = true; // all tables are there, so that the contents can be looked at
};

} // namespace

QList<Finding> CheckFiles(const Location& location)
{
    return FilesCheck(location, AttachFiles(location, {})).Run();
}

MigrationReport MigrateFiles(const Location& location, const MigrationProgress& told)
{
    const OpenOptions options;
    AttachFiles(location, options).connection->Close();
    const auto database = Migrate(location.database, FileKind::Database, MigrationsOf(FileKind::Database),
                                  options.busyTimeout, told);
    const auto workgroup = Migrate(location.workgroup, FileKind::Workgroup, MigrationsOf(FileKind::Workgroup),
                                   options.busyTimeout, told);
    MigrationReport report{database.fromVersion, database.toVersion, {}};
    for (const QString& copy : {database.copy, workgroup.copy})
        if (!copy.isEmpty())
            report.copies.append(copy);
    return report;
}

} // namespace dao::sqlite
