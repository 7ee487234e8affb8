#pragma once

#include <QObject>
#include <functional>

class AttentionPanel;
class CommandBars;
class LinkStrip;
class LogPane;
class MainTabs;
class PaneSplitter;
class QMainWindow;
class SendPane;
class Settings;
class StartPanel;
class StatusBar;
class WindowPlacement;

// Places the panes of the main window as its size, its font and what the strip says change, and lets the
// window grow, as far as the screen has room, when they need it. On the window's thread.
class FramePanes : public QObject {
    Q_OBJECT

public:
    // All must outlive it. `attempt` carries out what may raise, and tells it.
    struct Parts {
        QMainWindow& window;
        const WindowPlacement& placement;
        Settings& settings;
        CommandBars& bars;
        AttentionPanel& attention;
        LinkStrip& strip;
        MainTabs& tabs;
        PaneSplitter& splitter;
        LogPane& log;
        SendPane& send;
        StatusBar& status;
        StartPanel& start;
        std::function<bool(const std::function<void()>&)> attempt;
    };
    explicit FramePanes(const Parts& parts);

    void LoadLogWidth();
    void Arrange();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void StoreLogWidth();
    void GoUp();

    Parts m_parts;
    double m_logWidth = 190;
    bool m_grows = false; // to the height that the panes need
};
