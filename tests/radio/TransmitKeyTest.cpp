#include "radio/window/TransmitKey.h"
#include "radio/window/CallKeys.h"
#include "support/FakeClock.h"

#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

using Time = TransmitKey::Time;

// Each act is a press (+), a release (-) or only time (.); releases held back are let out before each.
struct Act {
    int at;    // ms, also the desktop's stamp unless one is given
    char what; // + - .
    quint32 code = 1;
    int stamp = -1;
};

TEST(TransmitKeyTest, OneOnAndOneOffOfAHold)
{
    const struct {
        const char* name;
        bool holdingBack;
        std::vector<Act> acts;
        const char* switches;
    } cases[] = {
        {"presses repeated", false, {{0, '+'}, {700, '+'}, {730, '+'}, {900, '-'}}, "10"},
        {"a second key changes nothing", false, {{0, '+'}, {10, '+', 2}, {20, '-', 2}, {30, '-'}}, "10"},
        {"pairs repeated, told late",
         true,
         {{0, '+'}, {700, '-', 1, 660}, {735, '+', 1, 660}, {800, '.'}},
         "1"},
        {"a release is held back only for a while", true, {{0, '+'}, {100, '-'}, {139, '.'}}, "1"},
        {"then it counts", true, {{0, '+'}, {100, '-'}, {140, '.'}}, "10"},
        {"pressed again at another time", true, {{0, '+'}, {100, '-'}, {120, '+'}, {200, '.'}}, "101"},
        {"the mouse is never held back",
         true,
         {{0, '+', TransmitKey::Mouse}, {9, '-', TransmitKey::Mouse}},
         "10"},
    };
    for (const auto& row : cases) {
        TransmitKey key;
        key.SetHoldingBack(row.holdingBack);
        std::string switches;
        const auto take = [&](const TransmitKey::Switches& all) {
            for (const bool on : all)
                switches += on ? '1' : '0';
        };
        for (const Act& act : row.acts) {
            const auto stamp = static_cast<quint64>(act.stamp < 0 ? act.at : act.stamp);
            take(key.Expire(Time(act.at)));
            if (act.what == '+')
                take(key.Press(act.code, stamp));
            if (act.what == '-')
                take(key.Release(act.code, stamp, Time(act.at)));
        }
        EXPECT_EQ(switches, row.switches) << row.name;
    }
}

TEST(CallKeysTest, TheKeyboardIsFreeFiveSecondsAfterAKeyInTheActiveProgram)
{
    FakeClock clock;
    CallKeys keys(clock);
    EXPECT_FALSE(keys.IsKeyboardFree());
    QWidget window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(keys.IsKeyboardFree());
    QTest::keyClick(window.windowHandle(), Qt::Key_A);
    clock.Step(std::chrono::milliseconds(4999));
    EXPECT_FALSE(keys.IsKeyboardFree());
    clock.Step(std::chrono::milliseconds(1));
    EXPECT_TRUE(keys.IsKeyboardFree());
}

} // namespace
