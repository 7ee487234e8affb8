#include "logbook/window/TableModel.h"

#include <utility>

TableModel::TableModel(QStringList headings, QObject* parent)
    : QAbstractTableModel(parent),
      m_headings(std::move(headings))
{
}

void TableModel::Show(const QList<Row>& rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

int TableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_headings.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const
{
    const Row& row = m_rows[index.row()];
    if (role == SortRole && row.order.value(index.column()).isValid())
        return row.order[index.column()];
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == SortRole)
        return row.cells.value(index.column());
    return {};
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headings.value(section);
    return {};
}
