#include "mainwindow/log/LogModel.h"

#include "core/widgets/Icons.h"

#include <algorithm>
#include <iterator>

namespace {

// The pictures of lines; a line without a direction shows none, although its kind has one elsewhere.
bool IsPictureOfLine(const QString& key)
{
    static constexpr const char* Keys[] = {"newday",  "statusin", "statusout", "textin",
                                           "textout", "callin",   "callout"};
    return std::any_of(std::begin(Keys), std::end(Keys),
                       [&](const char* known) { return key == QLatin1String(known); });
}

} // namespace

LogModel::LogModel(const QString& caption, QObject* parent) : QAbstractListModel(parent), m_caption(caption)
{
}

void LogModel::Append(const LogLine& line)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_lines.push_back(line);
    endInsertRows();
}

void LogModel::RemoveFirst()
{
    if (!m_lines.empty()) {
        beginRemoveRows({}, 0, 0);
        m_lines.pop_front();
        endRemoveRows();
    }
}

void LogModel::Clear()
{
    Replace({});
}

void LogModel::Replace(std::vector<LogLine> lines)
{
    beginResetModel();
    m_lines.assign(std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const LogLine& line = m_lines[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return line.text;
    case Qt::DecorationRole:
        return Icon(line.iconKey);
    case TagRole:
        return line.tag;
    case IconKeyRole:
        return line.iconKey;
    case EmergencyRole:
        return line.emergency;
    default:
        return {};
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool ours = section == 0 && orientation == Qt::Horizontal;
    if (ours && role == Qt::DisplayRole)
        return m_caption;
    if (ours && role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

QIcon LogModel::Icon(const QString& key) const
{
    const auto known = m_icons.constFind(key);
    return known != m_icons.constEnd() ? *known
                                       : *m_icons.insert(key, IsPictureOfLine(key) ? LoadIcon(key) : QIcon());
}
