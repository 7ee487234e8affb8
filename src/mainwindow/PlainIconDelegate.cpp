#include "mainwindow/PlainIconDelegate.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

void PlainIconDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (!(option.state & QStyle::State_Selected)) {
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    if (!item.icon.isNull()) {
        const QStyle& style = *item.widget->style();
        const QRect place = style.subElementRect(QStyle::SE_ItemViewItemDecoration, &item, item.widget);
        painter->fillRect(place, item.palette.color(QPalette::Base));
        item.icon.paint(painter, place);
    }
}
