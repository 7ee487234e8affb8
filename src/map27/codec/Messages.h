#pragma once

#include "map27/codec/Address.h"
#include "map27/codec/Direction.h"
#include "map27/codec/ShortData.h"

#include <variant>

namespace map27 {

// Network messages of MAP27 v1.5, section 5. Terminal and radio use the same structures; where the two
// directions of one type code differ, there are two. In and out of the codec, octets beyond a message's known
// end are accepted and ignored, and unused bits are masked on receipt and sent as 0.

// Message type octets.
namespace Type {
constexpr std::uint8_t Escape = 0x00;
constexpr std::uint8_t RadioTest = 0x01;
constexpr std::uint8_t Status = 0x80;
constexpr std::uint8_t Sst = 0x81;
constexpr std::uint8_t Mst = 0x82;
constexpr std::uint8_t Disconnect = 0x86; // to the radio: hang up; from it: call ended normally
constexpr std::uint8_t DiversionRequest = 0x87;
constexpr std::uint8_t ModemData = 0xA3;
constexpr std::uint8_t Call = 0xA4;
constexpr std::uint8_t EmergencyCall = 0xA5;
constexpr std::uint8_t Cancel = 0xA6; // to the radio: cancel an attempt; from it: ended abnormally
constexpr std::uint8_t DiversionCancel = 0xA7;
constexpr std::uint8_t Personality = 0xB0; // to the radio: interrogation
constexpr std::uint8_t Numbering = 0xB1;
constexpr std::uint8_t OperatingCondition = 0xB2; // to the radio: control
constexpr std::uint8_t Settings = 0xB3;
constexpr std::uint8_t ProtocolInfo = 0xB4;
constexpr std::uint8_t NetworkInfo = 0xB5;
constexpr std::uint8_t Volume = 0xB6;
constexpr std::uint8_t DialledString = 0xB7;
constexpr std::uint8_t MessagePositive = 0xC0; // 192
constexpr std::uint8_t SetupPositive = 0xC4;   // 196
constexpr std::uint8_t ReceivePositive = 0xC5; // 197
constexpr std::uint8_t DiversionPositive = 0xC7;
constexpr std::uint8_t MessageQueued = 0xD0;   // 208
constexpr std::uint8_t SetupQueued = 0xD4;     // 212
constexpr std::uint8_t ReceiveWarning = 0xD5;  // 213
constexpr std::uint8_t MessageNegative = 0xE0; // 224
constexpr std::uint8_t SetupNegative = 0xE4;   // 228
constexpr std::uint8_t ReceiveNegative = 0xE5; // 229
constexpr std::uint8_t DiversionNegative = 0xE7;
} // namespace Type

// Both directions.

// 00: another protocol's octets.
struct EscapeMessage {
    Octets octets;
    bool operator==(const EscapeMessage&) const = default;
};

// 01: test or test result, vendor defined.
struct RadioTestMessage {
    Octets octets;
    bool operator==(const RadioTestMessage&) const = default;
};

// 80: to the radio the called party, from it the calling one. 0..31; a radio may report more, which is kept
// as received.
constexpr std::uint8_t HighestStatus = 31;
struct StatusMessage {
    Party party;
    std::uint8_t status = 0;
    bool operator==(const StatusMessage&) const = default;
};

// 81 (SST) and 82 (MST).
struct ShortDataMessage {
    DataSize size = DataSize::Short;
    Party party;
    ShortData data;
    bool operator==(const ShortDataMessage&) const = default;
};

// A3, format left to the application.
struct ModemDataMessage {
    Octets octets;
    bool operator==(const ModemDataMessage&) const = default;
};

// The call details octet. Bits 7 and 5 mean the same in both directions, bits 6 and 4 do not.
struct CallDetails {
    std::uint8_t octet = 0;

    bool Include() const { return (octet & 0x40) != 0; }
    bool Data() const { return (octet & 0x10) != 0; }
    std::uint8_t Custom() const { return octet & 0x07; }
    // To the radio.
    bool OneWay() const { return (octet & 0x20) != 0; }       // called units may not answer
    bool HighPriority() const { return (octet & 0x08) == 0; } // inverted on the wire; A4 only
    // From the radio.
    bool Group() const { return (octet & 0x20) != 0; }
    bool OffHookNeeded() const { return (octet & 0x08) != 0; } // clear: already connected

