#include "mainwindow/strip/AttentionModel.h"

#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/TextIds.h"

#include <QFont>
#include <QIcon>
#include <algorithm>

AttentionModel::AttentionModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings),
      m_texts(strings)
{
}

void AttentionModel::Replace(const std::vector<dao::AttentionRecord>& entries, const QDateTime& now)
{
    beginResetModel();
    m_entries = entries;
    m_now = now;
    endResetModel();
}

int AttentionModel::RowOf(const QString& id) const
{
    const auto row = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const dao::AttentionRecord& entry) { return entry.id == id; });
    return row == m_entries.end() ? -1 : static_cast<int>(row - m_entries.begin());
}

int AttentionModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int AttentionModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant AttentionModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const dao::AttentionRecord& entry = m_entries[static_cast<std::size_t>(index.row())];
    const bool emergency = entry.kind == dao::AttentionRecord::Kind::Emergency;
    if (role == IdRole)
        return entry.id;
    if (role == Qt::DecorationRole && index.column() == Kind)
        return LoadIcon(emergency                                          ? QStringLiteral("warning")
                        : entry.kind == dao::AttentionRecord::Kind::Failed ? QStringLiteral("notdone")
                                                                           : QStringLiteral("callin"));
    if (role == Qt::FontRole && emergency && !entry.IsTaken()) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Kind:
        return m_texts.KindOf(entry);
    case Caller:
        return entry.caller;
    case What:
        return entry.what.simplified();
    case Since:
        return m_texts.Time(entry.since, m_now);
    case Times:
        return QString::number(entry.times);
    default:
        return m_texts.TakenBy(entry, m_now);
    }
}

QVariant AttentionModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    constexpr int Captions[ColumnCount] = {MainText::WaitingKindColumn,  MainText::WaitingWhoColumn,
                                           MainText::WaitingWhatColumn,  MainText::WaitingSinceColumn,
                                           MainText::WaitingTimesColumn, MainText::WaitingTakenColumn};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return {};
    return m_strings.LoadString(Captions[section]);
}
