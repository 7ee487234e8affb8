#pragma once

// Catalogue ids of the sheet of keys.
namespace KeyText {

constexpr int NotPrinted = 6601;
constexpr int Caption = 6602;
constexpr int WhatColumn = 6603;
constexpr int WhereColumn = 6604;
constexpr int KeyColumn = 6605;
constexpr int SecondColumn = 6606;
constexpr int NewKey = 6607;
constexpr int Set = 6608;
constexpr int NoKey = 6609;
constexpr int AsDelivered = 6610;
constexpr int Print = 6611;
constexpr int Close = 6612;

constexpr int Everywhere = 6613;
constexpr int MainWindow = 6614;
constexpr int CallWindow = 6615;
constexpr int ToBox = 6616;
constexpr int TextBox = 6617;
constexpr int MessageLog = 6618;
constexpr int AddressDirectory = 6619;
constexpr int StatusMessages = 6620;
constexpr int Lists = 6649;

constexpr int HelpPage = 6621;
constexpr int NextTab = 6622;
constexpr int PreviousTab = 6623;
constexpr int SevenBit = 6624;
constexpr int EightBit = 6625;
constexpr int Reload = 6626;
constexpr int SendOrCall = 6627;
constexpr int Attention = 6628;
constexpr int LogWindow = 6629;
constexpr int SentMessages = 6630;
constexpr int Favourite = 6631;
constexpr int QuickText = 6632;
constexpr int ToCall = 6633;
constexpr int Answer = 6634;
constexpr int HangUp = 6635;
constexpr int CancelCall = 6636;
constexpr int CloseCall = 6637;
constexpr int Transmit = 6638;
constexpr int SentBefore = 6639;
constexpr int CopyLines = 6640;
constexpr int AddAddress = 6641;
constexpr int DeleteLine = 6642;
constexpr int NewStatus = 6643;

constexpr int KeyTaken = 6644;
constexpr int KeyIsTyped = 6645;
constexpr int KeyIsOthers = 6646;
constexpr int KeyNotUsed = 6647;
constexpr int KeyStays = 6648;

} // namespace KeyText
