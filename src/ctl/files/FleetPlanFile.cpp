#include "ctl/files/FleetPlanFile.h"

#include "addressing/FleetPlanChecks.h"
#include "core/texts/CsvLine.h"
#include "core/texts/Errors.h"
#include "ctl/files/CsvReader.h"
#include "radio/base/AddressingText.h"

#include <QHash>

namespace {

using Columns = QHash<QString, qsizetype>;

const QStringList RequiredColumns{"type", "digits", "prefix", "base_ident", "max_ident"};
const QStringList OtherColumns{"fleet_name", "notes"};

Columns ReadHeadings(const QString& path, const CsvRecord& headings)
{
    Columns columns;
    for (qsizetype i = 0; i < headings.fields.size(); ++i) {
        const QString name = headings.fields[i].trimmed().toLower();
        if (!RequiredColumns.contains(name) && !OtherColumns.contains(name))
            RaiseLineError(path, headings.line,
                           QStringLiteral("unknown column \"%1\"; the columns are %2")
                               .arg(name, (RequiredColumns + OtherColumns).join(", ")));
        if (columns.contains(name))
            RaiseLineError(path, headings.line, QStringLiteral("column \"%1\" comes twice").arg(name));
        columns.insert(name, i);
    }
    for (const QString& name : RequiredColumns)
        if (!columns.contains(name))
            RaiseLineError(path, headings.line, QStringLiteral("column \"%1\" is missing").arg(name));
    return columns;
}

class RowReader {
public:
    RowReader(const QString& path, const CsvRecord& record, const Columns& columns)
        : m_path(path),
          m_record(record),
          m_columns(columns)
    {
        if (record.fields.size() != columns.size())
            RaiseLineError(path, record.line,
                           QStringLiteral("%1 fields where the heading has %2")
                               .arg(record.fields.size())
                               .arg(columns.size()));
    }

    FleetRecord Record() const
    {
        return {.name = m_columns.contains("fleet_name") ? Text("fleet_name") : QString(),
                .fleet = {.fleetType = Type(),
                          .digits = Number("digits"),
                          .prefix = Number("prefix"),
                          .baseIdent = Number("base_ident"),
                          .maxIdent = Number("max_ident")},
                .notes = m_columns.contains("notes") ? Text("notes") : QString()};
    }

private:
    QString Text(const QString& column) const { return m_record.fields[m_columns[column]].trimmed(); }

    FleetType Type() const
    {
        const QString type = Text("type").toLower();
        if (type == "units")
            return FleetType::Units;
        if (type == "groups")
            return FleetType::Groups;
        RaiseLineError(m_path, m_record.line,
                       QStringLiteral("type is \"%1\", not units or groups").arg(Text("type")));
    }

    int Number(const QString& column) const
    {
        bool ok = false;
        const int number = Text(column).toInt(&ok);
        if (!ok)
            RaiseLineError(m_path, m_record.line,
                           QStringLiteral("%1 is \"%2\", not a number").arg(column, Text(column)));
        return number;
    }

    const QString& m_path;
    const CsvRecord& m_record;
    const Columns& m_columns;
};

} // namespace

std::vector<FleetPlanRow> ReadFleetPlan(const QString& path, const IStringSource& strings)
{
    const QList<CsvRecord> records = ReadCsvFile(path);
    if (records.isEmpty())
        throw Error(ErrorCode::General,
                    QStringLiteral("%1: the file is empty; its first line has to name the columns %2")
                        .arg(path, (RequiredColumns + OtherColumns).join(", ")));
    const Columns columns = ReadHeadings(path, records.first());
    std::vector<FleetPlanRow> rows;
    std::vector<FleetConfig> plan;
    for (qsizetype i = 1; i < records.size(); ++i) {
        rows.push_back({RowReader(path, records[i], columns).Record(), records[i].line});
        plan.push_back(rows.back().record.fleet);
    }
    const std::vector<FleetPlanFinding> findings = CheckPlan(plan);
    if (!findings.empty())
        RaiseLineError(path, rows[findings[0].row].line,
                       AddressingFailure(findings[0].error, strings).Description());
    return rows;
}

QString FormatFleetPlan(const std::vector<FleetRecord>& plan)
{
    QString text = CsvLine(RequiredColumns + OtherColumns);
    for (const FleetRecord& record : plan) {
        const FleetConfig& fleet = record.fleet;
        text +=
            CsvLine({fleet.fleetType == FleetType::Units ? "units" : "groups", QString::number(fleet.digits),
                     QString::number(fleet.prefix), QString::number(fleet.baseIdent),
                     QString::number(fleet.maxIdent), record.name, record.notes});
    }
    return text;
}
