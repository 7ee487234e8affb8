#include "addressing/CreateAddressing.h"

#include "addressing/ActionetAddressing.h"
#include "addressing/Mpt1343Addressing.h"

std::unique_ptr<MptAddressing> CreateAddressing(std::string_view numberingCode)
{
    if (numberingCode == "MPT1343")
        return std::make_unique<Mpt1343Addressing>();
    if (numberingCode == "ACTIONET")
        return std::make_unique<ActionetAddressing>();
    return nullptr;
}
