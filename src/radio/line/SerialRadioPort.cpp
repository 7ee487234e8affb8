#include "radio/line/SerialRadioPort.h"

#include "radio/line/PortHolder.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int LastWordsLimit = 100; // ms

// The group that owns a device, which a user has to join.
QString GroupOf(const QString& device)
{
    const QFileInfo file(device);
    return file.group().isEmpty() ? QString::number(file.groupId()) : file.group();
}

bool IsCharacterDevice(const QString& device)
{
    struct stat status {};
    return ::stat(QFile::encodeName(device).constData(), &status) == 0 && S_ISCHR(status.st_mode);
}

} // namespace

SerialRadioPort::SerialRadioPort(const QString& name, int bitsPerSecond,
                                 std::shared_ptr<const SerialAdapters> adapters)
    : m_name(name),
      m_bitsPerSecond(bitsPerSecond),
      m_adapters(std::move(adapters))
{
    connect(&m_port, &QSerialPort::readyRead, this, [this] { Q_EMIT Received(m_port.readAll()); });
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialRadioPort::OnError);
}

QString SerialRadioPort::DevicePath(const QString& name)
{
    static const QRegularExpression com(QStringLiteral("^COM([1-9][0-9]{0,2}):?$"),
                                        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = com.match(name);
    if (match.hasMatch())
        return QStringLiteral("/dev/ttyS%1").arg(match.captured(1).toInt() - 1);
    return name.startsWith(QLatin1Char('/')) ? name : QStringLiteral("/dev/") + name;
}

QString SerialRadioPort::Device() const
{
    const QString known = m_adapter.isEmpty() ? QString() : m_adapters->DeviceOf(m_adapter);
    if (!known.isEmpty())
        return known;
    const QString path = DevicePath(m_name);
    // A link is followed, so that two names of one device share one lock.
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

void SerialRadioPort::Open()
{
    Close();
    m_device = Device();
    if (!QFileInfo::exists(m_device)) {
        Q_EMIT Failed({PortProblem::Kind::Absent, {m_name}});
        return;
    }
    if (!IsCharacterDevice(m_device)) {
        Q_EMIT Failed({PortProblem::Kind::NotSerial, {m_name}});
        return;
    }
    m_port.setPortName(m_device);
    m_port.setBaudRate(m_bitsPerSecond);
    if (!m_port.open(QIODevice::ReadWrite)) {
        Q_EMIT Failed(Problem());
        return;
    }
    m_adapter = m_adapters->IdentityOf(m_device);
    Q_EMIT Opened();
}

PortProblem SerialRadioPort::Problem() const
{
    if (!QFileInfo::exists(m_device))
        return {PortProblem::Kind::Absent, {m_name}};
    const bool permitted = ::access(QFile::encodeName(m_device).constData(), R_OK | W_OK) == 0;
    if (!permitted && (errno == EACCES || errno == EPERM))
        return {PortProblem::Kind::NotPermitted, {m_name, GroupOf(m_device)}};
    switch (m_port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return {PortProblem::Kind::Absent, {m_name}};
    case QSerialPort::PermissionError:
        return Busy();
    case QSerialPort::UnsupportedOperationError:
        return {PortProblem::Kind::NotSerial, {m_name}};
    default:
        return Other();
    }
}

PortProblem SerialRadioPort::Busy() const
{
    if (const auto left = LeftLockOfPort(m_device))
        return {PortProblem::Kind::LockLeft, {m_name, left->file, QString::number(left->process)}};
    const QString holder = HolderOfPort(m_device);
    if (holder.isEmpty())
        return {PortProblem::Kind::Busy, {m_name}};
    return {PortProblem::Kind::BusyBy, {m_name, holder}};
}

PortProblem SerialRadioPort::Other() const
{
    return {PortProblem::Kind::Other, {m_name, m_port.errorString()}};
}

void SerialRadioPort::Close()
{
    if (!m_port.isOpen())
        return;
    // What fails now is of no interest any more.
    const QSignalBlocker blocker(m_port);
    // Let the last words out, perhaps a hang-up.
    if (m_port.error() == QSerialPort::NoError && m_port.bytesToWrite() > 0)
        m_port.waitForBytesWritten(LastWordsLimit);
    m_port.close();
}

void SerialRadioPort::Write(const QByteArray& octets)
{
    if (m_port.isOpen())
        m_port.write(octets);
}

// Only what ends the line counts; a modem line that the device lacks is not a failure.
void SerialRadioPort::OnError(QSerialPort::SerialPortError error)
{
    const bool gone = error == QSerialPort::ResourceError || error == QSerialPort::DeviceNotFoundError ||
                      error == QSerialPort::ReadError || error == QSerialPort::WriteError;
    if (!gone || !m_port.isOpen())
        return;
    // The device may still be there for a moment when its line is already dead.
    const bool unplugged = error == QSerialPort::ResourceError || !QFileInfo::exists(m_device);
    const PortProblem problem = unplugged ? PortProblem{PortProblem::Kind::Absent, {m_name}} : Other();
    Close();
    Q_EMIT Failed(problem);
}
