#pragma once

#include "core/eventlog/EventLog.h"

#include <QTimer>
#include <QVariant>
#include <chrono>

// Role of lists and trees that is true for what waits to be stored: from its first moment until it is on a
// disk.
constexpr int WaitingRole = Qt::UserRole + 17;

// Stored is usually long before; what takes longer looks so, too.
constexpr std::chrono::seconds TimeToMark(1);

// How it looks then: of Qt::FontRole and Qt::ForegroundRole.
QVariant WaitingLook(int role);

// Has a model follow what the event log stores: `due`, to be started with what begins to wait, has it marked.
template <typename Model> void FollowRecords(Model& model, const EventLog& log, QTimer& due)
{
    due.setSingleShot(true);
    due.setInterval(TimeToMark);
    QObject::connect(&due, &QTimer::timeout, &model, &Model::ShowWaiting);
    QObject::connect(&log, &EventLog::Safe, &model, &Model::SetSafe);
}
