#include "simulator/program/PtyPort.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>

namespace sim {

namespace {

// The system reports when the console closes its end, but not when it opens it.
constexpr std::chrono::milliseconds LookInterval{20};
constexpr qsizetype LongestWaiting = 65536; // octets

[[noreturn]] void Fail(const char* what)
{
    throw PortError(std::string("pseudo terminal: ") + what + ": " + std::strerror(errno));
}

} // namespace

PtyPort::PtyPort(const QString& link, QObject* parent) : Port(parent), m_link(link)
{
    Open();
    connect(&m_look, &QTimer::timeout, this, &PtyPort::LookForConsole);
    m_look.start(LookInterval);
}

PtyPort::~PtyPort()
{
    // Before the descriptor that they watch is closed.
    m_readable.reset();
    m_writable.reset();
}

void PtyPort::Open()
{
    m_master = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!m_master.IsOpen())
        Fail("cannot be opened");
    if (::grantpt(m_master.Get()) != 0 || ::unlockpt(m_master.Get()) != 0)
        Fail("cannot be unlocked");
    std::array<char, 128> name{};
    if (::ptsname_r(m_master.Get(), name.data(), name.size()) != 0)
        Fail("has no name");
    m_terminal = QFile::decodeName(name.data());
    if (!SettleTerminal())
        Fail("cannot be set to raw mode");
    m_link.PointTo(m_terminal);
}

// Sets raw mode, drops what an earlier console left unread, and brings the terminal into the state "nobody
// has it open". False when the other end cannot be opened: a console that died may have left it locked.
bool PtyPort::SettleTerminal()
{
    const FileDescriptor terminal(
        ::open(QFile::encodeName(m_terminal).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    termios settings{};
    if (!terminal.IsOpen() || ::tcgetattr(terminal.Get(), &settings) != 0)
        return false;
    ::cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL;
    ::ioctl(terminal.Get(), TIOCNXCL);
    return ::tcsetattr(terminal.Get(), TCSANOW, &settings) == 0 && ::tcflush(terminal.Get(), TCIOFLUSH) == 0;
}

bool PtyPort::ConsoleIsThere() const
{
    pollfd look{m_master.Get(), POLLIN, 0};
    return ::poll(&look, 1, 0) >= 0 && (look.revents & POLLHUP) == 0;
}

void PtyPort::LookForConsole()
{
    if (!ConsoleIsThere())
        return;
    m_look.stop();
    m_readable = std::make_unique<QSocketNotifier>(m_master.Get(), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &PtyPort::Read);
    m_writable = std::make_unique<QSocketNotifier>(m_master.Get(), QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &PtyPort::Flush);
    Q_EMIT Came();
}

void PtyPort::Read()
{
    QByteArray octets(4096, Qt::Uninitialized);
    const ssize_t count = ::read(m_master.Get(), octets.data(), static_cast<std::size_t>(octets.size()));
    if (count > 0) {
        octets.truncate(count);
        Q_EMIT Received(octets);
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        Leave();
    }
}

void PtyPort::Send(const QByteArray& octets)
{
    if (!m_readable)
        return;
    m_waiting += octets;
    Flush();
    m_waiting.truncate(LongestWaiting);
}

void PtyPort::Flush()
{
    while (!m_waiting.isEmpty()) {
        const ssize_t count =
            ::write(m_master.Get(), m_waiting.constData(), static_cast<std::size_t>(m_waiting.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        m_waiting.remove(0, count);
    }
    // Reading is how a console's departure is noticed.
    m_writable->setEnabled(!m_waiting.isEmpty());
}

void PtyPort::Leave()
{
    // The notifier itself is calling and has to outlive the call.
    m_readable->setEnabled(false);
    m_readable.release()->deleteLater();
    m_writable->setEnabled(false);
    m_writable.release()->deleteLater();
    m_waiting.clear();
    try {
        if (!SettleTerminal())
            Open();
    } catch (const PortError& error) {
        qWarning("veltorkyn-radio: %s", error.what());
    }
    m_look.start(LookInterval);
    Q_EMIT Went();
}

} // namespace sim
