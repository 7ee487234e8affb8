#pragma once

#include "radio/base/Transaction.h"

// What moves the transaction in progress on, or ends it.
enum class AgentTrigger {
    CallConnected,
    CallProceeding,
    CallFailed,
    AnswerConnected,
    AnswerFailed,
    MessageSending,
    MessageDelivered,
    MessageFailed,
    Cleared,
    MainButton, // Cancel, Answer or Hungup
    CloseButton,
};

// One reaction. Its steps are taken in the order of these fields, except for showFirst.
struct AgentReaction {
    enum class Request { None, Cancel, Clear, Answer };
    enum class OnError { Ignore, LogAndStay, Warn };

    bool showFirst = false;     // recording and forgetting come after the button's caption and the next kind
    bool writeRecord = false;   // when a message is pending: log record and log line
    bool forgetMessage = false; // MessagePending becomes false
    bool storeRegroup = false;  // a pending regroup or ungroup is stored and reflected
    bool cancelRegroup = false; // a pending regroup or ungroup is taken back
    int logText = 0;            // catalogue id appended to the window's progress lines; 0 none
    int buttonText = 0;         // new caption of the main button; 0 unchanged
    TransactionKind next = TransactionKind::None;
    bool reflectScada = false;
    bool cancelScada = false;
    Request request = Request::None;
    OnError onError = OnError::Ignore; // what happens when the request raises
    bool hide = false;
    int warning = 0; // catalogue id of a warning box; 0 none
};

// The reaction to a trigger during a transaction of this kind; null when the trigger means nothing there.
const AgentReaction* FindReaction(TransactionKind kind, AgentTrigger trigger);
