#include "core/logon/FirstRunChoice.h"

#include "core/base/AppPaths.h"
#include "core/texts/TextIds.h"

#include <QDir>

std::optional<FirstRunProblem> CheckFirstRun(const FirstRunChoice& choice)
{
    using Field = FirstRunProblem::Field;
    if (choice.location.database.isEmpty())
        return FirstRunProblem{Field::Database, CoreText::DatabasePathMissing};
    if (!dao::IsServerTarget(choice.location.database)) {
        if (choice.location.workgroup.isEmpty())
            return FirstRunProblem{Field::Workgroup, CoreText::WorkgroupPathMissing};
        if (choice.location.workgroup == choice.location.database)
            return FirstRunProblem{Field::Workgroup, CoreText::SameFile};
    }
    if (!choice.create)
        return std::nullopt;
    if (choice.userName.isEmpty())
        return FirstRunProblem{Field::UserName, CoreText::AdministratorMissing};
    if (choice.password != choice.repeated)
        return FirstRunProblem{Field::Password, CoreText::PasswordRepeatDiffers};
    if (choice.password.isEmpty())
        return FirstRunProblem{Field::Password, CoreText::PasswordMissing};
    return std::nullopt;
}

QString FullPath(const QString& typed)
{
    QString path = typed.trimmed();
    if (path.isEmpty() || dao::IsServerTarget(path))
        return path;
    return QDir::cleanPath(QDir(AppPaths::DataFolder()).absoluteFilePath(path));
}
