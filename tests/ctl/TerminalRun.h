#pragma once

#include <csignal>
#include <string>
#include <sys/types.h>

#include <QStringList>

// A run of the program on a terminal of its own. All waits end after ten seconds.
class TerminalRun {
public:
    explicit TerminalRun(const QStringList& arguments);
    ~TerminalRun();
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    // Waits until the program has asked, then types. A question that does not come fails the test.
    void Answer(const std::string& question, const std::string& typed);
    // Waits for the end: the exit code, or the negative number of the signal that ended it.
    int Finish();

    // What stood on the terminal.
    const std::string& Seen() const { return m_seen; }
    bool Echoes() const;

private:
    bool ReadMore();

    pid_t m_child = -1;
    int m_master = -1;
    std::string m_seen;
    std::size_t m_answered = 0;
};
