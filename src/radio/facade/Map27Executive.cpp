#include "radio/facade/Map27Executive.h"

#include "addressing/CreateAddressing.h"
#include "addressing/MptAddressing.h"
#include "core/base/Clock.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/Validation.h"
#include "map27/codec/CodePage437.h"
#include "map27/codec/Messages.h"
#include "map27/terminal/Requests.h"
#include "radio/agent/RadioAgent.h"
#include "radio/base/AddressLine.h"
#include "radio/base/AddressingText.h"
#include "radio/base/StatusTexts.h"
#include "radio/base/TextIds.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/line/Map27Control.h"
#include "radio/window/frmMap27Agent.h"

namespace {

constexpr int ResetPause = 500; // ms

qint16 Prefix(const RadioAddress& address)
{
    return static_cast<qint16>(address.prefix);
}

qint16 Ident(const RadioAddress& address)
{
    return static_cast<qint16>(address.ident);
}

// A code that no status can have is refused by the radio control.
QString StatusInWords(const RadioServices& services, int status)
{
    try {
        return services.statusTexts.StatusOutText(status);
    } catch (const std::exception&) {
        return QString::number(status);
    }
}

} // namespace

Map27Executive::Map27Executive(const RadioServices& services, std::unique_ptr<class Map27Control> control)
    : m_services(services),
      m_control(std::move(control)),
      m_window(std::make_unique<frmMap27Agent>(services.strings, services.clock)),
      m_addressBook(services.session, services.eventLog),
      m_agent(std::make_unique<RadioAgent>(services, *m_control, *m_window, m_transaction, m_addressBook)),
      m_appName(services.strings.LoadString(RadioText::DefaultAppName))
{
    connect(m_window.get(), &frmMap27Agent::MainButtonPressed, m_agent.get(), &RadioAgent::PressMainButton);
    connect(m_window.get(), &frmMap27Agent::CloseButtonPressed, m_agent.get(), &RadioAgent::PressCloseButton);
    connect(m_window.get(), &frmMap27Agent::TransmitRequested, m_agent.get(), &RadioAgent::SetTransmit);
    connect(m_control.get(), &Map27Control::LinkChanged, this, &Map27Executive::LinkChanged);
    const RadioNotices* notices = &m_agent->Notices();
    connect(notices, &RadioNotices::Failed, this, &Map27Executive::Failed);
    connect(notices, &RadioNotices::CallNoticed, this, &Map27Executive::CallNoticed);
    connect(notices, &RadioNotices::RadioInUse, this, &Map27Executive::RadioInUse);
    connect(&m_agent->Numbering(), &SessionNumbering::Doubted, this, &Map27Executive::NumberingDoubted);
}

Map27Executive::~Map27Executive() = default;

void Map27Executive::SetViews(const RadioViews& views)
{
    m_agent->SetViews(views);
}

bool Map27Executive::IsInCall() const
{
    const enum TransactionKind kind = m_transaction.Kind();
    return kind == TransactionKind::CallSetUp || kind == TransactionKind::CallRinging ||
           kind == TransactionKind::CallConnected;
}

void Map27Executive::Connect()
{
    const QString code = m_services.session.Memory().Setting(QStringLiteral("subscriber_numbering"),
                                                             QStringLiteral("MPT1343"));
    auto addressing = CreateAddressing(code.toStdString());
    if (!addressing)
        RaiseCatalogueError(m_services.strings, RadioText::NoAddressConversion);
    m_agent->Numbering().SetAddressing(std::move(addressing));
    try {
        m_control->SetCommPort(DefaultPort());
        m_control->SetBaudRate(DefaultBaud());
        m_control->OpenLink();
        LoadFleetData();
    } catch (const std::exception& failure) {
        if (CodeOf(failure) != ErrorCode::NumberingNotConfigured)
            Disconnect();
        throw;
    }
}

void Map27Executive::LoadFleetData()
{
    m_agent->Numbering().ReadConfiguration(m_services.fleetData, m_services.fleetData);
}

