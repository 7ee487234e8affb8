#include "app/TourItems.h"

#include "app/TourHand.h"
#include "core/Errors.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>

namespace {

QAbstractItemView* View(const QString& name)
{
    return qobject_cast<QAbstractItemView*>(TourHand::Find(name));
}

QModelIndex Below(const QAbstractItemModel& model, const QModelIndex& parent, const QStringList& path)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex node = model.index(row, 0, parent);
        if (node.data().toString().startsWith(path.first())) {
            const QModelIndex found = path.size() == 1 ? node : Below(model, node, path.mid(1));
            if (found.isValid())
                return found;
        }
        if (const QModelIndex found = Below(model, node, path); found.isValid())
            return found;
    }
    return {};
}

QModelIndex Find(const QString& view, const QString& item)
{
    const QAbstractItemView* shown = View(view);
    return shown ? Below(*shown->model(), {}, item.split(QLatin1Char('/'))) : QModelIndex();
}

QModelIndex Row(const QString& view, int row)
{
    const QAbstractItemView* shown = View(view);
    return shown ? shown->model()->index(row, 0) : QModelIndex();
}

// The middle of the item's row where it can be seen.
QPoint PlaceOf(const QString& view, const QModelIndex& item)
{
    QAbstractItemView* shown = View(view);
    if (!shown || !shown->isVisible() || !item.isValid())
        throw Error(ErrorCode::General, QStringLiteral("no such item in %1").arg(view));
    shown->scrollTo(item);
    const QRect seen = shown->visualRect(item).intersected(shown->viewport()->rect());
    if (seen.isEmpty())
        throw Error(ErrorCode::General, QStringLiteral("%1 cannot be seen").arg(item.data().toString()));
    return seen.center();
}

void Send(const QString& view, QEvent::Type type, const QPoint& place)
{
    const bool move = type == QEvent::MouseMove;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QWidget* viewport = View(view)->viewport();
    QMouseEvent event(type, QPointF(place), QPointF(viewport->mapToGlobal(place)),
                      move ? Qt::NoButton : Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

void ClickAt(const QString& view, const QModelIndex& item, bool twice)
{
    const QPoint place = PlaceOf(view, item);
    View(view)->setFocus(Qt::MouseFocusReason);
    Send(view, QEvent::MouseButtonPress, place);
    Send(view, QEvent::MouseButtonRelease, place);
    if (twice) {
        Send(view, QEvent::MouseButtonDblClick, place);
        Send(view, QEvent::MouseButtonRelease, place);
    }
}

} // namespace

void TourItems::Click(const QString& view, const QString& item)
{
    ClickAt(view, Find(view, item), false);
}

void TourItems::DoubleClick(const QString& view, const QString& item)
{
    ClickAt(view, Find(view, item), true);
}

void TourItems::Drag(const QString& view, const QString& item, const QString& target, bool drop)
{
    const QPoint from = PlaceOf(view, Find(view, item));
    const QPoint to = PlaceOf(view, Find(view, target));
    View(view)->setFocus(Qt::MouseFocusReason);
    Send(view, QEvent::MouseButtonPress, from);
    Send(view, QEvent::MouseMove, (from + to) / 2);
    Send(view, QEvent::MouseMove, to);
    if (drop)
        Send(view, QEvent::MouseButtonRelease, to);
}

void TourItems::ClickRow(const QString& view, int row)
{
    ClickAt(view, Row(view, row), false);
}

void TourItems::DoubleClickRow(const QString& view, int row)
{
    ClickAt(view, Row(view, row), true);
}

void TourItems::RenameRow(const QString& view, int row, const QString& name)
{
    ClickRow(view, row);
    TourHand::Key(view, Qt::Key_F2);
    auto* editor = View(view)->findChild<QLineEdit*>();
    if (!editor)
        throw Error(ErrorCode::General, QStringLiteral("no editor in %1").arg(view));
    editor->setObjectName(QStringLiteral("editor"));
    TourHand::Type(editor->objectName(), name);
    TourHand::Key(editor->objectName(), Qt::Key_Return);
}

bool TourItems::IsThere(const QString& view, const QString& item)
{
    return Find(view, item).isValid();
}

QString TourItems::Value(const QString& view, const QString& item, int role)
{
    return Find(view, item).data(role).toString();
}

QString TourItems::RowValue(const QString& view, int row, int role)
{
    return Row(view, row).data(role).toString();
}
