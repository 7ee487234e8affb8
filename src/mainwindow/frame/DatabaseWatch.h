#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

class LinkStrip;
class MainTabs;
class SendPane;
struct Services;
struct SessionState;

// Brings the panes up to date with what other consoles change in the database, and shows in the strip when
// its server is away.
class DatabaseWatch : public QObject {
    Q_OBJECT

public:
    // Runs a step that may raise, and tells the operator what went wrong; returns whether it succeeded.
    using Attempt = std::function<bool(const std::function<void()>& step)>;

    // All of them outlive the watch.
    DatabaseWatch(const Services& services, const SessionState& session, MainTabs& tabs, SendPane& send,
                  LinkStrip& strip, const Attempt& attempt);

    // Looks for changes now; where files are locked at this moment, a second later. Raises dao::Error.
    void LookNow();
    // Reads the status messages that can be sent. Raises Error and dao::Error; the list is then empty.
    void LoadStati();

private:
    void ShowState();
    void LookByItself();
    void Reload(const QString& table);
    void ReloadNumbering();

    const Services& m_services;
    const SessionState& m_session;
    MainTabs& m_tabs;
    SendPane& m_send;
    LinkStrip& m_strip;
    Attempt m_attempt;
    QTimer m_look;             // files tell nothing by themselves
    QString m_numberingTables; // as they were when the numbering was last read
};
