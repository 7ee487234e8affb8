#pragma once

#include <QString>
#include <Qt>

class QWidget;

// The hand of the guided tour: synthetic clicks and keys on the real windows. Every operation raises Error
// when a person could not have done it, because the thing is missing, hidden or disabled.
namespace TourHand {

// A widget by its name in any visible window, the active one first.
QWidget* Find(const QString& name);
bool IsVisible(const QString& name);

void Click(const QString& name);
void Press(const QString& name);   // holds the left button down
void Release(const QString& name); // lets it go
// Empties a text or combo box and types into it.
void Type(const QString& name, const QString& text);
// Chooses the entry of a list or a combo box that begins with the text, by typing it.
void Choose(const QString& name, const QString& text);
void Key(const QString& name, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
// Opens a menu of the main window by a click and clicks an item, both by their names.
void Menu(const QString& menu, const QString& item);
// Clicks a button of an open message box: the agreeing or the refusing one.
void AnswerBox(bool agree);

// What a widget shows: its text, title or current text.
QString TextOf(const QString& name);

} // namespace TourHand
