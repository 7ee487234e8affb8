#pragma once

#include <QObject>

class QSocketNotifier;

// The system's wish that the program end: SIGTERM, SIGHUP unless it was ignored, SIGINT, and the end of the
// desktop session. From the first one on the process has four seconds; then it ends with code 0 wherever it
// stands. One object a process, on the main thread.
class EndRequest : public QObject {
    Q_OBJECT

public:
    EndRequest();

Q_SIGNALS:
    // From the event loop, that of a box included. Once.
    void Received();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Tell();

    QSocketNotifier* m_notifier = nullptr;
    bool m_told = false;
};
