#pragma once

#include "radio/base/Transaction.h"

#include <QString>

struct IStringSource;
struct RadioCause;

// Why, in the operator's words: "the called unit is engaged or refuses". `target` is where something was
// diverted to. The log file has the standard's words for it, map27::CauseText.
QString CauseWords(const IStringSource& strings, const RadioCause& cause, const QString& target);

// What the operator can do about a message that ended so; empty: nothing.
QString CauseAdvice(const IStringSource& strings, const RadioCause& cause);

// Whether the cause says that the message has not arrived, rather than that nothing is known of it.
bool IsRefusal(const RadioCause& cause);

// Whether the cause tells of something that goes on, rather than of its end.
bool IsProgress(const RadioCause& cause);

// The whole sentence about a transaction with this party.
QString CauseSentence(const IStringSource& strings, TransactionKind kind, const QString& party,
                      bool isProgress, const QString& words);
