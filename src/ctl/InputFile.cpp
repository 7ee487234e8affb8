#include "ctl/InputFile.h"

#include "core/Errors.h"

#include <QFile>
#include <iostream>

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024; // octets
constexpr std::size_t longestLine = 4096;        // octets

} // namespace

QByteArray ReadInputFile(const QString& path)
{
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.read(largestFile + 1);
    if (file.error() != QFileDevice::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, file.errorString()));
    if (bytes.size() > largestFile)
        throw Error(ErrorCode::General, QStringLiteral("%1: the file is larger than 16 MiB").arg(path));
    return bytes;
}

std::optional<std::string> ReadInputLine()
{
    std::string line;
    for (char c = 0; std::cin.get(c) && c != '\n';) {
        if (line.size() == longestLine)
            throw Error(
                ErrorCode::General,
                QStringLiteral("A line of standard input is longer than %1 characters").arg(longestLine));
        line += c;
    }
    if (line.empty() && !std::cin)
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}
