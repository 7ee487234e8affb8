#pragma once

#include <QStyledItemDelegate>

// Paints the sign of an item's outcome behind its text: a tick for what was done, a cross for what was not.
class OutcomeDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
