#include "ctl/InputFile.h"

#include "core/Errors.h"

#include <QFile>

QByteArray ReadInputFile(const QString& path)
{
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, file.errorString()));
    return bytes;
}
