#pragma once

// Catalogue ids of the shift report's window, of the one that shows who is where, and of what they share.
namespace ReportText {

constexpr int ShiftCaption = 6651;
constexpr int From = 6680;
constexpr int To = 6681;
constexpr int Show = 6682;
constexpr int NobodyWaited = 6683;
constexpr int Reading = 6684;
constexpr int Waits = 6685;
constexpr int Backwards = 6686;
constexpr int Written = 6687;
constexpr int Printed = 6688;
constexpr int WhereCaption = 6690;
constexpr int Callsign = 6691;
constexpr int Number = 6692;
constexpr int Name = 6693;
constexpr int LastHeard = 6694;
constexpr int LastStatus = 6695;
constexpr int Group = 6696;
constexpr int OnDuty = 6697;
constexpr int OffDuty = 6698;
constexpr int AsOf = 6699;

} // namespace ReportText
