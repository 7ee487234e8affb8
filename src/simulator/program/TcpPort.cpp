#include "simulator/program/TcpPort.h"

#include <QHostAddress>
#include <QHostInfo>

namespace sim {

namespace {

constexpr qint64 LongestWaiting = 65536; // octets

QHostAddress Resolve(const QString& host)
{
    const QHostAddress address(host);
    if (!address.isNull())
        return address;
    const QHostInfo info = QHostInfo::fromName(host);
    if (info.addresses().isEmpty())
        throw PortError(host.toStdString() + ": " + info.errorString().toStdString());
    return info.addresses().first();
}

} // namespace

TcpPort::TcpPort(const QString& host, quint16 port, QObject* parent) : Port(parent), m_host(host)
{
    connect(&m_server, &QTcpServer::newConnection, this, &TcpPort::Accept);
    if (!m_server.listen(Resolve(host), port)) {
        throw PortError(host.toStdString() + ':' + std::to_string(port) +
                        ": cannot be listened on: " + m_server.errorString().toStdString());
    }
}

TcpPort::~TcpPort()
{
    if (m_console)
        m_console->disconnect(this);
}

QString TcpPort::Name() const
{
    const bool isBare6 = m_host.contains(QLatin1Char(':'));
    return (isBare6 ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(m_host)
        .arg(m_server.serverPort());
}

void TcpPort::Send(const QByteArray& octets)
{
    if (m_console && m_console->bytesToWrite() + octets.size() <= LongestWaiting)
        m_console->write(octets);
}

void TcpPort::Accept()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        if (m_console) {
            qWarning("veltorkyn-radio: a second console was turned away");
            socket->abort();
            socket->deleteLater();
            continue;
        }
        m_console = socket;
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::readyRead, this, [this] { Q_EMIT Received(m_console->readAll()); });
        connect(socket, &QTcpSocket::disconnected, this, &TcpPort::Leave);
        Q_EMIT Came();
        if (m_console && m_console->bytesAvailable() > 0)
            Q_EMIT Received(m_console->readAll());
    }
}

void TcpPort::Leave()
{
    m_console->disconnect(this);
    m_console->deleteLater();
    m_console = nullptr;
    Q_EMIT Went();
}

} // namespace sim
