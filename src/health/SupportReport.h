#pragma once

#include <QDateTime>
#include <QString>

// One text file for whoever helps from afar: what the diagnostics say, the program's log, and the trace of
// the line's last hour. The log and the trace of all consoles of the user are in it, since they lie in one
// folder. The lines of the trace are those that begin with "{". No passwords, and unless they are asked for
// no texts of messages.
struct SupportReport {
    QString diagnostics; // plain text; may be empty
    QString stateFolder; // of the log and the trace
    bool withTexts = false;
    QDateTime now;

    // May take seconds. Replaces the file, which is for its owner alone, when all of it is written; raises
    // Error and leaves it as it was otherwise.
    void Write(const QString& path) const;
};
