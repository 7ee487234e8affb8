#pragma once

#include "core/settings/SerialPortList.h"

// The serial ports that the operating system knows.
struct SystemSerialPorts : ISerialPortList {
    std::vector<SerialPortChoice> Ports() const override;
};
