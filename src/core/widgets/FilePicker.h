#pragma once

#include <QString>

class QWidget;
struct IStringSource;

// Lets the operator pick a file in a dialog (object name "fileDialog").
struct FilePicker {
    enum class Kind { Database, Workgroup, Table };

    Kind kind;
    bool newFile = false; // names a file to be made, else an existing one
    QString start;        // the file proposed, or one whose folder is shown; may be missing

    // Empty when cancelled.
    QString Pick(const IStringSource& strings, QWidget* parent) const;
};
