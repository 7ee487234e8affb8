#pragma once

#include <QString>

// The hand of the guided tour on trees and lists. An item is named by what it shows, or the beginning of it;
// "Group91/Unit20" is the Unit20 below Group91. Operations raise Error when there is no such item to be seen.
namespace TourItems {

void Click(const QString& view, const QString& item);
void DoubleClick(const QString& view, const QString& item);
// Takes an item with the left button to another one and, unless told otherwise, lets it go there.
void Drag(const QString& view, const QString& item, const QString& target, bool drop = true);
// Of a list whose items have no names.
void ClickRow(const QString& view, int row);
void DoubleClickRow(const QString& view, int row);
// Edits its name in place: F2, the text, Enter.
void RenameRow(const QString& view, int row, const QString& name);

bool IsThere(const QString& view, const QString& item);
// The value of a role, as text; empty when there is no such item.
QString Value(const QString& view, const QString& item, int role);
QString RowValue(const QString& view, int row, int role);

} // namespace TourItems
