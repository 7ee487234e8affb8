#include "ctl/files/OutputFile.h"

#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"

#include <QFileInfo>
#include <QSaveFile>

void WriteNewFile(const QString& path, const QString& text)
{
    if (QFileInfo::exists(path))
        throw Error(ErrorCode::General,
                    QStringLiteral("%1: the file exists already, nothing was overwritten").arg(path));
    const QByteArray bytes = text.toUtf8();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(dao::OwnerOnly) ||
        file.write(bytes) != bytes.size() || !dao::Commit(file))
        throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, file.errorString()));
}
