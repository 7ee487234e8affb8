#pragma once

#include <QString>

// The one regroup command that awaits the radio's answer.
struct RegroupRequest {
    bool pending = false;
    QString sourceNodeKey; // of the dragged member; empty when the command came from a menu or button
    QString groupNodeKey;  // of the target group
    QString memberCallsign;
    qint32 oldGroupId = 0; // of the dragged member; meaningful only for a move
    qint32 groupId = 0;
    qint32 memberId = 0;
    quint8 pos = 0;
    bool move = false; // the member changes its group at the same position
};

// The one ungroup command that awaits the radio's answer.
struct UngroupRequest {
    bool pending = false;
    bool wholeGroup = false; // the group is dissolved, else one member leaves it
    QString nodeKey;
    qint32 groupId = 0;  // of the whole group
    qint32 memberId = 0; // of one member
    quint8 pos = 0;
};
