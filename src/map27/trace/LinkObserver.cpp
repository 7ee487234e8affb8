#include "map27/trace/LinkObserver.h"

#include "map27/link/LinkParameters.h"

#include <algorithm>

namespace map27 {

namespace {

constexpr Milliseconds LongestSilence{15000}; // T3
constexpr Milliseconds Allowance{1000};       // for a keep-alive that waits behind something
constexpr Milliseconds ShortestT1{100};       // at 9600 bit/s
constexpr int ManyRequests = 8;
constexpr std::uint8_t SystemVersions = 128;
constexpr int HalfTheNumbers = 128;

std::string Text(unsigned number)
{
    return std::to_string(number);
}

} // namespace

LinkObserver::Seen LinkObserver::Take(OctetSpan body, Direction direction, TimePoint at)
{
    m_seen = {};
    if (body.size() < packet::HeaderOctets) {
        m_seen.words = "no packet";
        Breach("short-packet", direction, "The frame has fewer octets than the header of a packet.");
        return m_seen;
    }
    for (const Direction end : {Direction::ToRadio, Direction::FromRadio})
        JudgeKeepAlive(end, at);
    switch (body[0]) {
    case packet::LinkRequest:
        TakeRequest(body, direction);
        break;
    case packet::LinkAcknowledgement:
        TakeAcknowledgement(body, direction, at);
        break;
    case packet::LinkTransfer:
        TakeTransfer(body, direction, at);
        break;
    default:
        m_seen.words = "packet type " + Text(body[0]);
        Breach("unknown-packet", direction, "The packet is none of LR (1), LA (2) and LT (4).");
    }
    return m_seen;
}

std::optional<LinkObserver::Proposal> LinkObserver::Agreed() const
{
    const auto& [one, other] = m_ends;
    if (!one.last || !other.last)
        return std::nullopt;
    return Proposal{std::min(one.last->n1, other.last->n1), std::min(one.last->k, other.last->k),
                    std::min(one.last->version, other.last->version)};
}

void LinkObserver::TakeRequest(OctetSpan body, Direction direction)
{
    const Proposal proposal{body[1], body[2], body[3]};
    m_seen.words = "LR N1=" + Text(proposal.n1) + " k=" + Text(proposal.k) + " version " +
                   Text(proposal.version) + ", asks for a link";
    m_seen.isRequest = true;
    if (body.size() > packet::HeaderOctets)
        Breach("request-octets", direction, "A link request has no octets after its header.");
    if (proposal.k == 0)
        Breach("no-window", direction, "The window k is 0, which lets no message through.");
    if (proposal.version >= SystemVersions)
        Remark("version", direction, "The version is one of those that systems define for themselves.");
    const bool wasUp = IsUp();
    if (wasUp)
        Remark("new-link", direction, "Asks for a new link while the old one is up.");
    OneEnd& own = End(direction);
    const int requests = wasUp ? 1 : own.requests + 1;
    if (requests == ManyRequests)
        Remark("circling", direction, "That is the eighth request for a link that does not come up.");
    const auto first = wasUp || !own.first ? proposal : *own.first;
    OneEnd& other = End(Other(direction));
    own = {.first = first, .last = proposal, .requests = requests};
    other = {.first = wasUp ? std::nullopt : other.first,
             .last = wasUp ? std::nullopt : other.last,
             .requests = wasUp ? 0 : other.requests};
    m_fromTheStart = true;
}

void LinkObserver::TakeAcknowledgement(OctetSpan body, Direction direction, TimePoint at)
{
    const std::uint8_t number = body[1];
    const std::uint8_t credit = body[2];
    OneEnd& own = End(direction);
    OneEnd& other = End(Other(direction));
    m_seen.words = "LA next=" + Text(number) + " credit=" + Text(credit);
    if (body[3] != 0 || body.size() > packet::HeaderOctets)
        Breach("acknowledgement-octets", direction,
               "The last octet of an acknowledgement is 0, and none follows.");
    if (!own.agreed)
        m_seen.words += ", agrees to the link";
    else if (own.told == number)
        m_seen.words += ", nothing new";
    else
        m_seen.words += ", acknowledges";
    if (own.agreed && own.told && packet::Distance(*own.told, number) >= HalfTheNumbers)
        Breach("acknowledges-back", direction, "It takes back what it had acknowledged before.");
    const std::uint8_t next = static_cast<std::uint8_t>(other.highest.value_or(0) + 1);
    const bool isKnown = other.highest || (m_fromTheStart && IsUp());
    if (isKnown && packet::Distance(next, number) > 0 && packet::Distance(next, number) < HalfTheNumbers)
        Breach("acknowledges-ahead", direction,
               "It acknowledges a message that was not sent: the next one has number " + Text(next) + '.');
    if (credit == 0)
        Remark("no-credit", direction, "No credit: the other end may send no message now.");
    const std::uint8_t limit = static_cast<std::uint8_t>(number + credit);
    if (!own.limit || packet::Distance(*own.limit, limit) < HalfTheNumbers)
        own.limit = limit;
    own.agreed = true;
    own.told = number;
    own.toldAt = at;
    own.isLate = false;
    ++other.acknowledgementsSince;
}

void LinkObserver::TakeTransfer(OctetSpan body, Direction direction, TimePoint at)
{
    const std::uint8_t number = body[1];
    m_seen.words = "LT " + Text(number);
    if (body[2] > 1 || body[3] != 0)
        Breach("transfer-header", direction, "Unused bits of the header are set.");
    m_seen.message = body.subspan(packet::HeaderOctets);
    if (m_seen.message.empty())
        Breach("empty-transfer", direction, "The transfer carries no message.");
    if (const auto agreed = Agreed()) {
        const std::size_t longest = LinkParameters{.n1 = agreed->n1}.LongestMessage();
        if (m_seen.message.size() > longest)
            Breach("too-long", direction,
                   "The message has " + std::to_string(m_seen.message.size()) + " octets; N1 allows " +
                       std::to_string(longest) + '.');
    }
    // While requests for a link cross, an end may send for a moment on a link that the other has left.
    if (m_fromTheStart && !IsUp())
        Remark("early-transfer", direction, "Sent before both ends had agreed to the link.");
    else
        JudgeNumber(number, direction, at);
    OneEnd& own = End(direction);
    own.sentAt = at;
    own.acknowledgementsSince = 0;
    if (!m_seen.isRepeated)
        own.highest = number;
}

void LinkObserver::JudgeNumber(std::uint8_t number, Direction direction, TimePoint at)
{
    const OneEnd& own = End(direction);
    if (!own.highest && !m_fromTheStart)
        return;
    const std::uint8_t expected = static_cast<std::uint8_t>(own.highest.value_or(0) + 1);
    const std::uint8_t ahead = packet::Distance(expected, number);
    if (own.highest && ahead >= HalfTheNumbers)
        return JudgeRepetition(number, direction, at);
    JudgeCredit(number, direction);
    if (ahead == 0)
        return;
    std::string text = "Number " + Text(number) + " where " + Text(expected) + " was expected";
    const auto agreed = Agreed();
    if (agreed && agreed->k > 1)
        Remark("gap", direction, text + "; with this window one may have been lost on the line.");
    else
        Breach("sequence", direction, text + '.');
}

void LinkObserver::JudgeRepetition(std::uint8_t number, Direction direction, TimePoint at)
{
    const OneEnd& own = End(direction);
    m_seen.isRepeated = true;
    m_seen.words += ", repeated";
    const Milliseconds since = own.sentAt ? at - *own.sentAt : Milliseconds{0};
    const auto told = End(Other(direction)).told;
    const bool isAsked = own.acknowledgementsSince > 0 && told == number;
    const bool isAcknowledged =
        told && packet::Distance(number, *told) > 0 && packet::Distance(number, *told) < HalfTheNumbers;
    if (!isAsked && since < ShortestT1)
        Breach("early-repetition", direction,
               "Repeated after " + std::to_string(since.count()) +
                   " ms without having been asked; T1 is longer at any usual speed.");
    else if (isAcknowledged)
        Remark("repeats-acknowledged", direction, "It was acknowledged before; that may have got lost.");
    else if (!isAsked)
        Remark("unacknowledged", Other(direction),
               "No acknowledgement came for " + std::to_string(since.count()) + " ms.");
}

void LinkObserver::JudgeCredit(std::uint8_t number, Direction direction)
{
    const auto limit = End(Other(direction)).limit;
    if (!limit)
        return;
    const std::uint8_t left = packet::Distance(number, *limit);
    if (left == 0 || left >= HalfTheNumbers)
        Breach("credit", direction,
               "Sent without credit: the other end takes none from number " + Text(*limit) + " on.");
}

void LinkObserver::JudgeKeepAlive(Direction direction, TimePoint at)
{
    OneEnd& end = End(direction);
    if (!IsUp() || !end.toldAt || end.isLate || at - *end.toldAt <= LongestSilence + Allowance)
        return;
    end.isLate = true;
    Breach("keep-alive", direction,
           "No acknowledgement for " + std::to_string((at - *end.toldAt).count()) +
               " ms; one is due every 15 s at least.");
}

void LinkObserver::Remark(std::string_view kind, Direction by, std::string text)
{
    m_seen.findings.push_back({Finding::Weight::Remark, kind, by, std::move(text)});
}

void LinkObserver::Breach(std::string_view kind, Direction by, std::string text)
{
    m_seen.findings.push_back({Finding::Weight::Breach, kind, by, std::move(text)});
}

} // namespace map27
