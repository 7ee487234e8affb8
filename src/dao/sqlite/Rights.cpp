#include "dao/sqlite/Rights.h"
#include "dao/sqlite/Connection.h"
#include "dao/sqlite/ErrorMapping.h"

namespace dao::sqlite {

namespace {

constexpr auto NotAdministrator = "NOT (SELECT administrator FROM temp.session_right)";

constexpr auto MayNotRegroup =
    "NOT (SELECT administrator FROM temp.session_right) AND NOT EXISTS (SELECT 1 FROM main.user_profile "
    "WHERE kyn_fold(\"UserName\") = kyn_fold(kyn_user()) AND allow_dr)";

struct Rule {
    const char* table;
    const char* change;
    QString when;
};

// Without the right to regroup, and with no command of the session's own that awaits the radio's answer and
// covers the row: `covers` compares it with r.
QString MayNotStoreRegrouping(const char* covers)
{
    return QString("%1 AND NOT EXISTS (SELECT 1 FROM main.regroup_request AS r "
                   "WHERE kyn_fold(r.\"UserName\") = kyn_fold(kyn_user()) "
                   "AND r.time_stamp > kyn_now() - 3600000 AND r.pos = %2)")
        .arg(MayNotRegroup, covers);
}

// Adding, changing and deleting in the other tables is permitted.
const Rule Rules[] = {
    {"address", "INSERT", NotAdministrator},
    {"address", R"(UPDATE OF address_id, callsign, "IDENT", dynamic, note, "Type", "Name", default_pos)",
     NotAdministrator},
    {"address", "DELETE", NotAdministrator},
    {"user_profile", "INSERT", NotAdministrator},
    {"user_profile", R"(UPDATE OF profile_id, "UserName", callsign, allow_dr)", NotAdministrator},
    {"user_profile", "UPDATE OF logged_on",
     "kyn_fold(OLD.\"UserName\") <> kyn_fold(kyn_user()) "
     "AND NOT (SELECT administrator FROM temp.session_right)"},
    {"user_profile", "DELETE", NotAdministrator},
    {"dynamic_regroup", "INSERT",
     MayNotStoreRegrouping("NEW.pos AND r.group_id = NEW.group_id AND r.member_id = NEW.member_id")},
    {"dynamic_regroup", "UPDATE",
     MayNotStoreRegrouping("NEW.pos AND r.group_id = NEW.group_id AND r.member_id = NEW.member_id "
                           "AND OLD.pos = NEW.pos AND OLD.member_id = NEW.member_id")},
    {"dynamic_regroup", "DELETE",
     MayNotStoreRegrouping("OLD.pos AND ((r.group_id IS NULL AND r.member_id = OLD.member_id) "
                           "OR (r.member_id IS NULL AND r.group_id = OLD.group_id))")},
    {"regroup_request", "INSERT",
     QString("(%1) OR kyn_fold(NEW.\"UserName\") <> kyn_fold(kyn_user())").arg(MayNotRegroup)},
    {"regroup_request", "UPDATE", "1"},
    {"attention_act", "UPDATE", "1"},
    {"attention_act", "DELETE", "1"},
    {"regroup_act", "UPDATE", "1"},
    {"regroup_act", "DELETE", "1"},
    {"regroup_request", "DELETE",
     QString("kyn_fold(OLD.\"UserName\") <> kyn_fold(kyn_user()) AND %1").arg(NotAdministrator)},
};

// Tables that only administrators change.
constexpr const char* Administrated[] = {"status",       "fleet",     "kyn_registry",
                                         "stored_query", "index_def", "file_info"};

// Triggers of the connection, not of the file: they bind this program's sessions, whatever schema they find.
QString Trigger(const Rule& rule, int number)
{
    return QString("CREATE TEMP TRIGGER right_%1 BEFORE %2 ON main.%3 WHEN %4 "
                   "BEGIN SELECT RAISE(ABORT, '%5'); END;")
        .arg(QString::number(number), rule.change, rule.table, rule.when, NotPermittedMessage);
}

} // namespace

void RestrictToRights(Connection& connection)
{
    QString script =
        "PRAGMA temp_store=MEMORY;"
        "CREATE TEMP VIEW session_right AS SELECT EXISTS (SELECT 1 FROM workgroup.membership "
        "JOIN workgroup.account USING (account_id) WHERE kyn_fold(user_name)=kyn_fold(kyn_user()) "
        "AND group_name='Admins') AS administrator;";
    int number = 0;
    for (const Rule& rule : Rules)
        script += Trigger(rule, ++number);
    for (const char* table : Administrated)
        for (const char* change : {"INSERT", "UPDATE", "DELETE"})
            script += Trigger({table, change, NotAdministrator}, ++number);
    connection.Execute(script);
}

} // namespace dao::sqlite
