#pragma once

#include <QStyledItemDelegate>

// Draws a line of the log on one line: line ends and other control characters of a message appear as signs.
// The picture of a selected line keeps its own colours and background.
class LogDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
