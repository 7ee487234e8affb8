#pragma once

#include "radio/line/RadioPort.h"

#include <QTcpSocket>
#include <QTimer>

// A serial device server or simulated radio on the network, tcp://host:port.
class TcpRadioPort : public RadioPort {
    Q_OBJECT

public:
    static bool IsName(const QString& name);

    // Raises Error for a name that is not a valid address.
    TcpRadioPort(const QString& name, const IStringSource& strings);

    void Open(bool wait) override;
    void Close() override;
    bool IsOpen() const override { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void Write(const QByteArray& octets) override;

private:
    QString Problem() const;
    void Fail(const QString& text);

    QString m_name;
    const IStringSource& m_strings;
    QString m_host;
    quint16 m_portNumber = 0;
    QTcpSocket m_socket;
    QTimer m_limit;
    bool m_waiting = false; // Open(true) reports by itself
};
