#include "mainwindow/bars/MainMenu.h"

#include "core/texts/StringSource.h"

#include <QMenu>
#include <QMenuBar>

MainMenu::MainMenu(QMenuBar& bar, const IStringSource& strings)
{
    using Kind = CommandRow::Kind;

    QMenu* menu = nullptr;
    for (const CommandRow& row : ActionTable()) {
        if (row.kind == Kind::ToolButton || row.kind == Kind::PaneButton)
            continue;
        const QString name = QLatin1String(row.name);
        const QString caption = strings.LoadString(row.caption);
        if (row.kind == Kind::Menu) {
            menu = bar.addMenu(caption);
            menu->setObjectName(name);
            m_menus.emplace(row.command, menu);
        } else if (row.kind == Kind::Separator) {
            menu->addSeparator();
        } else {
            QAction* action = menu->addAction(caption);
            action->setObjectName(name);
            m_actions.emplace(row.command, action);
        }
    }
}

QMenu& MainMenu::Menu(MainCommand menu) const
{
    return *m_menus.at(menu);
}

QAction& MainMenu::Action(MainCommand item) const
{
    return *m_actions.at(item);
}

void MainMenu::SetState(MainCommand command, const CommandState& state)
{
    QAction& action = m_menus.contains(command) ? *Menu(command).menuAction() : Action(command);
    action.setEnabled(state.enabled);
    action.setVisible(state.visible);
}

void MainMenu::PopUp(MainCommand menuCommand, const QPoint& place, MainCommand defaultItem)
{
    QMenu& menu = Menu(menuCommand);
    if (defaultItem != MainCommand::None) {
        menu.setDefaultAction(&Action(defaultItem));
        QObject::connect(
            &menu, &QMenu::aboutToHide, &menu, [&menu] { menu.setDefaultAction(nullptr); },
            Qt::SingleShotConnection);
    }
    menu.popup(place);
}
