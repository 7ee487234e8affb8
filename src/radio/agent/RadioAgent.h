#pragma once

#include "addressing/RadioNumbering.h"
#include "radio/agent/AgentRules.h"
#include "radio/agent/RadioBoxes.h"
#include "radio/facade/Map27Executive.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <memory>
#include <optional>

class MptAddressing;
struct IAgentWindow;

// Receives every event of the radio control and every button of the call dialogue, and decides the outcome of
// each transaction by the table of AgentRules: advances the facade's transaction kind, writes log records and
// calls back into the views.
class RadioAgent : public QObject {
    Q_OBJECT

public:
    RadioAgent(const RadioServices& services, Map27Control& control, IAgentWindow& window);
    ~RadioAgent() override;

    // The facade whose transaction is driven; null makes the agent deaf (not connected).
    void SetExec(Map27Executive* executive) { m_executive = executive; }
    void SetViews(const RadioViews& views) { m_views = views; }

    // Null while not connected.
    MptAddressing* Addressing() const { return m_addressing.get(); }
    void SetAddressing(std::unique_ptr<MptAddressing> addressing);
    // Its configuration has been read anew: the own address is converted again.
    void ConfigurationChanged();

    const QString& MyAddress() const { return m_myAddress; }
    const QString& MyCallsign() const { return m_myCallsign; }

    // Buttons of the dialogue.
    void PressMainButton() { React(AgentTrigger::MainButton); }
    void PressCloseButton() { React(AgentTrigger::CloseButton); }
    // Keys the radio's transmitter while a call is connected, or releases it.
    void SetTransmit(bool on);

    // Takes back a regroup or ungroup that the radio has not confirmed.
    void CancelRegroup();
    // The call that rings ends without an answer, if there is one.
    void EndRinging();
    void ReloadIndividuals();

Q_SIGNALS:
    void EmergencyCallReceived(const QString& party, const QDateTime& time);
    // A call has rung since that time and was neither answered nor refused.
    void CallMissed(const QString& party, const QDateTime& since);
    // What is doubtful about configuration and reported numbering has changed; empty when all is well.
    void NumberingDoubted(const QStringList& doubts);

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
    void OnStatusReceived(qint16 prefix, qint16 ident, qint16 status);
    void OnTextReceived(const QString& text, qint16 prefix, qint16 ident);
    void OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident);
    void OnNumberingReceived();
    void OnOperatingCondition(int inContact, int fieldStrength);
    void OnNetworkInfo(qint16 channel, qint16 systemIdentity);

    void PassNumberingOn();
    void TakeOwnNumber();
    void TakeOwnCallsign();
    void TellDoubts(const QStringList& doubts);

    void React(AgentTrigger trigger);
    void Record(const AgentReaction& reaction);
    void FollowRinging(AgentTrigger trigger);
    bool Request(const AgentReaction& reaction);
    void WriteOutgoingRecord();
    void StoreRegroup();
    void UpdateDuty(const QString& callsign, int status);
    void Append(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                const QString& to);
    void Show(const QDateTime& time, EventType type, const QString& desc, const QString& from,
              const QString& to);
    void Notify();
    void ShowAnswer(const QString& text);
    Party Resolve(int prefix, int ident) const;
    QString IncomingCaption(bool emergency, int prefix, int ident) const;
    QString Text(int id) const;

    RadioServices m_services;
    Map27Control& m_control;
    IAgentWindow& m_window;
    Map27Executive* m_executive = nullptr;
    RadioViews m_views;
    RadioBoxes m_boxes;
    std::unique_ptr<MptAddressing> m_addressing;
    std::optional<RadioNumbering> m_numbering; // as the radio reported it since the logon
    QStringList m_doubts;
    QString m_myAddress;
    QString m_myCallsign;
    bool m_transmitting = false;      // the radio has been told so
    std::optional<Ringing> m_ringing; // the incoming call that is not connected yet
    bool m_recordsFailing = false;    // the warning for records that cannot be written has been shown
};
