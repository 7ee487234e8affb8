#include "app/EndRequest.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr unsigned LongestEnd = 4; // s

std::array<int, 2> signalPipe{-1, -1};

void StartToEnd()
{
    static volatile std::sig_atomic_t started = 0;
    if (started == 0) {
        started = 1;
        ::alarm(LongestEnd);
    }
}

// Both run as signal handlers.
extern "C" void OnEndSignal(int)
{
    const int error = errno;
    StartToEnd();
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], "", 1);
    errno = error;
}

extern "C" void OnTimeUp(int)
{
    ::_exit(0);
}

void Handle(int number, void (*handler)(int))
{
    struct sigaction action {};
    if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

} // namespace

EndRequest::EndRequest()
{
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        m_notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &EndRequest::Tell);
        Handle(SIGALRM, OnTimeUp);
        for (const int number : {SIGTERM, SIGHUP, SIGINT})
            Handle(number, OnEndSignal);
    }
    QCoreApplication::instance()->installEventFilter(this);
}

// A session manager ends the program with a Quit event. The request to save that comes before is not the end
// yet: it also comes when the desktop only stores its state.
bool EndRequest::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    StartToEnd();
    Tell();
    return true;
}

void EndRequest::Tell()
{
    if (m_notifier != nullptr)
        m_notifier->setEnabled(false);
    if (!m_told) {
        m_told = true;
        Q_EMIT Received();
    }
}
