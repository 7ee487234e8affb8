// What the radio reports of its own numbering: own address and callsign, and whether it fits the
// configuration.

#include "radio/agent/RadioAgent.h"

#include "addressing/MptAddressing.h"
#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "radio/base/AddressingText.h"
#include "radio/base/TextIds.h"
#include "radio/line/Map27Control.h"

void RadioAgent::SetAddressing(std::unique_ptr<MptAddressing> addressing)
{
    m_addressing = std::move(addressing);
    m_numbering.reset();
    TellDoubts({});
}

void RadioAgent::OnNumberingReceived()
{
    if (!m_executive)
        return;
    m_numbering = RadioNumbering{.prefix = m_control.RadioPrefix(),
                                 .ident = m_control.RadioIdent(),
                                 .unitBaseIdent = m_control.UnitBaseIdent(),
                                 .unitMaxIdent = m_control.UnitMaxIdent(),
                                 .groupBaseIdent = m_control.GroupBaseIdent(),
                                 .groupMaxIdent = m_control.GroupMaxIdent(),
                                 .unitDigits = m_control.UnitTwoDigit() ? 2 : 3,
                                 .groupDigits = m_control.GroupTwoDigit() ? 2 : 3};
    PassNumberingOn();
    if (m_views.numbering)
        m_views.numbering->DisplayDiags(*m_numbering);
    TakeOwnNumber();
    ShowAnswer(Text(RadioText::Ready));
}

void RadioAgent::ConfigurationChanged()
{
    if (!m_executive || !m_numbering)
        return;
    PassNumberingOn();
    TakeOwnNumber();
}

void RadioAgent::PassNumberingOn()
{
    if (!m_addressing)
        return;
    m_addressing->SetRadioNumbering(*m_numbering);
    QStringList doubts;
    for (const AddressingError& doubt : m_addressing->Warnings())
        doubts.append(AddressingFailure(doubt, m_services.strings).Description());
    TellDoubts(doubts);
}

void RadioAgent::TakeOwnNumber()
{
    if (!m_addressing)
        return;
    try {
        m_myAddress = QString::fromStdString(
            m_addressing->AddressToDial({.prefix = m_numbering->prefix, .ident = m_numbering->ident}));
    } catch (const std::exception&) {
        return;
    }
    TakeOwnCallsign();
}

void RadioAgent::TakeOwnCallsign()
{
    const QString callsign = m_executive->LookupCallsign(m_myAddress);
    const bool changed = callsign != m_myCallsign;
    if (changed && !m_myCallsign.isEmpty())
        m_executive->UpdateDutyStatus(m_myCallsign, false);
    m_myCallsign = callsign;
    if (m_myAddress != m_myCallsign) {
        if (m_views.status)
            m_views.status->ShowOwnAddress(m_myCallsign + QStringLiteral("  "), m_myAddress);
        m_executive->UpdateDutyStatus(m_myCallsign, true);
    } else if (m_views.status) {
        m_views.status->ShowOwnAddress(QStringLiteral("---"), m_myAddress);
    }
    if (changed && m_views.talkgroups)
        m_views.talkgroups->ReloadDynamicGroups({});
}

// The radio reports its numbering after every loss of the link; only what is new is told.
void RadioAgent::TellDoubts(const QStringList& doubts)
{
    if (doubts == m_doubts)
        return;
    m_doubts = doubts;
    for (const QString& doubt : doubts)
        ProgramLog::Write(doubt);
    Q_EMIT NumberingDoubted(doubts);
}
