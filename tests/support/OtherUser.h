#pragma once

#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// Runs `act` in a child process as a user without rights, since root is refused nothing. True when it
// returned true.
inline bool AsNobody(const std::function<bool()>& act)
{
    constexpr uid_t nobody = 65534;
    const pid_t child = fork();
    if (child == 0) {
        bool ok = setgid(nobody) == 0 && setuid(nobody) == 0;
        try {
            ok = ok && act();
        } catch (...) {
            ok = false;
        }
        _exit(ok ? 0 : 1);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
