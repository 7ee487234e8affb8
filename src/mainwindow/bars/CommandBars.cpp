#include "mainwindow/bars/CommandBars.h"

#include "core/session/UserProfile.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"

#include <QAction>
#include <QMenuBar>
#include <QToolButton>

namespace {

constexpr auto ToolBarName = "tbMain";

bool IsLastOfGroup(MainCommand command)
{
    return command == MainCommand::FullScreen || command == MainCommand::Disconnect ||
           command == MainCommand::Refresh || command == MainCommand::SendName;
}

} // namespace

CommandBars::CommandBars(QMenuBar& menuBar, QWidget& client, const IStringSource& strings,
                         const SessionState& session, const UserProfile& profile)
    : QObject(&menuBar),
      m_client(client),
      m_session(session),
      m_profile(profile),
      m_menu(menuBar, strings),
      tbMain(new ToolBarOf<MainCommand>(QLatin1String(ToolBarName), &client))
{
    m_menu.Action(MainCommand::FullScreen).setCheckable(true);
    BuildToolBar();
}

void CommandBars::BuildToolBar()
{
    tbMain->setProperty("accessibleNameId", MainText::MainToolBarName);
    for (const CommandRow& row : ActionTable()) {
        if (row.kind != CommandRow::Kind::ToolButton)
            continue;
        const bool stays = row.command == MainCommand::FullScreen || row.command == MainCommand::LogOnLogOff;
        const auto prefix = static_cast<qsizetype>(qstrlen(ToolBarName)) + 1;
        tbMain->AddButton(row.command, QLatin1String(row.name).mid(prefix),
                          stays ? KeyedToolBar::Style::Check : KeyedToolBar::Style::Plain, row.toolTip);
        if (IsLastOfGroup(row.command))
            tbMain->AddGap();
    }
    tbMain->AddStretch();
    tbMain->setContentsMargins(4, 2, 4, 2);
    SetSessionCaption(m_menu.Action(MainCommand::LogOnLogOff).text());
    tbMain->OnClick([this](MainCommand command) {
        if (const auto run = m_runs.find(command); run != m_runs.end())
            run->second();
    });
}

void CommandBars::On(MainCommand command, const std::function<void()>& run)
{
    m_runs[command] = run;
    if (m_menu.HasItem(command))
        connect(&m_menu.Action(command), &QAction::triggered, this, [run] { run(); });
}

QWidget& CommandBars::ToolBar() const
{
    return *tbMain;
}

void CommandBars::PressSessionButton(bool pressed)
{
    tbMain->SetPressed(MainCommand::LogOnLogOff, pressed);
}

void CommandBars::SetSessionCaption(const QString& caption)
{
    m_menu.Action(MainCommand::LogOnLogOff).setText(caption);
    QToolButton* button = tbMain->Button(MainCommand::LogOnLogOff);
    const QString tip = QString(caption).remove(QLatin1Char('&'));
    button->setToolTip(tip);
    button->setAccessibleName(tip);
}

void CommandBars::ShowFullScreen(bool on)
{
    m_menu.Action(MainCommand::FullScreen).setChecked(on);
    tbMain->SetPressed(MainCommand::FullScreen, on);
}

void CommandBars::AllowFullScreen(bool allowed)
{
    if (m_allowed.normalWindow != allowed) {
        m_allowed.normalWindow = allowed;
        SetCommandStates();
    }
}

void CommandBars::AllowCommand(const RegroupingAllowed& allowed)
{
    m_allowed.selection = allowed;
    SetCommandStates();
}

void CommandBars::SetCommandStates()
{
    using Kind = CommandRow::Kind;

    CommandContext context = m_allowed;
    context.loggedOn = m_session.LoggedOn;
    context.administrator = m_session.Administrator;
    context.mayRegroup = m_session.MayRegroup(m_profile.AllowDynamicRegrouping());
    for (const CommandRow& row : ActionTable()) {
        const CommandState state = StateOf(row, context);
        QAbstractButton* button = nullptr;
        if (row.kind == Kind::Menu || row.kind == Kind::Item)
            m_menu.SetState(row.command, state);
        else if (row.kind == Kind::ToolButton)
            button = tbMain->Button(row.command);
        else if (row.kind == Kind::PaneButton)
            button = m_client.findChild<QAbstractButton*>(QLatin1String(row.name));
        if (button != nullptr) {
            button->setEnabled(state.enabled);
            if (row.kind == Kind::ToolButton) // a pane knows which of its buttons it shows
                button->setVisible(state.visible);
        }
    }
}
