#pragma once

#include <QStyledItemDelegate>

// Paints items with their pictures in their own colours on a selected line, too: what they say must not
// depend on what is selected.
class PlainIconDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
