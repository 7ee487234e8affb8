#pragma once

#include "map27/codec/Direction.h"

#include <array>
#include <cstdint>
#include <optional>

namespace map27 {

// What an end asks for in an LR.
struct LinkProposal {
    std::uint8_t n1 = 0;
    std::uint8_t k = 0;
    std::uint8_t version = 0;
    bool operator==(const LinkProposal&) const = default;
};

// Where a link stands that is up: what was agreed, and the numbers of the next LTs.
struct LinkStanding {
    LinkProposal agreed;
    std::uint8_t nextToRadio = 1;
    std::uint8_t nextFromRadio = 1;
    bool operator==(const LinkStanding&) const = default;
};

// Follows from the side how a link is set up: what each end asks for, and whether what it agrees to fits
// (MAP27 v1.5, 4.4.1).
class SetUpObserver {
public:
    // All that is said from now on will be seen.
    void Begin();
    // Something of that end may be missing.
    void TakeDamage(Direction of) { End(of).isDamaged = true; }
    void TakeRequest(const LinkProposal& proposal, Direction direction);

    // What an end's first LA after a request is.
    enum class Answer {
        Fitting,  // or nobody can tell
        Doubtful, // it has not asked for the link itself, as far as was seen
        Straight, // it has not
        Unfit,    // the other end wants more than it has asked for
    };
    Answer TakeAgreement(Direction direction);

    // LRs of that end so far.
    int Requests(Direction of) const { return End(of).requests; }
    // Of its first LR, the end's own wish; empty: none was seen.
    std::optional<LinkProposal> First(Direction of) const { return End(of).first; }
    // The minima of both ends' last LRs.
    std::optional<LinkProposal> Agreed() const;

private:
    struct OneEnd {
        std::optional<LinkProposal> first{};
        std::optional<LinkProposal> last{};
        std::optional<LinkProposal> least{};    // of its LRs, value by value
        std::optional<LinkProposal> greatest{}; // likewise
        int requests = 0;
        int agreements = 0;
        bool isDamaged = false;
    };
    OneEnd& End(Direction direction) { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }
    const OneEnd& End(Direction direction) const { return m_ends[direction == Direction::ToRadio ? 0 : 1]; }

    std::array<OneEnd, 2> m_ends;
    bool m_isComplete = false; // nothing before was missed
};

} // namespace map27
