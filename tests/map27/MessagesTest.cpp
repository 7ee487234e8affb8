#include "map27/codec/Messages.h"
#include "map27/Describe.h"
#include "map27/Script.h"
#include "map27/Vectors.h"
#include "map27/codec/Causes.h"
#include "map27/link/Framing.h"
#include "support/Table.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>

using namespace map27;

namespace {

// {"a":{"b":1},"c":[2]} as a.b=1, c.0=2.
void Flatten(const QString& name, const QVariant& value, Fields& fields)
{
    const QString before = name.isEmpty() ? name : name + '.';
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap members = value.toMap();
        for (auto member = members.begin(); member != members.end(); ++member)
            Flatten(before + member.key(), member.value(), fields);
    } else if (value.typeId() == QMetaType::QVariantList) {
        const QVariantList items = value.toList();
        for (qsizetype index = 0; index < items.size(); ++index)
            Flatten(before + QString::number(index), items[index], fields);
    } else {
        fields[name.toStdString()] = value.isNull() ? "null" : value.toString().toStdString();
    }
}

// Both directions through one door: the fields, or the error; and the octets again.
struct Seen {
    Fields fields;
    std::string error;
    Octets again;
};

Seen Decode(bool toRadio, const Octets& octets)
{
    Seen seen;
    const auto take = [&seen](const auto& result, auto encode) {
        if (const auto* error = std::get_if<DecodeError>(&result)) {
            seen.error = DecodeErrorText(*error);
            return;
        }
        seen.fields = Describe(std::get<0>(result));
        seen.again = encode(std::get<0>(result));
    };
    if (toRadio)
        take(DecodeToRadio(octets), EncodeToRadio);
    else
        take(DecodeFromRadio(octets), EncodeFromRadio);
    return seen;
}

bool IsToRadio(const QJsonValue& vector)
{
    return Text(vector, "direction") == "D->R";
}

} // namespace

TEST(Messages, GoldenVectors)
{
    // What is words, or follows from the octets in another field.
    const std::set<std::string> wordsOnly{"name",       "typeHex",    "direction", "type",
                                          "ext.length", "codingName", "causeText", "reasonText"};
    EXPECT_EQ(Vectors("messages").size(), 65);
    for (const QJsonValue& vector : Vectors("messages")) {
        const std::string id = Text(vector, "id");
        const Octets octets = FromHex(Text(vector, "message"));
        Seen seen = Decode(IsToRadio(vector), octets);
        EXPECT_EQ(seen.error, "") << id;
        EXPECT_EQ(ToHex(seen.again), Text(vector, "message")) << id;
        Fields expected;
        Flatten({}, vector["decoded"].toVariant(), expected);
        EXPECT_GT(expected.size(), 4u) << id;
        for (const auto& [name, value] : expected) {
            if (wordsOnly.count(name) == 0) {
                EXPECT_EQ(seen.fields[name], value) << id << ' ' << name;
            }
        }
        Octets body{0x04, 0x01, 0x01, 0x00};
        body.insert(body.end(), octets.begin(), octets.end());
        EXPECT_EQ(ToHex(EncodeFrame(body)), Text(vector, "frame_LT_ns1_ar1")) << id;
        const auto direction = IsToRadio(vector) ? Direction::ToRadio : Direction::FromRadio;
        EXPECT_EQ(TypeName(octets[0], direction), Text(vector["decoded"], "name")) << id;
    }
}

TEST(Messages, CutShortIsAnErrorAndExtraOctetsAreIgnored)
{
    // Types whose end is free: what follows belongs to them.
    const std::set<std::uint8_t> freeEnd{Type::Sst, Type::Mst, Type::Numbering, Type::DialledString,
                                         Type::DiversionRequest};
    for (const QJsonValue& vector : Vectors("messages")) {
        const Octets octets = FromHex(Text(vector, "message"));
        const bool toRadio = IsToRadio(vector);
        const std::string what = Text(vector, "id") + ' ' + Text(vector, "message");
        if (freeEnd.count(octets[0]) == 0) {
            Octets longer = octets;
            longer.insert(longer.end(), {0x00, 0xFF, 0x12});
            EXPECT_EQ(Decode(toRadio, longer).again, octets) << what;
            // Settings had an octet less before version 1.5.
            const std::size_t cut = octets[0] == Type::Settings ? 2 : 1;
            EXPECT_EQ(Decode(toRadio, Octets(octets.begin(), octets.end() - cut)).error, "message too short")
                << what;
        }
        for (std::size_t length = 0; length < 2; ++length)
            EXPECT_EQ(Decode(toRadio, Octets(octets.begin(), octets.begin() + length)).error,
                      "message too short")
                << what;
    }
}

