#include "ctl/files/LineFile.h"

#include "core/texts/Errors.h"

#include <cstdio>

namespace {

constexpr qint64 LongestLine = qint64{256} * 1024; // octets

} // namespace

LineFile::LineFile(const QString& path)
    : m_name(path == u'-' ? QStringLiteral("standard input") : path),
      m_file(path)
{
    const bool opened =
        path == u'-' ? m_file.open(stdin, QIODevice::ReadOnly) : m_file.open(QIODevice::ReadOnly);
    if (!opened)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(m_name, m_file.errorString()));
}

std::optional<QByteArray> LineFile::Next()
{
    QByteArray line = m_file.readLine(LongestLine + 1);
    if (m_file.error() != QFileDevice::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(m_name, m_file.errorString()));
    if (line.isEmpty())
        return std::nullopt;
    ++m_number;
    if (line.size() > LongestLine - 1)
        Raise(LongestLine, QStringLiteral("the line is longer than any of a trace"));
    m_cutOff = !line.endsWith('\n');
    if (!m_cutOff)
        line.chop(1);
    return line;
}

void LineFile::Raise(std::size_t column, const QString& reason) const
{
    throw Error(
        ErrorCode::General,
        QStringLiteral("%1, line %2, column %3: %4").arg(m_name).arg(m_number).arg(column).arg(reason));
}
