#pragma once

#include <algorithm>
#include <vector>

class Settings;

// Most entries that lists of the directory show.
int AddressListLimit(const Settings& settings);

// Drops the rows past the limit. Whether there were any: so read one more than the limit.
template <typename Row> bool CutToLimit(std::vector<Row>& rows, int limit)
{
    const auto most = static_cast<std::size_t>(std::max(limit, 0));
    const bool cut = rows.size() > most;
    if (cut)
        rows.resize(most);
    return cut;
}
