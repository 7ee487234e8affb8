#pragma once

// Catalogue ids of the numbering windows; captions are in the forms.
namespace NumberingText {

constexpr int ChangeQuestion = 1000;
constexpr int LogonAgain = 2000;

constexpr int SelectModel = 2120;
constexpr int FleetCounts = 2121;
constexpr int ModelSmall = 4018;
constexpr int ModelMedium = 4019;
constexpr int ModelLarge = 4020;
constexpr int ModelExtraLarge = 4021;

constexpr int DeleteQuestion = 2170;
constexpr int NameMissing = 2171;
constexpr int TypeMissing = 2172;
constexpr int PrefixInvalid = 2173;
constexpr int NumberInvalid = 2174;
constexpr int SizeInvalid = 2175;
constexpr int DigitsMissing = 2176;
constexpr int UnitsName = 2177;
constexpr int GroupsName = 2178;
constexpr int FindOutSize = 2179;
constexpr int TwoDigit = 4044;
constexpr int ThreeDigit = 4045;

constexpr int Report = 2220;

// Further texts.
constexpr int NameTaken = 5700;
constexpr int NameTooLong = 5701;
constexpr int NotesTooLong = 5702;
constexpr int RadioHasNoUnits = 5703;
constexpr int RadioHasNoGroups = 5704;

// A fleet plan from a file
constexpr int UnknownType = 7253;
constexpr int NotANumber = 7254;
constexpr int NameTwice = 7255;
constexpr int RemoveOthers = 7224;

} // namespace NumberingText
