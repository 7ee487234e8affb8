#include "core/session/OpenSessions.h"

#include "core/settings/Settings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString Section = QStringLiteral("session");
const QString Key = QStringLiteral("open");

bool IsSame(const OpenSessions::Session& one, const OpenSessions::Session& other)
{
    return one.database == other.database && one.user.compare(other.user, Qt::CaseInsensitive) == 0;
}

} // namespace

QList<OpenSessions::Session> OpenSessions::All() const
{
    QList<Session> sessions;
    const QByteArray text = m_settings.Read(Section, Key, QString()).toUtf8();
    for (const QJsonValue& value : QJsonDocument::fromJson(text).array()) {
        const QJsonObject object = value.toObject();
        sessions.append(
            {object["database"].toString(), object["user"].toString(), object["callsign"].toString()});
    }
    return sessions;
}

void OpenSessions::Store(const QList<Session>& sessions)
{
    QJsonArray array;
    for (const Session& session : sessions) {
        array.append(QJsonObject{
            {"database", session.database}, {"user", session.user}, {"callsign", session.callsign}});
    }
    const QJsonDocument text(array);
    m_settings.Write(Section, Key,
                     array.isEmpty() ? QString() : QString::fromUtf8(text.toJson(QJsonDocument::Compact)));
}

QList<OpenSessions::Session> OpenSessions::Of(const QString& database) const
{
    QList<Session> sessions = All();
    sessions.removeIf([&](const Session& session) { return session.database != database; });
    return sessions;
}

void OpenSessions::Keep(const Session& session)
{
    QList<Session> sessions = All();
    sessions.removeIf([&](const Session& kept) { return IsSame(kept, session); });
    sessions.append(session);
    Store(sessions);
}

void OpenSessions::Forget(const Session& session)
{
    QList<Session> sessions = All();
    if (sessions.removeIf([&](const Session& kept) { return IsSame(kept, session); }) > 0)
        Store(sessions);
}
