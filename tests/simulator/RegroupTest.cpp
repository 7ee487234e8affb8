#include "Bench.h"

using map27::Milliseconds;

namespace {

constexpr std::uint16_t unit20 = 2;
constexpr std::uint16_t group91 = 7001;

struct Order {
    std::uint16_t to; // ident, prefix 0
    const char* command;
    int outcome; // 192 or 224, within 9 s
};

std::string Groups(TerminalBench& bench, const char* name)
{
    return bench.Execute(std::string("groups ") + name);
}

} // namespace

// The tour's radios: Unit20 obeys, Unit23 refuses, Unit24 is out of reach, Unit26 is slow.
TEST(Regroup, RadiosRememberWhatTheyWereTold)
{
    TerminalBench bench;
    const Order orders[] = {
        {unit20, "56 4B 01 01 03 00 1B 59", 192},       // position 3: Group91
        {unit20, "56 4B 01 01 10 05 00 09", 192},       // position 16: a group of another prefix
        {unit20, "56 4B 01 02 03 48 81 66 65 6E", 192}, // name "Hüfen"
        {5, "56 4B 01 01 03 00 1B 59", 224},            // refused
        {6, "56 4B 01 01 03 00 1B 59", 224},            // out of reach
        {8, "56 4B 01 01 03 00 1B 59", 192},            // late
        {9, "56 4B 01 01 04 00 1B 59", 192},            // the same group at another position
        {group91, "56 4B 01 02 03 4E 6F 72 64", 192},   // all that hold Group91 at 3: "Nord"
        {unit20, "56 4B 02 01 05 00 1B 59", 192},       // delivered, but not understood: version,
        {unit20, "56 4B 01 03 05 00 1B 59", 192},       // operation,
        {unit20, "56 4B 01 01 11 00 1B 59", 192},       // position,
        {unit20, "56 4B 01 01 05 00 1B", 192},          // length
    };
    for (const Order& order : orders) {
        bench.Forget();
        const map27::Octets octets = RawBench::ToOctets(order.command);
        bench.Deliver(bench.console.SendBinary({0, order.to}, octets, bench.now).output);
        bench.RunFor(Milliseconds(9000));
        const auto progress = bench.Events<map27::MessageProgress>();
        ASSERT_FALSE(progress.empty()) << order.command;
        EXPECT_EQ(progress.back().code, order.outcome) << order.to << ' ' << order.command;
    }
    EXPECT_EQ(Groups(bench, "Unit20"), "ok 3: Group91 (0/7001) \"Nord\"; 16: 5/9");
    EXPECT_EQ(Groups(bench, "Unit23"), "ok");
    EXPECT_EQ(Groups(bench, "Unit24"), "ok");
    EXPECT_EQ(Groups(bench, "Unit26"), "ok 3: Group91 (0/7001) \"Nord\"");
    EXPECT_EQ(Groups(bench, "Unit27"), "ok 4: Group91 (0/7001)");

    // The whole group is dissolved at one position, the other stays.
    bench.Deliver(
        bench.console.SendBinary({0, group91}, RawBench::ToOctets("56 4B 01 01 03 00 00 00"), bench.now)
            .output);
    bench.RunFor(Milliseconds(9000));
    EXPECT_EQ(Groups(bench, "Unit20"), "ok 16: 5/9");
    EXPECT_EQ(Groups(bench, "Unit26"), "ok");
    EXPECT_EQ(Groups(bench, "Unit27"), "ok 4: Group91 (0/7001)");
}

TEST(Regroup, AnUnfinishedOrCancelledCommandChangesNothing)
{
    TerminalBench bench;
    const map27::Octets order = RawBench::ToOctets("56 4B 01 01 03 00 1B 59");
    bench.Execute("behave Unit20 regroup slow");
    bench.Deliver(bench.console.SendStatus({0, unit20}, 1, bench.now).output);
    bench.RunFor(Milliseconds(1000));
    EXPECT_EQ(bench.Events<map27::MessageProgress>().back().code, 192); // only regrouping is slow

    bench.Deliver(bench.console.SendBinary({0, unit20}, order, bench.now).output);
    bench.RunFor(Milliseconds(7000));
    bench.Deliver(bench.console.CancelTransaction(bench.now));
    bench.RunFor(Milliseconds(7000));
    EXPECT_EQ(Groups(bench, "Unit20"), "ok");
}
