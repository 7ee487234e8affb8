#pragma once

#include <QString>
#include <QStringList>

struct IStringSource;

// Why a port cannot be opened, or is gone.
struct PortProblem {
    enum class Kind {
        Absent,       // port
        NotSerial,    // port
        NotPermitted, // port, group that owns it
        LockLeft,     // port, lock file, process that wrote it
        Busy,         // port
        BusyBy,       // port, who holds it
        BadAddress,   // port
        HostUnknown,  // host
        HostRefused,  // port
        HostSilent,   // port
        Other,        // port, the system's words
    };

    Kind kind = Kind::Other;
    QStringList values{}; // as named above
};

// For the operator.
QString PortProblemText(const PortProblem& problem, const IStringSource& strings);
