#include "map27/trace/LinkObserver.h"

#include "map27/link/LinkParameters.h"

#include <algorithm>
#include <utility>

namespace map27 {

namespace {

constexpr Milliseconds LongestSilence{15000}; // T3
constexpr Milliseconds Allowance{1000};       // for a keep-alive that waits behind something
constexpr Milliseconds LongestRoundTrip{8000};
constexpr Milliseconds Jitter{20};    // of the moments in a trace
constexpr Milliseconds Endless{1000}; // so many idle acknowledgements in this time
constexpr int ManyIdle = 8;
constexpr int ManyRequests = 8;
constexpr int MostRepetitions = 10; // N2
constexpr std::uint8_t SystemVersions = 128;
constexpr int HalfTheNumbers = 128;

std::string Text(unsigned number)
{
    return std::to_string(number);
}

std::string Text(Milliseconds time)
{
    return std::to_string(time.count());
}

} // namespace

void LinkObserver::TakeDamage(Direction of)
{
    m_setUp.TakeDamage(of);
    End(Other(of)).isAskedFor = true; // it may have been a message
}

void LinkObserver::Forget()
{
    m_ends = {};
    m_setUp = {};
    m_fromTheStart = false;
}

void LinkObserver::Open(unsigned bitsPerSecond)
{
    Forget();
    m_setUp.Begin();
    m_speed = bitsPerSecond > 0 ? std::optional(bitsPerSecond) : std::nullopt;
}

void LinkObserver::Continue(const std::optional<LinkStanding>& standing, unsigned bitsPerSecond)
{
    if (!m_speed && bitsPerSecond > 0)
        m_speed = bitsPerSecond;
    if (m_fromTheStart || !standing)
        return;
    for (const Direction direction : {Direction::ToRadio, Direction::FromRadio}) {
        const bool toRadio = direction == Direction::ToRadio;
        const std::uint8_t next = toRadio ? standing->nextToRadio : standing->nextFromRadio;
        m_setUp.TakeRequest(standing->agreed, direction);
        End(direction) = {.agreed = true, .highest = static_cast<std::uint8_t>(next - 1)};
    }
    m_fromTheStart = true;
}

std::optional<LinkStanding> LinkObserver::Standing() const
{
    const auto agreed = m_setUp.Agreed();
    if (!IsUp() || !agreed)
        return std::nullopt;
    const auto next = [this](Direction of) {
        return static_cast<std::uint8_t>(End(of).highest.value_or(0) + 1);
    };
    return LinkStanding{*agreed, next(Direction::ToRadio), next(Direction::FromRadio)};
}

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

void LinkObserver::TakeRequest(OctetSpan body, Direction direction)
{
    const LinkProposal proposal{body[1], body[2], body[3]};
    m_seen.words = "LR N1=" + Text(proposal.n1) + " k=" + Text(proposal.k) + " version " +
                   Text(proposal.version) + ", asks for a link";
    m_seen.isRequest = true;
    if (body.size() > packet::HeaderOctets)
        Breach("request-octets", direction, "A link request has no octets after its header.");
    if (proposal.k == 0)
        Breach("no-window", direction, "The window k is 0, which lets no message through.");
    if (proposal.version >= SystemVersions)
        Remark("version", direction, "The version is one of those that systems define for themselves.");
    if (IsUp()) {
        Remark("new-link", direction,
               "Asks for a new link while the old one is up, unless a late line has held the request back.");
        m_setUp.Begin();
    }
    m_ends = {};
    m_setUp.TakeRequest(proposal, direction);
    if (m_setUp.Requests(direction) == ManyRequests)
        Remark("circling", direction, "That is the eighth request for a link that does not come up.");
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
    // Another number is that of the link before.
    if (!own.agreed && number == 1)
        JudgeAgreement(credit, direction);
    if (const auto agreed = m_setUp.Agreed(); agreed && credit > std::max<std::uint8_t>(1, agreed->k))
        Breach("credit-beyond", direction,
               "It gives credit for " + Text(credit) + " messages; the agreed window is " + Text(agreed->k) +
                   '.');
    JudgeIdle(own.agreed && own.told == number && own.toldCredit == credit, direction, at);
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
    if (other.sentAt && own.told != number) {
        const Milliseconds since = at - *other.sentAt;
        own.quickest = std::min(own.quickest.value_or(since), since);
    }
    TakeCredit(number, credit, direction, at);
    own.agreed = true;
    if (own.told == number)
        own.asked = {number, at};
    own.told = number;
    own.toldCredit = credit;
    own.toldAt = at;
    own.isLate = false;
    ++other.acknowledgementsSince;
}

void LinkObserver::JudgeAgreement(std::uint8_t credit, Direction direction)
{
    constexpr auto straight =
        "It answers a request with an acknowledgement before it has asked for the link itself.";
    constexpr auto unfit =
        "It agrees to a request for more than it has asked for itself; the answer to that is "
        "a request for the smaller values.";
    switch (m_setUp.TakeAgreement(direction)) {
    case SetUpObserver::Answer::Fitting:
        break;
    case SetUpObserver::Answer::Doubtful:
        Remark("straight-answer", direction, straight);
        break;
    case SetUpObserver::Answer::Straight:
        Breach("straight-answer", direction, straight);
        break;
    case SetUpObserver::Answer::Unfit:
        // Without credit it is no more than a hint.
        if (credit == 0)
            Remark("unfit-answer", direction, unfit);
        else
            Breach("unfit-answer", direction, unfit);
    }
}

// An LA is sent for an LT, for new credit, or when T3 is over, but not for an LA.
void LinkObserver::JudgeIdle(bool isIdle, Direction direction, TimePoint at)
{
    OneEnd& own = End(direction);
    const bool isAsked = std::exchange(own.isAskedFor, false);
    if (!isIdle || isAsked || at - own.idleSince > Endless)
        own.idleAcknowledgements = 0;
    if (!isIdle || isAsked)
        return;
    if (own.idleAcknowledgements++ == 0)
        own.idleSince = at;
    if (own.idleAcknowledgements == ManyIdle)
        Breach("endless", direction,
               "That is the eighth acknowledgement within " + Text(at - own.idleSince) +
                   " ms for which there is no reason; one is not answered by another.");
}

void LinkObserver::TakeCredit(std::uint8_t number, std::uint8_t credit, Direction direction, TimePoint at)
{
    OneEnd& own = End(direction);
    const std::uint8_t limit = static_cast<std::uint8_t>(number + credit);
    if (!own.limit || packet::Distance(*own.limit, limit) < HalfTheNumbers) {
        own.limit = limit;
        own.withdrawn.reset();
    } else if (!own.withdrawn || own.withdrawn->from != limit) {
        own.withdrawn = {limit, at};
    }
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
    if (const auto agreed = m_setUp.Agreed()) {
        const std::size_t longest = LinkParameters{.n1 = agreed->n1}.LongestMessage();
        if (m_seen.message.size() > longest)
            Breach("too-long", direction,
                   "The message has " + std::to_string(m_seen.message.size()) + " octets; N1 allows " +
                       std::to_string(longest) + '.');
    }
    // While requests for a link cross, an end may send for a moment on a link that the other has left.
    if (m_fromTheStart && !IsUp())
        Remark("early-transfer", direction,
               "Sent before both ends had agreed to the link, or an older request for it was late.");
    else
        JudgeNumber(number, direction, at);
    OneEnd& own = End(direction);
    own.sentAt = at;
    own.acknowledgementsSince = 0;
    End(Other(direction)).isAskedFor = true;
    if (m_seen.isRepeated)
        return;
    own.highest = number;
    own.sent[number] = {{m_seen.message.begin(), m_seen.message.end()}};
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
    JudgeCredit(number, direction, at);
    if (ahead == 0)
        return;
    std::string text = "Number " + Text(number) + " where " + Text(expected) + " was expected";
    const auto agreed = m_setUp.Agreed();
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
    JudgeContent(number, direction);
    if (!own.sentAt)
        return; // before the trace
    const Milliseconds since = at - *own.sentAt;
    const auto told = End(Other(direction)).told;
    // What asks may have been sent before the LT was there.
    const auto& asked = End(Other(direction)).asked;
    const bool isAskedBefore = asked && asked->number == number && at - asked->at < LongestCrossing();
    const bool isAsked = isAskedBefore || (own.acknowledgementsSince > 0 && told == number);
    const bool isAcknowledged =
        told && packet::Distance(number, *told) > 0 && packet::Distance(number, *told) < HalfTheNumbers;
    const auto shortest = ShortestT1();
    if (!isAsked && shortest && since + Jitter < *shortest)
        Breach("early-repetition", direction,
               "Repeated after " + Text(since) + " ms without having been asked; at " + Text(*m_speed) +
                   " bit/s T1 is longer than " + Text(*shortest) + " ms.");
    else if (isAcknowledged)
        Remark("repeats-acknowledged", direction, "It was acknowledged before; that may have got lost.");
    else if (!isAsked)
        Remark("unacknowledged", Other(direction), "No acknowledgement came for " + Text(since) + " ms.");
}

void LinkObserver::JudgeContent(std::uint8_t number, Direction direction)
{
    const auto found = End(direction).sent.find(number);
    if (found == End(direction).sent.end())
        return;
    Sent& sent = found->second;
    if (!std::ranges::equal(sent.message, m_seen.message)) {
        m_seen.isRepeated = false; // a message nobody has seen
        Breach("changed-repetition", direction,
               "Number " + Text(number) + " was sent before with another message, " + ToHex(sent.message) +
                   '.');
        sent.message.assign(m_seen.message.begin(), m_seen.message.end());
    }
    const auto agreed = m_setUp.Agreed();
    // Each new message within the window begins to count anew.
    const int most = MostRepetitions * std::max<int>(1, agreed ? agreed->k : 1);
    if (++sent.repetitions == most + 1)
        Breach("many-repetitions", direction,
               "Repeated more than " + std::to_string(most) + " times; the link has failed after " +
                   std::to_string(MostRepetitions) + '.');
}

// By 4.5.2: twice the time of the longest LT and its LA, with ten bits an octet. Empty when the speed or N1
// is not known.
std::optional<Milliseconds> LinkObserver::ShortestT1() const
{
    constexpr std::size_t bitsPerOctet = 10;
    const auto agreed = m_setUp.Agreed();
    if (!m_speed || !agreed)
        return std::nullopt;
    const std::size_t octets = LinkParameters{.n1 = agreed->n1}.LongestMessage() + packet::HeaderOctets +
                               packet::FrameOverhead + packet::AcknowledgementOctets;
    return Milliseconds(2 * octets * bitsPerOctet * 1000 / *m_speed);
}

void LinkObserver::JudgeCredit(std::uint8_t number, Direction direction, TimePoint at)
{
    const OneEnd& other = End(Other(direction));
    if (!other.limit)
        return;
    const auto isBeyond = [number](std::uint8_t limit) {
        const std::uint8_t left = packet::Distance(number, limit);
        return left == 0 || left >= HalfTheNumbers;
    };
    const bool isWithdrawn = other.withdrawn && isBeyond(other.withdrawn->from);
    if (isBeyond(*other.limit))
        Breach("credit", direction,
               "Sent without credit: the other end takes none from number " + Text(*other.limit) + " on.");
    else if (isWithdrawn && at - other.withdrawn->at > LongestCrossing())
        Breach("credit", direction,
               "Sent " + Text(at - other.withdrawn->at) + " ms after the credit was withdrawn.");
    else if (isWithdrawn)
        Remark("withdrawn-credit", direction,
               "Sent though the credit was withdrawn; that may have crossed with it.");
}

// How long what an end sent before it heard of something may come after it.
Milliseconds LinkObserver::LongestCrossing() const
{
    Milliseconds longest{1000};
    for (const OneEnd& end : m_ends)
        longest += end.quickest.value_or(LongestRoundTrip);
    return longest;
}

void LinkObserver::JudgeKeepAlive(Direction direction, TimePoint at)
{
    OneEnd& end = End(direction);
    if (!IsUp() || !end.toldAt || end.isLate || at - *end.toldAt <= LongestSilence + Allowance)
        return;
    end.isLate = true;
    Breach("keep-alive", direction,
           "No acknowledgement for " + Text(at - *end.toldAt) + " ms; one is due every 15 s at least.");
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
