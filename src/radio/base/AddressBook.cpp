#include "radio/base/AddressBook.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "core/texts/Validation.h"
#include "dao/records/Database.h"

namespace {

// The field `wanted` of the directory entry that the index finds by its key; the fallback when there is none
// or the directory cannot be read.
QString Find(IDbSession& session, const QString& index, const QString& key, const QString& wanted,
             const QString& fallback)
{
    try {
        const auto directory = session.Database().OpenTable(QStringLiteral("address"));
        directory->SetIndex(index);
        directory->Seek(key);
        return directory->NoMatch() ? fallback : directory->Field(wanted).toString();
    } catch (const std::exception&) {
        return fallback;
    }
}

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
    return Find(m_session, QStringLiteral("i_ident"), dial, QStringLiteral("callsign"), dial);
}

QString AddressBook::LookupIdent(const QString& text) const
{
    const QString trimmed = text.trimmed();
    if (!IsValidCallsign(trimmed))
        return trimmed;
    return Find(m_session, QStringLiteral("i_callsign"), trimmed, QStringLiteral("IDENT"), trimmed);
}

bool AddressBook::UpdateDutyStatus(const QString& callsign, bool onDuty)
{
    if (RegistryGet(m_session, QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble() != 1)
        return true;
    try {
        const auto query = m_session.Database().QueryDef(QStringLiteral("update_duty_status"));
        query->SetParameter(QStringLiteral("cs"), callsign);
        query->SetParameter(QStringLiteral("ds"), onDuty);
        if (query->Execute() > 0)
            Q_EMIT DutyChanged();
        return true;
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_strings));
        return false;
    }
}

void AddressBook::FollowStatus(const QString& callsign, int status)
{
    if (MeansStatus(RegistryGet(m_session, QStringLiteral("radio_onduty"), QStringLiteral("1")), status))
        UpdateDutyStatus(callsign, true);
    if (MeansStatus(RegistryGet(m_session, QStringLiteral("radio_offduty"), QStringLiteral("2")), status))
        UpdateDutyStatus(callsign, false);
}
