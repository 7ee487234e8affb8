#pragma once

#include "radio/agent/AgentRules.h"
#include "radio/agent/EventRecorder.h"
#include "radio/agent/RadioBoxes.h"
#include "radio/agent/Views.h"
#include "radio/base/RadioServices.h"
#include "radio/base/SessionNumbering.h"

#include <QDateTime>
#include <QObject>
#include <memory>
#include <optional>

class Map27Control;
struct IAgentWindow;

// Receives every event of the radio control and every button of the call dialogue, and decides the outcome of
// each transaction by the table of AgentRules: moves the transaction on, writes log records and calls back
// into the views.
class RadioAgent : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    RadioAgent(const RadioServices& services, Map27Control& control, IAgentWindow& window,
               Transaction& transaction, AddressBook& addressBook);
    ~RadioAgent() override;

    void SetViews(const RadioViews& views) { m_views = views; }

    // While no numbering is set, nobody is logged on and the agent is deaf to the radio.
    SessionNumbering& Numbering() { return m_numbering; }

    // Buttons of the dialogue.
    void PressMainButton() { React(AgentTrigger::MainButton); }
    void PressCloseButton() { React(AgentTrigger::CloseButton); }
    // Keys the radio's transmitter while a call is connected, or releases it.
    void SetTransmit(bool on);

    // Takes back a regroup or ungroup that the radio has not confirmed.
    void CancelRegroup();
    // The call that rings ends without an answer, if there is one.
    void EndRinging();

Q_SIGNALS:
    void EmergencyCallReceived(const QString& party, const QDateTime& time);
    // A call has rung since that time and was neither answered nor refused.
    void CallMissed(const QString& party, const QDateTime& since);

private:
    struct Party {
        QString dial;
        QString callsign;
    };
    struct Ringing {
        QString party;
        QDateTime since;
    };

    void ConnectEvents();
    void ConnectViews();
    bool IsConnected() const { return m_numbering.IsSet(); }

    void OnStatusReceived(qint16 prefix, qint16 ident, qint16 status);
    void OnTextReceived(const QString& text, qint16 prefix, qint16 ident);
    void OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident);
    void OnNumberingReceived();
    void OnOperatingCondition(int inContact, int fieldStrength);
    void OnNetworkInfo(qint16 channel, qint16 systemIdentity);

    void React(AgentTrigger trigger);
    void Record(const AgentReaction& reaction);
    void FollowRinging(AgentTrigger trigger);
    bool Request(const AgentReaction& reaction);
    void WriteOutgoingRecord();
    void StoreRegroup();
    void Notify();
    void ShowOwnNumber(const QString& callsign, const QString& address);
    void ShowAnswer(const QString& text);
    Party Resolve(int prefix, int ident) const;
    QString IncomingCaption(bool emergency, int prefix, int ident) const;
    QString Text(int id) const;

    RadioServices m_services;
    Map27Control& m_control;
    IAgentWindow& m_window;
    Transaction& m_transaction;
    AddressBook& m_addressBook;
    SessionNumbering m_numbering;
    RadioViews m_views;
    RadioBoxes m_boxes;
    EventRecorder m_recorder;
    bool m_transmitting = false;      // the radio has been told so
    std::optional<Ringing> m_ringing; // the incoming call that is not connected yet
};
