#include "core/settings/Settings.h"

#include "core/base/AppPaths.h"
#include "core/settings/IniFile.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/TextIds.h"

#include <QLocale>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr auto Prefs = "prefs";
constexpr auto Scada = "scada";
constexpr QLatin1String SensorName("sensor");
constexpr QLatin1String ControlName("control");
constexpr auto Regrouping = "dynamic regrouping";
constexpr auto Serial = "serial_comm";
constexpr auto MainWindow = "winMain";

constexpr int LowestInt = std::numeric_limits<int>::min();
constexpr int HighestInt = std::numeric_limits<int>::max();
constexpr int DefaultLogPeriod = 30;
constexpr int DefaultListSize = 500;
constexpr double DefaultLogWidth = 190;
constexpr int DefaultBaud = 9600;

std::optional<double> ParseNumber(const QString& text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// A fraction is rounded, a half to the even neighbour.
std::optional<double> ParseWholeNumber(const QString& text)
{
    const auto value = ParseNumber(text);
    return value ? std::optional(std::nearbyint(*value)) : std::nullopt;
}

std::optional<bool> ParseBool(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    const auto number = ParseNumber(trimmed);
    return number ? std::optional(*number != 0) : std::nullopt;
}

QString BoolText(bool on)
{
    return on ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace

Settings::Settings(const QString& file, const IStringSource& strings)
    : m_file(std::make_unique<IniFile>(file, strings)),
      m_strings(strings)
{
}

Settings::~Settings() = default;

QString Settings::DefaultFile()
{
    return AppPaths::DefaultSettingsFile();
}

QString Settings::FileName() const
{
    return m_file->FileName();
}

QString Settings::Read(const QString& section, const QString& key, const QString& fallback) const
{
    return m_file->Read(section, key).value_or(fallback);
}

void Settings::Write(const QString& section, const QString& key, const QString& value)
{
    m_file->Write(section, {{key, value}});
}

int Settings::ReadInt(const QString& section, const QString& key, int fallback, int lowest, int highest) const
{
    const auto text = m_file->Read(section, key);
    if (!text)
        return fallback;
    const auto value = ParseWholeNumber(*text);
    if (!value)
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, CoreText::SettingNotANumber, {section, key, *text}));
    if (*value < lowest || *value > highest)
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, CoreText::SettingOutOfRange,
                                  {section, key, *text, QString::number(lowest), QString::number(highest)}));
    return static_cast<int>(*value);
}

double Settings::ReadDouble(const QString& section, const QString& key, double fallback) const
{
    const auto text = m_file->Read(section, key);
    if (!text)
        return fallback;
    const auto value = ParseNumber(*text);
    if (!value)
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, CoreText::SettingNotANumber, {section, key, *text}));
    return *value;
}

bool Settings::ReadBool(const QString& section, const QString& key, bool fallback) const
{
    const auto text = m_file->Read(section, key);
    if (!text)
        return fallback;
    const auto value = ParseBool(*text);
    if (!value)
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, CoreText::SettingNotBoolean, {section, key, *text}));
    return *value;
}

double Settings::LogWidth() const
{
    return ReadDouble(Prefs, "log_width", DefaultLogWidth);
}

void Settings::SetLogWidth(double width)
{
    Write(Prefs, "log_width", QString::number(width, 'g', QLocale::FloatingPointShortest));
}

QString Settings::LogView() const
{
    return Read(Prefs, "log_view", "text");
}

void Settings::SetLogView(const QString& view)
{
    Write(Prefs, "log_view", view);
}

TimeUnit Settings::LogTimeUnit() const
{
    return static_cast<TimeUnit>(ReadInt(Prefs, "log_time_unit", static_cast<int>(TimeUnit::Minutes),
                                         static_cast<int>(TimeUnit::Minutes),
                                         static_cast<int>(TimeUnit::Days)));
}

void Settings::SetLogTimeUnit(TimeUnit unit)
{
    Write(Prefs, "log_time_unit", QString::number(static_cast<int>(unit)));
}

