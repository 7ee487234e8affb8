#pragma once

#include <QModelIndex>
#include <QString>

class QAbstractItemView;
class QWidget;

// What the lines of a tour point at, in all visible windows, the active one first.
namespace TourControls {

// By its object name; a hidden one only when no visible one has it, null when there is none.
QWidget* Find(const QString& name);

// Of a place like "tvGroups/Group91/Unit20": whether it names an item, and of which list or tree.
bool IsItem(const QString& place);
// Raises Error when there is no such list or tree to be seen.
QAbstractItemView* View(const QString& place);
// The item that shows, or begins with, what is named: its columns, joined by blanks. "*" stands for anything;
// "Group91/Unit20" is the Unit20 below Group91, "#3" the row 3. Invalid when there is none. Raises Error like
// View.
QModelIndex Item(const QString& place);

// What a control or an item shows: its text, title or current text.
QString TextOf(const QString& place);

// Whether all of the text is like the pattern, in which "*" stands for anything.
bool IsLike(const QString& text, const QString& pattern);

} // namespace TourControls
