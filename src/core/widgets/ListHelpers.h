#pragma once

#include <QModelIndex>

class QAbstractItemView;
class QString;

// Sets every column's width to its contents or, with fitHeaders, to its contents and header. For trees and
// tables; a plain list has no columns. In a tree the outermost rows count.
void AutosizeColumns(QAbstractItemView& view, bool fitHeaders);

void SetFullRowSelect(QAbstractItemView& view, bool on);

// Whether the view has a current item and that item is selected.
bool HasSelectedItem(const QAbstractItemView& view);
// The current item when it is selected, else an invalid index.
QModelIndex GetSelectedItem(const QAbstractItemView& view);

// Leaves neither a selected nor a current item.
void SelectNothing(QAbstractItemView& view);

// Whether a top-level window of exactly this object name exists, shown or hidden.
bool IsFormLoaded(const QString& name);
