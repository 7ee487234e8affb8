#pragma once

#include "mainwindow/frame/LogonCommand.h"

class CommandBars;
class LogPane;
class MainTabs;
class StatusBar;

// Shows in the bars and panes what logging on and off changes.
class LogonView : public ILogonView {
public:
    // All must outlive the view. loadStati reads the status messages, loadKeys the keys of whoever is logged
    // on now, if anybody is; they never raise.
    LogonView(CommandBars& bars, MainTabs& tabs, LogPane& log, StatusBar& status,
              const std::function<void()>& loadStati, const std::function<void()>& loadKeys);

    void PressSessionButton(bool pressed) override;
    void SetSessionCaption(const QString& caption) override;
    void SetNumberingCaption(const QString& caption) override;
    void SbrMessage(const QString& text) override;
    void SbrMessageFirst(const QString& text) override;
    void LoadTalkgroupCaptions() override;
    void LoadLists() override;
    void ForbidRegrouping() override;
    void ForgetRadio() override;
    void CoverLists(bool on) override;
    void SetCommandStates() override;

private:
    CommandBars& m_bars;
    MainTabs& m_tabs;
    LogPane& m_log;
    StatusBar& m_status;
    std::function<void()> m_loadStati;
    std::function<void()> m_loadKeys;
};
