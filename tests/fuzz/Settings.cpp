// The settings file, which people change by hand; what the program writes into it stands there afterwards,
// and what stood there before still does.

#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "fuzz/Input.h"
#include "fuzz/ScratchFile.h"

#include <functional>
#include <optional>
#include <utility>

namespace {

struct AnyText : IStringSource {
    QString LoadString(int id) const override { return QString::number(id) + QStringLiteral(" #01 #02 #03"); }
};

// Nothing where that key of the file means nothing.
template <typename Value> std::optional<Value> Ask(const std::function<Value()>& read)
{
    try {
        return read();
    } catch (const Error& error) {
        MUST_HOLD(!error.Description().isEmpty());
        return std::nullopt;
    }
}

void ReadAll(const Settings& settings)
{
    Ask<double>([&] { return settings.LogWidth(); });
    Ask<QString>([&] { return settings.LogView(); });
    Ask<int>([&] { return static_cast<int>(settings.LogTimeUnit()); });
    Ask<int>([&] { return settings.LogTimePeriod(); });
    Ask<int>([&] { return settings.MaxLogSize(); });
    Ask<int>([&] { return settings.MaxAddressListSize(); });
    Ask<bool>([&] { return settings.BeepNotify(); });
    Ask<bool>([&] { return settings.PrintfEscapes(); });
    Ask<int>([&] { return settings.GetLogonCount(); });
    Ask<int>([&] { return settings.LogFont(); });
    Ask<QString>([&] { return settings.ScadaSensorName(3); });
    Ask<QString>([&] { return settings.SerialPort(QStringLiteral("COM1")); });
    Ask<int>([&] { return settings.BaudRate(); });
    Ask<int>([&] { return settings.WindowPlacement().x; });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ScratchFile file;
    static const AnyText strings;
    Input input(data, size);
    const QString value = QString::fromStdString(input.Text());
    const std::vector<std::uint8_t> bytes = input.Rest();
    file.Fill({reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())});

    Settings settings(file.Name(), strings);
    ReadAll(settings);
    const auto port = Ask<QString>([&] { return settings.SerialPort(QStringLiteral("COM1")); });
    if (!port)
        return 0; // it cannot be read at all
    settings.SetScadaLastUnit(value);
    settings.SetDefaultGroupKey(value);
    const Settings anew(file.Name(), strings);
    for (const Settings* one : {&std::as_const(settings), &anew}) {
        MUST_HOLD(one->ScadaLastUnit() == value);
        MUST_HOLD(one->DefaultGroupKey() == value);
        MUST_HOLD(one->SerialPort(QStringLiteral("COM1")) == *port);
    }
    return 0;
}
