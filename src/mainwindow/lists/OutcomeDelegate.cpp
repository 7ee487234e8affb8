#include "mainwindow/lists/OutcomeDelegate.h"

#include "core/widgets/Icons.h"
#include "mainwindow/lists/Outcome.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace {

constexpr int Gap = 8;

} // namespace

void OutcomeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    PlainIconDelegate::paint(painter, option, index);
    const auto outcome = static_cast<Outcome>(index.data(OutcomeRole).toInt());
    if (outcome == Outcome::None)
        return;
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QRect text = item.widget->style()->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
    const int edge = std::min(text.height(), SmallIconSize(*item.widget).height());
    const int behindText = text.left() + item.fontMetrics.horizontalAdvance(item.text) + Gap;
    const QRect place(std::min(behindText, option.rect.right() - edge), text.center().y() - edge / 2, edge,
                      edge);
    PaintPicture(*painter, item,
                 LoadIcon(outcome == Outcome::Done ? QStringLiteral("done") : QStringLiteral("notdone")),
                 place);
}

void OutcomeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    PlainIconDelegate::initStyleOption(option, index);
    if (option->icon.isNull())
        option->features |= QStyleOptionViewItem::HasDecoration;
}
