#pragma once

#include <QStringList>

// Runs the command that the arguments (without the program's name) ask for. Returns the exit code.
int RunProgram(const QStringList& arguments);
