#include "simulator/base/Fleet.h"

#include "map27/codec/Causes.h"

#include <algorithm>
#include <charconv>

namespace sim {

namespace {

constexpr Milliseconds DiversionReaction{300};

bool SameName(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::optional<int> ParseNumber(std::string_view text, int low, int high)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < low || value > high)
        return std::nullopt;
    return value;
}

Reaction ReactionOfNumber(const TelephoneNetwork& network, std::string_view digits)
{
    const auto found = network.numbers.find(digits);
    return found == network.numbers.end() ? network.others : found->second;
}

bool IsStoredPstn(map27::Address address)
{
    return address.ident >= map27::Ident::FirstStoredPstn && address.ident <= map27::Ident::LastStoredPstn;
}

} // namespace

Reaction& Reactions::To(Service service)
{
    switch (service) {
    case Service::Status:
        return status;
    case Service::Text:
        return text;
    case Service::Regroup:
        return regroup;
    case Service::Call:
        break;
    }
    return call;
}

std::string_view WordOf(SubscriberKind kind)
{
    switch (kind) {
    case SubscriberKind::Group:
        return "group";
    case SubscriberKind::Outstation:
        return "outstation";
    case SubscriberKind::Unit:
        break;
    }
    return "unit";
}

const Subscriber* Fleet::Find(map27::Address address) const
{
    const auto found = std::ranges::find(members, address, &Subscriber::address);
    return found == members.end() ? nullptr : &*found;
}

const Subscriber* Fleet::Find(std::string_view name) const
{
    const auto found =
        std::ranges::find_if(members, [&](const Subscriber& s) { return SameName(s.name, name); });
    return found == members.end() ? nullptr : &*found;
}

Subscriber* Fleet::Find(std::string_view name)
{
    return const_cast<Subscriber*>(std::as_const(*this).Find(name));
}

std::optional<map27::Address> Fleet::Resolve(std::string_view text) const
{
    if (const Subscriber* member = Find(text))
        return member->address;
    return ParseAddress(text);
}

Reaction Fleet::ReactionOf(const map27::Party& called, Service service) const
{
    using map27::DescriptionKind;
    if (called.description.kind == DescriptionKind::PabxExtension)
        return ReactionOfNumber(pabx, std::to_string(called.address.ident));
    if (called.address.ident == map27::Ident::Pabx)
        return ReactionOfNumber(pabx, called.description.digits);
    if (called.address.ident == map27::Ident::Pstn)
        return ReactionOfNumber(pstn, called.description.digits);
    if (IsStoredPstn(called.address))
        return pstn.others;
    if (called.address.ident == map27::Ident::SystemWide)
        return Reaction::Of(Behaviour::Answers);
    const Subscriber* member = Find(called.address);
    return member ? member->reactions.To(service) : strangers;
}

std::optional<map27::Address> Fleet::DivertedTo(map27::Address called, Service service) const
{
    const Subscriber* member = service == Service::Regroup ? nullptr : Find(called);
    return member ? member->divertedTo : std::nullopt;
}

std::vector<Step> Fleet::StepsTo(const map27::Party& called, Service service) const
{
    const Reaction own = ReactionOf(called, service);
    const auto target = DivertedTo(called.address, service);
    if (!target || IsDiversion(own.behaviour))
        return StepsOf(own, service);
    // The new target is tried once; its own diversions do not count any more.
    std::vector<Step> steps = StepsOf(ReactionOf({*target, {}}, service), service);
    steps.insert(steps.begin(), {DiversionReaction, StepOutcome::Pending, map27::Cause::DivertedRetry});
    return steps;
}

std::string Fleet::Describe(const map27::Party& party) const
{
    if (party.description.kind == map27::DescriptionKind::PabxExtension)
        return "PABX extension " + std::to_string(party.address.ident);
    switch (party.address.ident) {
    case map27::Ident::Pstn:
        return "PSTN " + party.description.digits;
    case map27::Ident::Pabx:
        return "PABX " + party.description.digits;
    case map27::Ident::SystemWide:
        return "everybody";
    default:
        break;
    }
    if (IsStoredPstn(party.address))
        return "stored PSTN number " +
               std::to_string(party.address.ident - map27::Ident::FirstStoredPstn + 1);
    const Subscriber* member = Find(party.address);
    return member ? member->name + " (" + ToText(party.address) + ")" : ToText(party.address);
}

std::optional<map27::Address> ParseAddress(std::string_view text)
{
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    const auto prefix = ParseNumber(text.substr(0, slash), 0, map27::HighestPrefix);
    const auto ident = ParseNumber(text.substr(slash + 1), 1, HighestSubscriberIdent);
    if (!prefix || !ident)
        return std::nullopt;
    return map27::Address{static_cast<std::uint8_t>(*prefix), static_cast<std::uint16_t>(*ident)};
}

} // namespace sim
