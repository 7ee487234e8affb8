#pragma once

class Settings;

// Most entries that lists of the directory show.
int AddressListLimit(const Settings& settings);
