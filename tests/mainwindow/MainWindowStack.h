#pragma once

#include "mainwindow/frame/winMain.h"
#include "support/QuietRadio.h"
#include "support/RecordingWindows.h"

class QAction;
class QComboBox;
class QTreeView;

// The real main window on a real database, with a radio that answers only what the test says. Own radio: unit
// 21, callsign "Dispatch"; "Unit20" and "Unit22" are in the directory; statuses 5 and 7 have texts.
class MainWindowStack : public QuietRadioStack {
public:
    MainWindowStack();
    ~MainWindowStack();

    // Makes and shows the window, logged off.
    winMain& Open();
    // Closes the window without a question and forgets it; the next Open starts afresh on the same settings.
    void CloseWindow();
    // The radio reports its numbering after the logon.
    void LogOn();
    void LogOff();

    winMain& Window() { return *m_window; }
    template <typename Widget> Widget& Find(const char* name)
    {
        auto* widget = m_window->findChild<Widget*>(QLatin1String(name));
        if (widget == nullptr)
            throw std::runtime_error(std::string("no control ") + name);
        return *widget;
    }
    void Click(const char* name);
    QAction& Action(const char* name);
    void Trigger(const char* name);

    // Panel of the status bar.
    QString Panel(const char* key);
    QTreeView& Log();
    QStringList LogTexts();
    QStringList LogIcons();
    QComboBox& Address();

    void AddEvent(const QDateTime& time, int type, const QString& desc, const QString& from,
                  const QString& to);
    bool ProfileIsLoggedOn();

    RecordingWindows windows;
    frmSettings& settingsDialog = *console.settingsDialog;

private:
    std::unique_ptr<winMain> m_window;
};

// The window is open.
struct OpenStack : MainWindowStack {
    OpenStack() { Open(); }
};

// Somebody is logged on, and the radio has said who it is.
struct LoggedOnStack : OpenStack {
    LoggedOnStack() { LogOn(); }
};
