#pragma once

#include <QString>
#include <functional>

namespace dao {

// How far a migration is: the file or server, and how much of the work on it is done, in percent. Called on
// the thread that migrates, at the beginning, then many times a second whether the figure has moved or not,
// so that a window can go on painting, and with 100 after the commit. It must neither raise nor use the
// database.
using MigrationProgress = std::function<void(const QString& database, int percent)>;

} // namespace dao
