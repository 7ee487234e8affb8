#pragma once

#include "radio/base/LinkStatus.h"
#include "radio/line/LineFigures.h"
#include "radio/line/RadioCause.h"

#include <QObject>
#include <QString>

// The MAP27 radio on its port, as the rest of the console sees it. Addresses are MPT1327 prefix and ident.
// Every operation either starts the request and returns, or raises Error with a description for the operator;
// none waits for the radio. Outcomes arrive as events (signals), always on the user interface thread, one at
// a time.
//
// CancelTransaction, ClearCall, ResetLink and CloseLink never raise merely because nothing is in progress.
class Map27Control : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Port name: COMn, a device path or name, or tcp://host:port. Bit rate in bits per second.
    virtual void SetCommPort(const QString& port) = 0;
    virtual void SetBaudRate(int baud) = 0;

    // Valid while and after NumberingReceived is raised.
    virtual qint16 RadioPrefix() const = 0;
    virtual qint16 RadioIdent() const = 0;
    virtual qint16 UnitBaseIdent() const = 0;
    virtual qint16 GroupBaseIdent() const = 0;
    virtual qint16 UnitMaxIdent() const = 0;
    virtual qint16 GroupMaxIdent() const = 0;
    virtual bool UnitTwoDigit() const = 0;
    virtual bool GroupTwoDigit() const = 0;

    // Raises when the port cannot be opened, and when the link is closed meanwhile: a port that takes its
    // time is waited for in an event loop, without user input and without events of the radio. From then on a
    // lost link is retried until CloseLink. On an open link it closes that one first.
    virtual void OpenLink() = 0;
    virtual void CloseLink() = 0;
    virtual void SendRegroupCommand(qint16 memberPrefix, qint16 memberIdent, qint16 pos, qint16 groupPrefix,
                                    qint16 groupIdent) = 0;
    virtual void SendGroupNameCommand(qint16 prefix, qint16 ident, qint16 pos, const QString& name) = 0;
    virtual void RequestRadioInfo(qint16 kind) = 0; // a map27::RadioInfo
    virtual void ResetLink(qint32 pause) = 0;       // milliseconds before the link is set up again
    virtual void SendStatusMessage(qint16 prefix, qint16 ident, qint16 status) = 0;
    virtual void SendTextMessage(qint16 prefix, qint16 ident, const QString& text, bool eightBit) = 0;
    virtual void CancelTransaction() = 0;
    virtual void MakeCall(qint16 prefix, qint16 ident, bool emergency, bool priority, bool dialog) = 0;
    virtual void AnswerCall(bool accept) = 0;
    virtual void SetTransmit(bool on) = 0;
    virtual void ClearCall() = 0;
    // Puts the radio on hook and releases its transmitter, even when no call is ours.
    virtual void HangUpRadio() = 0;
    // A map27::Gateway.
    virtual void MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                                 bool dialog) = 0;

    virtual LinkStatus Link() const = 0;
    // What has gone over the line.
    virtual LineFigures Figures() const { return {}; }

Q_SIGNALS:
    void StatusReceived(qint16 prefix, qint16 ident, qint16 status);
    // In radio contact, off hook, transmitting, field strength 0..255, maximum call time in seconds (0
    // unlimited); the message in hexadecimal.
    void OperatingConditionReceived(int inContact, int offHook, int transmitting, int fieldStrength,
                                    int maxCallSeconds, const QString& octets = {});
    void TextReceived(const QString& text, qint16 prefix, qint16 ident);
    void NumberingReceived();
    void TransactionCleared(int type, int cause);
    // The code is a map27::Type: Setup..., Receive... and Message... for these three events, each Positive,
    // Queued or Negative.
    void OutgoingCallProgress(qint16 code, int cause);
    void AnswerProgress(qint16 code, int cause);
    // callCode is map27::Type::Call or EmergencyCall; flags are map27::CallDetails as they came from the
    // radio. The description says whose the ident is, when it is not a radio's.
    void IncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident,
                      const map27::AddressDescription& description = {});
    void MessageProgress(qint16 code, int cause, qint16 prefix, qint16 ident);
    void NetworkInfoReceived(qint16 channel, qint16 systemIdentity);

    // Why a progress event or a clearing that follows at once has come.
    void CauseTold(const RadioCause& cause);
    // A map27::ProtocolReason that the radio gives, whatever it is about.
    void Complained(int reason);

    // Not one of the radio's events: the call that was lost with the link goes on, and is ours.
    void CallTakenUp(qint16 prefix, qint16 ident);
    // Nor this: the link came up, went down, or turned out to be with a simulated radio.
    void LinkChanged(const LinkStatus& status);
};
