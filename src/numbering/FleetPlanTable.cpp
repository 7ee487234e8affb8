#include "numbering/FleetPlanTable.h"

#include "dao/base/Error.h"
#include "dao/tables/SessionReadings.h"

namespace {

const QString Table = QStringLiteral("fleet");
const QString NameField = QStringLiteral("fleet_name");
const QString TypeField = QStringLiteral("fleet_type");
const QString DigitsField = QStringLiteral("digits");
const QString PrefixField = QStringLiteral("prefix");
const QString BaseField = QStringLiteral("base_ident");
const QString MaxField = QStringLiteral("max_ident");
const QString NotesField = QStringLiteral("notes");

constexpr int UnitsType = 1;
constexpr int GroupsType = 2;

} // namespace

FleetPlanTable::FleetPlanTable(dao::Database& database)
    : m_database(database),
      m_records(database.OpenTable(Table)),
      m_longestName(database.FieldSize(Table, NameField)),
      m_longestNotes(database.FieldSize(Table, NotesField))
{
}

FleetPlanTable::~FleetPlanTable() = default;

std::vector<FleetRecord> FleetPlanTable::Read()
{
    std::vector<FleetRecord> plan;
    const auto records = m_database.OpenSnapshot(dao::FleetPlanQuery);
    for (; !records->Eof(); records->MoveNext())
        plan.push_back(Current(*records));
    return plan;
}

FleetPlanContext FleetPlanTable::ContextFor(const std::optional<QString>& replaced)
{
    FleetPlanContext context{.others = Read(), .longestName = m_longestName, .longestNotes = m_longestNotes};
    std::erase_if(context.others, [&](const FleetRecord& other) { return other.name == replaced; });
    return context;
}

std::optional<FleetRecord> FleetPlanTable::Find(const QString& name)
{
    if (!Seek(name))
        return std::nullopt;
    return Current(*m_records);
}

void FleetPlanTable::Add(const FleetRecord& record)
{
    m_records->AddNew();
    Write(record);
}

void FleetPlanTable::Change(const QString& name, const FleetRecord& record)
{
    if (!Seek(name))
        throw dao::Error(dao::Kind::RecordGone);
    m_records->Edit();
    Write(record);
}

void FleetPlanTable::Delete(const QString& name)
{
    if (!Seek(name))
        throw dao::Error(dao::Kind::RecordGone);
    m_records->Delete();
}

bool FleetPlanTable::Seek(const QString& name)
{
    m_records->SetIndex(QStringLiteral("PrimaryKey"));
    m_records->Seek(name);
    return !m_records->NoMatch();
}

FleetRecord FleetPlanTable::Current(dao::Recordset& records)
{
    const auto number = [&](const QString& field) { return records.Field(field).toInt(); };
    return {.name = records.Field(NameField).toString(),
            .fleet = {.fleetType = number(TypeField) == UnitsType ? FleetType::Units : FleetType::Groups,
                      .digits = number(DigitsField),
                      .prefix = number(PrefixField),
                      .baseIdent = number(BaseField),
                      .maxIdent = number(MaxField)},
            .notes = records.Field(NotesField).toString()};
}

void FleetPlanTable::Write(const FleetRecord& record)
{
    const FleetConfig& fleet = record.fleet;
    m_records->SetField(NameField, record.name);
    m_records->SetField(TypeField, fleet.fleetType == FleetType::Units ? UnitsType : GroupsType);
    m_records->SetField(DigitsField, fleet.digits);
    m_records->SetField(PrefixField, fleet.prefix);
    m_records->SetField(BaseField, fleet.baseIdent);
    m_records->SetField(MaxField, fleet.maxIdent);
    m_records->SetField(NotesField, record.notes.isEmpty() ? QVariant() : QVariant(record.notes));
    m_records->Update();
}
