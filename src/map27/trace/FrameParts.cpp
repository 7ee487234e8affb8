#include "map27/trace/FrameParts.h"

#include "map27/link/Fcs.h"
#include "map27/link/Framing.h"

namespace map27 {

std::optional<FrameParts> TakeApart(OctetSpan frame)
{
    constexpr std::size_t startFlag = 3;
    constexpr std::size_t endFlag = 2;
    constexpr std::size_t fcs = 2;
    if (frame.size() < startFlag + endFlag + fcs || frame[0] != Syn || frame[1] != Dle || frame[2] != Stx)
        return std::nullopt;
    FrameParts parts;
    std::size_t at = startFlag;
    for (; at + 1 < frame.size(); ++at) {
        if (frame[at] == Dle) {
            if (frame[at + 1] == Etx)
                break;
            ++at;
            if (frame[at] == Stx) { // a start flag that lost its SYN: the receiver begins anew
                parts.body.clear();
                continue;
            }
            if (frame[at] != Dle)
                return std::nullopt;
        }
        parts.body.push_back(frame[at]);
    }
    if (at + endFlag + fcs != frame.size())
        return std::nullopt;
    Fcs right;
    right.Add(parts.body);
    right.Add(Dle);
    right.Add(Etx);
    parts.rightFcs = right.Value();
    parts.fcs = static_cast<std::uint16_t>(frame[at + 2] | (frame[at + 3] << 8));
    return parts;
}

} // namespace map27
