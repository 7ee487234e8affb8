#pragma once

#include "radio/agent/AgentRules.h"
#include "radio/agent/AttentionNotes.h"
#include "radio/agent/CallerNames.h"
#include "radio/agent/EventRecorder.h"
#include "radio/agent/RadioBoxes.h"
#include "radio/agent/RadioNotices.h"
#include "radio/agent/RadioReports.h"
#include "radio/agent/Views.h"
#include "radio/base/LastParties.h"
#include "radio/base/RadioServices.h"
#include "radio/base/SentMessages.h"
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

    // What it says of causes, to be told on.
    const RadioNotices& Notices() const { return m_notices; }
    // What has become of the messages of this shift.
    SentMessages& Sent() { return m_sent; }
    // With whom something was exchanged in this shift.
    LastParties& Parties() { return m_parties; }
    // The facade has ended what was in progress.
    void Forget();

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

private:
    struct Ringing {
        QString party;
        QString callBack;
        QString what;
        QDateTime since;
        bool emergency;
    };
    struct LostCall {
        QString party;
        CallLook look;
    };

    void ConnectEvents();
    void ConnectViews();
    bool IsConnected() const { return m_numbering.IsSet(); }

    void OnStatusReceived(qint16 prefix, qint16 ident, qint16 status);
    void OnTextReceived(const QString& text, qint16 prefix, qint16 ident);
    void OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident,
                        const map27::AddressDescription& description);
    void OnCallTakenUp(qint16 prefix, qint16 ident);
    void OnCause(const RadioCause& cause);
    void OnComplaint(int reason);

    void React(AgentTrigger trigger);
    void Record(const AgentReaction& reaction);
    void FollowMessage(AgentTrigger trigger);
    void FollowRinging(AgentTrigger trigger);
    bool Request(const AgentReaction& reaction);
    void WriteOutgoingRecord();
    void StoreRegroup();
    void TellAttention(AgentTrigger trigger);
    void NoteFailedMessage();
    void FollowSound();
    // Of a call that is connected now.
    int TalkText() const;
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
    CallerNames m_callers;
    RadioNotices m_notices;
    RadioReports m_reports;
    AttentionNotes m_attention;
    SentMessages m_sent;
    LastParties m_parties;
    bool m_transmitting = false;      // the radio has been told so
    std::optional<Ringing> m_ringing; // the incoming call that is not connected yet
    std::optional<LostCall> m_lost;   // with the link
};
