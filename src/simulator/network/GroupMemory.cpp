#include "simulator/network/GroupMemory.h"

#include <algorithm>
#include <tuple>

namespace sim {

void GroupMemory::Obey(const GroupCommand& command, map27::Address called, const Fleet& fleet)
{
    const auto obey = [&](map27::Address radio) {
        std::visit([&](const auto& known) { Obey(known, radio); }, command);
    };
    const Subscriber* member = fleet.Find(called);
    if (!member || member->kind != SubscriberKind::Group)
        return obey(called);

    const int position = std::visit([](const auto& known) { return known.position; }, command);
    std::vector<map27::Address> holders;
    for (const Place& place : m_places)
        if (place.position == position && place.group == called)
            holders.push_back(place.radio);
    std::ranges::for_each(holders, obey);
}

std::string GroupMemory::Describe(map27::Address radio, const Fleet& fleet) const
{
    std::string text;
    for (const Place& place : m_places) {
        if (place.radio != radio)
            continue;
        text += (text.empty() ? "" : "; ") + std::to_string(place.position) + ": ";
        text += place.group.IsDummy() ? "no group" : fleet.Describe({place.group, {}});
        if (!place.name.empty())
            text += " \"" + place.name + '"';
    }
    return text;
}

void GroupMemory::Obey(const RegroupCommand& command, map27::Address radio)
{
    if (command.group.IsDummy()) {
        std::erase_if(
            m_places,
            [&](const Place& place) { return place.radio == radio && place.position == command.position; });
    } else {
        At(radio, command.position).group = command.group;
    }
}

void GroupMemory::Obey(const GroupNameCommand& command, map27::Address radio)
{
    At(radio, command.position).name = command.name;
}

GroupMemory::Place& GroupMemory::At(map27::Address radio, int position)
{
    const auto order = [](const Place& place) {
        return std::tuple(place.radio.prefix, place.radio.ident, place.position);
    };
    const auto place =
        std::ranges::lower_bound(m_places, std::tuple(radio.prefix, radio.ident, position), {}, order);
    if (place != m_places.end() && place->radio == radio && place->position == position)
        return *place;
    return *m_places.insert(place, {radio, position, {}, {}});
}

} // namespace sim