void Map27Executive::Disconnect()
{
    // Otherwise a call would go on at the radio, perhaps with the transmitter keyed.
    if (m_transaction.IsOpen()) {
        m_control->CancelTransaction();
        m_control->ClearCall();
    }
    m_agent->Forget();
    m_agent->Sent().Clear();
    m_agent->Parties().Clear();
    m_agent->Numbering().SetAddressing(nullptr);
    m_control->CloseLink();
    m_window->HideAgent();
}

QString Map27Executive::CurrentNumbering() const
{
    return QString::fromStdString(m_agent->Numbering().Addressing().NumberingCode());
}

QString Map27Executive::CurrentNumberingName() const
{
    return Text(m_agent->Numbering().Addressing().NumberingNameTextId());
}

void Map27Executive::AskOperatingCondition()
{
    m_control->RequestRadioInfo(static_cast<qint16>(map27::RadioInfo::OperatingCondition));
}

void Map27Executive::AskNumbering()
{
    m_control->RequestRadioInfo(static_cast<qint16>(map27::RadioInfo::Numbering));
}

void Map27Executive::AskNetworkInfo()
{
    m_control->RequestRadioInfo(static_cast<qint16>(map27::RadioInfo::Network));
}

void Map27Executive::TellFailure(const std::exception& failure)
{
    const QString text = DescribeError(failure, m_services.strings);
    if (m_window->IsShown())
        m_window->AppendLog(text);
    else
        m_services.prompt.ShowWarning(text);
}

QString Map27Executive::DefaultPort() const
{
    return m_services.settings.SerialPort(Text(RadioText::DefaultPort));
}

void Map27Executive::SetDefaultPort(const QString& port)
{
    m_services.settings.SetSerialPort(port);
}

int Map27Executive::DefaultBaud() const
{
    return m_services.settings.BaudRate();
}

void Map27Executive::SetDefaultBaud(int baud)
{
    m_services.settings.SetBaudRate(baud);
}

QString Map27Executive::MyAddress() const
{
    return m_agent->Numbering().MyAddress();
}

QString Map27Executive::MyCallsign() const
{
    return m_agent->Numbering().MyCallsign();
}

bool Map27Executive::SendRegroup(const QString& member, int pos, const QString& group)
{
    if (IsBusy(RadioText::NotReadyForRegrouping))
        return false;
    const QString memberDial = m_addressBook.LookupIdent(member);
    const QString groupDial = m_addressBook.LookupIdent(group);
    PrepareMessaging(memberDial, RadioText::SendingRegroup);
    RadioAddress memberAddress;
    RadioAddress groupAddress;
    if (!ToAddress(memberDial, memberAddress) || !ToAddress(groupDial, groupAddress))
        return false;
    if (memberAddress.kind != AddressKind::Radio || groupAddress.kind != AddressKind::Radio)
        return false;
    return Start(TransactionKind::Regroup, member, [&] {
        m_control->SendRegroupCommand(Prefix(memberAddress), Ident(memberAddress), static_cast<qint16>(pos),
                                      Prefix(groupAddress), Ident(groupAddress));
    });
}

void Map27Executive::SendGroupName(const QString& target, int pos, const QString& name)
{
    if (IsBusy(RadioText::NotReadyForRegrouping))
        return;
    const QString dial = m_addressBook.LookupIdent(target);
    PrepareMessaging(dial, RadioText::SendingGroupName);
    RadioAddress address;
    if (!ToAddress(dial, address) || address.kind != AddressKind::Radio)
        return;
    Start(TransactionKind::GroupName, target, [&] {
        m_control->SendGroupNameCommand(Prefix(address), Ident(address), static_cast<qint16>(pos), name);
    });
}

void Map27Executive::SendStatus(const QString& address, int status, Purpose purpose)
{
    const auto mayBeSent = m_mayBeSent; // the program may end while a box is open
    if (purpose == Purpose::Message && mayBeSent && !mayBeSent(address, status))
        return;
    if (IsBusy(RadioText::NotReadyForStatus))
        return;
    SentMessage message{.time = m_services.clock.Now(),
                        .kind = EventType::Status,
                        .to = address,
                        .message = QString::number(status)};
    message.mayRepeat = purpose == Purpose::Message;
    message.shown = StatusInWords(m_services, status);
    StartMessage(message, message.message, [&](const RadioAddress& to) {
        m_control->SendStatusMessage(Prefix(to), Ident(to), static_cast<qint16>(status));
    });
}

