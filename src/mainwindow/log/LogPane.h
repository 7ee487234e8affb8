#pragma once

#include "core/eventlog/EventLog.h"
#include "mainwindow/log/LogLineFormatter.h"
#include "mainwindow/log/LogPeriodBar.h"
#include "radio/agent/Views.h"

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <optional>

class ListNotice;
class LogList;
class LogReader;
class QLabel;
class Settings;
struct Clock;
struct IStringSource;
struct LogPeriod;
struct SessionState;

// "picLog": the message log of the main window with its period controls.
class LogPane : public QWidget, public ILogView {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        Settings& settings;
        const Clock& clock;
        LogLineFormatter& formatter;
        const LogReader& reader;
        const SessionState& session;
        EventLog& eventLog;
    };

    LogPane(const Parts& parts, QWidget* parent);

    // Does nothing while nobody is logged on.
    void LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                        const QString& to, const QString& record, const QString& shown) override;
    // Adds a date line when this time is on a different day from the line before.
    void CheckDayChange(const QDateTime& time);
    // Shows the chosen period afresh. What cannot be read is left out without a message; the log file says
    // why. Does nothing while nobody is logged on.
    void ReloadLog();
    // Show the stored view, and the other one instead. A stored text that names no view is left alone. Raise
    // Error when the settings cannot be read, or the choice cannot be stored.
    void LoadLogDataView();
    void ToggleLogDataView();
    // Raise Error for a stored preference that is invalid, and when one cannot be stored.
    void LoadLogPrefs();
    void SaveLogPeriod();
    // Covers the lines so that nobody can read them, or shows them again.
    void Cover(bool on);

    // Tag of the current line when it is selected and has one that is not blank.
    std::optional<QString> SelectedTag() const;

Q_SIGNALS:
    // The operator chose lines: their parties as an address line, empty when no line is chosen any longer.
    void AddressesChosen(const QString& addresses);
    // Double-click or Enter.
    void CallRequested();
    void MenuRequested(const QPoint& place);
    void DataViewChanged(LogDataView view);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // Of a period that holds more records than are shown.
    enum class Part { Oldest, Newest };

    void BuildList();
    void AppendWaiting(std::vector<LogLine>& lines) const;
    void RunToolButton(LogPeriodBar::Button button);
    void ClearDisplay();
    void Reload(Part part);
    QString DescribeCut(Part part, const LogPeriod& period, int shown, const QDateTime& edge) const;
    void StorePeriod();
    void SayCut(const QString& text);
    void StepFont();
    void SetHeaderFont();
    void TellSelection();
    void TellChosen();
    bool MayCall();
    void LayOut();
    void SetLogDataView(LogDataView view);
    LogDataView View();
    int MaxLines() const;

    Parts m_parts;
    LogModel* m_model;
    LogList* lvLog;
    QLabel* m_cover;
    ListNotice* m_notice;
    LogPeriodBar* m_period;
    std::optional<std::chrono::milliseconds>
        m_movedByItself; // ticks of the clock; none once a person has chosen
    LogDataView m_lastView = LogDataView::Text;
    bool m_changedByProgram = false; // the selection changes, but not by the operator
    QTimer m_markDue;                // of lines whose record is not on a disk yet
};
