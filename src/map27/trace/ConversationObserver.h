#pragma once

#include "map27/codec/Messages.h"
#include "map27/trace/Finding.h"

#include <optional>
#include <set>

namespace map27 {

// Follows requests and their answers from the side (MAP27 v1.5, 5.3 and 5.4): one message or call at a time,
// and no answer to what nobody asked. Messages are given once each, without repetitions.
class ConversationObserver {
public:
    Findings Take(OctetSpan message, Direction direction);
    // What the radio said of itself before.
    void TakeSaid(OctetSpan message);
    // The link was set up anew.
    void Forget();

private:
    // What the terminal waits for, or has given up a moment ago.
    struct Request {
        AckSubject subject;
        Party called;
        bool isCancelled = false;
        bool mayBeRefused = false; // or a question was
    };

    void TakeToRadio(const ToRadio& message);
    void TakeFromRadio(const FromRadio& message);
    void TakeOwnNumber(const FromRadio& message);
    void TakeAnswer(const AcknowledgementMessage& answer);
    void TakeReceiveProgress(const AcknowledgementMessage& progress);
    void JudgeParty(const Party& party);
    void TakeProtocolInfo(std::uint8_t reason);
    void GiveUpCall();
    void Begin(AckSubject subject, const Party& called);

    std::optional<Request> m_request;
    // GivenUp by this end, so that what the radio says of it may cross with that.
    enum class Incoming { None, GivenUp, Ringing, Connected } m_incoming = Incoming::None;
    bool m_inCall = false;
    std::set<std::uint8_t> m_awaited; // types of the answers to questions; 0: of one that may have none
    bool m_wasCancelled = false;      // the last request, which the radio has ended since
    std::optional<std::uint8_t> m_ownPrefix;
    Findings m_findings;
};

} // namespace map27
