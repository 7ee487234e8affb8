#pragma once

#include "core/base/Lane.h"

#include <QObject>
#include <QTimer>
#include <memory>

struct IDbSession;
namespace dao {
class Workspace;
} // namespace dao

// Has the log indexed behind the records while somebody is logged on: a little at a time, with a database
// session and a thread of its own, so that neither windows nor records wait for it. All consoles of a
// database may do so; what one has indexed the others find done. On the window's thread.
class LogIndexer : public QObject {
    Q_OBJECT

public:
    // Outlived by the session.
    explicit LogIndexer(IDbSession& session);
    ~LogIndexer() override;

private:
    struct Reader;

    void Begin();
    void End();
    void Look();

    IDbSession& m_session;
    std::shared_ptr<Reader> m_reader; // used on the lane only
    std::unique_ptr<Lane> m_lane;
    QTimer m_due;
};
