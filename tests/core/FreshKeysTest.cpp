#include "core/desktop/FreshKeys.h"

#include <gtest/gtest.h>

namespace {

// A day at the keyboard: "seen", "down K", "up K" and "repeat K" (the desktop tells a release and a press of
// a key that stays down), each at its time, with what a press is worth: e(arly), f(resh), r(epeated).
struct Act {
    int at; // ms
    const char* what;
    quint32 key = 0;
    char worth = ' ';
};

struct KeyCase {
    const char* name;
    int quiet;
    std::vector<Act> acts;
};

class FreshKeysTest : public testing::TestWithParam<KeyCase> {};

const KeyCase Cases[] = {
    {"ABoxNeedsALook", 250, {{0, "seen"}, {200, "down", 1, 'e'}, {210, "up", 1}, {470, "down", 1, 'f'}}},
    {"WhoTypesOnHasNotLooked",
     250,
     {{0, "seen"},
      {200, "down", 1, 'e'},
      {250, "up", 1},
      {400, "down", 2, 'e'},
      {420, "up", 2},
      {600, "down", 3, 'e'}}},
    {"AfterOneThatCountedAllDo",
     250,
     {{0, "seen"}, {250, "down", 1, 'f'}, {260, "up", 1}, {280, "down", 2, 'f'}}},
    {"NothingBeforeItIsSeen", 0, {{0, "down", 1, 'e'}, {10, "up", 1}, {20, "seen"}, {20, "down", 1, 'f'}}},
    {"TheSecondHalfOfAnAccessKey",
     0,
     {{0, "down", 9, 'e'},
      {10, "seen"},
      {500, "down", 1, 'e'},
      {510, "up", 1},
      {520, "up", 9},
      {530, "down", 1, 'f'}}},
    {"AKeyHeldSinceBeforeAndRepeated",
     0,
     {{0, "down", 1, 'e'},
      {10, "seen"},
      {700, "repeat", 1, 'e'},
      {730, "repeat", 1, 'e'},
      {740, "up", 1},
      {760, "down", 1, 'f'}}},
    {"ARepetitionOfOneThatCounts", 0, {{0, "seen"}, {10, "down", 1, 'f'}, {700, "repeat", 1, 'r'}}},
};

TEST_P(FreshKeysTest, CountsOnlyKeysForWhatIsSeen)
{
    FreshKeys::Keys held;
    FreshKeys keys(FreshKeys::Time(GetParam().quiet), [&held] { return held; });
    for (const Act& act : GetParam().acts) {
        const std::string what = act.what;
        const FreshKeys::Time now(act.at);
        if (what == "seen")
            keys.Begin(now);
        if (what == "up") {
            held.erase(act.key);
            keys.Release(act.key);
        }
        if (what == "repeat")
            keys.Release(act.key);
        if (what == "down" || what == "repeat") {
            held.insert(act.key);
            EXPECT_EQ("efr"[static_cast<int>(keys.Press(act.key, now))], act.worth) << act.at;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FreshKeysTest, testing::ValuesIn(Cases),
                         [](const auto& test) { return test.param.name; });

} // namespace
