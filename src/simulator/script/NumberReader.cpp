#include "simulator/script/NumberReader.h"

#include "simulator/base/Fleet.h"

namespace sim {

map27::Address ReadAddress(const JsonNode& node)
{
    return {static_cast<std::uint8_t>(node.Member("prefix").Integer(0, map27::HighestPrefix)),
            static_cast<std::uint16_t>(node.Member("ident").Integer(1, HighestSubscriberIdent))};
}

map27::NumberRange ReadRange(const JsonNode& node)
{
    node.RequireMembers({"base", "max", "digits"});
    map27::NumberRange range;
    range.base = static_cast<std::uint16_t>(node.Member("base").Integer(1, HighestSubscriberIdent));
    range.highest =
        static_cast<std::uint16_t>(node.Member("max").Integer(range.base, HighestSubscriberIdent));
    range.threeDigits = node.Member("digits").Integer(2, 3) == 3;
    return range;
}

} // namespace sim
