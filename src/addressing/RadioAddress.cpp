#include "addressing/RadioAddress.h"

#include "addressing/AddressingError.h"
#include "addressing/Digits.h"

namespace {

void RequireInRange(int value, int max, AddressingCode code)
{
    if (value < 0 || value > max)
        throw AddressingError(code, {std::to_string(value)});
}

bool IsGateway(int ident)
{
    return ident == PstnGatewayIdent || ident == PabxGatewayIdent;
}

} // namespace

void ValidateAddress(const RadioAddress& address)
{
    RequireInRange(address.prefix, HighestPrefix, AddressingCode::PrefixRange);
    RequireInRange(address.ident, HighestIdent, AddressingCode::IdentRange);
    if (address.kind == AddressKind::Gateway) {
        if (!IsGateway(address.ident))
            throw AddressingError(AddressingCode::GatewayIdentNeeded);
        RequireDigits(address.digits);
        RequireTelephoneLength(address.digits);
    } else if (address.kind != AddressKind::Radio || !address.digits.empty()) {
        throw AddressingError(AddressingCode::AddressKind,
                              {std::to_string(static_cast<int>(address.kind)), address.digits});
    }
}
