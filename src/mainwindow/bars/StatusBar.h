#pragma once

#include "radio/agent/Views.h"

#include <QTimer>
#include <QWidget>
#include <array>
#include <chrono>
#include <optional>

class StatusPanel;
struct Clock;
struct IStringSource;

// "sbrStatus": eight panels along the window's lower edge. Date and time keep themselves current.
class StatusBar : public QWidget, public IStatusView {
    Q_OBJECT

public:
    // From left to right.
    enum class Part { Version, Main, OperatingCondition, FieldStrength, Callsign, Ident, Date, Time };

    StatusBar(const IStringSource& strings, const Clock& clock, QWidget* parent);

    void SbrMessage(const QString& text) override;
    // A message that the radio's answers do not replace for two seconds; the last of them then follows.
    void SbrMessageFirst(const QString& text);
    void ShowAnswer(const QString& text) override;
    void ShowOutcome(const QString& text) override;
    // The radio that gave the answers is no longer there.
    void ForgetAnswer();
    void ShowOperatingConditions(bool inService, int fieldStrength) override;
    // What a radio reported that is no longer there has ceased to hold.
    void ForgetOperatingConditions();
    void ShowOwnAddress(const QString& callsign, const QString& ident) override;
    void ForgetOwnAddress();
    // Shows the clock's current date and time, and an answer whose time has come; also run once a second.
    void ShowNow();
    // After this the clock is no longer read.
    void StopClock() { m_second.stop(); }

    StatusPanel& Panel(Part part) const { return *m_panels[static_cast<std::size_t>(part)]; }

Q_SIGNALS:
    void PanelDoubleClicked(StatusBar::Part part);
    void PanelMenuRequested(StatusBar::Part part, const QPoint& place);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void Put(const QString& text);
    void Hold(const QString& text, std::chrono::seconds time);
    std::optional<Part> PartAt(const QPoint& place) const; // nothing outside the panels

    const IStringSource& m_strings;
    const Clock& m_clock;
    std::array<StatusPanel*, 8> m_panels{};
    QTimer m_second;
    std::chrono::milliseconds m_answersFrom{}; // ticks of the clock
    QString m_waitingAnswer;
    bool m_answerShown = false;
};
