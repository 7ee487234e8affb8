#pragma once

#include <QtGlobal>

// The one radio transaction in progress. Values 2 and 7 are never used.
enum class TransactionKind : qint16 {
    None = 0,
    CallSetUp = 1,
    CallConnected = 3,
    CallRinging = 4,
    Status = 5,
    Text = 6,
    Regroup = 8,
    GroupName = 9,
};
