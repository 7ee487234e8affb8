// What the radio brings over the real wire is shown without asking the database.

#include "RegroupStack.h"
#include "core/session/Registry.h"
#include "core/texts/TextIds.h"

#include <QTreeView>

namespace {

constexpr int Spare = 40;
constexpr int Unit27 = 9;

// The console stores records and duties through the session as well. Each of these uses it once, whatever
// becomes of it; anything beyond is a question.
TEST(FromMemory, NothingThatTheRadioBringsAsksTheDatabase)
{
    RegroupStack stack;
    QStringList shown;
    const auto& log = *stack.Find<QTreeView>("lvLog").model();
    QObject::connect(&log, &QAbstractItemModel::rowsInserted, [&](const QModelIndex&, int first, int last) {
        for (int row = first; row <= last; ++row)
            shown += log.index(row, 0).data(Qt::DisplayRole).toString();
    });
    int uses = 0;
    stack.session.onUse = [&] {
        ++uses;
        throw Error(ErrorCode::General, "away");
    };
    const auto bring = [&](const sim::Action& action) {
        uses = 0;
        stack.radio.Perform(action);
        stack.Run(1000);
        return uses;
    };
    stack.prompt.ExpectWarning("away " + stack.Text(CoreText::RecordsKept)); // a record could not be stored
    const map27::Address unit = stack.AddressOf(Unit27);
    EXPECT_LE(bring(sim::StatusAction{unit, 5}), 1);
    EXPECT_LE(bring(sim::StatusAction{unit, 1}), 2); // on duty
    EXPECT_LE(bring(sim::StatusAction{unit, 2}), 2);
    EXPECT_LE(bring(sim::TextAction{unit, map27::TextCoding::SevenBit, "hello"}), 1);
    EXPECT_LE(bring(sim::CallAction{unit, sim::CallScope::Individual, true}), 1);
    EXPECT_EQ(shown.filter("Unit27").size(), 5) << shown.join(" | ").toStdString();
    stack.session.onUse = nullptr;
}

// Duties show in the list as they come, and a new name of the own radio in the groups, both from memory.
TEST(FromMemory, ListsAreDrawnFromWhatWasRead)
{
    RegroupStack stack;
    stack.window->SelectTab(MainTabs::Tab::Individuals);
    auto& list = *stack.Find<QTreeView>("lvIndividuals").model();
    const auto callsigns = [&] {
        QStringList texts;
        for (int row = 0; row < list.rowCount(); ++row)
            texts += list.index(row, 0).data().toString();
        return texts.join(' ');
    };
    EXPECT_EQ(callsigns(), "Dispatch");
    int uses = 0;
    stack.session.onUse = [&] { ++uses; };
    stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 1});
    stack.Run(1000);
    EXPECT_EQ(callsigns(), "Dispatch Unit27");
    EXPECT_LE(uses, 2); // the record and the duty
    // The radio gets the number of an entry that is regrouped, and another radio has been regrouped unseen.
    stack.ConsoleStack::AddRow("address", {{"callsign", "Spare"}, {"IDENT", "200200158"}, {"Type", 1}});
    const QStringList members = stack.Shown() << stack.MemberKey("Charlie", "Unit20", 4);
    stack.AddRow("Charlie", "Unit20", 4);
    stack.AddRow("Charlie", "Spare", 4);
    stack.Run(10);
    uses = 0;
    stack.radio.Perform(sim::NumberingAction{stack.AddressOf(Spare), {}, {}});
    EXPECT_TRUE(stack.RunUntil([&] { return stack.executive.MyCallsign() == QLatin1String("Spare"); }));
    stack.Run(1000);
    EXPECT_EQ(callsigns(), "Spare Unit27");
    EXPECT_LE(uses, 2); // the duties of both
    for (const QString& key : members)
        EXPECT_TRUE(stack.Shown().contains(key)) << key.toStdString();
    EXPECT_EQ(stack.Shown().size(), members.size());
}

} // namespace
