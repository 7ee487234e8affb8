#pragma once

#include "radio/base/Transaction.h"
#include "radio/line/RadioCause.h"

#include <QObject>
#include <QString>
#include <functional>

class CallerNames;
struct IAgentWindow;
struct IStringSource;
struct RadioViews;

// Puts every cause that the radio gives, and what is odd about its condition, into words where the dispatcher
// looks: the status bar, the call window while it is up, and the strip where somebody has to do something.
class RadioNotices : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    RadioNotices(const IStringSource& strings, const CallerNames& callers, const Transaction& transaction,
                 IAgentWindow& window, const RadioViews& views);

    // Before what the cause brings about; `party` as shown.
    void Take(const RadioCause& cause);
    // The radio has noted a call that never rang here.
    void TakeNotedCall(const QString& caller, const RadioCause& cause);
    // A cause of the radio's as the dispatcher is told it.
    QString Words(const RadioCause& cause) const;
    // What has been said of the transaction since, for the call window; empty: nothing.
    QString TakeProgress();
    // Why what is in progress is ending, in words; empty where the radio has not said so.
    QString Reason() const { return m_reason; }
    // A sentence in status bar and call window.
    void Say(const QString& text);

    // The radio's hook and transmitter. `ask` asks it once more: the last word of a call that has just ended
    // may still have been under way. `octets` is its message.
    void TakeCondition(bool offHook, bool transmitting, const QString& octets,
                       const std::function<void()>& ask);

    // The transaction has moved on or ended.
    void Follow();
    // The link is down: what held of the radio no longer does.
    void ForgetCondition();

Q_SIGNALS:
    // Something that was asked for has not happened, and no box tells so.
    void Failed(const QString& text);
    // Of the call in progress; empty when it no longer holds.
    void CallNoticed(const QString& text);
    // The radio is off hook or transmits though no call is ours; empty when it no longer is.
    void RadioInUse(const QString& text);

private:
    bool NeedsAnAct(const RadioCause& cause) const;
    void TellInUse(const QString& text);

    const IStringSource& m_strings;
    const CallerNames& m_callers;
    const Transaction& m_transaction;
    IAgentWindow& m_window;
    const RadioViews& m_views;
    QString m_progress;
    QString m_reason;
    QString m_inUse;
    bool m_callNoticed = false;
    bool m_suspected = false; // and asked about
};
