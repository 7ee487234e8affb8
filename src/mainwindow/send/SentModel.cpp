#include "mainwindow/send/SentModel.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/LongTime.h"
#include "mainwindow/base/TextIds.h"
#include "radio/base/SentMessages.h"

#include <QIcon>
#include <QTextDocument>

namespace {

constexpr int Headers[] = {MainText::SentTime, MainText::SentTo, MainText::SentWhat, MainText::SentState,
                           MainText::SentWhy};

struct Look {
    int text;
    const char* icon;
};

Look LookOf(SentMessage::State state)
{
    switch (state) {
    case SentMessage::State::Sending:
        return {MainText::StateSending, "pending"};
    case SentMessage::State::Waiting:
        return {MainText::StateWaiting, "pending"};
    case SentMessage::State::Delivered:
        return {MainText::StateDelivered, "done"};
    case SentMessage::State::GivenToMany:
        return {MainText::StateGivenToMany, "talkgroup"};
    case SentMessage::State::Failed:
        return {MainText::StateFailed, "notdone"};
    case SentMessage::State::Unconfirmed:
        return {MainText::StateUnconfirmed, "warning"};
    case SentMessage::State::GivenUp:
        break;
    }
    return {MainText::StateGivenUp, "warning"};
}

} // namespace

SentModel::SentModel(const IStringSource& strings, const SentMessages& messages, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings),
      m_messages(messages),
      m_rows(static_cast<int>(messages.Size()))
{
    connect(&messages, &SentMessages::Added, this, [this] {
        beginInsertRows({}, 0, 0);
        ++m_rows;
        endInsertRows();
    });
    connect(&messages, &SentMessages::Dropped, this, [this] {
        beginRemoveRows({}, m_rows - 1, m_rows - 1);
        --m_rows;
        endRemoveRows();
    });
    connect(&messages, &SentMessages::Changed, this, [this](std::size_t changed) {
        const int row = m_rows - 1 - static_cast<int>(changed);
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    });
    connect(&messages, &SentMessages::Cleared, this, [this] {
        beginResetModel();
        m_rows = 0;
        endResetModel();
    });
}

const SentMessage& SentModel::MessageAt(const QModelIndex& index) const
{
    return m_messages.At(static_cast<std::size_t>(m_rows - 1 - index.row()));
}

int SentModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int SentModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SentModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const SentMessage& message = MessageAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(message, index.column());
    case Qt::DecorationRole:
        return index.column() == State ? QVariant(LoadIcon(QLatin1String(LookOf(message.state).icon)))
                                       : QVariant();
    case Qt::ToolTipRole:
        // A tool tip treats whatever looks like markup as markup.
        return Qt::convertFromPlainText(Describe(message));
    case Qt::AccessibleTextRole: // the whole line once
        return index.column() == 0 ? Describe(message) : TextOf(message, index.column());
    default:
        return {};
    }
}

QVariant SentModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return m_strings.LoadString(Headers[section]);
}

QString SentModel::TextOf(const SentMessage& message, int column) const
{
    switch (column) {
    case Time:
        return LongTime(message.time.time());
    case To:
        return message.to;
    case What:
        return message.shown;
    case State:
        return m_strings.LoadString(LookOf(message.state).text);
    default:
        if (message.reason.isEmpty() || message.advice.isEmpty())
            return message.reason + message.advice;
        return FormatMessage(m_strings, MainText::SentReason, {message.reason, message.advice});
    }
}

QString SentModel::Describe(const SentMessage& message) const
{
    QStringList texts;
    for (int column = 0; column < ColumnCount; ++column)
        texts.append(TextOf(message, column));
    return FormatMessage(m_strings, MainText::SentLine, texts).trimmed();
}
