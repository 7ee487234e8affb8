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
    QByteArray line = Read();
    if (line.isEmpty())
        return std::nullopt;
    ++m_number;
    m_tooLong = line.size() > LongestLine - 1;
    m_cutOff = !line.endsWith('\n');
    for (QByteArray rest = line; m_cutOff && !rest.isEmpty(); m_cutOff = !rest.endsWith('\n'))
        rest = Read();
    if (line.endsWith('\n'))
        line.chop(1);
    // Some editors put it there.
    if (m_number == 1 && line.startsWith("\xEF\xBB\xBF"))
        line.remove(0, 3);
    return line;
}

QByteArray LineFile::Read()
{
    QByteArray piece = m_file.readLine(LongestLine + 1);
    if (m_file.error() != QFileDevice::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(m_name, m_file.errorString()));
    return piece;
}

QString LineFile::About(std::size_t column, const QString& reason) const
{
    return QStringLiteral("%1, line %2, column %3: %4").arg(m_name).arg(m_number).arg(column).arg(reason);
}
