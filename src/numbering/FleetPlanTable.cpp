#include "numbering/FleetPlanTable.h"

#include "dao/Database.h"
#include "dao/Error.h"

namespace {

const QString table = QStringLiteral("fleet");
const QString nameField = QStringLiteral("fleet_name");
const QString typeField = QStringLiteral("fleet_type");
const QString digitsField = QStringLiteral("digits");
const QString prefixField = QStringLiteral("prefix");
const QString baseField = QStringLiteral("base_ident");
const QString maxField = QStringLiteral("max_ident");
const QString notesField = QStringLiteral("notes");

constexpr int unitsType = 1;
constexpr int groupsType = 2;

} // namespace

FleetPlanTable::FleetPlanTable(dao::Database& database)
    : m_records(database.OpenTable(table)),
      m_longestName(database.FieldSize(table, nameField)),
      m_longestNotes(database.FieldSize(table, notesField))
{
}

FleetPlanTable::~FleetPlanTable() = default;

std::vector<FleetRecord> FleetPlanTable::Read()
{
    std::vector<FleetRecord> plan;
    m_records->SetIndex(QStringLiteral("i_fleetbase"));
    for (m_records->MoveFirst(); !m_records->Eof(); m_records->MoveNext())
        plan.push_back(Current());
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
    return Current();
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

FleetRecord FleetPlanTable::Current()
{
    const auto number = [this](const QString& field) { return m_records->Field(field).toInt(); };
    return {.name = m_records->Field(nameField).toString(),
            .fleet = {.fleetType = number(typeField) == unitsType ? FleetType::Units : FleetType::Groups,
                      .digits = number(digitsField),
                      .prefix = number(prefixField),
                      .baseIdent = number(baseField),
                      .maxIdent = number(maxField)},
            .notes = m_records->Field(notesField).toString()};
}

void FleetPlanTable::Write(const FleetRecord& record)
{
    const FleetConfig& fleet = record.fleet;
    m_records->SetField(nameField, record.name);
    m_records->SetField(typeField, fleet.fleetType == FleetType::Units ? unitsType : groupsType);
    m_records->SetField(digitsField, fleet.digits);
    m_records->SetField(prefixField, fleet.prefix);
    m_records->SetField(baseField, fleet.baseIdent);
    m_records->SetField(maxField, fleet.maxIdent);
    m_records->SetField(notesField, record.notes.isEmpty() ? QVariant() : QVariant(record.notes));
    m_records->Update();
}
