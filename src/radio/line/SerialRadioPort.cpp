#include "radio/line/SerialRadioPort.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"
#include "radio/line/PortHolder.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <cerrno>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int LastWordsLimit = 100; // ms

// Name of the group that owns a device, which a user has to join; empty when it cannot be determined.
QString GroupOf(const QString& device)
{
    struct stat status {};
    if (::stat(QFile::encodeName(device).constData(), &status) != 0)
        return {};
    const group* owner = ::getgrgid(status.st_gid);
    return owner ? QString::fromLocal8Bit(owner->gr_name) : QString::number(status.st_gid);
}

bool IsCharacterDevice(const QString& device)
{
    struct stat status {};
    return ::stat(QFile::encodeName(device).constData(), &status) == 0 && S_ISCHR(status.st_mode);
}

} // namespace

SerialRadioPort::SerialRadioPort(const QString& name, int bitsPerSecond, const IStringSource& strings,
                                 std::shared_ptr<const SerialAdapters> adapters)
    : m_name(name),
      m_bitsPerSecond(bitsPerSecond),
      m_strings(strings),
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

void SerialRadioPort::Open(bool wait)
{
    Close();
    m_device = Device();
    QString problem;
    if (!QFileInfo::exists(m_device))
        problem = FormatMessage(m_strings, RadioText::PortAbsent, {m_name});
    else if (!IsCharacterDevice(m_device))
        problem = FormatMessage(m_strings, RadioText::PortNoSerial, {m_name});
    else {
        m_port.setPortName(m_device);
        m_port.setBaudRate(m_bitsPerSecond);
        if (!m_port.open(QIODevice::ReadWrite))
            problem = Problem();
    }
    if (problem.isEmpty()) {
        m_adapter = m_adapters->IdentityOf(m_device);
        Q_EMIT Opened();
    } else if (wait) {
        throw Error(ErrorCode::General, problem);
    } else {
        Q_EMIT Failed(problem);
    }
}

QString SerialRadioPort::Problem() const
{
    if (!QFileInfo::exists(m_device))
        return FormatMessage(m_strings, RadioText::PortAbsent, {m_name});
    const bool permitted = ::access(QFile::encodeName(m_device).constData(), R_OK | W_OK) == 0;
    if (!permitted && (errno == EACCES || errno == EPERM))
        return FormatMessage(m_strings, RadioText::PortNotPermitted, {m_name, GroupOf(m_device)});
    switch (m_port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return FormatMessage(m_strings, RadioText::PortAbsent, {m_name});
    case QSerialPort::PermissionError:
        return BusyText();
    case QSerialPort::UnsupportedOperationError:
        return FormatMessage(m_strings, RadioText::PortNoSerial, {m_name});
    default:
        return FormatMessage(m_strings, RadioText::PortOther, {m_name, m_port.errorString()});
    }
}

QString SerialRadioPort::BusyText() const
{
    if (const auto left = LeftLockOfPort(m_device)) {
        return FormatMessage(m_strings, RadioText::PortLockLeft,
                             {m_name, left->file, QString::number(left->process)});
    }
    const QString holder = HolderOfPort(m_device);
    return holder.isEmpty() ? FormatMessage(m_strings, RadioText::PortBusy, {m_name})
                            : FormatMessage(m_strings, RadioText::PortBusyBy, {m_name, holder});
}

void SerialRadioPort::Close()
{
    if (!m_port.isOpen())
        return;
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
    const QString text = unplugged
                             ? FormatMessage(m_strings, RadioText::PortAbsent, {m_name})
                             : FormatMessage(m_strings, RadioText::PortOther, {m_name, m_port.errorString()});
    Close();
    Q_EMIT Failed(text);
}
