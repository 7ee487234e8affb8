#pragma once

#include "radio/line/RadioPort.h"
#include "simulator/network/Radio.h"
#include "support/FakeClock.h"

#include <QByteArray>
#include <QCoreApplication>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

// A simulated radio with its network at the other end of a line without hardware, in the time of a fake
// clock. The line carries the real octets; what one end writes the other reads at the next Step.
class VirtualRadio {
public:
    VirtualRadio(FakeClock& clock, sim::Scenario scenario)
        : radio(std::move(scenario), map27::LinkParameters::ForBitRate(9600), 1),
          m_clock(clock)
    {
    }

    // Ports that the control has given up are deleted by the event loop, and must not outlive this.
    ~VirtualRadio() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    // For the radio control: every name leads here while the line is plugged in.
    std::function<std::unique_ptr<RadioPort>(const QString&, int)> Ports()
    {
        return [this](const QString&, int) { return std::make_unique<Port>(*this); };
    }

    // One round of both directions and of the radio's own timers.
    void Step()
    {
        if (instead) {
            const QByteArray heard = instead(std::exchange(m_toRadio, {}));
            m_fromRadio.clear();
            if (!heard.isEmpty() && m_port)
                Q_EMIT m_port->Received(heard);
            return;
        }
        FeedRadio();
        Transmit(radio.OnTime(Now()));
        const QByteArray answer = std::exchange(m_fromRadio, {});
        if (!answer.isEmpty() && m_port)
            Q_EMIT m_port->Received(answer);
    }

    // What happens on the air side; fails the test when it cannot.
    void Perform(const sim::Action& action)
    {
        sim::Radio::Result result = radio.Perform(action, Now());
        EXPECT_EQ(result.problem, "");
        Transmit(result.output);
    }

    bool IsOpen() const { return m_port != nullptr; }

    // Pulls the cable out; the console's port reports it.
    void Unplug()
    {
        plugged = false;
        if (m_port) {
            Port* port = m_port;
            port->Close();
            Q_EMIT port->Failed({PortProblem::Kind::Absent, {QStringLiteral("COM2")}});
        }
    }

    sim::Radio radio;
    // While set, something else is at the other end: what it sends, given what it got.
    std::function<QByteArray(const QByteArray&)> instead;
    bool plugged = true;
    bool offHookAtClose = false; // when the console closed its port last

private:
    class Port : public RadioPort {
    public:
        explicit Port(VirtualRadio& owner) : m_owner(owner) {}
        ~Port() override { Close(); }

        void Open() override
        {
            if (m_owner.plugged) {
                m_owner.m_port = this;
                m_owner.Transmit(m_owner.radio.Connect(m_owner.Now()));
                Q_EMIT Opened();
            } else {
                Q_EMIT Failed({PortProblem::Kind::Absent, {QStringLiteral("COM2")}});
            }
        }
        void Close() override
        {
            if (!IsOpen())
                return;
            m_owner.FeedRadio();
            m_owner.offHookAtClose = m_owner.radio.Condition().offHook;
            m_owner.m_port = nullptr;
            m_owner.radio.Disconnect(m_owner.Now());
            m_owner.m_fromRadio.clear();
        }
        bool IsOpen() const override { return m_owner.m_port == this; }
        void Write(const QByteArray& octets) override { m_owner.m_toRadio += octets; }

    private:
        VirtualRadio& m_owner;
    };

    void FeedRadio()
    {
        const QByteArray octets = std::exchange(m_toRadio, {});
        if (octets.isEmpty())
            return;
        const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
        Transmit(radio.Feed({first, static_cast<std::size_t>(octets.size())}, Now()));
    }
    void Transmit(const sim::RadioOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            m_fromRadio.append(reinterpret_cast<const char*>(frame.data()),
                               static_cast<qsizetype>(frame.size()));
    }
    sim::TimePoint Now() const { return sim::TimePoint{m_clock.Ticks()}; }

    FakeClock& m_clock;
    Port* m_port = nullptr;
    QByteArray m_toRadio;
    QByteArray m_fromRadio;
};
