#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// The desktop's program that shows what the computer is made of.
struct SystemInformationTool {
    QString program; // full path
    QStringList arguments;
};

// The first known one that is installed.
std::optional<SystemInformationTool> FindSystemInformationTool();
// Starts it beside this program. False when it cannot be started.
bool Start(const SystemInformationTool& tool);
