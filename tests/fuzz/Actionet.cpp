// ANN numbers there and back, under any parameters and for any own radio.

#include "fuzz/Numbering.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const ActionetConfig config{input.Octet() % 13 - 1, input.Octet() % 13 - 1, input.Octet() % 6 - 1};
    const auto addressing = CreateAddressing("ACTIONET");
    fuzz::AnySource source({}, config);
    try {
        addressing->SetConfigSource(source, source);
    } catch (const AddressingError& error) {
        MUST_HOLD(error.what()[0] != '\0');
    }
    if (input.Octet() % 4 != 0)
        addressing->SetRadioNumbering(fuzz::ReadOwn(input));
    addressing->Warnings();
    fuzz::Convert(*addressing, input);
    return 0;
}
