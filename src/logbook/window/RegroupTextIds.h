#pragma once

// Catalogue ids of the window with the regroupings, and of who has moved whom.
namespace RegroupText {

constexpr int HistoryCaption = 6802;
constexpr int HistoryOf = 6803;
constexpr int Time = 6804;
constexpr int Radio = 6805;
constexpr int OldGroup = 6806;
constexpr int NewGroup = 6807;
constexpr int Position = 6808;
constexpr int Operator = 6809;
constexpr int Console = 6810;
constexpr int HistoryButton = 6811;
constexpr int MovedBy = 6812;
constexpr int MovedByAt = 6813;
constexpr int HistoryAsOf = 6814;
constexpr int HistoryCut = 6815;

} // namespace RegroupText
