#include "dao/tables/EventIndex.h"
#include "DaoFixture.h"
#include "dao/Maintenance.h"

using namespace dao;

class EventIndexTest : public DaoTest {
protected:
    // One a minute, each with its number in its text; every hundredth is a status, every tenth has "Feuer".
    void AddEvents(int count)
    {
        const QStringList fields{"time_stamp", "event_type", "desc", "from_address", "from_number"};
        std::vector<QVariantList> rows;
        for (int i = 0; i < count; ++i) {
            ++m_last;
            const bool status = m_last % 100 == 0;
            const QString text =
                QStringLiteral("message %1%2").arg(m_last).arg(m_last % 10 == 0 ? ", FEUER!" : "");
            rows.push_back({m_now.addSecs(60 * m_last), status ? 1 : 2, status ? QString("5") : text,
                            m_last == 700 ? "Löschzug 9" : "Unit20", "2020"});
        }
        Db().Append("event", fields, rows);
    }
    // On a server it is known by the next look that no record is on its way any more.
    void Index(int most)
    {
        EventIndex::Extend(Db(), most);
        EventIndex::Extend(Db(), most);
    }
    std::vector<qlonglong> Find(const QString& words,
                                EventIndex::Order order = EventIndex::Order::NewestFirst,
                                qlonglong bound = 1000)
    {
        return EventIndex::Blocks(Db(), {words, {}, {}}, order, bound, 100);
    }

    int m_last = 0;
};

TEST_F(EventIndexTest, KnowsTheWordsOfWholeBlocks)
{
    using Blocks = std::vector<qlonglong>;
    EXPECT_EQ(EventIndex::StateOf(Db()).newest, 0);
    Index(1024);
    AddEvents(1000);
    EXPECT_EQ(EventIndex::StateOf(Db()).next, 0);
    Index(128);
    const qlonglong some = EventIndex::StateOf(Db()).next;
    EXPECT_GE(some, 128);
    EXPECT_LE(some, 256);
    Index(100000);
    // Those of the last block are not all there.
    EXPECT_EQ(EventIndex::StateOf(Db()).next, 896);
    EXPECT_EQ(EventIndex::StateOf(Db()).newest, 1000);
    struct Case {
        const char* words;
        Blocks blocks;
    };
    const Case cases[] = {
        {"\"777\"", {6}},
        {"\"77\"*", {6, 0}}, // 770 to 779, and 77
        {"\"nobody\"", {}},
        {"\"loschzug\"", {}},
        {"\"lösch\"* AND \"9\"", {5}},
        {"\"777\" OR \"3\"", {6, 0}},
        {"\"777\" AND (\"3\" OR \"feuer\"*)", {6}},
        {"\"5\"", {0}}, // the text, not the status
        {"\"\uE0015\"", {6, 5, 4, 3, 2, 1, 0}},
        {"\"\uE0021\" AND \"2020\"", {6, 5, 4, 3, 2, 1, 0}},
        {"\"\uE0023\"", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Find(QString::fromUtf8(c.words)), c.blocks) << c.words;
    EXPECT_EQ(Find("\"feuer\"", EventIndex::Order::OldestFirst, 3), Blocks({4, 5, 6}));
    EXPECT_EQ(Find("\"feuer\"", EventIndex::Order::NewestFirst, 3), Blocks({2, 1, 0}));
    const auto between = [&](const QString& words) {
        return EventIndex::Blocks(Db(), {words, m_now.addSecs(60 * 256), m_now.addSecs(60 * 384)},
                                  EventIndex::Order::NewestFirst, 1000, 100);
    };
    EXPECT_EQ(between({}), Blocks({2}));
    EXPECT_EQ(between("\"feuer\""), Blocks({2}));
    EXPECT_EQ(EventIndex::FirstSince(Db(), m_now.addSecs(60 * 300 - 1)), 300);
    EXPECT_EQ(EventIndex::FirstSince(Db(), m_now.addYears(1)), std::nullopt);

    AddEvents(300);
    Index(100000);
    Index(100000);
    EXPECT_EQ(EventIndex::StateOf(Db()).next, 1280);
    EXPECT_EQ(Find("\"1279\""), Blocks({9}));
    const auto records = EventIndex::Read(Db(), 700, 701);
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].desc, "5");
    EXPECT_EQ(records[1].time, m_now.addSecs(60 * 701));
    EXPECT_EQ(records[1].fromNumber, "2020");
    EXPECT_TRUE(CheckDatabase(m_location).empty());

    // Whoever may log on may look and index.
    AddOperator();
    m_workspace = Open("Olga", "pw");
    AddEvents(200);
    Index(100000);
    Index(100000);
    EXPECT_EQ(Find("\"1500\"").size(), 0); // a status
    EXPECT_EQ(Find("\"1401\""), Blocks({10}));
}

// A record that gets its number early and arrives late is not left out of the index.
TEST_F(EventIndexTest, ServerIndexWaitsForRecordsOnTheirWay)
{
    if (!OnServer())
        GTEST_SKIP() << "needs a server";
    AddEvents(100);
    const auto other = Open();
    other->BeginTrans();
    other->Database().Append("event", {"time_stamp", "event_type", "desc"},
                             {{m_now, 2, "late one"}, {m_now, 2, "late two"}});
    AddEvents(100);
    for (int i = 0; i < 3; ++i)
        Index(100000);
    EXPECT_EQ(EventIndex::StateOf(Db()).next, 0);
    other->CommitTrans();
    for (int i = 0; i < 3; ++i)
        Index(100000);
    EXPECT_EQ(EventIndex::StateOf(Db()).next, 128);
    EXPECT_EQ(Find("\"late\"").size(), 1);
}
