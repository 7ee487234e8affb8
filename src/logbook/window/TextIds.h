#pragma once

// Catalogue ids of the log window.
namespace LogbookText {

constexpr int Caption = 6222;
constexpr int Search = 6223;
constexpr int Party = 6224;
constexpr int Kind = 6225;
constexpr int Direction = 6226;
constexpr int EmergenciesOnly = 6227;
constexpr int AllKinds = 6228; // then statuses, texts, calls
constexpr int BothWays = 6232; // then incoming, outgoing
constexpr int Since = 6235;
constexpr int Until = 6236;
constexpr int GoTo = 6237;
constexpr int Go = 6238;
constexpr int Follow = 6239;
constexpr int ExportCsv = 6240;
constexpr int ExportPdf = 6241;
constexpr int Print = 6242;
constexpr int Close = 6243;
constexpr int Cancel = 6244;
constexpr int Newest = 6245;
constexpr int FirstColumn = 6246; // time, direction, kind, from, to, text, operator, console
constexpr int WayIn = 6254;
constexpr int WayOut = 6255;
constexpr int FirstKind = 6256; // status, text, call
constexpr int EmergencyCall = 6259;
constexpr int Searching = 6260;
constexpr int AllShown = 6261;
constexpr int MoreBelow = 6262;
constexpr int Nothing = 6263;
constexpr int Exporting = 6264;
constexpr int Exported = 6265;
constexpr int ExportCancelled = 6266;
constexpr int Printed = 6267;
constexpr int PrintCancelled = 6268;
constexpr int CsvFiles = 6269;
constexpr int PdfFiles = 6270;
constexpr int PaperTitle = 6271;
constexpr int Page = 6272;
constexpr int Lines = 6273;
constexpr int SearchTip = 6274;
constexpr int PartyTip = 6275;
constexpr int NothingSince = 6276;
constexpr int ExportCaption = 6277;
constexpr int SinceTime = 6278;
constexpr int UntilTime = 6279;
constexpr int GoToTime = 6280;
constexpr int Progress = 6281;
constexpr int CannotPaint = 6282;

} // namespace LogbookText
