#include "radio/line/TcpRadioPort.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"
#include "radio/line/SerialRadioPort.h"

#include <QUrl>

namespace {

constexpr int ConnectLimit = 2000;  // ms
constexpr int LastWordsLimit = 100; // ms

} // namespace

bool TcpRadioPort::IsName(const QString& name)
{
    return name.startsWith(QLatin1String("tcp://"), Qt::CaseInsensitive);
}

TcpRadioPort::TcpRadioPort(const QString& name, const IStringSource& strings)
    : m_name(name),
      m_strings(strings)
{
    const QUrl url(name, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || url.port() <= 0 || !url.path().isEmpty())
        throw Error(ErrorCode::General, FormatMessage(strings, RadioText::PortBadAddress, {name}));
    m_host = url.host();
    m_portNumber = static_cast<quint16>(url.port());
    m_limit.setSingleShot(true);
    m_limit.setInterval(ConnectLimit);
    connect(
        &m_limit, &QTimer::timeout, this,
        [this] { Fail(FormatMessage(m_strings, RadioText::PortHostSilent, {m_name})); });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] { Q_EMIT Received(m_socket.readAll()); });
    connect(
        &m_socket, &QTcpSocket::connected, this,
        [this] {
            m_limit.stop();
            m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
            Q_EMIT Opened();
        });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this] {
        if (!m_waiting)
            Fail(Problem());
    });
}

void TcpRadioPort::Open(bool wait)
{
    Close();
    m_waiting = wait;
    if (!wait)
        m_limit.start();
    m_socket.connectToHost(m_host, m_portNumber);
    if (!wait)
        return;
    const bool connected = m_socket.waitForConnected(ConnectLimit);
    m_waiting = false;
    if (!connected) {
        const QString problem = Problem();
        Close();
        throw Error(ErrorCode::General, problem);
    }
}

void TcpRadioPort::Close()
{
    m_limit.stop();
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

QString TcpRadioPort::Problem() const
{
    switch (m_socket.error()) {
    case QAbstractSocket::HostNotFoundError:
        return FormatMessage(m_strings, RadioText::PortHostUnknown, {m_host});
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::RemoteHostClosedError:
        return FormatMessage(m_strings, RadioText::PortHostRefused, {m_name});
    case QAbstractSocket::SocketTimeoutError:
        return FormatMessage(m_strings, RadioText::PortHostSilent, {m_name});
    default:
        return FormatMessage(m_strings, RadioText::PortOther, {m_name, m_socket.errorString()});
    }
}

void TcpRadioPort::Fail(const QString& text)
{
    Close();
    Q_EMIT Failed(text);
}

std::unique_ptr<RadioPort> MakeRadioPort(const QString& name, int bitsPerSecond, const IStringSource& strings)
{
    if (TcpRadioPort::IsName(name))
        return std::make_unique<TcpRadioPort>(name, strings);
    return std::make_unique<SerialRadioPort>(name, bitsPerSecond, strings);
}
