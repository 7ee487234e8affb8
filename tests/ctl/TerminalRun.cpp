#include "ctl/TerminalRun.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

TerminalRun::TerminalRun(const QStringList& arguments)
{
    std::vector<std::string> texts{VELTORKYNCTL};
    for (const QString& argument : arguments)
        texts.push_back(argument.toStdString());
    std::vector<char*> argv;
    for (std::string& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    m_child = forkpty(&m_master, nullptr, nullptr, nullptr);
    if (m_child == 0) {
        execv(argv[0], argv.data());
        _exit(127);
    }
}

TerminalRun::~TerminalRun()
{
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    close(m_master);
}

bool TerminalRun::ReadMore()
{
    pollfd waiting{m_master, POLLIN, 0};
    char buffer[1024];
    const ssize_t count = poll(&waiting, 1, 10000) == 1 ? read(m_master, buffer, sizeof buffer) : 0;
    if (count > 0)
        m_seen.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
}

void TerminalRun::Answer(const std::string& question, const std::string& typed)
{
    std::size_t pos;
    while ((pos = m_seen.find(question, m_answered)) == std::string::npos)
        ASSERT_TRUE(ReadMore()) << "no question " << question << " in " << m_seen;
    m_answered = pos + question.size();
    ASSERT_EQ(write(m_master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
}

int TerminalRun::Finish()
{
    while (ReadMore()) {
    }
    int status = 0;
    pid_t ended = 0;
    for (int i = 0; i < 100 && (ended = waitpid(m_child, &status, WNOHANG)) == 0; ++i)
        poll(nullptr, 0, 100);
    if (ended != m_child)
        return -SIGKILL;
    m_child = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

bool TerminalRun::Echoes() const
{
    termios state = {};
    return tcgetattr(m_master, &state) == 0 && (state.c_lflag & ECHO) != 0;
}
