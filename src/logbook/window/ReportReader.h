#pragma once

#include "core/base/Lane.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>

struct IDbSession;
struct IStringSource;
namespace dao {
class Database;
} // namespace dao

// Reads something long beside the window's thread, with a session of its own, one thing at a time. On the
// window's thread.
class ReportReader : public QObject {
    Q_OBJECT

public:
    // Reads, asks `goOn` now and then whether it is still wanted, and returns what shows it.
    using Job = std::function<Lane::Answer(dao::Database& database, const std::function<bool()>& goOn)>;

    // Both outlive it.
    ReportReader(IDbSession& session, const IStringSource& strings);
    ~ReportReader() override;

    // Gives up what it reads now. Failed tells what is raised, also when nobody is logged on.
    void Read(const Job& job);
    void End();
    bool IsReading() const { return m_isReading; }

Q_SIGNALS:
    void Failed(const QString& text);

private:
    void Fail(const std::exception_ptr& failure);

    IDbSession& m_session;
    const IStringSource& m_strings;
    std::shared_ptr<std::atomic<int>> m_turn;
    std::unique_ptr<Lane> m_lane;
    bool m_isReading = false;
};
