#pragma once

#include <QObject>
#include <QString>
#include <memory>

struct IStringSource;

// The line to the radio: a serial port or a network connection. Owned by RadioLine.
class RadioPort : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Opens the line. With `wait` it is open on return, or Error says in plain words why not. Without, Opened
    // or Failed follows, and a slow network does not hold the caller up.
    virtual void Open(bool wait) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    virtual void Write(const QByteArray& octets) = 0;

Q_SIGNALS:
    void Opened();
    void Received(const QByteArray& octets);
    // The line is gone and closed; the text says why.
    void Failed(const QString& text);
};

// A port by its name in the settings: COMn, a device's name or path, tcp://host:port. Raises Error for a name
// that cannot be one.
std::unique_ptr<RadioPort> MakeRadioPort(const QString& name, int bitsPerSecond,
                                         const IStringSource& strings);
