#include "mainwindow/talkgroups/MemberDrag.h"

#include <cstdlib>

void MemberDrag::Press(const QPoint& place, const QString& nodeKey, bool mayBeDragged)
{
    if (m_state != State::Idle) {
        m_state = State::Idle;
        return;
    }
    m_start = place;
    m_key = nodeKey;
    m_state = mayBeDragged ? State::Armed : State::Idle;
}

bool MemberDrag::Move(const QPoint& place)
{
    const QPoint way = place - m_start;
    if (m_state == State::Armed && (std::abs(way.x()) > Slack || std::abs(way.y()) > Slack))
        m_state = State::Dragging;
    return IsDragging();
}
