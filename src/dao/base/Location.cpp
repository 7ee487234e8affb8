#include "dao/base/Location.h"
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace dao {

bool IsServerTarget(const QString& database)
{
    return database.startsWith("postgresql://", Qt::CaseInsensitive) ||
           database.startsWith("postgres://", Qt::CaseInsensitive);
}

QString WithoutPassword(QString text)
{
    static const QRegularExpression userInfo("([a-z]+://)[^/?\\s]*@",
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression password("([?&](?:sslpassword|password|user)=)[^&\\s]*");
    return text.replace(userInfo, "\\1").replace(password, "\\1...");
}

QString WorkgroupFileFor(const QString& database)
{
    if (database.isEmpty() || IsServerTarget(database))
        return {};
    const QFileInfo file(database);
    const QString name = file.completeBaseName() + ".kynw";
    return file.path() == "." && !database.startsWith("./") ? name : QDir(file.path()).filePath(name);
}

Location LocationOf(const QString& database)
{
    return {database, WorkgroupFileFor(database)};
}

} // namespace dao
