#include "mainwindow/individuals/IndividualsReader.h"

#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/AddressTable.h"

namespace {

constexpr int EveryRadio = 0; // of the setting "on_off_duty"
constexpr int OnDutyOnly = 1;

bool IsShown(int dutyMode, bool onDuty)
{
    return dutyMode == EveryRadio || (dutyMode == OnDutyOnly && onDuty);
}

} // namespace

void ReadIndividuals(IDbSession& session, const QString& lookfor, int most, std::vector<IndividualRow>& rows)
{
    const int dutyMode = static_cast<int>(
        session.Memory().Setting(QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble());
    const auto query = session.Database().QueryDef(QStringLiteral("find_individual_ob_callsign"));
    query->SetParameter(QStringLiteral("lookfor"), lookfor);
    const auto records = query->OpenSnapshot();
    const int callsign = records->Position(dao::AddressTable::CallsignField);
    const int ident = records->Position(dao::AddressTable::IdentField);
    const int name = records->Position(dao::AddressTable::NameField);
    const int iconKey = records->Position(dao::AddressTable::IconKeyField);
    const int dynamic = records->Position(dao::AddressTable::DynamicField);
    const int onDuty = records->Position(dao::AddressTable::OnDutyField);
    const int id = records->Position(dao::AddressTable::IdField);
    for (; !records->Eof() && static_cast<int>(rows.size()) < most; records->MoveNext()) {
        if (IsShown(dutyMode, records->NumberAt(onDuty) != 0)) {
            rows.push_back(
                {.callsign = records->TextAt(callsign),
                 .ident = records->TextAt(ident),
                 .name = records->TextAt(name),
                 .picture = PictureOfIndividual(records->TextAt(iconKey), records->NumberAt(dynamic) != 0),
                 .id = static_cast<qint32>(records->NumberAt(id))});
        }
    }
}

void DrawIndividuals(IDbSession& session, const QString& lookfor, int most, std::vector<IndividualRow>& rows)
{
    SessionMemory& memory = session.Memory();
    const auto dutyMode =
        static_cast<int>(memory.Setting(QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble());
    const dao::LookFor wanted(lookfor);
    const Directory& directory = memory.Addresses();
    for (std::size_t i = 0; i < directory.Size() && static_cast<int>(rows.size()) < most; ++i) {
        const Directory::Entry entry = directory.At(i);
        if (entry.type != Directory::Type::Individual || !IsShown(dutyMode, entry.onDuty))
            continue;
        const IndividualRow row{.callsign = Directory::Text(entry.callsign),
                                .ident = Directory::Text(entry.ident),
                                .name = Directory::Text(entry.name),
                                .picture = PictureOfIndividual(QStringLiteral("individual"), entry.dynamic),
                                .id = entry.id};
        if (wanted.MatchesEverything() || wanted.Matches(row.callsign) || wanted.Matches(row.ident) ||
            wanted.Matches(row.name))
            rows.push_back(row);
    }
}
