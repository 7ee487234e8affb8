#pragma once

#include <QString>
#include <chrono>

namespace dao {

// What a thread does while a database keeps it waiting. A thread with windows has one that lets them live; a
// thread without one waits in the system. Nobody may use the waiting session from within, which would raise
// Kind::Busy.
class Patience {
public:
    struct Wait {
        enum class For { Answer, Lock };
        enum class Ready { Readable, Writable, Either };

        For what = For::Answer;
        QString where;                     // server, or file
        int socket = -1;                   // -1: only the time counts
        Ready ready = Ready::Readable;     // of the socket
        std::chrono::milliseconds limit{}; // 0: none
        bool mayGiveUp = true;             // nothing that was sent could be stored without being known
    };
    enum class End { Ready, TimeOver, GivenUp };

    Patience() = default;
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;
    virtual ~Patience() = default;

    // Does not raise.
    virtual End Await(const Wait& wait) = 0;

    // Waits as the calling thread does. Errors of the socket count as Ready.
    static End AwaitHere(const Wait& wait);
    // The same in the system, whatever the thread has.
    static End AwaitInSystem(const Wait& wait);
    // For the calling thread, until it is told another; null: none. Must then live until that.
    static void Use(Patience* patience);
    // Whether the calling thread has one.
    static bool IsUsed();
};

} // namespace dao
