// What the console lets be heard, and when.

#include "core/settings/Settings.h"
#include "core/sounds/SoundChoice.h"
#include "core/sounds/SoundTurns.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"

#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

// Lets the time pass in tenths of a second and writes down what begins: "3.0 E" for an emergency that begins
// after three seconds, "E!" for one that is louder.
class TurnsTest : public testing::Test {
protected:
    std::string Until(std::chrono::milliseconds end)
    {
        std::string heard;
        for (; now <= end; now += 100ms)
            while (const auto turn = turns.Next(now)) {
                EXPECT_TRUE(busy <= now) << "two at once";
                busy = now + LengthOf(turn->kind);
                heard += (heard.empty() ? "" : " ") + std::to_string(now.count() / 100) +
                         std::string(1, "ERLFST"[static_cast<int>(turn->kind)]) + (turn->louder ? "!" : "");
            }
        return heard;
    }

    SoundTurns turns;
    std::chrono::milliseconds now{0};
    std::chrono::milliseconds busy{0};
};

TEST_F(TurnsTest, AnEmergencyRepeatsUntilNoneIsLeftAndIsLouderAfterAMinute)
{
    turns.SetEmergencies({"one"}, now);
    EXPECT_EQ(Until(6s), "0E 25E 50E");
    turns.SetEmergencies({"one", "other"}, now); // at once
    EXPECT_EQ(Until(8s), "62E") << "not before the one that sounds is over";
    turns.SetEmergencies({"other"}, now);
    EXPECT_EQ(Until(59s).find('!'), std::string::npos);
    EXPECT_NE(Until(70s).find('!'), std::string::npos);
    turns.SetEmergencies({}, now);
    EXPECT_EQ(Until(90s), "");
    EXPECT_EQ(turns.When(), std::nullopt);
}

TEST_F(TurnsTest, TheMoreUrgentGoesFirstAndWhatComesTooLateIsDropped)
{
    turns.Tell(SoundKind::Text, now);
    turns.Tell(SoundKind::Status, now);
    for (int storm = 0; storm < 500; ++storm)
        turns.Tell(SoundKind::Status, now);
    turns.Ring(true, now);
    turns.SetEmergencies({"one"}, now);
    const std::string heard = Until(7s);
    EXPECT_EQ(heard.substr(0, 11), "0E 12R 20S ") << heard;
    EXPECT_EQ(std::count(heard.begin(), heard.end(), 'S'), 1) << heard;
    EXPECT_EQ(std::count(heard.begin(), heard.end(), 'E'), 3) << heard;
    turns.Ring(false, now);
    turns.SetEmergencies({}, now);
    turns.Tell(SoundKind::Failure, now);
    now += 4s; // a blocked event loop
    EXPECT_EQ(Until(now), "");
}

TEST(SoundTest, EachIsAudibleBeginsAndEndsInSilenceAndFollowsItsVolume)
{
    const auto peak = [](const Sound& sound) {
        const QByteArray octets = SamplesOf(sound, 48000);
        std::vector<qint16> samples(static_cast<std::size_t>(octets.size() / 2));
        std::memcpy(samples.data(), octets.constData(), samples.size() * 2);
        EXPECT_LT(std::abs(samples.front()), 100);
        EXPECT_LT(std::abs(samples.back()), 100);
        EXPECT_NEAR(static_cast<double>(samples.size()),
                    48.0 * static_cast<double>(LengthOf(sound.kind).count()), 50);
        return *std::max_element(samples.begin(), samples.end());
    };
    for (const SoundKind kind : SoundKinds)
        for (int tune = 0; tune < SoundTunes; ++tune) {
            EXPECT_GT(peak({kind, tune, 100}), 15000);
            EXPECT_GT(peak({kind, tune, 30, true}), peak({kind, tune, 100}));
            EXPECT_LT(peak({kind, tune, 20}), 5000);
        }
}

TEST(SoundChoiceTest, AnEmergencyIsNeverOff)
{
    const QTemporaryDir folder;
    CStringSourceImpl strings{QStringList{}};
    Settings settings(folder.filePath("s.ini"), strings);
    for (const SoundKind kind : SoundKinds)
        EXPECT_EQ(ReadSoundChoice(settings, kind), SoundChoice());
    const SoundChoice quiet{.on = false, .tune = 2, .volume = 0};
    StoreSoundChoice(settings, SoundKind::Text, quiet);
    EXPECT_EQ(ReadSoundChoice(settings, SoundKind::Text), quiet);
    StoreSoundChoice(settings, SoundKind::Emergency, quiet);
    settings.Write("sounds", "emergency", "False"); // by hand
    EXPECT_EQ(ReadSoundChoice(settings, SoundKind::Emergency),
              (SoundChoice{.on = true, .tune = 2, .volume = SoundChoice::LowestOfEmergency}));
    settings.Write("sounds", "text_tune", "9");
    EXPECT_THROW(ReadSoundChoice(settings, SoundKind::Text), Error);
}

} // namespace
