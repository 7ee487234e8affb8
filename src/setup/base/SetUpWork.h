#pragma once

#include "dao/base/OpenOptions.h"
#include "setup/base/SetUpChoice.h"

struct IStringSource;
struct SetUpServices;

// Carries out what was decided.
namespace SetUpWork {

struct Outcome {
    bool done = false;
    QString problem; // in words; of one that is done, what is left to do by hand
};

// The database with its numbering; may take long, and runs on any thread. Not done: nothing was made.
Outcome MakeDatabase(const SetUpChoice& choice, const dao::OpenOptions& options,
                     const IStringSource& strings);
// All the rest, on the windows' thread. Raises Error.
void StoreSettings(const SetUpChoice& choice, const SetUpServices& services);

} // namespace SetUpWork
