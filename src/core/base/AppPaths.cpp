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

// Qt 6.4 does not know this one yet.
QString AppPaths::StateFolder()
{
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    const QString folder = QDir::isAbsolutePath(named) ? named : QDir::homePath() + "/.local/state";
    return QDir::cleanPath(folder) + u'/' + Title;
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
