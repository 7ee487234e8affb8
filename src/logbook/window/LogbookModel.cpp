#include "logbook/window/LogbookModel.h"

#include <QFont>
#include <algorithm>

LogbookModel::LogbookModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_line(strings),
      m_facts(strings, {})
{
}

void LogbookModel::Begin(const LogFacts& facts)
{
    Clear();
    m_facts = facts;
}

void LogbookModel::Clear()
{
    beginResetModel();
    m_records.clear();
    endResetModel();
}

void LogbookModel::AddOlder(const std::vector<dao::EventRecord>& records)
{
    std::vector<dao::EventRecord> added;
    for (const dao::EventRecord& record : records)
        if (m_records.empty() || record.id < m_records.back().id)
            added.push_back(record);
    if (added.empty())
        return;
    const int row = rowCount();
    beginInsertRows({}, row, row + static_cast<int>(added.size()) - 1);
    m_records.insert(m_records.end(), added.begin(), added.end());
    endInsertRows();
}

int LogbookModel::AddNewer(const std::vector<dao::EventRecord>& records)
{
    int above = 0;
    for (const dao::EventRecord& record : records) {
        // One that another console has stored late belongs among the others.
        const auto place =
            std::lower_bound(m_records.begin(), m_records.end(), record.id,
                             [](const dao::EventRecord& known, qlonglong id) { return known.id > id; });
        if (place != m_records.end() && place->id == record.id)
            continue;
        const int row = static_cast<int>(place - m_records.begin());
        beginInsertRows({}, row, row);
        m_records.insert(place, record);
        endInsertRows();
        above += row == 0 ? 1 : 0;
    }
    return above;
}

int LogbookModel::RowOf(qlonglong record) const
{
    const auto place =
        std::lower_bound(m_records.begin(), m_records.end(), record,
                         [](const dao::EventRecord& known, qlonglong id) { return known.id > id; });
    if (m_records.empty())
        return -1;
    return std::min(static_cast<int>(place - m_records.begin()), rowCount() - 1);
}

int LogbookModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

int LogbookModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : LogbookLine::Columns;
}

QVariant LogbookModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const dao::EventRecord& record = At(index.row());
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return m_line.Cell(record, m_facts, index.column());
    if (role == Qt::FontRole && m_facts.IsEmergency(record)) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    return {};
}

QVariant LogbookModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_line.Heading(section);
    return {};
}
