#include "simulator/program/TraceWriter.h"

#include <stdexcept>
#include <utility>

namespace sim {

TraceWriter::TraceWriter(const QString& file, std::function<void(const std::string& line)> log)
    : m_log(std::move(log))
{
    if (file.isEmpty())
        return;
    m_file.setFileName(file);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append,
                     QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw std::runtime_error(file.toStdString() +
                                 ": cannot be written: " + m_file.errorString().toStdString());
}

void TraceWriter::Write(const map27::TraceEntry& entry)
{
    if (!m_file.isOpen())
        return;
    const QByteArray line = QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + '\n';
    if (m_file.write(line) == line.size() && m_file.flush())
        return;
    m_log("the trace ends here: " + m_file.errorString().toStdString());
    m_file.close();
}

} // namespace sim
