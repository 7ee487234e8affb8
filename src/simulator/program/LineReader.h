#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace sim {

// The lines that arrive on a file descriptor, which it does not own; without their ends. At the end of the
// input the rest counts as a line.
class LineReader : public QObject {
    Q_OBJECT

public:
    explicit LineReader(int descriptor, QObject* parent = nullptr);

    static constexpr qsizetype LongestLine = 4096;

Q_SIGNALS:
    void LineRead(const QByteArray& line);
    // A line longer than longestLine was skipped.
    void LineTooLong();

private:
    void Read();
    void TakeLines();

    int m_descriptor;
    QSocketNotifier m_readable;
    QByteArray m_pending;
    bool m_skipping = false; // the rest of a line too long
};

} // namespace sim
