#include "radio/line/SystemSerialPorts.h"

#include <QSerialPortInfo>
#include <algorithm>

namespace {

QString Description(const QSerialPortInfo& info)
{
    QStringList parts;
    for (const QString& part : {info.manufacturer(), info.description()}) {
        const QString text = QString(part).replace(QLatin1Char('_'), QLatin1Char(' ')).simplified();
        if (!text.isEmpty() && !parts.contains(text))
            parts.append(text);
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

std::vector<SerialPortChoice> SystemSerialPorts::Ports() const
{
    std::vector<SerialPortChoice> ports;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        ports.push_back({info.systemLocation(), Description(info)});
    std::sort(ports.begin(), ports.end(),
              [](const SerialPortChoice& a, const SerialPortChoice& b) { return a.port < b.port; });
    return ports;
}
