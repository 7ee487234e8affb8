#pragma once

#include <QSet>
#include <QString>

struct IStringSource;

// What the log's record of an emergency call says, in the words of a catalogue: nothing else in it tells one.
QSet<QString> EmergencyCallTexts(const IStringSource& strings);
// In those of every catalogue on this computer, for records of consoles in other languages.
QSet<QString> EmergencyCallTexts();
