#pragma once

#include "core/EventLog.h"
#include "mainwindow/LogLineFormatter.h"

#include <QWidget>
#include <optional>

class KeyedToolBar;
class LogReader;
class QComboBox;
class QLabel;
class QLineEdit;
class QTreeView;
class Settings;
struct IStringSource;
struct SessionState;

// "picLog": the message log of the main window with its period controls.
class LogPane : public QWidget {
    Q_OBJECT

public:
    LogPane(const IStringSource& strings, Settings& settings, LogLineFormatter& formatter,
            const LogReader& reader, const SessionState& session, QWidget* parent);

    // Does nothing while nobody is logged on.
    void LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                        const QString& to);
    // Adds a date line when the day of this time is another one than that of the line before.
    void CheckDayChange(const QDateTime& time);
    // Shows the chosen period afresh. What cannot be read stays away without a message; the log file says
    // why. Does nothing while nobody is logged on.
    void ReloadLog();
    // "text" or "hex". Raises Error when the choice cannot be stored.
    void SetLogDataView(const QString& view);
    // Raise Error for a stored preference that is none, and when one cannot be stored.
    void LoadLogPrefs();
    void SaveLogPeriod();

    // Tag of the current line when it is selected and has one that is not blank.
    std::optional<QString> SelectedTag() const;

Q_SIGNALS:
    // The operator chose lines; their parties as an address line.
    void AddressesChosen(const QString& addresses);
    // Double-click or Enter.
    void CallRequested();
    void MenuRequested(const QPoint& place);
    void DataViewChanged(const QString& view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void BuildList(const IStringSource& strings);
    void BuildPeriodControls(const IStringSource& strings);
    void RunToolButton(const QString& key);
    void ClearDisplay();
    void StepFont();
    void SetFontStep(int step);
    void SetHeaderFont();
    void TellChosenAddresses();
    void LayOut();
    void FitColumn();
    void WidenFor(int row);
    QString View();
    int MaxLines() const;

    Settings& m_settings;
    LogLineFormatter& m_formatter;
    const LogReader& m_reader;
    const SessionState& m_session;
    LogModel* m_model;
    QTreeView* lvLog;
    KeyedToolBar* tbRefreshLog;
    QLabel* lblSeeLast;
    QLineEdit* txtLogPeriod;
    QComboBox* cmbLogTimeUnit;
    QString m_lastView = QStringLiteral("text");
    int m_contentWidth = 0;          // pixels of the widest line
    bool m_changedByProgram = false; // the selection changes, but not by the operator
};
