#include "radio/line/TcpRadioPort.h"

#include "radio/line/SerialRadioPort.h"

#include <QSignalBlocker>
#include <QUrl>

namespace {

constexpr int ConnectLimit = 2000;  // ms
constexpr int LastWordsLimit = 100; // ms

} // namespace

bool TcpRadioPort::IsName(const QString& name)
{
    return name.startsWith(QLatin1String("tcp://"), Qt::CaseInsensitive);
}

TcpRadioPort::TcpRadioPort(const QString& name) : m_name(name)
{
    const QUrl url(name, QUrl::StrictMode);
    if (url.isValid() && url.port() > 0 && url.path().isEmpty()) {
        m_host = url.host();
        m_portNumber = static_cast<quint16>(url.port());
    }
    m_limit.setSingleShot(true);
    m_limit.setInterval(ConnectLimit);
    connect(
        &m_limit, &QTimer::timeout, this,
        [this] {
            Fail({PortProblem::Kind::HostSilent, {m_name}});
        });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] { Q_EMIT Received(m_socket.readAll()); });
    connect(
        &m_socket, &QTcpSocket::connected, this,
        [this] {
            m_limit.stop();
            m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
            Q_EMIT Opened();
        });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this] { Fail(Problem()); });
}

void TcpRadioPort::Open()
{
    Close();
    if (m_host.isEmpty()) {
        Q_EMIT Failed({PortProblem::Kind::BadAddress, {m_name}});
        return;
    }
    m_limit.start();
    m_socket.connectToHost(m_host, m_portNumber);
}

void TcpRadioPort::Close()
{
    m_limit.stop();
    // What fails now is of no interest any more, and must not lead here again.
    const QSignalBlocker blocker(m_socket);
    // Let the last words out, perhaps a hang-up.
    if (IsOpen() && m_socket.bytesToWrite() > 0)
        m_socket.waitForBytesWritten(LastWordsLimit);
    m_socket.abort();
}

void TcpRadioPort::Write(const QByteArray& octets)
{
    if (IsOpen())
        m_socket.write(octets);
}

PortProblem TcpRadioPort::Problem() const
{
    switch (m_socket.error()) {
    case QAbstractSocket::HostNotFoundError:
        return {PortProblem::Kind::HostUnknown, {m_host}};
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::RemoteHostClosedError:
        return {PortProblem::Kind::HostRefused, {m_name}};
    case QAbstractSocket::SocketTimeoutError:
        return {PortProblem::Kind::HostSilent, {m_name}};
    default:
        return {PortProblem::Kind::Other, {m_name, m_socket.errorString()}};
    }
}

void TcpRadioPort::Fail(const PortProblem& problem)
{
    Close();
    Q_EMIT Failed(problem);
}

std::unique_ptr<RadioPort> MakeRadioPort(const QString& name, int bitsPerSecond)
{
    if (TcpRadioPort::IsName(name))
        return std::make_unique<TcpRadioPort>(name);
    return std::make_unique<SerialRadioPort>(name, bitsPerSecond);
}
