#include "numbering/FleetImport.h"

#include "addressing/FleetPlanChecks.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "numbering/FleetPlanFile.h"
#include "numbering/TextIds.h"
#include "radio/base/AddressingText.h"

#include <algorithm>
#include <span>

namespace {

auto Named(const QString& name)
{
    return [name](const FleetRecord& record) { return record.name == name; };
}

} // namespace

FleetImport::FleetImport(dao::Database& database, CsvTable table, Others others, const IStringSource& strings)
    : m_table(std::move(table)),
      m_others(others),
      m_strings(strings),
      m_plan(database)
{
}

std::vector<ImportLine> FleetImport::Check()
{
    m_before = m_plan.Read();
    std::vector<ImportLine> lines;
    Parse(lines);
    Compare(lines);
    if (m_others == Others::Remove)
        for (const FleetRecord& record : m_before)
            if (!IsInFile(record.name)) {
                m_removed.append(record.name);
                lines.push_back({0, record.name, ImportOutcome::Removed, {}});
            }
    return lines;
}

void FleetImport::Parse(std::vector<ImportLine>& lines)
{
    for (const CsvTable::Row& row : m_table.Rows()) {
        FleetRecord record{};
        ImportLine line{row.line, {}, ImportOutcome::Refused, ParseFleet(row.fields, record, m_strings)};
        line.entry = record.name;
        if (line.reason.isEmpty() && !record.name.isEmpty() && IsInFile(record.name))
            line.reason = FormatMessage(m_strings, NumberingText::NameTwice, {record.name});
        if (line.reason.isEmpty()) {
            m_read.push_back(record);
            m_lineOf.push_back(lines.size());
        }
        lines.push_back(line);
    }
}

// The plan as it will be decides: fleets of the file may change places.
void FleetImport::Compare(std::vector<ImportLine>& lines)
{
    FleetPlanContext context = m_plan.ContextFor(std::nullopt);
    std::vector<FleetRecord> merged = m_read;
    if (m_others == Others::Stay)
        for (const FleetRecord& record : m_before)
            if (!IsInFile(record.name))
                merged.push_back(record);
    for (std::size_t i = 0; i < m_read.size(); ++i) {
        const FleetRecord& record = m_read[i];
        ImportLine& line = lines[m_lineOf[i]];
        context.others = merged;
        std::erase_if(context.others, Named(record.name));
        if (const auto refusal = CheckFleetEntry(ToEntry(record), context, m_strings)) {
            line.reason = refusal->text;
            continue;
        }
        if (const auto findings = CheckPlan(std::span(&record.fleet, 1)); !findings.empty()) {
            line.reason = AddressingFailure(findings[0].error, m_strings).Description();
            continue;
        }
        const auto same = std::find_if(m_before.begin(), m_before.end(), Named(record.name));
        if (same == m_before.end()) {
            line.outcome = ImportOutcome::Added;
            m_added.push_back(record);
        } else if (same->fleet == record.fleet && same->notes == record.notes) {
            line.outcome = ImportOutcome::Unchanged;
        } else {
            line.outcome = ImportOutcome::Changed;
            m_changed.push_back(record);
        }
    }
}

void FleetImport::Store()
{
    for (const QString& name : m_removed)
        m_plan.Delete(name);
    for (const FleetRecord& record : m_changed)
        m_plan.Change(record.name, record);
    for (const FleetRecord& record : m_added)
        m_plan.Add(record);
}

bool FleetImport::IsInFile(const QString& name) const
{
    return std::any_of(m_read.begin(), m_read.end(), Named(name));
}
