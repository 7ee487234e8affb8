#pragma once

#include <QHash>
#include <QTimer>
#include <QWidget>
#include <chrono>

class StatusPanel;
struct Clock;
struct IStringSource;

// "sbrStatus": eight panels along the window's lower edge, by key from left to right "version", "main",
// "opcon", "field", "callsign", "ident", "date", "time". Date and time stay current by themselves.
class StatusBar : public QWidget {
    Q_OBJECT

public:
    StatusBar(const IStringSource& strings, const Clock& clock, QWidget* parent);

    void SbrMessage(const QString& text);
    // A message that answers of the radio leave alone for two seconds; the last of them follows then.
    void SbrMessageFirst(const QString& text);
    void ShowAnswer(const QString& text);
    // The radio that gave the answers is there no more.
    void ForgetAnswer();
    void ShowOperatingConditions(bool inService, int fieldStrength);
    // What a radio reported that is there no more holds no longer.
    void ForgetOperatingConditions();
    void ShowOwnAddress(const QString& callsign, const QString& ident);
    void ForgetOwnAddress();
    // Shows the clock's present date and time, and an answer whose time has come; also run once a second.
    void ShowNow();
    // After this the clock is not read any more.
    void StopClock() { m_second.stop(); }

    StatusPanel& Panel(const QString& key) const { return *m_panels.value(key); }

Q_SIGNALS:
    void PanelDoubleClicked(const QString& key);
    void PanelMenuRequested(const QString& key, const QPoint& place);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void Put(const QString& text);
    QString PanelAt(const QPoint& place) const; // key; empty outside all panels

    const IStringSource& m_strings;
    const Clock& m_clock;
    QHash<QString, StatusPanel*> m_panels;
    QTimer m_second;
    std::chrono::milliseconds m_answersFrom{}; // ticks of the clock
    QString m_waitingAnswer;
    bool m_answerShown = false;
};