void Map27Executive::SendText(const QString& address, const QString& text, bool eightBit)
{
    if (IsBusy(RadioText::NotReadyForText))
        return;
    QString sent = text;
    try {
        if (m_services.settings.PrintfEscapes())
            sent = FormatMessage(text, {});
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return;
    }
    SendTextAgain(address, sent, eightBit);
}

void Map27Executive::SendTextAgain(const QString& address, const QString& text, bool eightBit)
{
    if (IsBusy(RadioText::NotReadyForText))
        return;
    m_transaction.outgoing.LastInEightBits = eightBit;
    SentMessage message{
        .time = m_services.clock.Now(), .kind = EventType::Text, .to = address, .message = text};
    message.shown = text;
    message.eightBit = eightBit;
    StartMessage(message, text, [&](const RadioAddress& to) {
        m_control->SendTextMessage(Prefix(to), Ident(to), text, eightBit);
    });
}

TextRoom Map27Executive::RoomIn(const QString& text, bool eightBit) const
{
    bool escapes = false;
    try {
        escapes = m_services.settings.PrintfEscapes();
    } catch (const std::exception&) {
        // Sending says so.
    }
    return RoomOf(escapes ? FormatMessage(text, {}) : text, eightBit);
}

const SentMessages& Map27Executive::Sent() const
{
    return m_agent->Sent();
}

const LastParties& Map27Executive::Parties() const
{
    return m_agent->Parties();
}

void Map27Executive::SendAgain(const SentMessage& message)
{
    if (message.kind == EventType::Status)
        SendStatus(message.to, message.message.toInt());
    else
        SendTextAgain(message.to, message.message, message.eightBit);
}

void Map27Executive::StartCall(const QString& address, bool emergency, bool priority, bool dialog)
{
    if (m_transaction.IsOpen()) {
        if (m_window->IsShown())
            m_window->ShowAgent();
        else
            m_services.prompt.ShowWarning(Text(RadioText::NotReadyForCall));
        return;
    }
    m_transaction.outgoing.LastDestination = address;
    const QString dial = m_addressBook.LookupIdent(address);
    const QString caption = Text(emergency ? RadioText::OutgoingEmergencyCall : RadioText::OutgoingCall);
    m_window->CallOutPrepare(caption, dial);
    RadioAddress to;
    if (!ToAddress(dial, to))
        return;
    const bool pstn = to.ident == PstnGatewayIdent;
    if (to.kind == AddressKind::Gateway && !pstn && to.ident != PabxGatewayIdent)
        return;

    int description = RadioText::Voice;
    if (to.kind == AddressKind::Gateway)
        description = pstn ? RadioText::PstnCall : RadioText::PabxCall;
    m_transaction.outgoing.MessagePending = true;
    m_transaction.outgoing.LastSentKind = EventType::Call;
    m_transaction.outgoing.LastMessageText = Text(description);
    if (emergency) {
        m_transaction.outgoing.LastMessageText = FormatMessage(m_services.strings, RadioText::EmergencyOut,
                                                               {m_transaction.outgoing.LastMessageText});
    }
    m_agent->Parties().Note(m_addressBook.LookupCallsign(dial));
    m_transaction.look = {caption, emergency, false};
    Start(TransactionKind::CallSetUp, address, [&] {
        if (to.kind == AddressKind::Radio)
            m_control->MakeCall(Prefix(to), Ident(to), emergency, priority, dialog);
        else
            m_control->MakeGatewayCall(
                static_cast<qint32>(pstn ? map27::Gateway::Pstn : map27::Gateway::Pabx),
                QString::fromStdString(to.digits), emergency, priority, dialog);
    });
}

void Map27Executive::ResetTran()
{
    m_control->CancelTransaction();
    m_control->ResetLink(ResetPause);
    m_control->ClearCall();
    m_agent->Forget();
    m_window->HideAgent();
}

