#pragma once

#include "radio/line/PortProblem.h"

#include <QObject>
#include <memory>

// The line to the radio: a serial port or a network connection. Owned by RadioLine, and lives on its thread;
// no operation waits for the other end.
class RadioPort : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Opens the line anew. Opened or Failed follows, perhaps before it returns.
    virtual void Open() = 0;
    // Lets the last words out, for 100 ms at most.
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    virtual void Write(const QByteArray& octets) = 0;

Q_SIGNALS:
    void Opened();
    void Received(const QByteArray& octets);
    // The line is gone and closed.
    void Failed(const PortProblem& problem);
};

// A port by its name in the settings: COMn, a device's name or path, tcp://host:port. With a name that cannot
// be one, opening fails.
std::unique_ptr<RadioPort> MakeRadioPort(const QString& name, int bitsPerSecond);
