#include "Script.h"

#include "map27/link/Framing.h"
#include "map27/trace/TraceObserver.h"

#include <gtest/gtest.h>

#include <sstream>

using map27::Direction;
using map27::Milliseconds;
using map27::TraceEntry;

namespace {

// "> 80 ..." a message to the radio in the next LT and its LA, "< ..." one from it; ">L ..." the body of a
// frame as it is; "x" before it: damaged; "+ 16000" lets time pass. What strikes, as "console kind" or "radio
// kind", breaches with '!'; "opened 9600" the line, at that speed.
class Wire {
public:
    // At 9600 bit/s, with the link set up and the radio's prefix known.
    static Wire Ready()
    {
        Wire wire;
        for (const char* body : {"opened 9600", ">L 01 0E 01 01", "<L 01 0E 01 01", ">L 02 01 01 00",
                                 "<L 02 01 01 00", "> B0 00", "< B0 00 00 03 00 00 00 00 B8 00 80 FE"})
            wire.Do(body);
        EXPECT_EQ(wire.struck, "") << "setting up";
        return wire;
    }

    void Do(const std::string& step)
    {
        const std::size_t blank = step.find(' ');
        const std::string how = step.substr(0, blank);
        const std::string rest = step.substr(blank + 1);
        if (how == "+") {
            m_now += Milliseconds(std::stoi(rest));
            return;
        }
        if (how == "opened") {
            m_observer.Take({.kind = TraceEntry::Kind::Opened, .at = m_now, .number = std::stoi(rest)});
            return;
        }
        if (how == "said" || how == "continued") {
            const std::string line = how == "said" ? R"("said","message":")" + rest + "\"}"
                                                   : R"("continued","speed":9600,)" + rest + '}';
            m_observer.Take(std::get<TraceEntry>(map27::ReadTraceEntry("{\"ms\":0,\"event\":" + line)));
            return;
        }
        const bool toRadio = how.find('>') != std::string::npos;
        const Direction direction = toRadio ? Direction::ToRadio : Direction::FromRadio;
        map27::Octets body = FromHex(rest);
        const bool isMessage = how.find('L') == std::string::npos;
        std::uint8_t& number = m_numbers[toRadio ? 0 : 1];
        if (isMessage)
            body.insert(body.begin(), {4, ++number, 1, 0});
        map27::Octets frame = map27::EncodeFrame(body);
        if (how[0] == 'x')
            frame.back() ^= 1;
        Take(direction, frame);
        if (isMessage)
            Take(toRadio ? Direction::FromRadio : Direction::ToRadio,
                 map27::EncodeFrame(map27::Octets{2, static_cast<std::uint8_t>(number + 1), 1, 0}));
    }

    std::string struck;
    std::string words; // of the last frame

private:
    void Take(Direction direction, const map27::Octets& frame)
    {
        m_now += Milliseconds(200);
        // Through the text and back, as in a file.
        const auto read = map27::ReadTraceEntry(
            map27::WriteTraceEntry({.at = m_now, .direction = direction, .octets = frame}));
        ASSERT_TRUE(std::holds_alternative<TraceEntry>(read));
        const auto seen = m_observer.Take(std::get<TraceEntry>(read));
        words = seen.words;
        for (const map27::Finding& finding : seen.findings)
            Strike((finding.by == Direction::ToRadio ? "console " : "radio ") + std::string(finding.kind) +
                   (finding.weight == map27::Finding::Weight::Breach ? "!" : ""));
    }

    // What goes on is noted once.
    void Strike(const std::string& kind)
    {
        if (kind != m_lastStruck)
            struck += (struck.empty() ? "" : ", ") + kind;
        m_lastStruck = kind;
    }

    map27::TraceObserver m_observer;
    std::string m_lastStruck;
    map27::TimePoint m_now{};
    std::uint8_t m_numbers[2] = {0, 0};
};

struct Row {
    const char* steps; // with ';' between them
    const char* struck;
    int times = 1; // that the steps are done
};

constexpr auto GoesOn =
    R"(continued "n1":0,"k":1,"version":1,"next_to_radio":9,"next_from_radio":5; said B0 00 00 03 00 00 00 00 B8 00 80 FE; )";

