#pragma once

#include "core/base/Lane.h"
#include "logbook/query/LogSearch.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

class LogbookModel;
struct IDbSession;
struct IStringSource;

// Fills the model from the database beside the window's thread, with a session of its own: what matches the
// filter, the newest first, more when it is asked for, and what comes while it follows. A search that is
// given up for another one ends after its present read. On the window's thread.
class LogbookFeed : public QObject {
    Q_OBJECT

public:
    // All outlive it.
    LogbookFeed(IDbSession& session, const IStringSource& strings, LogbookModel& model);
    ~LogbookFeed() override;

    // Shows the newest records of the filter. `own`: the names of our radio.
    void Show(const LogFilter& filter, const QStringList& own);
    // Shows those around a time. Ends following.
    void GoTo(const QDateTime& time);
    void ShowOlder();
    void ShowNewer();
    // New records are shown as they come, or not.
    void Follow(bool on);
    bool IsFollowing() const { return m_following; }
    // Forgets all; does nothing more until Show.
    void End();

    // What the lines were found with.
    const LogFilter& Filter() const { return m_filter; }
    const LogFacts& Facts() const { return m_facts; }
    bool IsSearching() const { return m_searching; }
    // Nothing older matches.
    bool IsComplete() const { return m_isComplete; }
    // How far back it has looked; invalid before the first line.
    QDateTime LookedBackTo() const { return m_lookedBackTo; }

Q_SIGNALS:
    void StateChanged();
    // Lines have come to stand above those that were there.
    void AddedAbove(int lines);
    // The lines around the time are there; this is the row of the first record since then. -1: there is none,
    // and the newest are shown.
    void WentTo(int row);
    void Failed(const QString& text);

private:
    struct Reader;

    void Restart();
    void Ask(LogSearch::Order order, qlonglong bound, int most);
    void TakeOlder(const LogSearch::Page& page);
    void TakeNewer(const LogSearch::Page& page);
    void Do(const std::function<Lane::Answer(Reader&, int)>& job);
    void Fail(const std::exception& failure);

    IDbSession& m_session;
    const IStringSource& m_strings;
    LogbookModel& m_model;
    LogFilter m_filter;
    LogFacts m_facts;
    std::shared_ptr<const LogSearch> m_search;
    std::shared_ptr<Reader> m_reader; // used on the lane
    std::unique_ptr<Lane> m_lane;
    std::shared_ptr<std::atomic<int>> m_turn; // each search is one
    qlonglong m_olderBound = 0;
    qlonglong m_newerBound = 0;
    int m_wanted = 0; // more lines at the end
    bool m_searching = false;
    bool m_following = false;
    bool m_looking = false; // for newer ones
    bool m_isComplete = false;
    QDateTime m_lookedBackTo;
    QTimer m_look;
};
