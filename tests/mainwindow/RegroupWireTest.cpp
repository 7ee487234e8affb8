// Regroup commands from the operator's hand over the wire into the database, for everything that can become
// of them: only what the radio has confirmed is stored and shown as done.

#include "RegroupStack.h"
#include "radio/base/TextIds.h"

#include <QAbstractButton>

namespace {

using Stack = RegroupStack;

// Whom a command is about: a radio, its group, and what that group's call address is known by.
struct Subject {
    const char* member;
    const char* group;
    const char* other; // in the same group
};

struct Command {
    const char* name;
    void (*run)(Stack&, const Subject&);
    void (*apply)(Stack&, const Subject&, QStringList& rows); // what it makes of the rows
};

const Command Commands[] = {
    {"regroup",
     [](Stack& s, const Subject& who) {
         s.Select(s.MemberKey(who.group, who.member));
         s.Trigger("miRegroup");
     },
     [](Stack& s, const Subject& who, QStringList& rows) {
         rows.append(s.MemberKey("Charlie", who.member, 4));
     }},
    {"move",
     [](Stack& s, const Subject& who) { s.Drag(s.MemberKey(who.group, who.member), s.GroupKey("Delta")); },
     [](Stack& s, const Subject& who, QStringList& rows) {
         rows.removeOne(s.MemberKey(who.group, who.member));
         rows.append(s.MemberKey("Delta", who.member));
     }},
    {"ungroup group",
     [](Stack& s, const Subject& who) {
         s.Select(s.GroupKey(who.group));
         s.Trigger("miUngroup");
     },
     [](Stack& s, const Subject& who, QStringList& rows) {
         rows.removeOne(s.MemberKey(who.group, who.member));
         rows.removeOne(s.MemberKey(who.group, who.other));
     }},
    {"ungroup member",
     [](Stack& s, const Subject& who) {
         s.Select(s.MemberKey(who.group, who.member));
         s.Trigger("miUngroup");
     },
     [](Stack& s, const Subject& who, QStringList& rows) {
         rows.removeOne(s.MemberKey(who.group, who.member));
     }},
};

struct End {
    const char* name;
    const char* behaviour; // of the radios meanwhile
    void (*happen)(Stack&);
    bool stored;
};

const End Ends[] = {
    {"delivered", "answers", [](Stack&) {}, true},
    {"failed", "rejects", [](Stack& s) { s.prompt.ExpectWarning(s.Text(RadioText::RegroupingFailed)); },
     false},
    {"cleared", "silent",
     [](Stack& s) {
         s.radio.Perform(sim::ContactAction{.inContact = false});
         s.Run(500);
         s.radio.Perform(sim::ContactAction{.inContact = true});
     },
     false},
    {"Cancel", "silent", [](Stack& s) { s.Click("cmdAnswerHungup"); }, false},
    {"Close", "silent", [](Stack& s) { s.Click("cmdClose"); }, false},
    {"reset by the operator", "silent",
     [](Stack& s) {
         s.Find<QAbstractButton>("tbMain_disconnect").click();
         s.Run(500);
     },
     false},
    {"link lost", "silent",
     [](Stack& s) {
         s.radio.Unplug();
         s.Run(3000);
         s.radio.plugged = true;
     },
     false},
    {"incoming call", "silent",
     [](Stack& s) {
         s.radio.Perform(sim::CallAction{.from = s.AddressOf(9)});
         s.Run(500);
         EXPECT_EQ(s.executive.TransactionKind(), TransactionKind::CallRinging);
         s.radio.Perform(sim::HangUpAction{});
     },
     false},
};

void Behave(Stack& s, const char* behaviour)
{
    for (const char* who : {"Unit20", "Unit25", "Group91", "Group92"}) {
        s.radio.Perform(sim::BehaveAction{
            .who = who, .service = {}, .reaction = sim::Reaction::Of(*sim::BehaviourOfWord(behaviour))});
    }
}

void ExpectRows(Stack& s, QStringList expected)
{
    expected.sort();
    EXPECT_EQ(s.Rows(), expected);
    EXPECT_EQ(s.Shown(), expected) << "the tree shows what the database has";
    EXPECT_FALSE(
        s.Shown(TalkgroupModel::PictureRole).contains(QLatin1String(TalkgroupModel::PendingPicture)));
}

// One sign in the tree, and no reload takes it away.
void ExpectOutcome(Stack& s, Outcome outcome)
{
    for (int reload = 0; reload < 2; ++reload) {
        QStringList signs = s.Shown(OutcomeRole);
        signs.removeAll(QString::number(static_cast<int>(Outcome::None)));
        EXPECT_EQ(signs, QStringList(QString::number(static_cast<int>(outcome)))) << "reload " << reload;
        s.Find<QAbstractButton>("tbMain_refresh").click();
    }
}

class RegroupOverTheWire : public testing::TestWithParam<End> {};

TEST_P(RegroupOverTheWire, IsStoredOnlyWhenConfirmedAndSoIsTheNext)
{
    const End& end = GetParam();
    const Subject first{"Unit20", "Alpha", "Unit22"};
    const Subject second{"Unit25", "Bravo", "Unit27"};
    Stack stack;
    for (const Command& command : Commands) {
        for (const Command& next : Commands) {
            SCOPED_TRACE(std::string(command.name) + ", then " + next.name);
            stack.FillRows();
            stack.Find<QAbstractButton>("tbMain_refresh").click();
            QStringList rows = stack.Rows();
            ASSERT_EQ(rows.size(), 4);

            Behave(stack, end.behaviour);
            command.run(stack, first);
            ASSERT_EQ(stack.executive.TransactionKind(), TransactionKind::Regroup);
            ASSERT_EQ(stack.Rows(), rows) << "nothing is stored before the radio has answered";
            stack.Run(100);
            end.happen(stack);
            ASSERT_TRUE(stack.RunToEnd());
            ASSERT_TRUE(
                stack.RunUntil([&] { return stack.executive.Link().state == LinkStatus::State::Ready; }));
            stack.prompt.Finish();
            if (end.stored)
                command.apply(stack, first, rows);
            ExpectRows(stack, rows);
            ExpectOutcome(stack, end.stored ? Outcome::Done : Outcome::NotDone);

            Behave(stack, "answers");
            stack.Run(2500); // what was cancelled is waited for no longer
            next.run(stack, second);
            ASSERT_TRUE(stack.RunToEnd());
            next.apply(stack, second, rows);
            ExpectRows(stack, rows);
            ExpectOutcome(stack, Outcome::Done);
            EXPECT_TRUE(stack.session.Database().OpenSnapshot("regroup_request")->Eof());
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

std::string NameOf(const testing::TestParamInfo<End>& info)
{
    std::string name;
    for (const char* c = info.param.name; *c != '\0'; ++c) {
        if (*c != ' ')
            name += *c;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Ends, RegroupOverTheWire, testing::ValuesIn(Ends), NameOf);

} // namespace
