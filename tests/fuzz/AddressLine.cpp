// The line that says whom a message is for.

#include "radio/base/AddressLine.h"
#include "fuzz/Input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString line = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QStringList addresses = ParseAddressLine(line);
    qsizetype letters = 0;
    for (const QString& address : addresses) {
        MUST_HOLD(!address.isEmpty() && address == address.trimmed() && !address.contains(u';'));
        letters += std::count_if(address.begin(), address.end(), [](QChar c) { return !c.isSpace(); });
    }
    // Nothing is lost but what separates.
    MUST_HOLD(letters ==
              std::count_if(line.begin(), line.end(), [](QChar c) { return !c.isSpace() && c != u';'; }));
    MUST_HOLD(ParseAddressLine(addresses.join(u';')) == addresses);
    return 0;
}