void Map27Executive::HangUpRadio()
{
    try {
        m_control->HangUpRadio();
    } catch (const std::exception& failure) {
        TellFailure(failure);
    }
}

QString Map27Executive::FirstUnsendable(const QString& text)
{
    for (const char32_t character : text.toStdU32String())
        if (!map27::ToCodePage437(character))
            return QString::fromUcs4(&character, 1);
    return {};
}

QStringList Map27Executive::ParseAddressLine(const QString& line)
{
    return ::ParseAddressLine(line);
}

QString Map27Executive::MakeFullAddress(const QString& dial) const
{
    return m_agent->Numbering().MakeFullAddress(dial);
}

LinkStatus Map27Executive::Link() const
{
    return m_control->Link();
}

QWidget& Map27Executive::AgentWindow()
{
    return *m_window;
}

bool Map27Executive::IsBusy(int notReadyText)
{
    if (!m_transaction.IsOpen())
        return false;
    m_services.prompt.ShowWarning(Text(notReadyText));
    return true;
}

bool Map27Executive::ToAddress(const QString& dial, RadioAddress& address)
{
    try {
        address = m_agent->Numbering().Addressing().DialToAddress(dial.toStdString());
        return true;
    } catch (const AddressingError& failure) {
        // What is still a callsign after the look-up is not in the directory.
        return Refuse(IsValidCallsign(dial)
                          ? FormatMessage(m_services.strings, RadioText::AddressUnknown, {dial})
                          : AddressingFailure(failure, m_services.strings).Description());
    } catch (const std::exception& failure) {
        return Refuse(DescribeError(failure, m_services.strings));
    }
}

// Says why what was to be started is not.
bool Map27Executive::Refuse(const QString& text)
{
    m_agent->Sent().Refuse(text);
    m_services.prompt.ShowWarning(text);
    return false;
}

void Map27Executive::PrepareMessaging(const QString& party, int captionText)
{
    m_window->MessagingPrepare(party);
    m_window->SetCaption(Text(captionText));
}

void Map27Executive::StartMessage(const SentMessage& message, const QString& text,
                                  const std::function<void(const RadioAddress&)>& operation)
{
    const bool status = message.kind == EventType::Status;
    const QString address = message.to;
    m_agent->Sent().Begin(message);
    m_transaction.outgoing.LastSentKind = message.kind;
    m_transaction.outgoing.LastMessageText = text;
    m_transaction.outgoing.LastMayRepeat = message.mayRepeat;
    m_transaction.outgoing.LastDestination = address;
    const QString dial = m_addressBook.LookupIdent(address);
    PrepareMessaging(dial, status ? RadioText::SendingStatus : RadioText::SendingText);
    RadioAddress to;
    if (!ToAddress(dial, to))
        return;
    if (to.kind != AddressKind::Radio) {
        m_agent->Sent().Refuse(Text(RadioText::NoMessagesByTelephone));
        return;
    }
    if (GoesToMany(dial, to))
        m_agent->Sent().GoesToMany();
    m_agent->Parties().Note(m_addressBook.LookupCallsign(dial));
    m_transaction.outgoing.MessagePending = true;
    Start(status ? TransactionKind::Status : TransactionKind::Text, address, [&] { operation(to); });
}

bool Map27Executive::GoesToMany(const QString& dial, const RadioAddress& address) const
{
    return m_addressBook.IsTalkgroup(dial) || address.ident > MaxSubscriberIdent ||
           m_agent->Numbering().IsOwnGroup(address.prefix, address.ident);
}

bool Map27Executive::Start(enum TransactionKind kind, const QString& party,
                           const std::function<void()>& operation)
{
    // Set first: an outcome may arrive before the operation returns.
    m_transaction.Begin(kind, party);
    try {
        operation();
    } catch (const std::exception& failure) {
        m_transaction.MoveTo(TransactionKind::None);
        return Refuse(DescribeError(failure, m_services.strings));
    }
    if (m_transaction.IsOpen())
        m_window->ShowAgent();
    return true;
}

QString Map27Executive::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
