#include "mainwindow/frame/LogonView.h"

#include "mainwindow/bars/CommandBars.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/frame/MainTabs.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/talkgroups/GroupsPane.h"

#include <QAction>

LogonView::LogonView(CommandBars& bars, MainTabs& tabs, LogPane& log, StatusBar& status,
                     const std::function<void()>& loadStati, const std::function<void()>& loadKeys)
    : m_bars(bars),
      m_tabs(tabs),
      m_log(log),
      m_status(status),
      m_loadStati(loadStati),
      m_loadKeys(loadKeys)
{
}

void LogonView::PressSessionButton(bool pressed)
{
    m_bars.PressSessionButton(pressed);
}

void LogonView::SetSessionCaption(const QString& caption)
{
    m_bars.SetSessionCaption(caption);
}

void LogonView::SetNumberingCaption(const QString& caption)
{
    m_bars.Menu().Action(MainCommand::Numbering).setText(caption);
}

void LogonView::SbrMessage(const QString& text)
{
    m_status.SbrMessage(text);
}

void LogonView::SbrMessageFirst(const QString& text)
{
    m_status.SbrMessageFirst(text);
}

void LogonView::LoadTalkgroupCaptions()
{
    m_tabs.Groups().LoadRootCaptions();
}

void LogonView::LoadLists()
{
    m_loadStati();
    m_tabs.Groups().Commands().ForgetOutcome();
    m_tabs.Groups().ReloadGrps();
    m_tabs.Individuals().ReloadInds({});
    m_tabs.Scada().ShowUnit();
}

void LogonView::ForbidRegrouping()
{
    m_bars.AllowCommand({});
}

void LogonView::ForgetRadio()
{
    m_status.ForgetOperatingConditions();
    m_status.ForgetOwnAddress();
}

void LogonView::CoverLists(bool on)
{
    m_log.Cover(on);
    m_tabs.Cover(on);
}

void LogonView::SetCommandStates()
{
    m_bars.SetCommandStates();
    m_loadKeys();
}
