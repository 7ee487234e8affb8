#pragma once

#include "radio/line/RadioPort.h"

#include <QTcpSocket>
#include <QTimer>

// A serial device server or simulated radio on the network, tcp://host:port.
class TcpRadioPort : public RadioPort {
    Q_OBJECT

public:
    static bool IsName(const QString& name);

    explicit TcpRadioPort(const QString& name);

    void Open() override;
    void Close() override;
    bool IsOpen() const override { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void Write(const QByteArray& octets) override;

private:
    PortProblem Problem() const;
    void Fail(const PortProblem& problem);

    QString m_name;
    QString m_host; // empty for a name that is not a valid address
    quint16 m_portNumber = 0;
    QTcpSocket m_socket;
    QTimer m_limit;
};
