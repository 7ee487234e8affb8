#include "dao/base/Patience.h"
#include <QDeadlineTimer>
#include <algorithm>
#include <cerrno>
#include <limits>
#include <poll.h>

namespace dao {

namespace {

thread_local Patience* ofThread = nullptr;

short EventsOf(Patience::Wait::Ready ready)
{
    switch (ready) {
    case Patience::Wait::Ready::Readable:
        return POLLIN;
    case Patience::Wait::Ready::Writable:
        return POLLOUT;
    case Patience::Wait::Ready::Either:
        break;
    }
    return POLLIN | POLLOUT;
}

} // namespace

Patience::End Patience::AwaitHere(const Wait& wait)
{
    return ofThread != nullptr ? ofThread->Await(wait) : AwaitInSystem(wait);
}

Patience::End Patience::AwaitInSystem(const Wait& wait)
{
    const QDeadlineTimer deadline =
        wait.limit.count() > 0 ? QDeadlineTimer(wait.limit) : QDeadlineTimer(QDeadlineTimer::Forever);
    pollfd socket{wait.socket, EventsOf(wait.ready), 0}; // poll ignores a negative one
    for (;;) {
        const qint64 left = deadline.isForever() ? -1 : deadline.remainingTime();
        const int found =
            poll(&socket, 1, static_cast<int>(std::min<qint64>(left, std::numeric_limits<int>::max())));
        if (found > 0)
            return End::Ready;
        if ((found == 0 && deadline.hasExpired()) || (found < 0 && errno != EINTR))
            return found == 0 ? End::TimeOver : End::Ready;
    }
}

void Patience::Use(Patience* patience)
{
    ofThread = patience;
}

bool Patience::IsUsed()
{
    return ofThread != nullptr;
}

} // namespace dao
