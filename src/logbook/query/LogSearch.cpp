#include "logbook/query/LogSearch.h"

#include <algorithm>
#include <deque>

namespace {

constexpr qlonglong BlockSize = dao::EventIndex::BlockSize;
constexpr qlonglong RecordsAtOnce =
    8 * BlockSize; // of those that are not indexed, or in blocks one after the other
constexpr int BlocksAtOnce = 256;

} // namespace

struct LogSearch::Walk {
    dao::Database& database;
    Order order;
    dao::EventIndex::State state;
    std::size_t most;
    Page page;
    std::deque<qlonglong> blocks{}; // the next ones
    bool allBlocks = false;         // there are no more after these
};

LogSearch::LogSearch(const LogFilter& filter, const LogFacts& facts)
    : m_facts(facts),
      m_match(filter, m_facts),
      m_wanted(m_match.Wanted())
{
}

LogSearch::Page LogSearch::Next(dao::Database& database, Order order, qlonglong bound, int most,
                                const std::function<bool()>& goOn) const
{
    Walk walk{.database = database,
              .order = order,
              .state = dao::EventIndex::StateOf(database),
              .most = static_cast<std::size_t>(most),
              .page = {}};
    Page& page = walk.page;
    page.newest = walk.state.newest;
    page.bound =
        order == Order::NewestFirst ? std::min(bound, page.newest + 1) : std::max<qlonglong>(bound, -1);
    while (page.records.size() < walk.most) {
        if (!(order == Order::NewestFirst ? ReadOlder(walk) : ReadNewer(walk))) {
            page.isLast = true;
            break;
        }
        if (goOn && !goOn())
            break;
    }
    if (page.records.size() > walk.most)
        page.records.resize(walk.most);
    if (!page.isLast && page.records.size() == walk.most)
        page.bound = page.records.back().id;
    return page;
}

// What matches of these, which are all that may match up to the new bound.
void LogSearch::Take(Walk& walk, qlonglong first, qlonglong last) const
{
    const bool newest = walk.order == Order::NewestFirst;
    std::vector<dao::EventRecord> records = dao::EventIndex::Read(walk.database, first, last);
    if (newest)
        std::reverse(records.begin(), records.end());
    for (dao::EventRecord& record : records)
        if (m_match.Matches(record))
            walk.page.records.push_back(std::move(record));
    walk.page.bound = newest ? first : last;
}

// False when there is nothing before the bound.
bool LogSearch::ReadOlder(Walk& walk) const
{
    const qlonglong bound = walk.page.bound;
    if (bound > walk.state.next) {
        Take(walk, std::max(walk.state.next, bound - RecordsAtOnce), bound - 1);
        return true;
    }
    if (walk.blocks.empty() && !walk.allBlocks) {
        const auto blocks = dao::EventIndex::Blocks(walk.database, m_wanted, walk.order,
                                                    (bound + BlockSize - 1) / BlockSize, BlocksAtOnce);
        walk.blocks.assign(blocks.begin(), blocks.end());
        walk.allBlocks = blocks.size() < BlocksAtOnce;
    }
    if (walk.blocks.empty())
        return false;
    const qlonglong last = std::min(walk.blocks.front() * BlockSize + BlockSize, bound) - 1;
    qlonglong block = walk.blocks.front();
    walk.blocks.pop_front();
    while (!walk.blocks.empty() && walk.blocks.front() == block - 1 &&
           last - block * BlockSize < RecordsAtOnce) {
        block = walk.blocks.front();
        walk.blocks.pop_front();
    }
    Take(walk, block * BlockSize, last);
    return true;
}

// False when there is nothing after the bound.
bool LogSearch::ReadNewer(Walk& walk) const
{
    const qlonglong bound = walk.page.bound;
    if (bound + 1 < walk.state.next) {
        if (walk.blocks.empty() && !walk.allBlocks) {
            const auto blocks = dao::EventIndex::Blocks(walk.database, m_wanted, walk.order,
                                                        (bound + 1) / BlockSize - 1, BlocksAtOnce);
            walk.blocks.assign(blocks.begin(), blocks.end());
            walk.allBlocks = blocks.size() < BlocksAtOnce;
        }
        if (!walk.blocks.empty()) {
            const qlonglong block = walk.blocks.front();
            walk.blocks.pop_front();
            Take(walk, std::max(block * BlockSize, bound + 1), block * BlockSize + BlockSize - 1);
            return true;
        }
        walk.page.bound = walk.state.next - 1;
    }
    if (walk.page.bound >= walk.state.newest)
        return false;
    Take(walk, walk.page.bound + 1, std::min(walk.page.bound + RecordsAtOnce, walk.state.newest));
    return true;
}
