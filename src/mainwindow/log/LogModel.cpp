#include "mainwindow/log/LogModel.h"

#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/WaitingMark.h"
#include "mainwindow/log/LogTextIds.h"

namespace {

struct Picture {
    const char* key;
    int says;
};

// A line without a direction shows none, although its kind has one elsewhere.
constexpr Picture Pictures[] = {{"statusin", LogText::StatusIn}, {"statusout", LogText::StatusOut},
                                {"textin", LogText::TextIn},     {"textout", LogText::TextOut},
                                {"callin", LogText::CallIn},     {"callout", LogText::CallOut}};

} // namespace

LogModel::LogModel(const IStringSource& strings, QObject* parent)
    : QAbstractListModel(parent),
      m_caption(strings.LoadString(MainText::LogColumn)),
      m_waiting(strings.LoadString(MainText::RecordNotStored)),
      m_emergency(strings.LoadString(LogText::Emergency))
{
    for (const Picture& picture : Pictures)
        m_pictures.insert(QLatin1String(picture.key), strings.LoadString(picture.says));
    m_pictures.insert(QStringLiteral("newday"), {});
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

void LogModel::SetSafe(const QStringList& records)
{
    qsizetype left = records.size();
    for (std::size_t row = m_lines.size(); row-- > 0 && left > 0;) {
        LogLine& line = m_lines[row];
        if (line.record.isEmpty() || !records.contains(line.record))
            continue;
        line.record.clear();
        line.marked = false;
        --left;
        Tell(row);
    }
}

void LogModel::ShowWaiting()
{
    for (std::size_t row = 0; row < m_lines.size(); ++row)
        if (!m_lines[row].record.isEmpty() && !m_lines[row].marked) {
            m_lines[row].marked = true;
            Tell(row);
        }
}

void LogModel::Tell(std::size_t row)
{
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed);
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
    case WaitingRole:
        return !line.record.isEmpty();
    case Qt::AccessibleTextRole:
        return Spoken(line);
    case Qt::ToolTipRole:
        return line.marked ? m_waiting : QVariant();
    case Qt::FontRole:
    case Qt::ForegroundRole:
        return line.marked ? WaitingLook(role) : QVariant();
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
    return known != m_icons.constEnd()
               ? *known
               : *m_icons.insert(key, m_pictures.contains(key) ? LoadIcon(key) : QIcon());
}

// The line with what its pictures and its type say to the eye.
QString LogModel::Spoken(const LogLine& line) const
{
    QStringList parts;
    if (line.emergency)
        parts += m_emergency;
    parts += m_pictures.value(line.iconKey);
    parts += line.text.trimmed();
    if (!line.record.isEmpty())
        parts += m_waiting;
    parts.removeAll(QString());
    return parts.join(u' ');
}
