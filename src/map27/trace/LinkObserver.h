#pragma once

#include "map27/link/LinkPackets.h"
#include "map27/link/Time.h"
#include "map27/trace/Finding.h"

#include "map27/codec/Octets.h"

#include <array>
#include <optional>

namespace map27 {

// Follows the data link from the side, frame by frame, and says what each does and what breaks MAP27 v1.5,
// section 4. It may begin in the middle of a link. What frames that cross on the line, or get lost, make of
// the order is not held against either end.
class LinkObserver {
public:
    struct Seen {
        std::string words; // "LT 3"
        Findings findings;
        OctetSpan message{};     // of an LT, within the body given
        bool isRepeated = false; // the message is one that went before
        bool isRequest = false;  // LR: what was in progress is over
    };

    // The body of a good frame.
    Seen Take(OctetSpan body, Direction direction, TimePoint at);
    // Something is about to begin of which nothing is known.
    void Forget() { *this = {}; }

    // What an end asked for in its last LR.
    struct Proposal {
        std::uint8_t n1 = 0;
        std::uint8_t k = 0;
        std::uint8_t version = 0;
        bool operator==(const Proposal&) const = default;
    };
    // Of the first LR since the link was last up, the end's own wish; empty: none was seen.
    std::optional<Proposal> FirstProposal(Direction of) const { return End(of).first; }
    // The minima of both ends' last LRs.
    std::optional<Proposal> Agreed() const;
    bool IsUp() const { return m_ends[0].agreed && m_ends[1].agreed; }

private:
    struct OneEnd {
        std::optional<Proposal> first{};
        std::optional<Proposal> last{};
        int requests = 0;                      // LRs since the link was up
        bool agreed = false;                   // it has sent an LA since the last LR
        std::optional<std::uint8_t> highest{}; // N(S) of its last new LT
        std::optional<TimePoint> sentAt{};     // its last LT
        int acknowledgementsSince = 0;         // of the other, since then
        std::optional<std::uint8_t> told{};    // N(R) of its last LA
        std::optional<std::uint8_t> limit{};   // first N(S) that the credit it gave does not reach
        std::optional<TimePoint> toldAt{};     // its last LA
        bool isLate = false;                   // with its next LA; was reported
    };

    OneEnd& End(Direction direction) { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }
    const OneEnd& End(Direction direction) const { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }
    static Direction Other(Direction direction)
    {
        return direction == Direction::ToRadio ? Direction::FromRadio : Direction::ToRadio;
    }

    void TakeRequest(OctetSpan body, Direction direction);
    void TakeAcknowledgement(OctetSpan body, Direction direction, TimePoint at);
    void TakeTransfer(OctetSpan body, Direction direction, TimePoint at);
    void JudgeNumber(std::uint8_t number, Direction direction, TimePoint at);
    void JudgeRepetition(std::uint8_t number, Direction direction, TimePoint at);
    void JudgeCredit(std::uint8_t number, Direction direction);
    void JudgeKeepAlive(Direction direction, TimePoint at);
    void Remark(std::string_view kind, Direction by, std::string text);
    void Breach(std::string_view kind, Direction by, std::string text);

    std::array<OneEnd, 2> m_ends;
    bool m_fromTheStart = false; // an LR was seen, so that the numbers are known
    Seen m_seen;
};

} // namespace map27
