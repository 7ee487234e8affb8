#pragma once

#include <QStyledItemDelegate>

// Paints items with their pictures in their own colours on a selected line, too: what they say must not
// depend on what is selected. There a rim in the colour of the list keeps them clear of the selection's.
class PlainIconDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    // One picture of an item, at the left of its place.
    static void PaintPicture(QPainter& painter, const QStyleOptionViewItem& item, const QIcon& picture,
                             const QRect& place);
};
