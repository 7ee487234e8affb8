#include "mainwindow/individuals/IndividualsReader.h"

#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "dao/records/Database.h"

namespace {

constexpr int EveryRadio = 0; // of the setting "on_off_duty"
constexpr int OnDutyOnly = 1;

} // namespace

void ReadIndividuals(IDbSession& session, const QString& lookfor, int most, std::vector<IndividualRow>& rows)
{
    const int dutyMode =
        static_cast<int>(RegistryGet(session, QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble());
    const auto query = session.Database().QueryDef(QStringLiteral("find_individual_ob_callsign"));
    query->SetParameter(QStringLiteral("lookfor"), lookfor);
    const auto records = query->OpenSnapshot();
    const int callsign = records->Position(QStringLiteral("callsign"));
    const int ident = records->Position(QStringLiteral("IDENT"));
    const int name = records->Position(QStringLiteral("Name"));
    const int iconKey = records->Position(QStringLiteral("iconkey"));
    const int dynamic = records->Position(QStringLiteral("dynamic"));
    const int onDuty = records->Position(QStringLiteral("on_duty"));
    const int id = records->Position(QStringLiteral("address_id"));
    for (; !records->Eof() && static_cast<int>(rows.size()) < most; records->MoveNext()) {
        if (dutyMode == EveryRadio || (dutyMode == OnDutyOnly && records->NumberAt(onDuty) != 0)) {
            rows.push_back(
                {.callsign = records->TextAt(callsign),
                 .ident = records->TextAt(ident),
                 .name = records->TextAt(name),
                 .picture = PictureOfIndividual(records->TextAt(iconKey), records->NumberAt(dynamic) != 0),
                 .id = static_cast<qint32>(records->NumberAt(id))});
        }
    }
}
