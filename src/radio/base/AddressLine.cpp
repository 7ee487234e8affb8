#include "radio/base/AddressLine.h"

QStringList ParseAddressLine(const QString& line)
{
    QStringList addresses;
    for (const QString& piece : line.split(QLatin1Char(';'))) {
        const QString address = piece.trimmed();
        if (!address.isEmpty())
            addresses.append(address);
    }
    return addresses;
}
