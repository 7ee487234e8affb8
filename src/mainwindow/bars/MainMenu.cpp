#include "mainwindow/bars/MainMenu.h"

#include "core/texts/StringSource.h"
#include "mainwindow/bars/ActionTable.h"

#include <QMenu>
#include <QMenuBar>

MainMenu::MainMenu(QMenuBar& bar, const IStringSource& strings)
{
    QMenu* menu = nullptr;
    for (const CommandRow& row : ActionTable()) {
        if (row.kind == CommandRow::Kind::Button)
            continue;
        const QString name = QLatin1String(row.name);
        const QString caption = strings.LoadString(row.caption);
        if (row.kind == CommandRow::Kind::Menu) {
            menu = bar.addMenu(caption);
            menu->setObjectName(name);
            m_menus.insert(name, menu);
        } else if (caption == QLatin1String("-")) {
            menu->addSeparator();
        } else {
            QAction* action = menu->addAction(caption);
            action->setObjectName(name);
            m_actions.insert(name, action);
        }
    }
}

QAction& MainMenu::Action(const QString& name) const
{
    Q_ASSERT(m_actions.contains(name));
    return *m_actions.value(name);
}

QMenu& MainMenu::Menu(const QString& name) const
{
    Q_ASSERT(m_menus.contains(name));
    return *m_menus.value(name);
}

bool MainMenu::Contains(const QString& name) const
{
    return m_actions.contains(name) || m_menus.contains(name);
}

void MainMenu::SetState(const QString& name, bool enabled, bool visible)
{
    QAction& action = m_menus.contains(name) ? *Menu(name).menuAction() : Action(name);
    action.setEnabled(enabled);
    action.setVisible(visible);
}

void MainMenu::PopUp(const QString& menuName, const QPoint& place, const QString& defaultItem)
{
    QMenu& menu = Menu(menuName);
    if (!defaultItem.isEmpty()) {
        menu.setDefaultAction(&Action(defaultItem));
        QObject::connect(
            &menu, &QMenu::aboutToHide, &menu, [&menu] { menu.setDefaultAction(nullptr); },
            Qt::SingleShotConnection);
    }
    menu.popup(place);
}
