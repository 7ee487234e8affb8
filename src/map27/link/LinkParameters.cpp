#include "map27/link/LinkParameters.h"

#include <algorithm>

namespace map27 {

LinkParameters LinkParameters::ForBitRate(unsigned bitsPerSecond)
{
    LinkParameters parameters;
    parameters.bitRate = bitsPerSecond;
    if (bitsPerSecond == 0)
        return parameters;

    // 1.5 s at 9600 bit/s is twice the time of the longest LT and its LA with every octet doubled. Even a
    // fast line has a slow program at its end, hence the lower limit.
    constexpr Milliseconds::rep t1At9600 = 1500;
    parameters.t1 = Milliseconds(std::max<Milliseconds::rep>(300, t1At9600 * 9600 / bitsPerSecond));
    parameters.t0First = Milliseconds(std::max<Milliseconds::rep>(100, 250 * 1200 / bitsPerSecond));
    // On a very slow line the first repetition must not be later than the last.
    parameters.t0First = std::min(parameters.t0First, parameters.t0Longest);
    return parameters;
}

void LinkParameters::TakeMinima(const Octets& linkRequest)
{
    n1 = std::min(n1, linkRequest[1]);
    // With a window of 0 the link would carry nothing.
    k = std::max<std::uint8_t>(1, std::min(k, linkRequest[2]));
    version = std::min(version, linkRequest[3]);
}

bool LinkParameters::Accept(const Octets& linkRequest) const
{
    return linkRequest[1] <= n1 && linkRequest[2] <= k && linkRequest[3] <= version;
}

} // namespace map27