// Direction, octets, error, and what is wrong with them.
TEST(Messages, Refusals)
{
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Refusals", 17))
        EXPECT_EQ(Decode(row.at(0) == "to radio", FromHex(row.at(1))).error, row.at(2)) << row.at(3);
}

// Direction, octets, field, value, and whether encoding restores the octets.
TEST(Messages, FieldsBesideTheGoldenOnes)
{
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Fields", 18)) {
        Seen seen = Decode(row.at(0) == "to radio", FromHex(row.at(1)));
        EXPECT_EQ(seen.fields[row.at(2)], row.at(3)) << row.at(1) << ' ' << row.at(2);
        EXPECT_EQ(ToHex(seen.again) == row.at(1), row.at(4) == "same")
            << row.at(1) << " -> " << ToHex(seen.again);
    }
}

// Anything at all decodes to an error or to a message that survives encoding.
TEST(Messages, NoiseDoesNoHarm)
{
    std::mt19937 random(1327);
    int understood = 0;
    for (int count = 0; count < 40000; ++count) {
        Octets octets(random() % 30);
        for (auto& octet : octets)
            octet = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : random() & 0x1F);
        if (!octets.empty() && count % 2 == 0)
            octets[0] = static_cast<std::uint8_t>(0x80 | random());
        const bool toRadio = random() % 2 == 0;
        const Seen seen = Decode(toRadio, octets);
        if (!seen.error.empty())
            continue;
        ++understood;
        const Seen again = Decode(toRadio, seen.again);
        ASSERT_EQ(again.error, "") << ToHex(octets);
        ASSERT_EQ(again.fields, seen.fields) << ToHex(octets);
        ASSERT_EQ(again.again, seen.again) << ToHex(octets);
    }
    EXPECT_GT(understood, 3000);
}

TEST(Messages, WhatNoOctetsCanCarryIsNotEncoded)
{
    const Party gateway{{0, Ident::Pstn},
                        {.kind = DescriptionKind::Digits, .unit = {}, .digits = "12a", .raw = {}}};
    Party tooLong = gateway;
    tooLong.description.digits = std::string(25, '1');
    Party tooMany{{2, 31}, {.kind = DescriptionKind::Custom, .unit = {}, .digits = {}, .raw = Octets(16)}};
    for (const Party& party : {Party{{128, 31}, {}}, Party{{2, 8192}, {}}, gateway, tooLong, tooMany})
        EXPECT_THROW(EncodeToRadio(StatusMessage{party, 1}), std::invalid_argument) << ToText(party.address);
    EXPECT_THROW(EncodeFromRadio(NetworkInfoMessage{1024, 0, 0}), std::invalid_argument);
}

TEST(Address, SendableIdents)
{
    const std::pair<Address, bool> cases[] = {
        {{2, 0}, false},    {{0, 1}, true},     {{2, 8100}, true},  {{0, 8101}, true}, {{0, 8102}, true},
        {{2, 8103}, false}, {{2, 8120}, false}, {{2, 8121}, true},  {{2, 8180}, true}, {{2, 8181}, false},
        {{2, 8190}, false}, {{2, 8191}, true},  {{2, 8192}, false}, {{127, 31}, true}, {{128, 31}, false},
    };
    for (const auto& [address, sendable] : cases)
        EXPECT_EQ(IsSendable(address), sendable) << ToText(address);
}

TEST(Causes, InWords)
{
    EXPECT_EQ(CauseText(0xE0, 0x0C), "called unit engaged or refuses");
    EXPECT_EQ(CauseText(0xA6, 0x04), "no radio contact");
    EXPECT_EQ(CauseText(0xA6, 0x08, Direction::ToRadio), "cancel message or call set-up");
    EXPECT_EQ(CauseText(0xE4, 0x55), "failed, cause 55h");
    EXPECT_EQ(CauseText(0xB4, 0x80), "unknown, cause 80h");
    EXPECT_EQ(TypeName(0x87, Direction::FromRadio), "type 87h");
}
