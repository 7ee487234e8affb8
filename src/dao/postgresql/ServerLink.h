#pragma once

#include "dao/postgresql/Connector.h"
#include "dao/postgresql/ServerProbe.h"
#include "dao/postgresql/ServerWait.h"
#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace dao::postgresql {

// The line to a server: connected, or away and being looked for. Tells of changes by other consoles, and of
// the server's going and coming, from the event loop.
class ServerLink : public QObject {
public:
    // Takes over an established connection.
    ServerLink(Logon logon, ConnectionHandle connection);
    ~ServerLink() override;

    // The connection. When it was lost a moment ago, or the server has been reached again, a new one is made;
    // otherwise Kind::ServerAway at once.
    PGconn* Handle();
    // The connection as it is, never a new one. Kind::ServerAway.
    PGconn* Present() const;
    bool IsConnected() const { return m_connection != nullptr; }
    // Of the connection: what was prepared on an earlier one is gone.
    int Generation() const { return m_generation; }
    // Where this session waits for its server, on this connection and those after it.
    ServerWait& Wait() { return m_wait; }
    // The connection was found broken, or was given up: then no other is tried before the server has been
    // reached again.
    void Lose(const QString& reason, bool mayTryNow = true);
    const QString& Server() const { return m_logon.address.Shown(); }
    const Logon& LogonData() const { return m_logon; }
    // The password for the next connection, of each session that was made from this one too.
    void SetPassword(const QByteArray& password) { m_logon.password.Set(password); }

    // The table that another session changed; an empty name when it is not known which. Asks the server for
    // notifications from the first call on.
    void Listen(std::function<void(const QString& table)> changed, std::function<void(bool away)> away);
    static constexpr auto AskForNotices = "LISTEN kyn_change";
    // Picks up what the server has sent.
    void Collect();
    // The server has been asked for notifications on this connection.
    bool IsListening() const { return m_listening; }
    void SetListening() { m_listening = true; }
    // How many have come from other sessions.
    int Notices() const { return m_notices; }

private:
    bool IsAlive();
    void Connected(ConnectionHandle connection);
    void UndoEnvironment();
    void LookForServer();
    void Reconnect();
    void ReconnectByItself();
    void Watch();
    void Deliver();
    void TellWaiting(bool waiting);

    Logon m_logon;
    ConnectionHandle m_connection;
    int m_backend = 0; // the server's process of the last connection
    ServerWait m_wait;
    int m_generation = 0;
    bool m_listening = false;
    int m_notices = 0;
    bool m_mayTryNow = false;
    QString m_reason; // why the connection was lost
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::function<void(const QString&)> m_changed;
    std::function<void(bool)> m_away;
    QSet<QString> m_pending; // tables to be told
    QTimer m_delivery;
    ServerProbe m_probe; // last, so that its thread ends first
};

} // namespace dao::postgresql
