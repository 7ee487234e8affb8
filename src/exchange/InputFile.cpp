#include "exchange/InputFile.h"

#include "core/texts/Errors.h"

#include <QFile>

namespace {

constexpr qint64 LargestFile = 16 * 1024 * 1024; // octets
constexpr qint64 Piece = qint64{64} * 1024;      // octets; so much memory a small file takes at most

} // namespace

QByteArray ReadInputFile(const QString& path, const QString& tooLarge)
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
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, tooLarge));
    return bytes;
}
