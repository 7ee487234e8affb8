#include "numbering/FleetPlanFile.h"

#include "addressing/FleetPlanChecks.h"
#include "core/texts/CsvLine.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "exchange/CsvReader.h"
#include "exchange/TextIds.h"
#include "numbering/TextIds.h"
#include "radio/base/AddressingText.h"

namespace {

enum Field { Type, Digits, Prefix, BaseIdent, MaxIdent, FleetName, Notes };

} // namespace

CsvTable::Columns FleetPlanColumns()
{
    return {.needed = {"type", "digits", "prefix", "base_ident", "max_ident"},
            .optional = {"fleet_name", "notes"}};
}

QString ParseFleet(const QStringList& fields, FleetRecord& record, const IStringSource& strings)
{
    if (fields.isEmpty())
        return strings.LoadString(ExchangeText::OtherFieldCount);
    const QString type = fields[Type].trimmed().toLower();
    if (type != "units" && type != "groups")
        return FormatMessage(strings, NumberingText::UnknownType, {fields[Type].trimmed()});
    record.fleet.fleetType = type == "units" ? FleetType::Units : FleetType::Groups;
    const std::pair<Field, int*> numbers[] = {{Digits, &record.fleet.digits},
                                              {Prefix, &record.fleet.prefix},
                                              {BaseIdent, &record.fleet.baseIdent},
                                              {MaxIdent, &record.fleet.maxIdent}};
    for (const auto& [field, number] : numbers) {
        bool isNumber = false;
        *number = fields[field].trimmed().toInt(&isNumber);
        if (!isNumber)
            return FormatMessage(strings, NumberingText::NotANumber,
                                 {FleetPlanColumns().needed[field], fields[field].trimmed()});
    }
    record.name = fields[FleetName].trimmed();
    record.notes = fields[Notes].trimmed();
    return {};
}

std::vector<FleetPlanRow> ReadFleetPlan(const QString& path, const IStringSource& strings)
{
    const CsvTable table = CsvTable::Read(path, FleetPlanColumns(), strings);
    std::vector<FleetPlanRow> rows;
    std::vector<FleetConfig> plan;
    for (const CsvTable::Row& row : table.Rows()) {
        FleetRecord record{};
        const QString problem = ParseFleet(row.fields, record, strings);
        if (!problem.isEmpty())
            RaiseLineError(path, row.line, problem, strings);
        rows.push_back({record, row.line});
        plan.push_back(record.fleet);
    }
    const std::vector<FleetPlanFinding> findings = CheckPlan(plan);
    if (!findings.empty())
        RaiseLineError(path, rows[findings[0].row].line,
                       AddressingFailure(findings[0].error, strings).Description(), strings);
    return rows;
}

QString FormatFleetPlan(const std::vector<FleetRecord>& plan)
{
    QString text = CsvLine(FleetPlanColumns().needed + FleetPlanColumns().optional);
    for (const FleetRecord& record : plan) {
        const FleetConfig& fleet = record.fleet;
        text +=
            CsvLine({fleet.fleetType == FleetType::Units ? "units" : "groups", QString::number(fleet.digits),
                     QString::number(fleet.prefix), QString::number(fleet.baseIdent),
                     QString::number(fleet.maxIdent), record.name, record.notes});
    }
    return text;
}
