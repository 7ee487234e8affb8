#include "logbook/query/Whereabouts.h"

#include "core/eventlog/EventLog.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/RegroupActTable.h"
#include "dao/tables/RegroupTable.h"
#include "logbook/query/LogSearch.h"
#include "radio/base/DutyCodes.h"

#include <algorithm>

using dao::AddressTable;

namespace {

constexpr int PageSize = 1000;

DutyCodes CodesOf(dao::Database& database)
{
    return DutyCodes([&](const QString& key, const QString& fallback) {
        return dao::RegistryTable::Find(database, key).value_or(fallback);
    });
}

} // namespace

// Goes back through the log.
struct Whereabouts::Search {
    std::vector<Radio>& radios;
    const LogFacts& facts;
    const DutyCodes codes;
    QHash<QString, std::size_t> byName{}; // callsigns, folded, and numbers
    std::vector<bool> dutyKnown{};        // by radio: the status before its present state was met

    Search(std::vector<Radio>& all, const LogFacts& logFacts, const DutyCodes& dutyCodes)
        : radios(all),
          facts(logFacts),
          codes(dutyCodes),
          dutyKnown(all.size())
    {
        for (std::size_t i = 0; i < radios.size(); ++i) {
            byName.insert(dao::Fold(radios[i].number), i);
            byName.insert(dao::Fold(radios[i].callsign), i);
        }
    }

    void Take(const dao::EventRecord& record)
    {
        if (facts.DirectionOf(record) == static_cast<int>(MessageWay::Out))
            return;
        // A number stays with a radio; its callsign may have been another one's.
        const auto found =
            byName.constFind(dao::Fold(record.fromNumber.isEmpty() ? record.from : record.fromNumber));
        if (found == byName.constEnd())
            return;
        Radio& radio = radios[*found];
        if (!radio.heard.isValid())
            radio.heard = record.time;
        if (record.kind != static_cast<int>(EventType::Status))
            return;
        if (!radio.statusAt.isValid()) {
            radio.statusAt = record.time;
            radio.status = facts.TextOf(record);
        }
        TakeDuty(*found, record);
    }

    // The first of the statuses that all mean the present state.
    void TakeDuty(std::size_t at, const dao::EventRecord& record)
    {
        Radio& radio = radios[at];
        const int code = record.desc.toInt();
        const bool off = codes.IsOff(code);
        if (dutyKnown[at] || (!off && !codes.IsOn(code)))
            return;
        if (off == radio.onDuty)
            dutyKnown[at] = true;
        else
            radio.dutySince = record.time;
    }
};

Whereabouts Whereabouts::Read(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                              const std::function<bool()>& goOn)
{
    Whereabouts whereabouts;
    whereabouts.ReadDirectory(database);
    whereabouts.ReadLog(database, facts, since, goOn);
    return whereabouts;
}

void Whereabouts::ReadDirectory(dao::Database& database)
{
    const auto rows = database.OpenSnapshot(AddressTable::Table);
    const int id = rows->Position(AddressTable::IdField);
    const int type = rows->Position(AddressTable::TypeField);
    const int callsign = rows->Position(AddressTable::CallsignField);
    const int ident = rows->Position(AddressTable::IdentField);
    const int name = rows->Position(AddressTable::NameField);
    const int onDuty = rows->Position(AddressTable::OnDutyField);
    QHash<qint32, QString> groups;
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto number = static_cast<qint32>(rows->NumberAt(id));
        if (rows->NumberAt(type) != static_cast<int>(dao::EntryKind::Individual))
            groups.insert(number, rows->TextAt(callsign));
        else
            m_radios.push_back({.id = number,
                                .callsign = rows->TextAt(callsign),
                                .number = rows->TextAt(ident),
                                .name = rows->TextAt(name),
                                .onDuty = rows->NumberAt(onDuty) != 0});
    }
    rows->Close();
    ReadGroups(database, groups);
    std::sort(m_radios.begin(), m_radios.end(),
              [](const Radio& a, const Radio& b) { return dao::Fold(a.callsign) < dao::Fold(b.callsign); });
}

// What a tool has stored has nobody who did it.
void Whereabouts::ReadGroups(dao::Database& database, const QHash<qint32, QString>& groups)
{
    QHash<qint32, std::size_t> members;
    for (std::size_t i = 0; i < m_radios.size(); ++i)
        members.insert(m_radios[i].id, i);
    const std::vector<dao::RegroupActRecord> acts = dao::RegroupActTable::LastOfRegrouped(database);
    const auto regrouped = dao::RegroupTable::OpenSnapshot(database);
    for (; !regrouped->Eof(); regrouped->MoveNext()) {
        const dao::RegroupRecord record = dao::RegroupTable::Read(*regrouped);
        const auto member = members.constFind(record.memberId);
        if (member == members.constEnd())
            continue;
        Group group{.callsign = groups.value(record.groupId)};
        for (const dao::RegroupActRecord& act : acts)
            if (act.memberId == record.memberId && act.pos == record.pos && act.groupId == record.groupId) {
                group.movedBy = act.operatorName;
                group.movedAt = act.time;
            }
        m_radios[*member].groups.push_back(group);
    }
}

void Whereabouts::ReadLog(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                          const std::function<bool()>& goOn)
{
    LogFilter filter;
    filter.since = since;
    const LogSearch log(filter, facts);
    Search search(m_radios, facts, CodesOf(database));
    LogSearch::Page page{.records = {}, .bound = LogSearch::FromNewest};
    while (!page.isLast && (!goOn || goOn())) {
        page = log.Next(database, LogSearch::Order::NewestFirst, page.bound, PageSize, goOn);
        for (const dao::EventRecord& record : page.records)
            search.Take(record);
    }
}