// From a port that was not open. "~" is GoesOn.
constexpr Row SetUpRows[] = {
    {"~ <L 04 05 01 00 80 00 00 02 00 05", ""},
    {"~ <L 04 06 01 00 80 00 00 02 00 05", "radio sequence!"},
    {"~ >L 04 08 01 00 B0 03", ""},
    {"~ <L 04 05 01 00 80 00 00 02 20 11 22 33 44 55 66 77 88 99 00 11 05",
     "radio too-long!, radio extra-octets"},
    {"~ >L 04 09 01 00 80 05 00 02 00 05; <L 02 0A 01 00; <L 04 05 01 00 C0 05 00 02 00 00",
     "radio named-answer!"},
    {"<L 04 06 01 00 80 00 00 02 00 05; ~ <L 04 08 01 00 80 00 00 02 00 05", "radio sequence!"},
    {"opened 9600; >L 01 0E 01 01; <L 02 01 01 00", "radio straight-answer"},
    {"opened 9600; >L 01 0E 01 01; <L 02 01 01 00; >L 01 0E 01 01; <L 02 01 01 00",
     "radio straight-answer, radio straight-answer!"},
    {">L 01 0E 01 01; <L 02 01 01 00", "", 2},
    {"opened 9600; >L 01 0E 01 01; x<L 01 0E 01 01; <L 02 01 01 00; >L 01 0E 01 01; <L 02 01 01 00",
     "radio fcs, radio straight-answer"},
    {"opened 9600; <L 01 0A 01 01; >L 01 0E 01 01; <L 02 01 01 00", "radio unfit-answer!"},
    {"opened 9600; <L 01 0A 01 01; >L 01 0E 01 01; <L 02 01 00 00", "radio unfit-answer, radio no-credit"},
    {"opened 9600; <L 01 0A 01 01; >L 01 0E 01 01; >L 01 0A 01 01; <L 02 01 01 00; >L 02 01 01 00", ""},
    {"opened 9600; <L 01 0A 01 01; >L 01 0E 01 01; >L 02 01 01 00; <L 02 01 01 00", ""},
    {"opened 19200; >L 01 0E 01 01; <L 01 0E 01 01; >L 02 01 01 00; <L 02 01 01 00; <L 04 01 01 00 B2 04 9E "
     "FF; + 100; <L 04 01 01 00 B2 04 9E FF",
     "console unacknowledged"},
    {"opened 9600; >L 01 00 01 01; <L 01 00 01 01; >L 02 01 01 00; <L 02 01 01 00; <L 04 01 01 00 B2 04 9E "
     "FF; + -100; <L 04 01 01 00 B2 04 9E FF",
     "console unacknowledged"},
};

constexpr Row LinkRows[] = {
    {"> B0 03; < B2 04 9E FF", ""},
    {"x<L 02 02 01 00", "radio fcs"},
    {"<L 02 02", "radio short-packet!"},
    {"<L 08 02 01 00", "radio unknown-packet!"},
    {"<L 04 02 01 00", "radio empty-transfer!"},
    {"<L 04 02 03 00 B2 04 9E FF", "radio transfer-header!"},
    {"<L 04 03 01 00 B2 04 9E FF", "radio credit!, radio sequence!"},
    {"<L 04 02 01 00 B2 04 9E FF; <L 04 03 01 00 B2 04 9E FF", "radio credit!"},
    {"<L 04 02 01 00 B2 04 9E FF; + 400; <L 04 02 01 00 B2 04 9E FF", "console unacknowledged"},
    {"<L 04 02 01 00 B2 04 9E FF; + 300; <L 04 02 01 00 B2 04 9E FF", "radio early-repetition!"},
    {"<L 04 02 01 00 B2 04 9E FF; + 400; <L 04 02 01 00 B2 04 9E FE",
     "radio changed-repetition!, console unacknowledged"},
    {"<L 02 02 04 00", "radio credit-beyond!"},
    {">L 02 02 00 00; <L 04 02 01 00 B2 04 9E FF", "console no-credit, radio withdrawn-credit"},
    {">L 02 02 00 00; + 2000; <L 04 02 01 00 B2 04 9E FF", "console no-credit, radio credit!"},
    {">L 04 02 01 00 B0 03; + 400", "radio unacknowledged", 11},
    {">L 04 02 01 00 B0 03; + 400", "radio unacknowledged, console many-repetitions!, radio unacknowledged",
     12},
    {"<L 02 02 01 00; + -100", "", 7},
    {"<L 02 02 01 00; + -100", "radio endless!", 8},
    {"x>L 04 02 01 00 B0 03; <L 02 02 01 00; + -300", "console fcs", 8},
    {"<L 02 04 01 00", "radio acknowledges-ahead!"},
    {"<L 02 01 01 00", "radio acknowledges-back!"},
    {"<L 02 02 00 00", "radio no-credit"},
    {"<L 02 02 01 01", "radio acknowledgement-octets!"},
    {"<L 01 0E 01 01", "radio new-link"},
    {"<L 01 0E 00 80", "radio no-window!, radio version, radio new-link"},
    {"+ 10000; <L 02 02 01 00; + 10000; >L 02 02 01 00; <L 02 02 01 00", "console keep-alive!"},
};

