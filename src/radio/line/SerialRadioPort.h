#pragma once

#include "radio/line/RadioPort.h"
#include "radio/line/SerialAdapters.h"

#include <QSerialPort>
#include <memory>

// A serial port: eight data bits, no parity, one stop bit, no flow control (MAP27 v1.5, 3.3). Modem lines are
// neither needed nor touched, so that pseudo terminals work too. An adapter that was opened once is opened
// again under whatever name it has then; while it is not plugged in, the port's own name is tried.
class SerialRadioPort : public RadioPort {
    Q_OBJECT

public:
    SerialRadioPort(const QString& name, int bitsPerSecond,
                    std::shared_ptr<const SerialAdapters> adapters = std::make_shared<SerialAdapters>());

    void Open() override;
    void Close() override;
    bool IsOpen() const override { return m_port.isOpen(); }
    void Write(const QByteArray& octets) override;

    // "/dev/ttyS0" for "COM1", "/dev/ttyUSB0" for "ttyUSB0", a path as it is.
    static QString DevicePath(const QString& name);

private:
    QString Device() const;
    PortProblem Problem() const;
    PortProblem Busy() const;
    PortProblem Other() const;
    void OnError(QSerialPort::SerialPortError error);

    QString m_name;
    int m_bitsPerSecond;
    std::shared_ptr<const SerialAdapters> m_adapters;
    QString m_device;  // path of the one that was opened last
    QString m_adapter; // identity of the one that was opened last; empty when it has none
    QSerialPort m_port;
};