    bool operator==(const CallDetails&) const = default;
};

// A4 and A5: a call to set up, or one coming in.
struct CallMessage {
    bool emergency = false;
    Party party;
    CallDetails details;
    Octets parameters; // what follows the details when details.Custom() is not 0
    bool operator==(const CallMessage&) const = default;
};

// 86 (normal) and A6 (abnormal): hang up or cancel; from the radio, that something has ended. No address
// description.
struct ClearMessage {
    bool abnormal = false;
    Address address;
    std::uint8_t cause = 0;
    bool operator==(const ClearMessage&) const = default;
};

// B3: facilities and codings in use, or to be used. Four octets before v1.5 (codings then absent).
struct SettingsMessage {
    std::uint8_t facilitiesA = 0; // see Facility
    std::uint8_t facilitiesB = 0;
    std::uint8_t facilitiesC = 0;
    std::optional<std::uint8_t> codings; // see CodingBit
    bool operator==(const SettingsMessage&) const = default;
};

// B4
struct ProtocolInfoMessage {
    std::uint8_t reason = 0; // see ProtocolReason
    bool operator==(const ProtocolInfoMessage&) const = default;
};

namespace ProtocolReason {
constexpr std::uint8_t Unrecognised = 1;
constexpr std::uint8_t NotSupported = 2;
constexpr std::uint8_t StateMismatch = 3;
constexpr std::uint8_t CodingNotSupported = 4;
constexpr std::uint8_t BusyLocally = 5;
constexpr std::uint8_t ReadyForRemote = 6;
} // namespace ProtocolReason

// Bits of facilities a.
namespace Facility {
constexpr std::uint8_t Voice = 0x80;
constexpr std::uint8_t Modem = 0x40;
constexpr std::uint8_t Status = 0x20;
constexpr std::uint8_t Sst = 0x10;
constexpr std::uint8_t Mst = 0x08;
constexpr std::uint8_t AutomaticDiversion = 0x04;
constexpr std::uint8_t CallBackLog = 0x02;
constexpr std::uint8_t NoFreeFormat = 0x01; // personality only, and inverted: set means not supported
} // namespace Facility

// Bits of the codings octet.
namespace CodingBit {
constexpr std::uint8_t BcdAscii = 0x80;
constexpr std::uint8_t TelexAscii = 0x40;
constexpr std::uint8_t Binary = 0x20;
constexpr std::uint8_t Bcd = 0x10;
constexpr std::uint8_t Telex = 0x08;
constexpr std::uint8_t Ccitt5 = 0x04;
constexpr std::uint8_t PcCharacters = 0x02;
} // namespace CodingBit

// To the radio only.

// What the radio can be asked for.
enum class RadioInfo : std::uint8_t {
    Personality = 0,
    Numbering = 1,
    Settings = 2,
    OperatingCondition = 3,
    Network = 4
};

// B0. 80h and above: customisation.
struct InterrogationMessage {
    std::uint8_t reason = 0; // see RadioInfo
    bool operator==(const InterrogationMessage&) const = default;
};

// B2. Both bits are always sent: transmit without offHook may drop the call.
struct RadioControlMessage {
    bool offHook = false;
    bool transmit = false;
    bool operator==(const RadioControlMessage&) const = default;
};

// B6. points: bit 3 modem, bit 2 alert tones, bit 1 speech. setting: 01 up, 02 down, n3h set to n, 04 preset,
// 05 manual.
struct VolumeMessage {
    std::uint8_t points = 0;
    std::uint8_t setting = 0;
    bool operator==(const VolumeMessage&) const = default;
};

// B7, not for calls. The standard does not say how the characters are coded.
struct DialledStringMessage {
    Octets characters;
    bool operator==(const DialledStringMessage&) const = default;
};

// 87
struct DiversionRequestMessage {
    Party target;
    std::uint8_t info = 0;        // bits 5,4: 00 speech and data, 01 speech, 10 data; bit 1: third party
    std::optional<Party> blocked; // whose calls are diverted, when not one's own
    bool operator==(const DiversionRequestMessage&) const = default;
};

// A7
struct DiversionCancelMessage {
    Party party;
    std::uint8_t info = 0; // bits 5,4 as above; bits 2,1: 00 self, 01 third party, 10 general by recipient
    bool operator==(const DiversionCancelMessage&) const = default;
};

// From the radio only.

// B0
struct PersonalityMessage {
    Address radio;
    std::uint8_t manufacturer = 0;
    std::uint8_t model = 0;       // 0..15
    std::uint32_t serial = 0;     // 18 bits
    std::uint8_t facilitiesA = 0; // see Facility
    std::uint8_t facilitiesB = 0;
    std::uint8_t facilitiesC = 0;
    std::uint8_t codings = 0; // see CodingBit
    bool FreeFormatSupported() const { return (facilitiesA & Facility::NoFreeFormat) == 0; }
    bool operator==(const PersonalityMessage&) const = default;
};

// One half of the fleet's numbering: idents from base to highest, dialled with two or three digits.
struct IdentRange {
    std::uint16_t base = 0;
    std::uint16_t highest = 0;
    bool threeDigits = false;
    bool operator==(const IdentRange&) const = default;
};

// B1
struct NumberingMessage {
    Address radio;
    IdentRange individuals;
    IdentRange groups;
    std::vector<Address> groupList; // groups that the radio listens to
    bool operator==(const NumberingMessage&) const = default;
};

// B2
struct OperatingConditionMessage {
    bool inContact = false;
    bool offHook = false;
    bool transmitting = false;
    bool custom = false;            // bit 8, meaning left to the vendor
    std::uint8_t fieldStrength = 0; // 0 unknown, 1 lowest .. 255 highest; only the order means something
    std::uint8_t maxCallTimeCode = 255;

