#pragma once

#include <QString>

// The serial adapters that are plugged in. One with a serial number is recognised when it comes back under
// another name.
class SerialAdapters {
public:
    virtual ~SerialAdapters() = default;

    // Vendor, product and serial number of the adapter behind a device; empty for one without a serial
    // number.
    virtual QString IdentityOf(const QString& device) const;
    // The device under which an adapter is plugged in now; empty when it is not.
    virtual QString DeviceOf(const QString& identity) const;

    // Maker, product and their numbers, for a person; empty for a device that is no adapter.
    static QString NameOf(const QString& device);
};
