#include "ctl/commands/PasswordReader.h"

#include "core/texts/Errors.h"
#include "ctl/files/InputLine.h"

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

namespace {

// While this lives, signals that usually end a program are held back, and Handle() becomes readable when one
// has come; it takes effect afterwards. Otherwise it would leave the terminal without echo.
class SignalsHeld {
public:
    SignalsHeld()
    {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP})
            sigaddset(&signals, signal);
        sigprocmask(SIG_BLOCK, &signals, &m_before);
        m_handle = signalfd(-1, &signals, SFD_CLOEXEC);
    }
    ~SignalsHeld()
    {
        close(m_handle);
        sigprocmask(SIG_SETMASK, &m_before, nullptr);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

    int Handle() const { return m_handle; }

private:
    sigset_t m_before;
    int m_handle = -1;
};

class Terminal {
public:
    Terminal() : m_handle(open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (m_handle < 0 || tcgetattr(m_handle, &m_before) != 0)
            throw Error(ErrorCode::General, QStringLiteral("There is no terminal to ask for a password; use "
                                                           "--password-stdin"));
        termios silent = m_before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(m_handle, TCSAFLUSH, &silent);
    }
    ~Terminal()
    {
        Write("\n");
        tcsetattr(m_handle, TCSAFLUSH, &m_before);
        close(m_handle);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void Write(const std::string& text) const
    {
        // If the terminal takes no text, reading from it fails as well and says so.
        [[maybe_unused]] const ssize_t written = write(m_handle, text.data(), text.size());
    }

    // Nothing when the terminal is gone or `interrupt` becomes readable first.
    std::optional<std::string> ReadLine(int interrupt) const
    {
        std::string line;
        for (;;) {
            pollfd waiting[] = {{m_handle, POLLIN, 0}, {interrupt, POLLIN, 0}};
            char c = 0;
            if (poll(waiting, 2, -1) < 0 || waiting[1].revents != 0 || read(m_handle, &c, 1) != 1)
                return std::nullopt;
            if (c == '\n')
                return line;
            line += c;
        }
    }

private:
    int m_handle;
    termios m_before = {};
};

std::optional<std::string> AskTerminal(const QString& prompt)
{
    const SignalsHeld held;
    const Terminal terminal;
    terminal.Write(prompt.toStdString() + ": ");
    return terminal.ReadLine(held.Handle());
}

} // namespace

QString PasswordReader::Read(const QString& prompt)
{
    const auto line = m_fromStandardInput ? ReadInputLine() : AskTerminal(prompt);
    if (!line)
        throw Error(ErrorCode::General, QStringLiteral("No password was given (%1)").arg(prompt));
    return QString::fromStdString(*line);
}

QString PasswordReader::Existing(const QString& account)
{
    return Read(QStringLiteral("Password of %1").arg(account));
}

QString PasswordReader::New(const QString& account)
{
    QString password = Read(QStringLiteral("New password of %1").arg(account));
    if (!m_fromStandardInput && Read(QStringLiteral("The same again")) != password)
        throw Error(ErrorCode::General, QStringLiteral("The two passwords differ"));
    return password;
}
