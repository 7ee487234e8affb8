#pragma once

#include "radio/line/Map27Control.h"
#include "radio/line/RadioPort.h"
#include "radio/line/ThreadedLine.h"

struct Clock;
struct IStringSource;

// The radio control on a real line: checks and numbers what the windows ask for, hands it to the line, and
// turns what the line reports into events, and its condition into words. Belongs to the windows' thread; the
// line has one of its own, unless it is told otherwise.
class SerialMap27Control : public Map27Control {
    Q_OBJECT

public:
    using PortFactory = RadioLine::PortFactory;

    using Place = ThreadedLine::Place;

    // Strings and clock must outlive it. Without a factory the ports are those of this computer and network.
    // The factory and its ports are used on the line's thread.
    SerialMap27Control(const IStringSource& strings, const Clock& clock, Place place,
                       PortFactory ports = &MakeRadioPort);
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
    void HangUpRadio() override;
    void MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                         bool dialog) override;

    LinkStatus Link() const override { return m_status; }
    LineFigures Figures() const override { return m_line.Figures(); }

    // What is shown while OpenLink waits for a port, from 300 ms on.
    void SetWaitSign(ThreadedLine::WaitSign sign) { m_line.SetWaitSign(std::move(sign)); }

    // What the line's timer does when it is due: tests call it after moving the clock, which they may do in
    // `first`. Both run on the line's thread.
    void OnTime(const std::function<void()>& first = [] {}) { m_line.OnTime(first); }

private:
    // `subject` is what the operator gave, for the sentence of a refusal.
    void Run(const QString& subject, const RadioLine::Operation& operation,
             ThreadedLine::Late late = ThreadedLine::Late::Dropped);
    // For what is harmless on a closed line and never refused.
    void RunIfOpen(const std::function<map27::TerminalOutput(map27::Terminal&, map27::TimePoint)>& operation);
    void Take(const LineReport& report);
    void Handle(const map27::TerminalEvent& event);
    void TellCause(std::uint8_t source, std::uint8_t cause, const map27::Octets& message);
    void HandleReport(const map27::Report& report);
    void HandlePersonality(const map27::PersonalityMessage& personality);
    void HandleCondition(const LineCondition& condition);
    void SetStatus(LinkStatus::State state, const QString& text);
    QString PortText(int id) const;

    const IStringSource& m_strings;
    ThreadedLine m_line;
    QString m_portName;
    int m_baudRate = 9600;
    map27::NumberingMessage m_numbering; // as last reported
    LinkStatus m_status;
};
