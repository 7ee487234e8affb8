#include "radio/base/SessionNumbering.h"

#include "addressing/MptAddressing.h"
#include "addressing/TextIds.h"
#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "radio/base/AddressBook.h"
#include "radio/base/AddressingText.h"
#include "radio/base/TextIds.h"

namespace {

constexpr int NotConfigured = static_cast<int>(AddressingCode::NumberingNotConfigured);

} // namespace

SessionNumbering::SessionNumbering(AddressBook& addressBook, const IStringSource& strings)
    : m_addressBook(addressBook),
      m_strings(strings)
{
}

SessionNumbering::~SessionNumbering() = default;

void SessionNumbering::SetAddressing(std::unique_ptr<MptAddressing> addressing)
{
    m_addressing = std::move(addressing);
    m_reported.reset();
    TellDoubts({});
}

MptAddressing& SessionNumbering::Addressing() const
{
    if (!m_addressing)
        RaiseCatalogueError(m_strings, RadioText::NotConnected);
    return *m_addressing;
}

void SessionNumbering::ReadConfiguration(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& parameters)
{
    try {
        Configure(fleets, parameters);
    } catch (...) {
        TakeConfiguration(); // the old one no longer holds
        throw;
    }
    TakeConfiguration();
}

void SessionNumbering::Configure(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& parameters)
{
    try {
        Addressing().SetConfigSource(fleets, parameters);
    } catch (const AddressingError& failure) {
        // Unusable parameters count as missing ones: whoever may correct them has to be able to log on.
        ProgramLog::Write(AddressingFailure(failure, m_strings).Description());
        RaiseCatalogueError(m_strings, NotConfigured);
    } catch (const Error& failure) {
        const quint32 code = failure.Code();
        if (code == ErrorCode::First + RadioText::AnnNotConfigured ||
            code == ErrorCode::First + RadioText::FleetPlanNotConfigured)
            RaiseCatalogueError(m_strings, NotConfigured);
        throw;
    }
}

void SessionNumbering::TakeConfiguration()
{
    if (!m_addressing || !m_reported)
        return;
    PassOn();
    TakeOwnNumber();
}

void SessionNumbering::SetReported(const RadioNumbering& numbering)
{
    m_reported = numbering;
    PassOn();
}

void SessionNumbering::PassOn()
{
    if (!m_addressing)
        return;
    m_addressing->SetRadioNumbering(*m_reported);
    QStringList doubts;
    for (const AddressingError& doubt : m_addressing->Warnings())
        doubts.append(AddressingFailure(doubt, m_strings).Description());
    TellDoubts(doubts);
}

void SessionNumbering::TakeOwnNumber()
{
    // "Nobody" is no number: every caller without a name would seem to be us.
    if (!m_addressing || !m_reported || m_reported->ident == DummyIdent)
        return;
    try {
        m_myAddress = QString::fromStdString(
            m_addressing->AddressToDial({.prefix = m_reported->prefix, .ident = m_reported->ident}));
    } catch (const std::exception&) {
        return;
    }
    TakeOwnCallsign();
}

void SessionNumbering::TakeOwnCallsign()
{
    const QString callsign = m_addressBook.LookupCallsign(m_myAddress);
    const bool changed = callsign != m_myCallsign;
    if (changed && !m_myCallsign.isEmpty())
        m_addressBook.UpdateDutyStatus(m_myCallsign, false);
    m_myCallsign = callsign;
    Q_EMIT OwnNumberTaken(m_myCallsign, m_myAddress);
    if (m_myAddress != m_myCallsign)
        m_addressBook.UpdateDutyStatus(m_myCallsign, true);
    if (changed)
        Q_EMIT CallsignChanged();
}

bool SessionNumbering::IsOwnGroup(int prefix, int ident) const
{
    return m_reported && m_reported->groupBaseIdent > 0 && prefix == m_reported->prefix &&
           ident >= m_reported->groupBaseIdent && ident <= m_reported->groupMaxIdent;
}

QString SessionNumbering::DialOf(int prefix, int ident) const
{
    QString dial;
    try {
        if (m_addressing)
            dial = QString::fromStdString(m_addressing->AddressToDial({.prefix = prefix, .ident = ident}));
    } catch (const std::exception&) {
        dial.clear();
    }
    if (dial.isEmpty())
        dial =
            QStringLiteral("/%1%2").arg(prefix, 3, 10, QLatin1Char('0')).arg(ident, 4, 10, QLatin1Char('0'));
    return dial;
}

QString SessionNumbering::DialOfGateway(int ident, const QString& digits) const
{
    try {
        if (m_addressing && m_reported)
            return QString::fromStdString(m_addressing->AddressToDial({.prefix = m_reported->prefix,
                                                                       .ident = ident,
                                                                       .kind = AddressKind::Gateway,
                                                                       .digits = digits.toStdString()}));
    } catch (const std::exception&) {
        // not a gateway, or not a telephone number
    }
    return {};
}

QString SessionNumbering::MakeFullAddress(const QString& dial) const
{
    try {
        return QString::fromStdString(
            Addressing().AddressToDial(Addressing().DialToAddress(dial.toStdString())));
    } catch (const AddressingError& failure) {
        throw AddressingFailure(failure, m_strings);
    }
}

// The radio reports its numbering after every loss of the link; only changes are told.
void SessionNumbering::TellDoubts(const QStringList& doubts)
{
    if (doubts == m_doubts)
        return;
    m_doubts = doubts;
    for (const QString& doubt : doubts)
        ProgramLog::Write(doubt);
    Q_EMIT Doubted(doubts);
}
