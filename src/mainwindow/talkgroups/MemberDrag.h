#pragma once

#include <QPoint>
#include <QString>

// How far dragging a member of the talkgroup tree has come: armed by the left button on a member, begun when
// the pointer has moved far enough. Knows nothing of the tree; places are in the tree's pixels.
class MemberDrag {
public:
    // The furthest that the pointer may move along either axis without starting a drag.
    static constexpr int Slack = 9;

    // The left button went down on a node. While a drag is armed or under way this ends it.
    void Press(const QPoint& place, const QString& nodeKey, bool mayBeDragged);
    // The pointer moved with the button held. Returns whether the member is being dragged now.
    bool Move(const QPoint& place);
    void End() { m_state = State::Idle; }

    bool IsIdle() const { return m_state == State::Idle; }
    bool IsDragging() const { return m_state == State::Dragging; }
    const QString& DraggedKey() const { return m_key; }

private:
    enum class State { Idle, Armed, Dragging };

    State m_state = State::Idle;
    QPoint m_start;
    QString m_key;
};
