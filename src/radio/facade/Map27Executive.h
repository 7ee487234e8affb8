#pragma once

#include "core/settings/SerialDefaults.h"
#include "radio/agent/Views.h"
#include "radio/base/AddressBook.h"
#include "radio/base/LinkStatus.h"
#include "radio/base/RadioServices.h"
#include "radio/base/Transaction.h"
#include "radio/facade/TextRoom.h"

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class frmMap27Agent;
class LastParties;
class Map27Control;
class RadioAgent;
class SentMessages;
struct RadioAddress;
struct SentMessage;

// The one object through which every window uses the radio. It starts one transaction at a time; the outcome
// arrives at the radio agent. Send operations show their own messages and never raise.
class Map27Executive : public QObject, public ISerialDefaults {
    Q_OBJECT

public:
    Map27Executive(const RadioServices& services, std::unique_ptr<Map27Control> control);
    ~Map27Executive() override;

    void SetViews(const RadioViews& views);

    enum TransactionKind TransactionKind() const { return m_transaction.Kind(); }
    // Number of the transaction that a send operation started last, by which whoever started one can tell
    // whether an outcome belongs to it.
    unsigned LastTransaction() const { return m_transaction.Number(); }
    // A call is being set up, rings, or is connected, whoever began it.
    bool IsInCall() const;
    const OutgoingMessage& Outgoing() const { return m_transaction.outgoing; }
    class Map27Control& Map27Control() { return *m_control; }

    // Raise Error. Connect that fails for anything but a missing numbering
    // (ErrorCode::NumberingNotConfigured) has closed the link again. What LoadFleetData reads holds for the
    // next number that is dialled.
    void Connect();
    void LoadFleetData();
    void Disconnect(); // harmless when not connected

    // "MPT1343" or "ACTIONET"; the caption of its configuration window. Raise Error while not connected.
    QString CurrentNumbering() const;
    QString CurrentNumberingName() const;

    // Ask the radio; the answers arrive as events. Raise Error.
    void AskOperatingCondition();
    void AskNumbering();
    void AskNetworkInfo();
    // Shows an error that the radio control has raised: in the call window's log while it is open, else in a
    // box.
    void TellFailure(const std::exception& failure);

    // Whose settings hold the port. Each application has a settings file of its own, so nothing else depends
    // on it.
    void SetAppName(const QString& name) { m_appName = name; }
    QString DefaultPort() const override;
    void SetDefaultPort(const QString& port) override;
    int DefaultBaud() const override;
    void SetDefaultBaud(int baud) override;

    // Dial text and callsign of our radio; empty until it has reported its numbering.
    QString MyAddress() const;
    QString MyCallsign() const;

    bool SendRegroup(const QString& member, int pos, const QString& group);
    void SendGroupName(const QString& target, int pos, const QString& name);
    // Whoever commands an outstation repeats it where its answer is seen, not from the list of what was sent.
    enum class Purpose { Message, Command };
    void SendStatus(const QString& address, int status, Purpose purpose = Purpose::Message);
    // Asked before a status is sent as a message; may open a box. Empty: nobody is asked.
    void AskBeforeStatus(std::function<bool(const QString& address, int status)> mayBeSent)
    {
        m_mayBeSent = std::move(mayBeSent);
    }
    void SendText(const QString& address, const QString& text, bool eightBit);
    // The text of an earlier message, in which nothing is to be replaced any more.
    void SendTextAgain(const QString& address, const QString& text, bool eightBit);
    // How much a text that is being typed may still grow. Raises nothing.
    TextRoom RoomIn(const QString& text, bool eightBit) const;
    // The messages of this shift, and one of them as a new one.
    const SentMessages& Sent() const;
    void SendAgain(const SentMessage& message);
    // With whom something was exchanged in this shift, newest first.
    const LastParties& Parties() const;
    void StartCall(const QString& address, bool emergency, bool priority, bool dialog);
    // Ends whatever is in progress and sets the link up again. Raises Error.
    void ResetTran();
    // Ends whatever the radio itself is doing, and says in a box when it cannot.
    void HangUpRadio();

    // The first character that cannot be sent to a radio because code page 437 lacks it; empty when all can.
    static QString FirstUnsendable(const QString& text);
    // The addresses of a line, separated by ";"; empty when it holds none.
    static QStringList ParseAddressLine(const QString& line);
    QString MakeFullAddress(const QString& dial) const; // raises Error
    // As in AddressBook.
    QString LookupCallsign(const QString& dial) const { return m_addressBook.LookupCallsign(dial); }
    QString LookupIdent(const QString& text) const { return m_addressBook.LookupIdent(text); }
    void UpdateDutyStatus(const QString& callsign, bool onDuty)
    {
        m_addressBook.UpdateDutyStatus(callsign, onDuty);
    }

    LinkStatus Link() const;
    QWidget& AgentWindow();

Q_SIGNALS:
    void LinkChanged(const LinkStatus& status);
    // As in RadioNotices.
    void Failed(const QString& text);
    void CallNoticed(const QString& text);
    void RadioInUse(const QString& text);
    // Doubts about the numbering's configuration and the number that the radio reports, one sentence each;
    // empty when the two fit again. Raised only on a change.
    void NumberingDoubted(const QStringList& doubts);

private:
    bool IsBusy(int notReadyText);
    bool ToAddress(const QString& dial, RadioAddress& address);
    bool Refuse(const QString& text);
    void PrepareMessaging(const QString& party, int captionText);
    bool Start(enum TransactionKind kind, const QString& party, const std::function<void()>& operation);
    // `text` is what is recorded.
    void StartMessage(const SentMessage& message, const QString& text,
                      const std::function<void(const RadioAddress&)>& operation);
    bool GoesToMany(const QString& dial, const RadioAddress& address) const;
    QString Text(int id) const;

    RadioServices m_services;
    std::unique_ptr<class Map27Control> m_control;
    std::unique_ptr<frmMap27Agent> m_window;
    Transaction m_transaction;
    AddressBook m_addressBook;
    std::unique_ptr<RadioAgent> m_agent;
    QString m_appName;
    std::function<bool(const QString&, int)> m_mayBeSent;
};
