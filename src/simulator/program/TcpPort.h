#pragma once

#include "simulator/program/Port.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace sim {

// A TCP port for one console at a time; a second one is turned away.
class TcpPort : public Port {
    Q_OBJECT

public:
    // Port 0 takes any that is free. Throws PortError.
    TcpPort(const QString& host, quint16 port, QObject* parent = nullptr);
    ~TcpPort() override;

    QString Name() const override;
    void Send(const QByteArray& octets) override;

private:
    void Accept();
    void Leave();

    QString m_host;
    QTcpServer m_server;
    QTcpSocket* m_console = nullptr; // owned by the server
};

} // namespace sim
