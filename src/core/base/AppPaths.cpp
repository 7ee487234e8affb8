#include "core/base/AppPaths.h"

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