constexpr Row MessageRows[] = {
    {"< C9 00 00", "radio reserved-type!"},
    {"< 20 01", "radio custom-type"},
    {"< B7 31", "radio wrong-direction!"},
    {"< 80 00 00", "radio too-short!"},
    {"< 80 00 00 02 00 28", "radio status!"},
    {"< 80 80 00 02 00 05", "radio unused-bits!"},
    {"< 80 00 00 02 00 05 00 00", "radio extra-octets"},
    {"< 81 00 00 02 00 C7 41", "radio reserved-coding!"},
    {"< 82 00 00 02 00 07 41", "radio coding!"},
    {"< 81 00 00 02 00 B7", "radio empty-text!"},
    {"< 81 00 00 02 00 97 01 02 03 04 05 06 07 08 09 0A", "radio reserved-digit!"},
    {"< 81 00 00 02 00 97 01 02 03 04 05 06 07 08 09 30", "radio unused-bits!"},
    {"< 81 00 00 02 00 B7 41 42 43 44 C5", "radio unused-bits!"},
    {"< 81 00 00 02 00 F7 41 42 43 44 C5", ""},
    {"< 81 00 00 02 00 B7 41 42", "radio codewords"},
    {"< 81 00 00 02 00 B7 41 42 43 44 45", ""},
    {"< 80 00 00 02 31 AA 05", ""},
    {"> 80 00 1F F9 00 05; < B4 02", "console reserved-ident!"},
    {"> B0 7F; < B4 02", "console question!"},
    {"> B2 01; < B4 03", "console hook!"},
    {"< B1 00 00 03 00 47 00 02 1B 58 1B 61", "radio numbering!"},
    {"< B1 00 00 03 00 02 00 47 1B 58 1B 61 00", "radio cut-group!"},
    {"< B1 00 00 00 00 00 00 00 00 00 00 00", "radio own-number!, radio no-fleet"},
    {"< B2 04 9E 00", "radio call-time!"},
    {"< B3 B8 00 00", "radio short-settings"},
    {"< B5 41 55 00 00", "radio network-bits!"},
    {"> 80 00 00 02 00 05; < D0 00 00 02 00 02; < C0 00 00 02 00 00", ""},
    {"> 80 00 00 02 00 05; < E0 00 00 02 00 07", "radio unknown-cause"},
    {"> 80 00 00 02 00 05; < C0 00 00 00 00 00", "radio unnamed-answer!"},
    {"> 80 05 00 02 00 05; < C0 00 00 00 00 00", ""},
    {"> 80 05 00 02 00 05; < C0 05 00 02 00 00", "radio named-answer!"},
    {"< A4 05 00 02 00 20", "radio named-group!"},
    {"< A4 00 00 00 00 20", ""},
    {"< A4 05 00 02 00 00", ""},
    {"> 80 00 00 02 00 05; < C0 00 00 03 00 00", "radio other-answer!"},
    {"< C0 00 00 02 00 00", "radio unasked-answer!"},
    {"> 80 00 00 02 00 05; > 80 00 00 03 00 05", "console second-request!"},
    {"> A4 00 00 02 00 08; < C4 00 00 02 00 00; > 80 00 00 02 00 05; < B4 03", "console second-request!"},
    {"> A4 00 00 02 00 08; > A6 00 00 02 08; < E4 00 00 02 00 08", ""},
    {"< C5 00 00 02 00 00", "radio unasked-answer!"},
    {"> A4 02 10 E1 31 20 08; < C4 00 1F A6 00 00", ""},
    {"> A4 02 10 E1 31 20 08; < C4 00 1F A5 00 00", "radio other-answer!"},
    {"> A4 02 1F B9 00 08; < D4 00 1F A5 00 01; < C4 00 1F B9 00 00", ""},
    {"> A4 02 1F FF 00 28; < C4 00 1F FF 00 00", ""},
    {"> A4 00 00 00 72 12 34 08; < C4 00 00 00 00 00", ""},
    {"< E5 00 00 02 00 07", ""},
    {"> 80 00 00 02 00 05; > B0 04; < B4 02; < C0 00 00 02 00 00", ""},
    {"> 80 00 00 02 00 05; > B0 04; < B4 02; > 80 00 00 02 00 05; < C0 00 00 02 00 00", ""},
    {"> 80 00 00 02 00 05; < B4 06; < B4 80; < C0 00 00 02 00 00", ""},
    {"> 80 00 00 02 00 05; < B4 02; < C0 00 00 02 00 00", "radio unasked-answer!"},
    {"< A4 00 00 02 00 08; > B2 00; < E5 00 00 02 00 03; < E5 00 00 02 00 03", "radio unasked-answer!"},
    {"> 80 00 00 02 00 05; > A6 00 00 02 08; < A6 00 00 02 00; < E0 00 00 02 00 08", "radio unasked-answer"},
    {"< A4 00 00 02 00 00; < C5 00 00 02 00 00", "radio connected-twice"},
    {"< A4 00 00 02 00 08; > B2 02; < C5 00 00 02 00 00; < 86 00 00 02 0B", ""},
};

