#include "admin/SystemInformation.h"

#include <QProcess>
#include <QStandardPaths>

std::optional<SystemInformationTool> FindSystemInformationTool()
{
    const SystemInformationTool known[] = {
        {QStringLiteral("kinfocenter"), {}},
        {QStringLiteral("hardinfo2"), {}},
        {QStringLiteral("hardinfo"), {}},
        {QStringLiteral("gnome-control-center"), {QStringLiteral("info-overview")}},
        {QStringLiteral("lshw-gtk"), {}}};
    for (const SystemInformationTool& tool : known) {
        const QString path = QStandardPaths::findExecutable(tool.program);
        if (!path.isEmpty())
            return SystemInformationTool{path, tool.arguments};
    }
    return std::nullopt;
}

bool Start(const SystemInformationTool& tool)
{
    return QProcess::startDetached(tool.program, tool.arguments);
}
