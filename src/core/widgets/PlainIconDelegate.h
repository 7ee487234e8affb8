#pragma once

#include <QStyledItemDelegate>

// Paints items' pictures in their own colours even on a selected line: what they say must not depend on what
// is selected. There a rim in the list's colour sets them off from the selection's.
class PlainIconDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    // One picture of an item, at the left of its rectangle.
    static void PaintPicture(QPainter& painter, const QStyleOptionViewItem& item, const QIcon& picture,
                             const QRect& place);
};
