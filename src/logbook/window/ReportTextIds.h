#pragma once

// Catalogue ids of the shift report's window, and of what it shares with others that show a table.
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

} // namespace ReportText
