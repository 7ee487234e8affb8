#pragma once

#include <QHash>
#include <QString>

class QAction;
class QMenu;
class QMenuBar;
class QPoint;
struct IStringSource;

// The menus of the main window, built from the action table with their captions.
class MainMenu {
public:
    // Menus and items become children of the bar and their menu.
    MainMenu(QMenuBar& bar, const IStringSource& strings);

    // By objectName; the name must be one of the action table.
    QAction& Action(const QString& name) const;
    QMenu& Menu(const QString& name) const;
    bool Contains(const QString& name) const;
    // Items and the menus' own actions.
    void SetState(const QString& name, bool enabled, bool visible);

    // Shows a menu at a place of the screen, with one item as the default where one is named.
    void PopUp(const QString& menuName, const QPoint& place, const QString& defaultItem = {});

private:
    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
};
