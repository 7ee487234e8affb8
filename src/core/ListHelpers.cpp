#include "core/ListHelpers.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTreeView>
#include <algorithm>

namespace {

QHeaderView* HeaderOf(QAbstractItemView& view)
{
    if (auto* tree = qobject_cast<QTreeView*>(&view))
        return tree->header();
    if (auto* table = qobject_cast<QTableView*>(&view))
        return table->horizontalHeader();
    return nullptr;
}

} // namespace

void AutosizeColumns(QAbstractItemView& view, bool fitHeaders)
{
    QHeaderView* header = HeaderOf(view);
    if (!header)
        return;
    for (int column = 0; column < header->count(); ++column) {
        const int contents = view.sizeHintForColumn(column);
        const int caption = fitHeaders ? header->sectionSizeHint(column) : 0;
        header->resizeSection(column, std::max({contents, caption, header->minimumSectionSize()}));
    }
}

void SetFullRowSelect(QAbstractItemView& view, bool on)
{
    view.setSelectionBehavior(on ? QAbstractItemView::SelectRows : QAbstractItemView::SelectItems);
    if (auto* tree = qobject_cast<QTreeView*>(&view))
        tree->setAllColumnsShowFocus(on);
}

bool HasSelectedItem(const QAbstractItemView& view)
{
    return GetSelectedItem(view).isValid();
}

QModelIndex GetSelectedItem(const QAbstractItemView& view)
{
    const QModelIndex current = view.currentIndex();
    const QItemSelectionModel* selection = view.selectionModel();
    return current.isValid() && selection && selection->isSelected(current) ? current : QModelIndex();
}

bool IsFormLoaded(const QString& name)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [&](const QWidget* window) { return window->objectName() == name; });
}
