#pragma once

#include "map27/codec/Address.h"
#include "simulator/base/Behaviour.h"
#include "simulator/base/OutstationSettings.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

enum class SubscriberKind { Unit, Group, Outstation };

// The words of scenarios, "unit".
std::string_view WordOf(SubscriberKind kind);

struct Reactions {
    Reaction status = Reaction::Of(Behaviour::Answers);
    Reaction text = Reaction::Of(Behaviour::Answers);
    Reaction call = Reaction::Of(Behaviour::Answers);
    Reaction regroup = Reaction::Of(Behaviour::Answers); // regroup and group name commands

    static Reactions All(const Reaction& reaction) { return {reaction, reaction, reaction, reaction}; }
    Reaction& To(Service service);
    const Reaction& To(Service service) const { return const_cast<Reactions*>(this)->To(service); }
};

struct Subscriber {
    std::string name; // no blanks, no slash
    map27::Address address;
    SubscriberKind kind = SubscriberKind::Unit;
    Reactions reactions;
    OutstationSettings outstation;            // of an outstation, as it begins
    std::optional<map27::Address> divertedTo; // where messages and calls for it go
};

// Telephone numbers behind one gateway.
struct TelephoneNetwork {
    Reaction others = Reaction::Of(Behaviour::Rings);
    std::map<std::string, Reaction, std::less<>> numbers;
};

// Everybody whom the console can reach, and how each reacts to a request.
class Fleet {
public:
    std::vector<Subscriber> members;
    TelephoneNetwork pstn;
    TelephoneNetwork pabx;
    Reaction strangers = Reaction::Of(Behaviour::Rejects); // radio addresses that are nobody's

    // Null when nobody has it.
    const Subscriber* Find(map27::Address address) const;
    // Ignores case.
    const Subscriber* Find(std::string_view name) const;
    Subscriber* Find(std::string_view name);

    // A member's name, or prefix/ident of any radio; empty when it is neither.
    std::optional<map27::Address> Resolve(std::string_view text) const;

    Reaction ReactionOf(const map27::Party& called, Service service) const;

    // Empty when requests of this kind go to the address itself.
    std::optional<map27::Address> DivertedTo(map27::Address called, Service service) const;
    // What follows a request to this party, diversions included.
    std::vector<Step> StepsTo(const map27::Party& called, Service service) const;

    // "Unit20 (0/2)", "0/77", "PSTN 01223", for a person.
    std::string Describe(const map27::Party& party) const;
};

// "0/77" as an address of a unit or group, ident 1..8100.
std::optional<map27::Address> ParseAddress(std::string_view text);

// Highest ident of units and groups; above are the gateways and everybody.
constexpr std::uint16_t HighestSubscriberIdent = 8100;

} // namespace sim
