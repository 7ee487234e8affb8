#include "admin/StatusModel.h"

#include "admin/TextIds.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"

#include <QIcon>
#include <algorithm>

StatusModel::StatusModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings)
{
}

void StatusModel::Replace(std::vector<dao::StatusRecord> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int StatusModel::RowOf(int code) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [code](const dao::StatusRecord& r) { return r.code == code; });
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

int StatusModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int StatusModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant StatusModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const dao::StatusRecord& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == TagRole)
        return row.code;
    if (role == Qt::DecorationRole && index.column() == Code)
        return LoadIcon(row.emergency ? QStringLiteral("warning") : QStringLiteral("status"));
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Code:
        return QString::number(row.code);
    case Incoming:
        return row.in;
    default:
        return row.out;
    }
}

QVariant StatusModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    constexpr int Captions[ColumnCount] = {AdminText::CodeColumn, AdminText::IncomingColumn,
                                           AdminText::OutgoingColumn};
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return m_strings.LoadString(Captions[section]);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}
