#pragma once

#include <QObject>

class QSocketNotifier;

// A request from the system to end the program: SIGTERM, SIGHUP unless it was ignored, SIGINT, and the end of
// the desktop session. After the first one the process has four seconds; then it exits with code 0, whatever
// it is doing. One object per process, on the main thread.
class EndRequest : public QObject {
    Q_OBJECT

public:
    EndRequest();

Q_SIGNALS:
    // From the event loop, even from that of an open box. Once.
    void Received();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Tell();

    QSocketNotifier* m_notifier = nullptr;
    bool m_told = false;
};
