#pragma once

#include "core/widgets/PlainIconDelegate.h"

// Paints the sign of an item's outcome behind its text: a tick for what was done, a cross for what was not.
// An item without a picture has room for one, so that its text stays in place when it gets one.
class OutcomeDelegate : public PlainIconDelegate {
    Q_OBJECT

public:
    using PlainIconDelegate::PlainIconDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
