#include "radio/base/AddressBook.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/Validation.h"
#include "dao/records/Database.h"

namespace {

bool MeansStatus(const QString& setting, int status)
{
    bool numeric = false;
    const double code = setting.trimmed().toDouble(&numeric);
    return numeric && code == status;
}

} // namespace

AddressBook::AddressBook(IDbSession& session, const IStringSource& strings)
    : m_session(session),
      m_strings(strings)
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

bool AddressBook::UpdateDutyStatus(const QString& callsign, bool onDuty)
{
    SessionMemory& memory = m_session.Memory();
    if (memory.Setting(QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble() != 1)
        return true;
    try {
        StoreDuty(callsign, onDuty);
        if (memory.PutOnDuty(callsign, onDuty))
            Q_EMIT DutyChanged();
        return true;
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_strings));
        return false;
    }
}

void AddressBook::StoreDuty(const QString& callsign, bool onDuty)
{
    const auto query = m_session.Database().QueryDef(QStringLiteral("update_duty_status"));
    query->SetParameter(QStringLiteral("cs"), callsign);
    query->SetParameter(QStringLiteral("ds"), onDuty);
    query->Execute();
}

void AddressBook::FollowStatus(const QString& callsign, int status)
{
    SessionMemory& memory = m_session.Memory();
    if (MeansStatus(memory.Setting(QStringLiteral("radio_onduty"), QStringLiteral("1")), status))
        UpdateDutyStatus(callsign, true);
    if (MeansStatus(memory.Setting(QStringLiteral("radio_offduty"), QStringLiteral("2")), status))
        UpdateDutyStatus(callsign, false);
}