int Settings::LogTimePeriod() const
{
    const auto value = ParseWholeNumber(Read(Prefs, "log_time_period", {}));
    return value && *value >= 1 && *value <= HighestInt ? static_cast<int>(*value) : DefaultLogPeriod;
}

void Settings::SetLogTimePeriod(int period)
{
    Write(Prefs, "log_time_period", QString::number(period));
}

int Settings::MaxLogSize() const
{
    return ReadInt(Prefs, "maxlogsize", DefaultListSize, 1, HighestInt);
}

int Settings::MaxAddressListSize() const
{
    return ReadInt(Prefs, "maxaddresslistsize", DefaultListSize, 1, HighestInt);
}

bool Settings::BeepNotify() const
{
    return ReadBool(Prefs, "beepnotify", true);
}

void Settings::SetBeepNotify(bool on)
{
    Write(Prefs, "beepnotify", BoolText(on));
}

bool Settings::PrintfEscapes() const
{
    return ReadBool(Prefs, "printf_escapes", false);
}

void Settings::SetPrintfEscapes(bool on)
{
    Write(Prefs, "printf_escapes", BoolText(on));
}

int Settings::GetLogonCount() const
{
    return ReadInt(Prefs, "logoncount", 0, LowestInt, HighestInt);
}

void Settings::IncrementLogonCount()
{
    const int count = GetLogonCount();
    Write(Prefs, "logoncount", QString::number(count == HighestInt ? count : count + 1));
}

int Settings::LogFont() const
{
    return ReadInt(Prefs, "logfont", 0, 0, 4);
}

void Settings::SetLogFont(int step)
{
    Write(Prefs, "logfont", QString::number(step));
}

QString Settings::ScadaLastUnit() const
{
    return Read(Scada, "last", QString());
}

void Settings::SetScadaLastUnit(const QString& unit)
{
    Write(Scada, "last", unit);
}

QString Settings::ScadaSensorName(int sensor) const
{
    return Read(Scada, QString::number(sensor) + SensorName, QString());
}

void Settings::SetScadaSensorName(int sensor, const QString& name)
{
    Write(Scada, QString::number(sensor) + SensorName, name);
}

QString Settings::ScadaControlName(int control) const
{
    return Read(Scada, QString::number(control) + ControlName, QString());
}

void Settings::SetScadaControlName(int control, const QString& name)
{
    Write(Scada, QString::number(control) + ControlName, name);
}

QString Settings::DefaultGroupKey() const
{
    return Read(Regrouping, "defgroupkey", QString());
}

void Settings::SetDefaultGroupKey(const QString& key)
{
    Write(Regrouping, "defgroupkey", key);
}

QString Settings::SerialPort(const QString& fallback) const
{
    return Read(Serial, "port", fallback);
}

void Settings::SetSerialPort(const QString& port)
{
    Write(Serial, "port", port);
}

int Settings::BaudRate() const
{
    return ReadInt(Serial, "baudrate", DefaultBaud, 1, HighestInt);
}

void Settings::SetBaudRate(int baud)
{
    Write(Serial, "baudrate", QString::number(baud));
}

Settings::Placement Settings::WindowPlacement() const
{
    Placement placement;
    placement.x = ReadInt(MainWindow, "x", placement.x, LowestInt, HighestInt);
    placement.y = ReadInt(MainWindow, "y", placement.y, LowestInt, HighestInt);
    placement.width = ReadInt(MainWindow, "wi", placement.width, 0, HighestInt);
    placement.height = ReadInt(MainWindow, "hi", placement.height, 0, HighestInt);
    placement.fullScreen = ReadBool(MainWindow, "fullscreen", placement.fullScreen);
    placement.windowState = ReadInt(MainWindow, "windowstate", placement.windowState, 0, 2);
    return placement;
}

void Settings::SetWindowPlacement(const Placement& placement)
{
    m_file->Write(MainWindow, {{"x", QString::number(placement.x)},
                               {"y", QString::number(placement.y)},
                               {"wi", QString::number(placement.width)},
                               {"hi", QString::number(placement.height)},
                               {"fullscreen", BoolText(placement.fullScreen)},
                               {"windowstate", QString::number(placement.windowState)}});
}
