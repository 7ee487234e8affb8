#pragma once

#include "dao/base/MigrationProgress.h"
#include "dao/base/Passwords.h"
#include <QDateTime>
#include <chrono>
#include <functional>

namespace dao {

struct OpenOptions {
    // How long an operation waits for another program's lock before it raises Kind::Locked.
    std::chrono::milliseconds busyTimeout{2000};
    // The present time that queries over a period count from; empty: the system's clock. Called on the thread
    // of the session, and of each that Workspace::Again makes of it.
    std::function<QDateTime()> now;
    // Told while an older schema is brought to this program's, which can take a minute. Not kept by the
    // session.
    MigrationProgress migrating;
    PasswordCost passwordCost = PasswordCost::Interactive();
};

} // namespace dao
