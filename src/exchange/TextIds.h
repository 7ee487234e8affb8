#pragma once

// Catalogue ids of tables as files.
namespace ExchangeText {

// The window
constexpr int Caption = 7202;
constexpr int LineColumn = 7203;
constexpr int EntryColumn = 7204;
constexpr int OutcomeColumn = 7205;
constexpr int ReasonColumn = 7206;
constexpr int Added = 7207;
constexpr int Changed = 7208;
constexpr int Unchanged = 7209;
constexpr int Removed = 7210;
constexpr int Refused = 7211;
constexpr int Counts = 7212;
constexpr int Reading = 7213;
constexpr int Import = 7214;
constexpr int Cancel = 7215;
constexpr int LeaveOutRefused = 7216;
constexpr int ChangedMeanwhile = 7217;
constexpr int Exported = 7221;
constexpr int ListName = 7223;

// Why a file cannot be read or written
constexpr int FileTooLarge = 7230;
constexpr int NotUtf8 = 7231;
constexpr int ProblemOfLine = 7232;
constexpr int AfterQuotedField = 7233;
constexpr int QuoteInField = 7234;
constexpr int NoClosingQuote = 7235;
constexpr int ColumnTwice = 7236;
constexpr int ColumnMissing = 7237;
constexpr int UnknownColumn = 7238;
constexpr int FileEmpty = 7239;
constexpr int FileExists = 7256;

// Why a line is refused
constexpr int OtherFieldCount = 7240;
constexpr int TooLong = 7241;
constexpr int UnknownType = 7242;
constexpr int NotYesOrNo = 7243;
constexpr int BadPosition = 7244;
constexpr int IdentEmpty = 7245;
constexpr int BadIdent = 7246;
constexpr int CallsignTwice = 7247;
constexpr int IdentTaken = 7248;
constexpr int OtherType = 7249;
constexpr int Regrouped = 7250;
constexpr int BadCode = 7251;
constexpr int CodeTwice = 7252;

// What is to be known before anything is imported
constexpr int AddressesNotChecked = 7222;

} // namespace ExchangeText
