// The facade's translation between callsigns and dial texts, and the duty record.

#include "addressing/MptAddressing.h"
#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "core/texts/Validation.h"
#include "dao/Database.h"
#include "radio/agent/RadioAgent.h"
#include "radio/base/AddressingText.h"
#include "radio/facade/Map27Executive.h"

namespace {

// The field `wanted` of the directory entry whose `index` field equals the key; the fallback when there is
// none or the directory cannot be read.
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

} // namespace

QStringList Map27Executive::ParseAddressLine(const QString& line)
{
    QStringList addresses;
    for (const QString& piece : line.split(QLatin1Char(';'))) {
        const QString address = piece.trimmed();
        if (!address.isEmpty())
            addresses.append(address);
    }
    return addresses;
}

QString Map27Executive::MakeFullAddress(const QString& dial) const
{
    try {
        return QString::fromStdString(
            Addressing().AddressToDial(Addressing().DialToAddress(dial.toStdString())));
    } catch (const AddressingError& failure) {
        throw AddressingFailure(failure, m_services.strings);
    }
}

QString Map27Executive::LookupCallsign(const QString& dial) const
{
    return Find(m_services.session, QStringLiteral("i_ident"), dial, QStringLiteral("callsign"), dial);
}

QString Map27Executive::LookupIdent(const QString& text) const
{
    const QString trimmed = text.trimmed();
    if (!IsValidCallsign(trimmed))
        return trimmed;
    return Find(m_services.session, QStringLiteral("i_callsign"), trimmed, QStringLiteral("IDENT"), trimmed);
}

bool Map27Executive::UpdateDutyStatus(const QString& callsign, bool onDuty)
{
    if (RegistryGet(m_services.session, QStringLiteral("on_off_duty"), QStringLiteral("0")).toDouble() != 1)
        return true;
    try {
        const auto query = m_services.session.Database().QueryDef(QStringLiteral("update_duty_status"));
        query->SetParameter(QStringLiteral("cs"), callsign);
        query->SetParameter(QStringLiteral("ds"), onDuty);
        if (query->Execute() > 0)
            m_agent->ReloadIndividuals();
        return true;
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_services.strings));
        return false;
    }
}
