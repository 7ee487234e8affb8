#include "dao/sqlite/ChangeCounter.h"
#include "dao/sqlite/Connection.h"
#include <utility>

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

OwnChanges::Counts ReadOwn(Connection& connection)
{
    OwnChanges::Counts counts;
    for (const QVariantList& row : connection.AllRows("SELECT table_name, changes FROM temp.own_change"))
        counts.insert(row[0].toString(), row[1].toLongLong());
    return counts;
}

// While it lives, a lock is not waited for.
class NoWaiting {
public:
    explicit NoWaiting(Connection& connection) : m_connection(connection)
    {
        m_connection.WaitForLocks(false);
    }
    NoWaiting(const NoWaiting&) = delete;
    NoWaiting& operator=(const NoWaiting&) = delete;
    ~NoWaiting() { m_connection.WaitForLocks(true); }

private:
    Connection& m_connection;
};

} // namespace

ChangeCounter::ChangeCounter(Connection& connection, std::shared_ptr<OwnChanges> family)
    : m_connection(connection),
      m_family(std::move(family)),
      m_session(m_family->Join())
{
    QString script = "CREATE TEMP TABLE own_change (table_name TEXT PRIMARY KEY, changes INTEGER DEFAULT 0);";
    for (const char* schema : Schemas)
        for (const QVariantList& row :
             connection.AllRows(QString("SELECT table_name FROM %1.change_count").arg(schema)))
            script += OwnCount(schema, row.first().toString());
    connection.Execute(script);
    const OwnChanges::Counts others = m_family->OthersThan(m_session).stored;
    m_seen = ReadForeign();
    for (auto table = m_seen.begin(); table != m_seen.end(); ++table)
        *table -= others.value(table.key());
}

ChangeCounter::~ChangeCounter()
{
    m_family->Leave(m_session);
}

void ChangeCounter::TellFamily()
{
    m_connection.WatchCommits({[family = m_family, session = m_session](Connection& connection) {
                                   family->SetComing(session, ReadOwn(connection));
                               },
                               [family = m_family, session = m_session](Connection& connection) {
                                   family->SetStored(session, ReadOwn(connection));
                               }});
}

QStringList ChangeCounter::ChangedElsewhere()
{
    const NoWaiting atOnce(m_connection);
    const OwnChanges::Seen before = m_family->OthersThan(m_session);
    const QHash<QString, qlonglong> foreign = ReadForeign();
    const OwnChanges::Seen after = m_family->OthersThan(m_session);
    QStringList changed;
    for (auto table = foreign.cbegin(); table != foreign.cend(); ++table) {
        const QString& name = table.key();
        const qlonglong others = after.stored.value(name);
        // What may or may not be in the files just now, the next look tells.
        if (before.unsure.contains(name) || after.unsure.contains(name) ||
            before.stored.value(name) != others)
            continue;
        const qlonglong count = table.value() - others;
        if (std::exchange(m_seen[name], count) != count)
            changed.append(name);
    }
    changed.sort();
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
