#include "radio/base/SentMessages.h"

using State = SentMessage::State;

void SentMessages::Begin(const SentMessage& message)
{
    Fail(); // nothing more will be heard of one that is still open
    m_toMany = false;
    m_certain = false;
    m_reason.clear();
    m_advice.clear();
    if (m_messages.size() == Most) {
        m_messages.pop_front();
        Q_EMIT Dropped();
    }
    m_messages.push_back(message);
    Q_EMIT Added();
}

void SentMessages::Wait()
{
    Move(State::Waiting, m_reason, {});
    Explain({}, {}, false);
}

void SentMessages::Explain(const QString& reason, const QString& advice, bool certain)
{
    m_reason = reason;
    m_advice = advice;
    m_certain = certain;
}

void SentMessages::Confirm()
{
    Move(m_toMany ? State::GivenToMany : State::Delivered, {}, {});
}

void SentMessages::Fail()
{
    Move(m_certain ? State::Failed : State::Unconfirmed, m_reason, m_advice);
}

void SentMessages::Refuse(const QString& reason)
{
    Move(State::Failed, reason, {});
}

void SentMessages::GiveUp(const QString& advice)
{
    Move(State::GivenUp, {}, advice);
}

void SentMessages::Clear()
{
    m_messages.clear();
    Q_EMIT Cleared();
}

void SentMessages::Move(State state, const QString& reason, const QString& advice)
{
    if (!IsOpen())
        return;
    SentMessage& message = m_messages.back();
    message.state = state;
    message.reason = reason;
    message.advice = advice;
    Q_EMIT Changed(m_messages.size() - 1);
}
