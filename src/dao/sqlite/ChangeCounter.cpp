#include "dao/sqlite/ChangeCounter.h"
#include "dao/sqlite/Connection.h"
#include <sqlite3.h>

namespace dao::sqlite {

namespace {

constexpr const char* Schemas[] = {"main", "workgroup"};

// The own count goes back with the transaction that is rolled back, as that of the file does.
QString OwnCount(const QString& schema, const QString& table)
{
    QString script = QString("INSERT INTO temp.own_change (table_name) VALUES ('%1');").arg(table);
    for (const char* change : {"INSERT", "UPDATE", "DELETE"})
        script += QString("CREATE TEMP TRIGGER own_%2_%1 AFTER %2 ON %3.%1 BEGIN UPDATE own_change "
                          "SET changes = changes + 1 WHERE table_name = '%1'; END;")
                      .arg(table, change, schema);
    return script;
}

// While it lives, a lock is not waited for.
class NoWaiting {
public:
    explicit NoWaiting(Connection& connection)
        : m_file(connection.File()),
          m_timeout(connection.Value("PRAGMA busy_timeout").toInt())
    {
        sqlite3_busy_timeout(m_file, 0);
    }
    NoWaiting(const NoWaiting&) = delete;
    NoWaiting& operator=(const NoWaiting&) = delete;
    ~NoWaiting() { sqlite3_busy_timeout(m_file, m_timeout); }

private:
    sqlite3* m_file;
    int m_timeout; // ms
};

} // namespace

ChangeCounter::ChangeCounter(Connection& connection) : m_connection(connection)
{
    QString script = "CREATE TEMP TABLE own_change (table_name TEXT PRIMARY KEY, changes INTEGER DEFAULT 0);";
    for (const char* schema : Schemas)
        for (const QVariantList& row :
             connection.AllRows(QString("SELECT table_name FROM %1.change_count").arg(schema)))
            script += OwnCount(schema, row.first().toString());
    connection.Execute(script);
    m_seen = ReadForeign();
}

QStringList ChangeCounter::ChangedElsewhere()
{
    const NoWaiting atOnce(m_connection);
    const QHash<QString, qlonglong> foreign = ReadForeign();
    QStringList changed;
    for (auto table = foreign.cbegin(); table != foreign.cend(); ++table)
        if (m_seen.value(table.key()) != table.value())
            changed.append(table.key());
    changed.sort();
    m_seen = foreign;
    return changed;
}

QHash<QString, qlonglong> ChangeCounter::ReadForeign() const
{
    QHash<QString, qlonglong> foreign;
    for (const QVariantList& row : m_connection.AllRows(
             "SELECT table_name, f.changes - own_change.changes FROM "
             "(SELECT * FROM main.change_count UNION ALL "
             "SELECT * FROM workgroup.change_count) AS f JOIN own_change USING (table_name)"))
        foreign.insert(row[0].toString(), row[1].toLongLong());
    return foreign;
}

} // namespace dao::sqlite
