#pragma once

#include "dao/base/Location.h"

#include <QString>
#include <optional>

// What somebody setting up the database enters: a new one with its first administrator, or an existing one.
struct FirstRunChoice {
    bool create = true;
    dao::Location location;
    // For a new database only.
    QString userName;
    QString password;
    QString repeated;
    QString group; // of the operating system, whose accounts share the files; empty: this account alone
};

// A field that has to be corrected, and the catalogue sentence that says so.
struct FirstRunProblem {
    enum class Field { Database, Workgroup, UserName, Password };

    Field field;
    int textId;
};

// The first problem in the entry itself; whether the files can be created or opened is not checked.
std::optional<FirstRunProblem> CheckFirstRun(const FirstRunChoice& choice);

// The absolute form of a typed path; a relative one starts in the user's data folder. A server's target, and
// an empty text, stay as they are.
QString FullPath(const QString& typed);
