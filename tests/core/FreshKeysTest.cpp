#include "core/desktop/FreshKeys.h"

#include "support/Table.h"

#include <sstream>

namespace {

// Name, how long a look takes, "200 down 1 early, 210 up 1".
TEST(FreshKeysTest, CountsOnlyKeysForWhatIsSeen)
{
    for (const TableRow& row : ReadTable("core.tsv", "Keys", 7)) {
        SCOPED_TRACE(row.at(0));
        FreshKeys::Keys held;
        FreshKeys keys(FreshKeys::Time(std::stoi(row.at(1))), [&held] { return held; });
        std::istringstream acts(row.at(2));
        for (std::string act; std::getline(acts, act, ',');) {
            std::istringstream words(act);
            int at = 0;
            quint32 key = 0;
            std::string what, worth;
            words >> at >> what >> key >> worth;
            const FreshKeys::Time now(at);
            if (what == "seen")
                keys.Begin(now);
            if (what == "up")
                held.erase(key);
            if (what == "up" || what == "repeat")
                keys.Release(key);
            if (what == "down" || what == "repeat") {
                held.insert(key);
                const char* const worths[] = {"early", "fresh", "repeated"};
                EXPECT_EQ(worths[static_cast<int>(keys.Press(key, now))], worth) << act;
            }
        }
    }
}

} // namespace
