#include "mainwindow/lists/ListLimit.h"

#include "core/settings/Settings.h"

namespace {

constexpr int DefaultLimit = 500;

} // namespace

int AddressListLimit(const Settings& settings)
{
    try {
        return settings.MaxAddressListSize();
    } catch (const std::exception&) {
        return DefaultLimit; // the stored size is not a number
    }
}
