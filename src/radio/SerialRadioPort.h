#pragma once

#include "radio/RadioPort.h"

#include <QSerialPort>

// A serial port: eight data bits, no parity, one stop bit, no flow control (MAP27 v1.5, 3.3). Modem lines are
// neither needed nor touched, so that pseudo terminals work too.
class SerialRadioPort : public RadioPort {
    Q_OBJECT

public:
    SerialRadioPort(const QString& name, int bitsPerSecond, const IStringSource& strings);

    void Open(bool wait) override;
    void Close() override;
    bool IsOpen() const override { return m_port.isOpen(); }
    void Write(const QByteArray& octets) override;

    // "/dev/ttyS0" for "COM1", "/dev/ttyUSB0" for "ttyUSB0", a path as it is.
    static QString DevicePath(const QString& name);

private:
    QString Problem(const QString& device) const;
    void OnError(QSerialPort::SerialPortError error);

    QString m_name;
    int m_bitsPerSecond;
    const IStringSource& m_strings;
    QSerialPort m_port;
};
