#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace sim {

// Turns SIGTERM and SIGINT into a Qt signal. One instance.
class SignalWatch : public QObject {
    Q_OBJECT

public:
    SignalWatch();

Q_SIGNALS:
    void Ended();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace sim
