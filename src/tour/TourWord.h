#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <functional>

// A kind of line that a script may hold. Its shape is how the line is written: words in small letters stand
// as they are, and
//   NAME    is a control's object name, or another name without blanks
//   PLACE   a control, or an item of a list or tree: lvDir, tvGroups/Group91/Unit20, lstPlan/"City groups",
//           lvSensors/#3 (a row, the first is 0)
//   TEXT    stands in double quotes
//   KEY     is a key: f5, return, ctrl+shift+tab
//   NUMBER  is a whole number
//   REST    is whatever follows, up to the end of the line
// A word does something, or looks and returns nothing when it sees what it should, else what is seen instead.
struct TourWord {
    using Act = std::function<void(const QStringList& values)>;
    using Look = std::function<QString(const QStringList& values)>;

    QString shape;
    Act act = {};
    Look look = {};
};

// Matches the lines of a shape as a whole and captures their values, those in quotes with them.
QRegularExpression PatternOf(const QString& shape);
