#include "radio/base/AddressBook.h"

#include "core/eventlog/EventLog.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Validation.h"
#include "radio/base/DutyCodes.h"

AddressBook::AddressBook(IDbSession& session, EventLog& eventLog) : m_session(session), m_eventLog(eventLog)
{
}

QString AddressBook::LookupCallsign(const QString& dial) const
{
    return m_session.Memory().Addresses().CallsignOf(dial).value_or(dial);
}

QString AddressBook::LookupIdent(const QString& text) const
{
    const QString trimmed = text.trimmed();
    if (!IsValidCallsign(trimmed))
        return trimmed;
    return m_session.Memory().Addresses().IdentOf(trimmed).value_or(trimmed);
}

bool AddressBook::IsTalkgroup(const QString& dial) const
{
    return m_session.Memory().Addresses().TypeOf(dial) == Directory::Type::Talkgroup;
}

void AddressBook::UpdateDutyStatus(const QString& callsign, bool onDuty)
{
    SessionMemory& memory = m_session.Memory();
    if (memory.Setting(QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble() != 1)
        return;
    m_eventLog.AppendDuty(callsign, onDuty);
    if (memory.PutOnDuty(callsign, onDuty))
        Q_EMIT DutyChanged();
}

void AddressBook::FollowStatus(const QString& callsign, int status)
{
    const DutyCodes codes([this](const QString& key, const QString& fallback) {
        return m_session.Memory().Setting(key, fallback);
    });
    if (codes.IsOn(status))
        UpdateDutyStatus(callsign, true);
    if (codes.IsOff(status))
        UpdateDutyStatus(callsign, false);
}
