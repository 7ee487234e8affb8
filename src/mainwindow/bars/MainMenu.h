#pragma once

#include "mainwindow/bars/ActionTable.h"

#include <map>

class QAction;
class QMenu;
class QMenuBar;
class QPoint;
struct IStringSource;

// The menus of the main window, built from the action table with their captions.
class MainMenu {
public:
    // Menus become children of the bar, items of their menu.
    MainMenu(QMenuBar& bar, const IStringSource& strings);

    // The command must be a menu, or an item of one.
    QMenu& Menu(MainCommand menu) const;
    QAction& Action(MainCommand item) const;
    bool HasItem(MainCommand command) const { return m_actions.contains(command); }
    // Of an item, or of a menu in the bar.
    void SetState(MainCommand command, const CommandState& state);

    // Shows a menu at a place on the screen, with one item as the default where one is named.
    void PopUp(MainCommand menu, const QPoint& place, MainCommand defaultItem = MainCommand::None);

private:
    std::map<MainCommand, QAction*> m_actions;
    std::map<MainCommand, QMenu*> m_menus;
};
