#include "exchange/OutputFile.h"

#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"

#include <QFileInfo>
#include <QSaveFile>

void WriteNewFile(const QString& path, const QString& text, const QString& exists)
{
    if (QFileInfo::exists(path))
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, exists));
    const QByteArray bytes = text.toUtf8();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(dao::OwnerOnly) ||
        file.write(bytes) != bytes.size() || !dao::Commit(file))
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, file.errorString()));
}
