#pragma once

#include "map27/codec/Direction.h"

#include <cstdint>
#include <string>

namespace map27 {

// Causes of the acknowledgements C0..E7 (MAP27 v1.5, A7.5). Some mean one thing of a message or a call that
// is set up, and another of a call that came in.
namespace Cause {
constexpr std::uint8_t Success = 0x00;
constexpr std::uint8_t Alerting = 0x01;
constexpr std::uint8_t SystemBusy = 0x02;
constexpr std::uint8_t Invalid = 0x03;
constexpr std::uint8_t Unreachable = 0x04;
constexpr std::uint8_t EmergencyProceeding = 0x05;
constexpr std::uint8_t DivertedNoRetry = 0x06;
constexpr std::uint8_t NotedForCallBack = 0x07;
constexpr std::uint8_t Aborted = 0x08;
constexpr std::uint8_t UnitBusy = 0x0A;
constexpr std::uint8_t Overloaded = 0x0B;
constexpr std::uint8_t EngagedOrRefused = 0x0C;
constexpr std::uint8_t NoLongMessages = 0x0D;
constexpr std::uint8_t DivertedUnavailable = 0x0E;
constexpr std::uint8_t DivertedToGroup = 0x16;
constexpr std::uint8_t SentInParts = 0x22;
constexpr std::uint8_t DivertedRetry = 0x26;
constexpr std::uint8_t DivertedToGroupRetry = 0x36;
// Of an incoming call (D5, E5).
constexpr std::uint8_t TransmissionDisabled = 0x01;
constexpr std::uint8_t CallerGaveUp = 0x03;
constexpr std::uint8_t CallTimeNearlyOver = 0x0A;
} // namespace Cause

// Causes of a disconnect or cancel (86, A6) to the radio, and of its word that something has ended.
namespace ClearCause {
constexpr std::uint8_t EndCall = 0x07;
constexpr std::uint8_t CancelAttempt = 0x08;
constexpr std::uint8_t CancelInclude = 0x09;
constexpr std::uint8_t AbortDiversion = 0x0A;
constexpr std::uint8_t CancelDataCall = 0x0C;
// From the radio.
constexpr std::uint8_t Unspecified = 0x00;
constexpr std::uint8_t ByRadio = 0x01;
constexpr std::uint8_t NoContact = 0x04;
constexpr std::uint8_t TooLong = 0x05;
constexpr std::uint8_t CodingImpossible = 0x06;
constexpr std::uint8_t EndedNormally = 0x0B;
constexpr std::uint8_t EndedAbnormally = 0x0E;
} // namespace ClearCause

// The cause octet of an acknowledgement, a disconnect or clear, or a protocol info, in English for traces and
// log files. An unknown cause is described by the outcome that the type stands for and by its number
// (MAP27 v1.5, A7.5).
std::string CauseText(std::uint8_t type, std::uint8_t cause, Direction direction = Direction::FromRadio);

// Whether the standard names it.
bool IsKnownCause(std::uint8_t type, std::uint8_t cause, Direction direction);

// "INCOMING EMERGENCY CALL" for A5 from the radio; hexadecimal for a type without a name.
std::string TypeName(std::uint8_t type, Direction direction);

} // namespace map27
