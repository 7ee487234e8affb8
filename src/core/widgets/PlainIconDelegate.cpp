#include "core/widgets/PlainIconDelegate.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

namespace {

constexpr Qt::Alignment Left = Qt::AlignLeft | Qt::AlignVCenter;

// The picture's outline, filled with one colour.
QPixmap Silhouette(const QIcon& picture, const QRect& place, const QColor& color, qreal ratio)
{
    QPixmap silhouette(place.size() * ratio);
    silhouette.setDevicePixelRatio(ratio);
    silhouette.fill(Qt::transparent);
    QPainter painter(&silhouette);
    picture.paint(&painter, QRect(QPoint(), place.size()), Left);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(), place.size()), color);
    return silhouette;
}

} // namespace

void PlainIconDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (!(option.state & QStyle::State_Selected))
        return;
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    if (!item.icon.isNull()) {
        PaintPicture(
            *painter, item, item.icon,
            item.widget->style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &item, item.widget));
    }
}

void PlainIconDelegate::PaintPicture(QPainter& painter, const QStyleOptionViewItem& item,
                                     const QIcon& picture, const QRect& place)
{
    if (item.state & QStyle::State_Selected) {
        const QPixmap rim = Silhouette(picture, place, item.palette.color(QPalette::Base),
                                       painter.device()->devicePixelRatioF());
        for (const QPoint shift : {QPoint(-1, -1), QPoint(0, -1), QPoint(1, -1), QPoint(-1, 0), QPoint(1, 0),
                                   QPoint(-1, 1), QPoint(0, 1), QPoint(1, 1)})
            painter.drawPixmap(place.topLeft() + shift, rim);
    }
    picture.paint(&painter, place, Left);
}
