#pragma once

#include <QString>

// What the records call a console: its computer, an identity kept in a folder of the system's account, and a
// number among the consoles that use the folder at the same time. At most 64 characters. Where the folder
// cannot be used the identity is made for this once. Does not raise.
QString ConsoleName(const QString& folder, int number);
