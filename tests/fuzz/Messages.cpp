// The decoders of both directions, and the words of a trace for what they decode.

#include "map27/codec/Messages.h"
#include "fuzz/Input.h"
#include "map27/codec/CharacterCoding.h"
#include "map27/codec/Utf8.h"
#include "map27/trace/MessageWords.h"

#include <stdexcept>

using namespace map27;

namespace {

void CheckText(std::string_view text)
{
    while (!text.empty())
        MUST_HOLD(TakeUtf8(text));
}

// What was decoded can be sent on, and is the same then; one that was not understood may be refused.
template <typename Message, typename Decode, typename Encode>
void CheckDecoder(OctetSpan octets, Decode decode, Encode encode)
{
    const DecodeResult<Message> decoded = decode(octets);
    if (const auto* error = std::get_if<DecodeError>(&decoded)) {
        MUST_HOLD(DecodeErrorText(*error)[0] != '\0');
        return;
    }
    const Message& message = std::get<Message>(decoded);
    if (const auto* data = std::get_if<ShortDataMessage>(&message))
        CheckText(DecodeText(data->data));
    Octets again;
    try {
        again = encode(message);
    } catch (const std::invalid_argument&) {
        return;
    }
    const DecodeResult<Message> second = decode(again);
    MUST_HOLD(std::holds_alternative<Message>(second));
    // Bits and octets without a meaning are gone after the first time.
    MUST_HOLD(encode(std::get<Message>(second)) == again);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const OctetSpan octets(data, size);
    CheckDecoder<ToRadio>(octets, DecodeToRadio, EncodeToRadio);
    CheckDecoder<FromRadio>(octets, DecodeFromRadio, EncodeFromRadio);
    for (const Direction direction : {Direction::ToRadio, Direction::FromRadio}) {
        const std::string words = MessageWords(octets, direction);
        MUST_HOLD(!words.empty());
        CheckText(words);
        CheckText(WithoutControls(words));
    }
    return 0;
}
