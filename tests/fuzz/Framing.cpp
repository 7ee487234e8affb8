// Octets from the line: frames in whatever pieces they come, and the trace that cuts the same octets into
// frames.

#include "map27/link/Framing.h"
#include "fuzz/Input.h"
#include "map27/trace/FrameParts.h"
#include "map27/trace/FrameSplitter.h"

using namespace map27;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const std::size_t pieceLength = 1 + input.Octet() % 40;
    const Octets line = input.Rest();

    FrameDecoder whole;
    const std::vector<Octets> bodies = whole.Feed(line);
    FrameDecoder pieces;
    FrameSplitter splitter;
    std::vector<Octets> bodiesOfPieces;
    Octets traced;
    std::vector<Octets> tracedBodies;
    for (OctetSpan rest = line; !rest.empty();) {
        const OctetSpan piece = rest.first(std::min(pieceLength, rest.size()));
        rest = rest.subspan(piece.size());
        for (Octets& body : pieces.Feed(piece))
            bodiesOfPieces.push_back(std::move(body));
        for (const LinePiece& one : splitter.Feed(piece)) {
            traced.insert(traced.end(), one.octets.begin(), one.octets.end());
            MUST_HOLD(!one.octets.empty());
            const auto parts = TakeApart(one.octets);
            MUST_HOLD(one.isFrame == parts.has_value());
            if (parts && parts->IsGood())
                tracedBodies.push_back(parts->body);
        }
    }
    MUST_HOLD(bodies == bodiesOfPieces);
    MUST_HOLD(whole.Counters() == pieces.Counters());
    MUST_HOLD(whole.Counters().frames == bodies.size());
    traced.insert(traced.end(), splitter.Held().begin(), splitter.Held().end());
    MUST_HOLD(traced == line);
    // The trace shows what the console has taken.
    MUST_HOLD(tracedBodies == bodies);

    for (const Octets& body : bodies)
        MUST_HOLD(FrameDecoder().Feed(EncodeFrame(body)) == std::vector<Octets>{body});
    if (line.empty() || line.size() > FrameDecoder::LongestBody)
        return 0;
    // The same octets as a body, behind what is left of another frame.
    const Octets frame = EncodeFrame(line);
    MUST_HOLD(TakeApart(frame)->body == line);
    MUST_HOLD(FrameDecoder().Feed(frame) == std::vector<Octets>{line});
    return 0;
}