TEST(TraceObserver, EveryBreachStrikesAndNothingElse)
{
    for (const auto& rows :
         {std::span<const Row>(SetUpRows), std::span<const Row>(LinkRows), std::span<const Row>(MessageRows)})
        for (const Row& row : rows) {
            Wire wire = rows.data() == SetUpRows ? Wire{} : Wire::Ready();
            for (int time = 0; time < row.times; ++time) {
                std::string written = row.steps;
                if (const std::size_t at = written.find('~'); at != std::string::npos)
                    written.replace(at, 1, GoesOn);
                std::stringstream steps(written);
                for (std::string step; std::getline(steps >> std::ws, step, ';');)
                    wire.Do(step);
            }
            EXPECT_EQ(wire.struck, row.struck) << row.steps;
        }
}

TEST(TraceObserver, SaysWhatAFrameDoes)
{
    constexpr std::pair<const char*, const char*> rows[] = {
        {"<L 01 0E 01 01", "LR N1=14 k=1 version 1, asks for a link"},
        {"<L 02 02 01 00", "LA next=2 credit=1, nothing new"},
        {"<L 04 02 01 00 80 02 00 1F 00 05", "LT 2  RECEIVE STATUS from 2/31: 5"},
        {"<L 04 02 01 00 81 02 00 1F 00 B7 48 69 00 00 00",
         "LT 2  RECEIVE SST from 2/31 (7-bit characters): \"Hi\""},
        {"<L 04 02 01 00 81 02 00 1F 00 B7 1B 5B 33 0A 07",
         "LT 2  RECEIVE SST from 2/31 (7-bit characters): \"<1B>[3<0A><07>\""},
        {">L 04 02 01 00 A4 00 1F A5 13 01 22 3F 00", "LT 2  SETUP CALL to PSTN 01223: high priority"},
        {"<L 04 02 01 00 A4 00 10 E1 31 20 28",
         "LT 2  INCOMING CALL from extension 4321 of exchange 2: group, to be answered"},
        {"<L 04 02 01 00 A6 00 00 00 04", "LT 2  CLEARED: no radio contact"},
        {"<L 04 02 01 00 E4 00 00 02 00 0C", "LT 2  SETUP PROGRESS of 0/2: called unit engaged or refuses"},
        {">L 04 02 01 00 B2 03", "LT 2  RADIO CONTROL: off-hook, transmit"},
    };
    for (const auto& [step, words] : rows) {
        Wire wire = Wire::Ready();
        wire.Do(step);
        EXPECT_EQ(wire.words, words);
    }
}

} // namespace
