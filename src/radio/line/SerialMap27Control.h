#pragma once

#include "map27/terminal/Terminal.h"
#include "radio/line/LinkWatch.h"
#include "radio/line/Map27Control.h"

#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

class RadioPort;
struct Clock;
struct IStringSource;

// The radio control on a real line: owns the port, the terminal's end of MAP27 and the one timer that drives
// it. A line that fails after OpenLink is opened again for ever with a growing pause, and one without a link
// now and then; a transaction that was open then ends with TransactionCleared. A radio that has nothing to
// say is asked every 8 seconds whether it is there.
class SerialMap27Control : public Map27Control {
    Q_OBJECT

public:
    // Makes the port of a name and bit rate; raises Error for a name that cannot be one.
    using PortFactory = std::function<std::unique_ptr<RadioPort>(const QString& name, int bitsPerSecond)>;

    SerialMap27Control(const IStringSource& strings, const Clock& clock, PortFactory ports = {});
    ~SerialMap27Control() override;

    void SetCommPort(const QString& port) override { m_portName = port; }
    void SetBaudRate(int baud) override { m_baudRate = baud; }

    qint16 RadioPrefix() const override;
    qint16 RadioIdent() const override;
    qint16 UnitBaseIdent() const override;
    qint16 GroupBaseIdent() const override;
    qint16 UnitMaxIdent() const override;
    qint16 GroupMaxIdent() const override;
    bool UnitTwoDigit() const override;
    bool GroupTwoDigit() const override;

    void OpenLink() override;
    void CloseLink() override;
    void SendRegroupCommand(qint16 memberPrefix, qint16 memberIdent, qint16 pos, qint16 groupPrefix,
                            qint16 groupIdent) override;
    void SendGroupNameCommand(qint16 prefix, qint16 ident, qint16 pos, const QString& name) override;
    void RequestRadioInfo(qint16 kind) override;
    void ResetLink(qint32 pause) override;
    void SendStatusMessage(qint16 prefix, qint16 ident, qint16 status) override;
    void SendTextMessage(qint16 prefix, qint16 ident, const QString& text, bool eightBit) override;
    void CancelTransaction() override;
    void MakeCall(qint16 prefix, qint16 ident, bool emergency, bool priority, bool dialog) override;
    void AnswerCall(bool accept) override;
    void SetTransmit(bool on) override;
    void ClearCall() override;
    void MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                         bool dialog) override;

    LinkStatus Link() const override { return m_status; }

    // What the timer does when it is due: tests call it after moving the clock.
    void OnTime();

private:
    using Operation = std::function<map27::OperationResult(map27::Terminal&, map27::TimePoint)>;

    // `subject` is what the operator gave, for the sentence of a refusal.
    void Run(const QString& subject, const Operation& operation);
    void Take(map27::TerminalOutput output);
    void Deliver();
    void Handle(const map27::TerminalEvent& event);
    void HandleLinkFailed(map27::LinkFailure reason);
    void HandlePersonality(const map27::PersonalityMessage& personality);
    void StartLink();
    void EndLink();
    void OnPortOpened();
    void OnPortFailed(const QString& text);
    void Reopen();
    void Supervise();
    void ShowFinding(LinkWatch::Finding finding);
    void Schedule();
    void Complain(LinkStatus::State state, const QString& text);
    void SetStatus(LinkStatus::State state, const QString& text);
    QString PortText(int id) const;
    map27::TimePoint Now() const;

    const IStringSource& m_strings;
    const Clock& m_clock;
    PortFactory m_ports;
    QString m_portName;
    int m_baudRate = 9600;
    std::unique_ptr<RadioPort> m_port; // null when the link is closed
    std::unique_ptr<map27::Terminal> m_terminal;
    map27::NumberingMessage m_numbering; // as last reported
    LinkStatus m_status;
    LinkWatch m_watch;
    QTimer m_timer;
    std::deque<map27::TerminalEvent> m_events; // waiting to be delivered from the event loop
    std::optional<map27::TimePoint> m_retryAt;
    map27::Milliseconds m_retryPause{0};
    bool m_reopening = false;
};
