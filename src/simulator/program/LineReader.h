#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace sim {

// Reads lines, without their ends, from a file descriptor that it does not own. At the end of the input the
// rest counts as a line.
class LineReader : public QObject {
    Q_OBJECT

public:
    explicit LineReader(int descriptor, QObject* parent = nullptr);

    static constexpr qsizetype LongestLine = 4096;

Q_SIGNALS:
    void LineRead(const QByteArray& line);
    // A line longer than LongestLine was skipped.
    void LineTooLong();

private:
    void Read();
    void TakeLines();

    int m_descriptor;
    QSocketNotifier m_readable;
    QByteArray m_pending;
    bool m_skipping = false; // the rest of a line that is too long
};

} // namespace sim
