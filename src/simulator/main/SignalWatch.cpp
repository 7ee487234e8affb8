#include "simulator/main/SignalWatch.h"

#include <csignal>

#include <sys/signalfd.h>
#include <unistd.h>

namespace sim {

SignalWatch::SignalWatch()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    // Blocked, they arrive at the descriptor only.
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    const int descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this, descriptor] {
        signalfd_siginfo info{};
        if (::read(descriptor, &info, sizeof info) == sizeof info)
            Q_EMIT Ended();
    });
}

} // namespace sim
