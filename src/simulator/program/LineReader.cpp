#include "simulator/program/LineReader.h"

#include <unistd.h>

#include <cerrno>

namespace sim {

LineReader::LineReader(int descriptor, QObject* parent)
    : QObject(parent),
      m_descriptor(descriptor),
      m_readable(descriptor, QSocketNotifier::Read)
{
    connect(&m_readable, &QSocketNotifier::activated, this, &LineReader::Read);
}

void LineReader::Read()
{
    char octets[4096];
    const ssize_t count = ::read(m_descriptor, octets, sizeof octets);
    if (count > 0) {
        m_pending.append(octets, count);
        TakeLines();
        return;
    }
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    m_readable.setEnabled(false);
    if (!m_pending.isEmpty()) {
        m_pending += '\n';
        TakeLines();
    }
}

void LineReader::TakeLines()
{
    for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
        QByteArray line = m_pending.left(end);
        m_pending.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (m_skipping || line.size() > LongestLine)
            Q_EMIT LineTooLong();
        else
            Q_EMIT LineRead(line);
        m_skipping = false;
    }
    if (m_pending.size() > LongestLine) {
        m_pending.clear();
        m_skipping = true;
    }
}

} // namespace sim
