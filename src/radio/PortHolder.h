#pragma once

#include <QString>

// Who holds a serial port open: "name (process 123)" of another program, or empty when that cannot be known,
// as for a program of another user who did not leave a lock file.
QString HolderOfPort(const QString& device);
