#include "core/FirstRunChoice.h"

#include "core/AppPaths.h"
#include "core/TextIds.h"

#include <QDir>

std::optional<FirstRunProblem> CheckFirstRun(const FirstRunChoice& choice)
{
    using Field = FirstRunProblem::Field;
    if (choice.location.database.isEmpty())
        return FirstRunProblem{Field::Database, core::textDatabasePathMissing};
    if (!dao::IsServerTarget(choice.location.database)) {
        if (choice.location.workgroup.isEmpty())
            return FirstRunProblem{Field::Workgroup, core::textWorkgroupPathMissing};
        if (choice.location.workgroup == choice.location.database)
            return FirstRunProblem{Field::Workgroup, core::textSameFile};
    }
    if (!choice.create)
        return std::nullopt;
    if (choice.userName.isEmpty())
        return FirstRunProblem{Field::UserName, core::textAdministratorMissing};
    if (choice.password != choice.repeated)
        return FirstRunProblem{Field::Password, core::textPasswordRepeatDiffers};
    if (choice.password.isEmpty())
        return FirstRunProblem{Field::Password, core::textPasswordMissing};
    return std::nullopt;
}

QString FullPath(const QString& typed)
{
    QString path = typed.trimmed();
    if (path.isEmpty() || dao::IsServerTarget(path))
        return path;
    return QDir::cleanPath(QDir(AppPaths::DataFolder()).absoluteFilePath(path));
}
