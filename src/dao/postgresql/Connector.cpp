#include "dao/postgresql/Connector.h"
#include "dao/base/Error.h"
#include "dao/base/Patience.h"
#include "dao/base/TextMatch.h"
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QRegularExpression>
#include <vector>

namespace dao::postgresql {

namespace {

constexpr std::chrono::milliseconds LongestAttempt{2000};
constexpr int LongestRoleName = 63; // bytes

using Option = ServerAddress::Option;

// The session's own settings, after those that the address asks for.
QByteArray SessionOptions(const QByteArray& asked, const Logon& logon)
{
    return asked + " -c search_path=kyn -c timezone=UTC -c datestyle=ISO" +
           " -c client_min_messages=error -c bytea_output=hex -c lock_timeout=" +
           QByteArray::number(static_cast<qlonglong>(logon.lockTimeout.count()));
}

QList<Option> Parameters(QList<Option> options, const Logon& logon)
{
    QByteArray asked;
    options.removeIf([&](const Option& option) {
        if (option.first == "options")
            asked = option.second;
        return option.first == "options";
    });
    const auto add = [&](const char* keyword, const QByteArray& value, bool unlessGiven = false) {
        for (const Option& option : options)
            if (unlessGiven && option.first == keyword)
                return;
        if (!value.isEmpty())
            options.append({keyword, value});
    };
    add("dbname", logon.database);
    add("user", logon.role);
    add("password", logon.password.Get());
    add("options", SessionOptions(asked, logon));
    add("client_encoding", "UTF8");
    add("fallback_application_name", "veltorkyn");
    add("target_session_attrs", "read-write", true);
    // A line that is cut is noticed within seconds, not after the system's quarter of an hour.
    add("tcp_user_timeout", "4000", true);
    add("keepalives_idle", "5", true);
    add("keepalives_interval", "2", true);
    add("keepalives_count", "2", true);
    return options;
}

ConnectionHandle Start(const QList<Option>& options)
{
    std::vector<const char*> keywords, values;
    for (const Option& option : options) {
        keywords.push_back(option.first.constData());
        values.push_back(option.second.constData());
    }
    keywords.push_back(nullptr);
    values.push_back(nullptr);
    return ConnectionHandle(PQconnectStartParams(keywords.data(), values.data(), 0));
}

// False when the time is over, or waiting is to stop. Kind::GivenUp.
bool WaitFor(PGconn* connection, PostgresPollingStatusType what, const QDeadlineTimer& deadline,
             const QString& server, const std::atomic<bool>* stop)
{
    constexpr std::chrono::milliseconds longestSleep{100};
    Patience::Wait wait{.where = server, .socket = PQsocket(connection)};
    wait.ready =
        what == PGRES_POLLING_READING ? Patience::Wait::Ready::Readable : Patience::Wait::Ready::Writable;
    while (!deadline.hasExpired() && !(stop && *stop)) {
        const std::chrono::milliseconds left{std::max<qint64>(1, deadline.remainingTime())};
        wait.limit = stop ? std::min(longestSleep, left) : left;
        switch (Patience::AwaitHere(wait)) {
        case Patience::End::Ready:
            return true;
        case Patience::End::GivenUp:
            throw Error(Kind::GivenUp, {server});
        case Patience::End::TimeOver:
            break;
        }
    }
    return false;
}

// The state of the server's refusal; empty when nothing was refused.
QString RefusalState(PGconn* connection)
{
    static const QRegularExpression state(":\\s+([0-9][0-9A-Z]{4}):");
    return state.match(QString::fromUtf8(PQerrorMessage(connection))).captured(1);
}

struct Attempt {
    ConnectionHandle connection; // empty when it failed
    QString state;
    QString text;
};

Attempt TryHost(const QList<Option>& options, const QString& server, const std::atomic<bool>* stop)
{
    Attempt attempt;
    ConnectionHandle connection = Start(options);
    if (!connection)
        throw Error(Kind::Engine, {"libpq"}, "not enough memory for a connection");
    PQsetErrorVerbosity(connection.get(), PQERRORS_VERBOSE); // with the state, whatever the server's language
    const QDeadlineTimer deadline(LongestAttempt);
    auto what = PGRES_POLLING_WRITING;
    while (PQstatus(connection.get()) != CONNECTION_BAD && what != PGRES_POLLING_OK) {
        if (!WaitFor(connection.get(), what, deadline, server, stop)) {
            attempt.text = "no answer";
            return attempt;
        }
        what = PQconnectPoll(connection.get());
        if (what == PGRES_POLLING_FAILED)
            break;
    }
    if (PQstatus(connection.get()) == CONNECTION_OK) {
        PQsetErrorVerbosity(connection.get(), PQERRORS_DEFAULT);
        attempt.connection = std::move(connection);
    } else {
        attempt.state = RefusalState(connection.get());
        attempt.text = QString::fromUtf8(PQerrorMessage(connection.get())).trimmed();
    }
    return attempt;
}

// Starting, stopping or recovering: the server is there but takes nobody yet.
bool IsAway(const QString& state)
{
    return state.isEmpty() || state.startsWith("57P") || state.startsWith("08") || state == "25006";
}

} // namespace

ConnectionHandle Connect(const Logon& logon, const std::atomic<bool>* stop)
{
    QString text;
    for (const QList<Option>& host : logon.address.Hosts()) {
        Attempt attempt = TryHost(Parameters(host, logon), logon.address.Shown(), stop);
        if (attempt.connection) {
            if (logon.passwordRequired && !PQconnectionUsedPassword(attempt.connection.get()))
                throw Error(Kind::ServerTrusts, {logon.address.Shown()});
            return std::move(attempt.connection);
        }
        if (attempt.state == "28P01")
            throw Error(Kind::WrongPassword, {}, attempt.text);
        if (!IsAway(attempt.state))
            throw Error(Kind::ServerRefused, {logon.address.Shown(), attempt.text.section('\n', 0, 0)},
                        attempt.text);
        text += (text.isEmpty() ? "" : "; ") + attempt.text;
    }
    throw Error(Kind::ServerAway, {logon.address.Shown(), text.section('\n', 0, 0)}, text);
}

QByteArray RoleName(const QString& database, const QString& userName)
{
    const QByteArray folded = Fold(userName).toUtf8();
    const QByteArray prefix = database.toUtf8() + '.';
    if (prefix.size() + folded.size() <= LongestRoleName)
        return prefix + folded;
    return prefix + QCryptographicHash::hash(folded, QCryptographicHash::Sha256).toHex().left(32);
}

QByteArray PasswordBytes(const QString& password)
{
    // The same password typed with a combining accent or as one character has to give the same bytes.
    return password.isEmpty() ? QByteArray(EmptyPassword)
                              : password.normalized(QString::NormalizationForm_C).toUtf8();
}

} // namespace dao::postgresql
