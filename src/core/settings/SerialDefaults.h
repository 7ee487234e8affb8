#pragma once

#include <QString>

// Where the settings dialog reads and keeps the port of the radio.
struct ISerialDefaults {
    virtual ~ISerialDefaults() = default;

    virtual QString DefaultPort() const = 0;
    virtual void SetDefaultPort(const QString& port) = 0;
    virtual int DefaultBaud() const = 0; // bits per second
    virtual void SetDefaultBaud(int baud) = 0;
};
