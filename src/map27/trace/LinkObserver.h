#pragma once

#include "map27/link/LinkPackets.h"
#include "map27/link/Time.h"
#include "map27/trace/Finding.h"
#include "map27/trace/SetUpObserver.h"

#include "map27/codec/Octets.h"

#include <array>
#include <map>
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
    // Octets that are no good frame: something of that end may be missing.
    void TakeDamage(Direction of);
    // Something is about to begin of which nothing is known but the speed of the line.
    void Forget();
    // The port is opened, so that all of the next link will be seen. 0: the speed is not known.
    void Open(unsigned bitsPerSecond);
    // The trace goes on where another has ended. Without effect on what is known already.
    void Continue(const std::optional<LinkStanding>& standing, unsigned bitsPerSecond);
    // Empty while the link is not up, or not known.
    std::optional<LinkStanding> Standing() const;

    // How the link was set up that is up, or is about to be.
    const SetUpObserver& SetUp() const { return m_setUp; }
    bool IsUp() const { return m_ends[0].agreed && m_ends[1].agreed; }

private:
    struct Sent {
        Octets message;
        int repetitions = 0;
    };
    // The other end may send no message from this number on.
    struct Withdrawal {
        std::uint8_t from;
        TimePoint at;
    };
    // For the LT of this number once more.
    struct Asked {
        std::uint8_t number;
        TimePoint at;
    };
    // Since the last LR.
    struct OneEnd {
        bool agreed = false;                    // it has sent an LA
        std::map<std::uint8_t, Sent> sent{};    // its LTs by N(S)
        std::optional<std::uint8_t> highest{};  // N(S) of its last new LT
        std::optional<TimePoint> sentAt{};      // its last LT
        std::optional<Milliseconds> quickest{}; // from the other's LT to the LA for it
        int acknowledgementsSince = 0;          // of the other, since then
        std::optional<std::uint8_t> told{};     // N(R) of its last LA
        std::uint8_t toldCredit = 0;            // N(k) of it
        bool isAskedFor = false;                // the other has sent an LT since then
        std::optional<std::uint8_t> limit{};    // first N(S) that the credit it gave does not reach
        std::optional<Withdrawal> withdrawn{};  // of that credit
        std::optional<TimePoint> toldAt{};      // its last LA
        std::optional<Asked> asked{};           // by its last LA that told the same N(R) as the one before
        TimePoint idleSince{};                  // its first LA that told nothing new
        int idleAcknowledgements = 0;           // of those, without anything that asked for them
        bool isLate = false;                    // with its next LA; was reported
    };

    OneEnd& End(Direction direction) { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }
    const OneEnd& End(Direction direction) const { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }
    static Direction Other(Direction direction)
    {
        return direction == Direction::ToRadio ? Direction::FromRadio : Direction::ToRadio;
    }

    void TakeRequest(OctetSpan body, Direction direction);
    void TakeAcknowledgement(OctetSpan body, Direction direction, TimePoint at);
    void JudgeAgreement(std::uint8_t credit, Direction direction);
    void JudgeIdle(bool isIdle, Direction direction, TimePoint at);
    void TakeCredit(std::uint8_t number, std::uint8_t credit, Direction direction, TimePoint at);
    void TakeTransfer(OctetSpan body, Direction direction, TimePoint at);
    void JudgeNumber(std::uint8_t number, Direction direction, TimePoint at);
    void JudgeRepetition(std::uint8_t number, Direction direction, TimePoint at);
    void JudgeContent(std::uint8_t number, Direction direction);
    void JudgeCredit(std::uint8_t number, Direction direction, TimePoint at);
    std::optional<Milliseconds> ShortestT1() const;
    Milliseconds LongestCrossing() const;
    void JudgeKeepAlive(Direction direction, TimePoint at);
    void Remark(std::string_view kind, Direction by, std::string text);
    void Breach(std::string_view kind, Direction by, std::string text);

    std::array<OneEnd, 2> m_ends;
    SetUpObserver m_setUp;
    bool m_fromTheStart = false;     // an LR was seen, so that the numbers are known
    std::optional<unsigned> m_speed; // bits per second
    Seen m_seen;
};

} // namespace map27
