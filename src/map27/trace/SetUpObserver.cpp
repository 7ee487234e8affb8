#include "map27/trace/SetUpObserver.h"

#include <algorithm>

namespace map27 {

namespace {

// Value by value.
template <typename Choose>
LinkProposal Each(const std::optional<LinkProposal>& known, const LinkProposal& other, Choose choose)
{
    const LinkProposal one = known.value_or(other);
    return {choose(one.n1, other.n1), choose(one.k, other.k), choose(one.version, other.version)};
}

constexpr auto Least = [](std::uint8_t one, std::uint8_t other) { return std::min(one, other); };
constexpr auto Greatest = [](std::uint8_t one, std::uint8_t other) { return std::max(one, other); };

} // namespace

void SetUpObserver::Begin()
{
    *this = {};
    m_isComplete = true;
}

void SetUpObserver::TakeRequest(const LinkProposal& proposal, Direction direction)
{
    OneEnd& own = End(direction);
    own.first = own.first.value_or(proposal);
    own.last = proposal;
    own.least = Each(own.least, proposal, Least);
    own.greatest = Each(own.greatest, proposal, Greatest);
    ++own.requests;
}

SetUpObserver::Answer SetUpObserver::TakeAgreement(Direction direction)
{
    OneEnd& own = End(direction);
    const OneEnd& other = End(direction == Direction::ToRadio ? Direction::FromRadio : Direction::ToRadio);
    ++own.agreements;
    if (!m_isComplete || other.requests == 0)
        return Answer::Fitting;
    // The first may belong to the link before, and one that is missing may have been the request.
    if (own.requests == 0)
        return own.agreements == 1 || own.isDamaged ? Answer::Doubtful : Answer::Straight;
    // An LA may be answered, whatever was asked before.
    const bool fits = Each(own.greatest, *other.least, Greatest) == own.greatest;
    return fits || other.agreements > 0 ? Answer::Fitting : Answer::Unfit;
}

std::optional<LinkProposal> SetUpObserver::Agreed() const
{
    const auto& [one, other] = m_ends;
    if (!one.last || !other.last)
        return std::nullopt;
    return Each(one.last, *other.last, Least);
}

} // namespace map27
