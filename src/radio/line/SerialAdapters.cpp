#include "radio/line/SerialAdapters.h"

#include <QSerialPortInfo>

namespace {

QString Identity(const QSerialPortInfo& port)
{
    if (port.serialNumber().isEmpty())
        return {};
    return QStringLiteral("%1:%2:%3")
        .arg(port.vendorIdentifier(), 4, 16, QLatin1Char('0'))
        .arg(port.productIdentifier(), 4, 16, QLatin1Char('0'))
        .arg(port.serialNumber());
}

} // namespace

QString SerialAdapters::IdentityOf(const QString& device) const
{
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        if (port.systemLocation() == device)
            return Identity(port);
    return {};
}

QString SerialAdapters::DeviceOf(const QString& identity) const
{
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        if (Identity(port) == identity)
            return port.systemLocation();
    return {};
}

QString SerialAdapters::NameOf(const QString& device)
{
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        if (port.systemLocation() != device || !port.hasVendorIdentifier())
            continue;
        return QStringLiteral("%1 %2 (%3:%4)")
            .arg(port.manufacturer(), port.description())
            .arg(port.vendorIdentifier(), 4, 16, QLatin1Char('0'))
            .arg(port.productIdentifier(), 4, 16, QLatin1Char('0'))
            .simplified();
    }
    return {};
}
