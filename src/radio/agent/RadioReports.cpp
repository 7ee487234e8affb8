#include "radio/agent/RadioReports.h"

#include "addressing/RadioNumbering.h"
#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Messages.h"
#include "radio/agent/RadioNotices.h"
#include "radio/agent/Views.h"
#include "radio/base/SessionNumbering.h"
#include "radio/base/TextIds.h"
#include "radio/line/Map27Control.h"

RadioReports::RadioReports(const RadioServices& services, Map27Control& control, SessionNumbering& numbering,
                           RadioNotices& notices, const RadioViews& views)
    : m_services(services),
      m_control(control),
      m_numbering(numbering),
      m_notices(notices),
      m_views(views)
{
    connect(&control, &Map27Control::NumberingReceived, this, &RadioReports::TakeNumbering);
    connect(&control, &Map27Control::NetworkInfoReceived, this, &RadioReports::TakeNetworkInfo);
    connect(
        &control, &Map27Control::OperatingConditionReceived, this,
        [this](int inContact, int offHook, int transmitting, int field, int, const QString& octets) {
            TakeCondition(inContact, offHook, transmitting, field, octets);
        });
    connect(&control, &Map27Control::LinkChanged, this, [this](const LinkStatus& status) {
        if (status.state == LinkStatus::State::Lost || status.state == LinkStatus::State::Closed)
            m_notices.ForgetCondition();
    });
    connect(&numbering, &SessionNumbering::OwnNumberTaken, this, &RadioReports::ShowOwnNumber);
}

void RadioReports::TakeNumbering()
{
    if (!m_numbering.IsSet())
        return;
    const RadioNumbering reported{.prefix = m_control.RadioPrefix(),
                                  .ident = m_control.RadioIdent(),
                                  .unitBaseIdent = m_control.UnitBaseIdent(),
                                  .unitMaxIdent = m_control.UnitMaxIdent(),
                                  .groupBaseIdent = m_control.GroupBaseIdent(),
                                  .groupMaxIdent = m_control.GroupMaxIdent(),
                                  .unitDigits = m_control.UnitTwoDigit() ? 2 : 3,
                                  .groupDigits = m_control.GroupTwoDigit() ? 2 : 3};
    m_numbering.SetReported(reported);
    if (m_views.numbering)
        m_views.numbering->DisplayDiags(reported);
    m_numbering.TakeOwnNumber();
    ShowAnswer(m_services.strings.LoadString(RadioText::Ready));
}

void RadioReports::TakeCondition(int inContact, int offHook, int transmitting, int fieldStrength,
                                 const QString& octets)
{
    if (!m_numbering.IsSet())
        return;
    if (m_views.status)
        m_views.status->ShowOperatingConditions(inContact != 0, fieldStrength);
    m_notices.TakeCondition(offHook != 0, transmitting != 0, octets, [this] { AskCondition(); });
    ShowAnswer(m_services.strings.LoadString(RadioText::Ready));
}

void RadioReports::TakeNetworkInfo(qint16 channel, qint16 systemIdentity)
{
    if (!m_numbering.IsSet())
        return;
    const QString identity = QString::number(static_cast<quint16>(systemIdentity), 16)
                                 .toUpper()
                                 .rightJustified(4, QLatin1Char('0'));
    ShowAnswer(
        FormatMessage(m_services.strings, RadioText::NetworkInfo, {QString::number(channel), identity}));
}

void RadioReports::AskCondition()
{
    try {
        m_control.RequestRadioInfo(static_cast<qint16>(map27::RadioInfo::OperatingCondition));
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_services.strings));
    }
}

void RadioReports::ShowOwnNumber(const QString& callsign, const QString& address)
{
    if (!m_views.status)
        return;
    const bool known = callsign != address;
    m_views.status->ShowOwnAddress(known ? callsign + QStringLiteral("  ") : QStringLiteral("---"), address);
}

void RadioReports::ShowAnswer(const QString& text)
{
    if (m_views.status)
        m_views.status->ShowAnswer(text);
}
