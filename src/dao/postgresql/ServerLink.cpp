#include "dao/postgresql/ServerLink.h"
#include "dao/base/Error.h"
#include <QSocketNotifier>
#include <poll.h>

namespace dao::postgresql {

namespace {

// Changes that come together are told together.
constexpr std::chrono::milliseconds Gathering{50};
constexpr std::chrono::milliseconds WhileWaiting{100}; // until something is tried again

} // namespace

ServerLink::ServerLink(Logon logon, ConnectionHandle connection)
    : m_logon(std::move(logon)),
      m_wait({m_logon.address.Shown(), [this](bool waiting) { TellWaiting(waiting); },
              [this](const QString& reason) { Lose(reason, false); }})
{
    m_delivery.setSingleShot(true);
    m_delivery.setInterval(Gathering);
    connect(&m_delivery, &QTimer::timeout, this, [this] { Deliver(); });
    Connected(std::move(connection));
}

ServerLink::~ServerLink()
{
    m_logon.backends.Remove(m_backend);
    m_probe.Stop();
    m_notifier.reset(); // before its socket is closed
}

PGconn* ServerLink::Handle()
{
    if (!IsAlive()) {
        if (!m_mayTryNow && !m_probe.HasReached())
            return Present(); // raises
        Reconnect();
    }
    return m_connection.get();
}

PGconn* ServerLink::Present() const
{
    if (!m_connection)
        throw Error(Kind::ServerAway, {Server(), m_reason.section('\n', 0, 0)}, m_reason);
    return m_connection.get();
}

// Looks whether the server has hung up since the last statement. What is lost on the way is found out only by
// the statement itself.
bool ServerLink::IsAlive()
{
    if (!m_connection)
        return false;
    pollfd socket{PQsocket(m_connection.get()), POLLIN, 0};
    if (poll(&socket, 1, 0) > 0)
        Collect();
    return m_connection != nullptr;
}

void ServerLink::Lose(const QString& reason, bool mayTryNow)
{
    if (!m_connection)
        return;
    m_reason = reason;
    m_mayTryNow = mayTryNow;
    m_notifier.reset();
    m_connection.reset();
    LookForServer();
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_away && !m_connection)
                m_away(true);
        },
        Qt::QueuedConnection);
}

void ServerLink::LookForServer()
{
    m_probe.Start(
        m_logon,
        [this] { QMetaObject::invokeMethod(this, &ServerLink::ReconnectByItself, Qt::QueuedConnection); });
}

void ServerLink::ReconnectByItself()
{
    if (m_wait.IsWaiting()) {
        QTimer::singleShot(WhileWaiting, this, &ServerLink::ReconnectByItself);
        return;
    }
    try {
        if (!m_connection && m_probe.HasReached())
            Reconnect();
    } catch (const Error&) {
        // Gone again; the search goes on.
    }
}

void ServerLink::Reconnect()
{
    m_mayTryNow = false;
    try {
        const ServerWait::Scope waiting(m_wait);
        Connected(Connect(m_logon));
    } catch (const Error& error) {
        m_reason = error.engineText;
        if (m_probe.HasReached()) // and gone again
            LookForServer();
        if (error.kind == Kind::GivenUp)
            throw;
        throw Error(Kind::ServerAway, {Server(), m_reason.section('\n', 0, 0)}, m_reason);
    }
    m_probe.Stop();
    m_pending.insert(QString()); // whatever was changed meanwhile
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_away && m_connection)
                m_away(false);
            Deliver();
        },
        Qt::QueuedConnection);
}

void ServerLink::Connected(ConnectionHandle connection)
{
    m_logon.backends.Remove(m_backend);
    m_connection = std::move(connection);
    m_backend = PQbackendPID(m_connection.get());
    m_logon.backends.Add(m_backend);
    ++m_generation;
    m_listening = false;
    PQsetnonblocking(m_connection.get(), 1);
    PQsetNoticeProcessor(
        m_connection.get(), [](void*, const char*) {}, nullptr);
    UndoEnvironment();
    if (m_changed)
        Watch();
}

// The variables PGTZ and PGDATESTYLE of whoever runs the program are taken after all options.
void ServerLink::UndoEnvironment()
{
    PGconn* connection = m_connection.get();
    const QByteArray zone = PQparameterStatus(connection, "TimeZone");
    const QByteArray dates = PQparameterStatus(connection, "DateStyle");
    if (zone != "UTC" || !dates.startsWith("ISO"))
        m_wait.AnswerTo(connection, PQsendQuery(connection, "SET timezone = 'UTC'; SET datestyle = 'ISO'"));
}

void ServerLink::Listen(std::function<void(const QString&)> changed, std::function<void(bool)> away)
{
    m_changed = std::move(changed);
    m_away = std::move(away);
    if (m_connection)
        Watch();
    if (!m_pending.isEmpty())
        m_delivery.start();
}

void ServerLink::Watch()
{
    if (!m_listening)
        m_wait.AnswerTo(m_connection.get(), PQsendQuery(m_connection.get(), AskForNotices));
    m_listening = true;
    m_notifier = std::make_unique<QSocketNotifier>(PQsocket(m_connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        // Not within the notifier's own signal, since a lost connection deletes it.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!m_wait.IsWaiting() && IsAlive() && m_notifier)
                    m_notifier->setEnabled(true);
            },
            Qt::QueuedConnection);
        m_notifier->setEnabled(false);
    });
}

void ServerLink::Collect()
{
    PGconn* connection = m_connection.get();
    PQconsumeInput(connection);
    while (PGnotify* notice = PQnotifies(connection)) {
        if (notice->be_pid != m_backend)
            ++m_notices;
        if (!m_logon.backends.Contains(notice->be_pid))
            m_pending.insert(QString::fromUtf8(notice->extra));
        PQfreemem(notice);
    }
    if (m_changed && !m_pending.isEmpty() && !m_delivery.isActive())
        m_delivery.start();
    if (PQstatus(connection) != CONNECTION_OK)
        Lose(QString::fromUtf8(PQerrorMessage(connection)).trimmed());
}

// The socket has one notifier at a time, and what it brings is an answer while one is waited for.
void ServerLink::TellWaiting(bool waiting)
{
    if (m_notifier && Patience::IsUsed())
        m_notifier->setEnabled(!waiting);
}

void ServerLink::Deliver()
{
    if (m_wait.IsWaiting()) { // whoever is told would read
        m_delivery.start();
        return;
    }
    m_delivery.stop();
    const QSet<QString> tables = std::exchange(m_pending, {});
    if (!m_changed)
        return;
    if (tables.contains(QString())) {
        m_changed(QString());
        return;
    }
    for (const QString& table : tables)
        m_changed(table);
}

} // namespace dao::postgresql
