#pragma once

#include "map27/codec/Messages.h"

// Parts of the message codec that both directions share. Not for use outside of it.
namespace map27::codec {

// Reads a message from front to back. Past the end it gives zeros and remembers that it ran out.
class Reader {
public:
    explicit Reader(OctetSpan octets) : m_octets(octets) {}

    std::uint8_t Take();
    std::uint16_t TakeWord();
    OctetSpan Take(std::size_t count);
    OctetSpan TakeRest() { return Take(Remaining()); }
    std::size_t Remaining() const { return m_octets.size(); }
    bool RanOut() const { return m_ranOut; }

private:
    OctetSpan m_octets;
    bool m_ranOut = false;
};

Address ReadAddress(Reader& reader);
Party ReadParty(Reader& reader);

EscapeMessage ReadEscape(Reader& reader);
RadioTestMessage ReadRadioTest(Reader& reader);
StatusMessage ReadStatus(Reader& reader);
ShortDataMessage ReadShortData(Reader& reader, DataSize size);
ModemDataMessage ReadModemData(Reader& reader);
CallMessage ReadCall(Reader& reader, bool emergency);
ClearMessage ReadClear(Reader& reader, bool abnormal);
SettingsMessage ReadSettings(Reader& reader);
ProtocolInfoMessage ReadProtocolInfo(Reader& reader);

// What is wrong with a type octet that nothing reads.
DecodeError ClassifyType(std::uint8_t type);

void WriteWord(Octets& octets, std::uint16_t word);
void WriteAddress(Octets& octets, Address address);
void WriteParty(Octets& octets, const Party& party);

// Each appends the whole message, type octet first.
void Write(Octets& octets, const EscapeMessage& message);
void Write(Octets& octets, const RadioTestMessage& message);
void Write(Octets& octets, const StatusMessage& message);
void Write(Octets& octets, const ShortDataMessage& message);
void Write(Octets& octets, const ModemDataMessage& message);
void Write(Octets& octets, const CallMessage& message);
void Write(Octets& octets, const ClearMessage& message);
void Write(Octets& octets, const SettingsMessage& message);
void Write(Octets& octets, const ProtocolInfoMessage& message);

} // namespace map27::codec
