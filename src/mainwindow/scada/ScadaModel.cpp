#include "mainwindow/scada/ScadaModel.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/TextIds.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QTextDocument>
#include <utility>

namespace {

constexpr int GhostEdge = 48; // pixels that a ghost is drawn with, enough for a screen of double density
constexpr double GhostOpacity = 0.35;

// A pale picture with a question mark, so that an unknown state never looks like a known one.
QIcon GhostOf(const QString& picture)
{
    QPixmap ghost(GhostEdge, GhostEdge);
    ghost.fill(Qt::transparent);
    QPainter painter(&ghost);
    painter.setOpacity(GhostOpacity);
    LoadIcon(picture).paint(&painter, ghost.rect());
    painter.setOpacity(1);
    LoadIcon(QStringLiteral("unknown")).paint(&painter, ghost.rect());
    return QIcon(ghost);
}

} // namespace

ScadaModel::ScadaModel(Kind kind, const IStringSource& strings, QObject* parent)
    : QAbstractListModel(parent),
      m_kind(kind),
      m_strings(strings)
{
}

void ScadaModel::Show(const ScadaItems& items, bool old)
{
    m_items = items;
    m_old = old;
    Q_EMIT dataChanged(index(0), index(ScadaItemCount - 1));
}

void ScadaModel::MarkCritical(int item, bool on)
{
    if (std::exchange(m_critical[static_cast<std::size_t>(item)], on) != on)
        Q_EMIT dataChanged(index(item), index(item));
}

void ScadaModel::SetName(int item, const QString& name)
{
    m_names[static_cast<std::size_t>(item)] = name;
    Q_EMIT dataChanged(index(item), index(item));
}

int ScadaModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ScadaItemCount;
}

QVariant ScadaModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const auto place = static_cast<std::size_t>(index.row());
    const ScadaItem& item = m_items[place];
    switch (role) {
    case Qt::DisplayRole:
        return m_names[place].isEmpty() ? QString::number(index.row()) : m_names[place];
    case Qt::EditRole:
        return m_names[place];
    case Qt::DecorationRole: {
        const QIcon icon = Icon(PictureKey(item), item.unknown);
        return m_old ? QIcon(icon.pixmap(GhostEdge, QIcon::Disabled)) : icon;
    }
    case Qt::ForegroundRole:
        return m_old ? QVariant(QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text))
                     : QVariant();
    case Qt::ToolTipRole:
        // A tool tip treats whatever looks like markup as markup.
        return Qt::convertFromPlainText(Describe(index.row()));
    case Qt::AccessibleTextRole:
        return Describe(index.row());
    case PictureRole:
        return PictureKey(item);
    case GhostRole:
        return item.unknown;
    case OutcomeRole:
        return static_cast<int>(item.outcome);
    default:
        return {};
    }
}

bool ScadaModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    Q_EMIT Renamed(index.row(), value.toString());
    return true;
}

Qt::ItemFlags ScadaModel::flags(const QModelIndex& index) const
{
    return QAbstractListModel::flags(index) | Qt::ItemIsEditable;
}

QString ScadaModel::PictureKey(const ScadaItem& item) const
{
    const bool sensors = m_kind == Kind::Sensors;
    switch (item.picture) {
    case ScadaItem::Picture::Off:
        return sensors ? QStringLiteral("soff") : QStringLiteral("coff");
    case ScadaItem::Picture::On:
        return sensors ? QStringLiteral("son") : QStringLiteral("con");
    case ScadaItem::Picture::Waiting:
        break;
    }
    return QStringLiteral("cwait");
}

QIcon ScadaModel::Icon(const QString& picture, bool ghost) const
{
    const QString key = ghost ? picture + QLatin1Char('?') : picture;
    const auto known = m_icons.constFind(key);
    return known != m_icons.constEnd() ? *known
                                       : *m_icons.insert(key, ghost ? GhostOf(picture) : LoadIcon(picture));
}

// "Control 3 Pump: on", for a tool tip and for anybody who cannot see the picture.
QString ScadaModel::Describe(int item) const
{
    const ScadaItem& shown = m_items[static_cast<std::size_t>(item)];
    int state = shown.picture == ScadaItem::Picture::On ? MainText::StateOn : MainText::StateOff;
    if (shown.picture == ScadaItem::Picture::Waiting)
        state = MainText::AwaitsAnswer;
    else if (shown.unknown)
        state = MainText::StateUnknown;
    else if (shown.outcome == Outcome::NotDone)
        state = MainText::OutcomeNotDone;
    const auto marked = [this](int id, bool on, const QString& text) {
        return on ? FormatMessage(m_strings, id, {text}) : text;
    };
    const QString text = FormatMessage(
        m_strings, m_kind == Kind::Sensors ? MainText::SensorState : MainText::ControlState,
        {QString::number(item), m_names[static_cast<std::size_t>(item)], m_strings.LoadString(state)});
    return marked(MainText::CriticalControl, m_critical[static_cast<std::size_t>(item)],
                  marked(MainText::OldValue, m_old, text));
}
