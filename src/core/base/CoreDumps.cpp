#include "core/base/CoreDumps.h"

#include <sys/resource.h>

void ForbidCoreDumps()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none); // to lower a limit is always permitted
}
