#pragma once

// Catalogue ids of what a shift report says.
namespace ShiftText {

constexpr int Title = 6652;
constexpr int FirstRecords = 6653; // statuses, texts, calls
constexpr int WayUnknown = 6656;
constexpr int EmergencyCalls = 6657;
constexpr int FirstKind = 6658; // emergency, missed call, call for a call-back, message that failed
constexpr int Answered = 6662;
constexpr int NoneAnswered = 6663;
constexpr int Open = 6664;
constexpr int FirstColumn = 6665; // as ShiftLines::Column has them
constexpr int SinceColumn = 6668;
constexpr int StateColumn = 6675;
constexpr int FirstState = 6676; // as ShiftWait::State has them

} // namespace ShiftText
