#include "core/base/AppPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString Inside(QStandardPaths::StandardLocation location)
{
    return QStandardPaths::writableLocation(location) + u'/' + AppPaths::Title;
}

} // namespace

QString AppPaths::DataFolder()
{
    return Inside(QStandardPaths::GenericDataLocation);
}

QString AppPaths::DefaultSettingsFile()
{
    return Inside(QStandardPaths::GenericConfigLocation) + u'/' + Title + ".ini";
}

QString AppPaths::OwnFile(const QString& name)
{
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString beside = programs.filePath(name);
    return QFileInfo::exists(beside) ? beside
                                     : QDir::cleanPath(programs.filePath("../share/veltorkyn/" + name));
}
