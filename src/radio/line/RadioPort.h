#pragma once

#include <QObject>
#include <QString>
#include <memory>

struct IStringSource;

// The line to the radio: a serial port or a network connection. Owned by the radio control.
class RadioPort : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Opens the line. With `wait` it is open on return, or Error says in plain words why not; without, Opened
    // or Failed comes later and the caller is not held up by a slow network.
    virtual void Open(bool wait) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    virtual void Write(const QByteArray& octets) = 0;

Q_SIGNALS:
    void Opened();
    void Received(const QByteArray& octets);
    // The line is gone; the text says why. It is closed then.
    void Failed(const QString& text);
};

// A port by its name in the settings: COMn, a device's name or path, tcp://host:port. Raises Error for a name
// that cannot be one.
std::unique_ptr<RadioPort> MakeRadioPort(const QString& name, int bitsPerSecond,
                                         const IStringSource& strings);
