#pragma once

#include "core/widgets/PlainIconDelegate.h"

#include <QIcon>

// Draws a line of the log on one line: line ends and other control characters of a message appear as signs.
// An emergency has a mark of its own beside the line's picture.
class LogDelegate : public PlainIconDelegate {
    Q_OBJECT

public:
    using PlainIconDelegate::PlainIconDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    mutable QIcon m_emergency; // read from its file once
};
