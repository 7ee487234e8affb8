#include "ctl/files/InputFile.h"

#include "core/texts/Errors.h"

#include <QFile>
#include <iostream>

namespace {

constexpr qint64 LargestFile = 16 * 1024 * 1024; // octets
constexpr qint64 Piece = qint64{64} * 1024;      // octets; so much memory a small file takes at most
constexpr std::size_t LongestLine = 4096;        // octets

} // namespace

QByteArray ReadInputFile(const QString& path)
{
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        for (QByteArray piece = file.read(Piece); !piece.isEmpty() && bytes.size() <= LargestFile;
             piece = file.read(Piece))
            bytes += piece;
    if (file.error() != QFileDevice::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, file.errorString()));
    if (bytes.size() > LargestFile)
        throw Error(ErrorCode::General, QStringLiteral("%1: the file is larger than 16 MiB").arg(path));
    return bytes;
}

std::optional<std::string> ReadInputLine()
{
    std::string line;
    for (char c = 0; std::cin.get(c) && c != '\n';) {
        if (line.size() == LongestLine)
            throw Error(
                ErrorCode::General,
                QStringLiteral("A line of standard input is longer than %1 characters").arg(LongestLine));
        line += c;
    }
    if (line.empty() && !std::cin)
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}
