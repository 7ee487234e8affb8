#include "mainwindow/frame/DatabaseWatch.h"

#include "core/eventlog/EventLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/base/Error.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/RegroupTable.h"
#include "dao/tables/SessionReadings.h"
#include "dao/tables/StatusTable.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/frame/MainTabs.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/send/StatusList.h"
#include "mainwindow/strip/LinkStrip.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/Map27Executive.h"

namespace {

constexpr std::chrono::milliseconds LookPause{1000};
const QString FleetTable = QStringLiteral("fleet");

// What the numbering is made of, fleet plan and site settings, in one text, so that a change shows.
QString ReadNumberingTables(IDbSession& session)
{
    QString text;
    for (const QString& table : {FleetTable, dao::RegistryTable::Table}) {
        const auto rows =
            session.Database().OpenSnapshot(table == FleetTable ? QString(dao::FleetPlanQuery) : table);
        const QStringList fields = rows->FieldNames();
        for (; !rows->Eof(); rows->MoveNext())
            for (const QString& field : fields)
                text += rows->Field(field).toString() + QLatin1Char('\n');
    }
    return text;
}

} // namespace

DatabaseWatch::DatabaseWatch(const Services& services, const SessionState& session, MainTabs& tabs,
                             SendPane& send, LinkStrip& strip, const Attempt& attempt)
    : m_services(services),
      m_session(session),
      m_tabs(tabs),
      m_send(send),
      m_strip(strip),
      m_attempt(attempt)
{
    DatabaseChanges& changes = services.session.Changes();
    connect(&changes, &DatabaseChanges::Changed, this, &DatabaseWatch::Reload);
    connect(&changes, &DatabaseChanges::AwayChanged, this, &DatabaseWatch::ShowState);
    connect(&services.eventLog, &EventLog::WaitingChanged, this, &DatabaseWatch::ShowState);
    connect(&m_look, &QTimer::timeout, this, &DatabaseWatch::LookByItself);
    m_look.start(LookPause);
}

void DatabaseWatch::ShowState()
{
    const EventLog& log = m_services.eventLog;
    if (log.Left() > 0)
        m_strip.ShowRecordsLeft(log.Left());
    else
        m_strip.ShowDatabase(m_services.session.Changes().IsAway(), log.Waiting(), log.Cause());
}

void DatabaseWatch::LookNow()
{
    try {
        m_services.session.Changes().MayHaveChanged();
    } catch (const dao::Error& failure) {
        if (failure.kind != dao::Kind::Locked)
            throw;
    }
}

// The next look comes soon enough to say nothing of a failure.
void DatabaseWatch::LookByItself()
{
    try {
        if (m_session.LoggedOn)
            LookNow();
    } catch (const std::exception&) {
    }
}

void DatabaseWatch::LoadStati()
{
    m_services.statusTexts.Clear();
    m_send.SetStati({});
    m_send.SetStati(ReadStati(m_services.session, m_services.statusTexts));
}

// Shows what another console has changed; an empty name: nobody knows what. The operator's selection and
// anything being typed stay. What could not be read is tried again when the window is activated.
void DatabaseWatch::Reload(const QString& table)
{
    if (!m_session.LoggedOn)
        return;
    const auto changed = [&](const QString& name) { return table.isEmpty() || table == name; };
    bool read = true;
    if (changed(dao::AddressTable::Table) || changed(dao::RegroupTable::Table))
        read = m_attempt([this] { m_tabs.Groups().ReloadQuietly(); });
    if (changed(dao::AddressTable::Table) ||
        changed(dao::RegistryTable::Table)) // which says whether the duty state counts
        read = m_attempt([this] { m_tabs.Individuals().ReloadQuietly(); }) && read;
    if (changed(dao::StatusTable::Table)) {
        const auto reload = [this] {
            m_send.ReplaceStati(ReadStati(m_services.session, m_services.statusTexts));
        };
        read = m_attempt(reload) && read;
    }
    if (!read)
        m_services.session.Changes().KeepUnread(table);
    if (changed(FleetTable) || changed(dao::RegistryTable::Table))
        ReloadNumbering();
}

// A reload that fails drops the numbering in use, so there is one only when something has changed.
void DatabaseWatch::ReloadNumbering()
{
    try {
        const QString tables = ReadNumberingTables(m_services.session);
        if (tables != m_numberingTables) {
            m_services.executive.LoadFleetData();
            m_numberingTables = tables;
        }
    } catch (const std::exception&) {
        // The tables cannot be read or do not make a numbering: the one in use stays, or the radio link says
        // what is wrong.
    }
}