    // Of maxCallTimeCode; empty: no limit, unknown or reserved.
    std::optional<unsigned> MaxCallSeconds() const;
    bool operator==(const OperatingConditionMessage&) const = default;
};

// B5
struct NetworkInfoMessage {
    std::uint16_t channel = 0;        // 10 bits
    std::uint16_t systemIdentity = 0; // 15 bits
    std::uint16_t rawChannel = 0; // both octets as received: some radios set the bits above. 0 when made here
    bool operator==(const NetworkInfoMessage&) const = default;
};

// C0..E7: what became of a request.
enum class AckOutcome : std::uint8_t { Positive = 0xC0, Queued = 0xD0, Negative = 0xE0 };
enum class AckSubject : std::uint8_t { Message = 0, Setup = 4, Receive = 5, Diversion = 7 };
struct AcknowledgementMessage {
    AckOutcome outcome = AckOutcome::Positive;
    AckSubject subject = AckSubject::Message;
    Party party;            // often the dummy address
    std::uint8_t cause = 0; // see Causes.h

    std::uint8_t TypeOctet() const
    {
        return static_cast<std::uint8_t>(static_cast<unsigned>(outcome) | static_cast<unsigned>(subject));
    }
    bool operator==(const AcknowledgementMessage&) const = default;
};

// Codec.

using ToRadio = std::variant<EscapeMessage, RadioTestMessage, StatusMessage, ShortDataMessage,
                             ModemDataMessage, CallMessage, ClearMessage, SettingsMessage,
                             ProtocolInfoMessage, InterrogationMessage, RadioControlMessage, VolumeMessage,
                             DialledStringMessage, DiversionRequestMessage, DiversionCancelMessage>;

using FromRadio =
    std::variant<EscapeMessage, RadioTestMessage, StatusMessage, ShortDataMessage, ModemDataMessage,
                 CallMessage, ClearMessage, SettingsMessage, ProtocolInfoMessage, PersonalityMessage,
                 NumberingMessage, OperatingConditionMessage, NetworkInfoMessage, AcknowledgementMessage>;

// The octets of one LT. Throws std::invalid_argument for values that the octets cannot carry (prefix, ident,
// digits, lengths): values from a person are to be checked first.
Octets EncodeToRadio(const ToRadio& message);
Octets EncodeFromRadio(const FromRadio& message);

enum class DecodeError {
    TooShort, // ends before its last mandatory octet
    Reserved, // type without a meaning in the standard
    Unknown,  // free for customisation, or a type of the other direction
    BadField, // an address description that cannot be understood; to the radio only
};

// English, for log files.
const char* DecodeErrorText(DecodeError error);

template <typename Message> using DecodeResult = std::variant<Message, DecodeError>;

// The terminal does not lose a message over an address description that it cannot understand: the description
// is kept raw and marked as not understood. A radio has to refuse it, so there it is BadField.
DecodeResult<ToRadio> DecodeToRadio(OctetSpan message);
DecodeResult<FromRadio> DecodeFromRadio(OctetSpan message);

} // namespace map27
