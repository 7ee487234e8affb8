#include "core/Settings.h"

#include "core/AppPaths.h"
#include "core/Errors.h"
#include "core/FormatMessage.h"
#include "core/IniFile.h"
#include "core/TextIds.h"

#include <QLocale>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr auto prefs = "prefs";
constexpr auto scada = "scada";
constexpr QLatin1String sensorName("sensor");
constexpr QLatin1String controlName("control");
constexpr auto regrouping = "dynamic regrouping";
constexpr auto serial = "serial_comm";
constexpr auto mainWindow = "winMain";

constexpr int lowestInt = std::numeric_limits<int>::min();
constexpr int highestInt = std::numeric_limits<int>::max();
constexpr int defaultLogPeriod = 30;
constexpr int defaultListSize = 500;
constexpr double defaultLogWidth = 190;
constexpr int defaultBaud = 9600;

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
                    FormatMessage(m_strings, core::textSettingNotANumber, {section, key, *text}));
    if (*value < lowest || *value > highest)
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, core::textSettingOutOfRange,
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
                    FormatMessage(m_strings, core::textSettingNotANumber, {section, key, *text}));
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
                    FormatMessage(m_strings, core::textSettingNotBoolean, {section, key, *text}));
    return *value;
}

double Settings::LogWidth() const
{
    return ReadDouble(prefs, "log_width", defaultLogWidth);
}

void Settings::SetLogWidth(double width)
{
    Write(prefs, "log_width", QString::number(width, 'g', QLocale::FloatingPointShortest));
}

QString Settings::LogView() const
{
    return Read(prefs, "log_view", "text");
}

void Settings::SetLogView(const QString& view)
{
    Write(prefs, "log_view", view);
}

int Settings::LogTimeUnit() const
{
    return ReadInt(prefs, "log_time_unit", 0, 0, 2);
}

void Settings::SetLogTimeUnit(int unit)
{
    Write(prefs, "log_time_unit", QString::number(unit));
}

int Settings::LogTimePeriod() const
{
    const auto value = ParseWholeNumber(Read(prefs, "log_time_period", {}));
    return value && *value >= 1 && *value <= highestInt ? static_cast<int>(*value) : defaultLogPeriod;
}

void Settings::SetLogTimePeriod(int period)
{
    Write(prefs, "log_time_period", QString::number(period));
}

int Settings::MaxLogSize() const
{
    return ReadInt(prefs, "maxlogsize", defaultListSize, 1, highestInt);
}

int Settings::MaxAddressListSize() const
{
    return ReadInt(prefs, "maxaddresslistsize", defaultListSize, 1, highestInt);
}

bool Settings::BeepNotify() const
{
    return ReadBool(prefs, "beepnotify", true);
}

void Settings::SetBeepNotify(bool on)
{
    Write(prefs, "beepnotify", BoolText(on));
}

bool Settings::PrintfEscapes() const
{
    return ReadBool(prefs, "printf_escapes", false);
}

void Settings::SetPrintfEscapes(bool on)
{
    Write(prefs, "printf_escapes", BoolText(on));
}

int Settings::GetLogonCount() const
{
    return ReadInt(prefs, "logoncount", 0, lowestInt, highestInt);
}

void Settings::IncrementLogonCount()
{
    const int count = GetLogonCount();
    Write(prefs, "logoncount", QString::number(count == highestInt ? count : count + 1));
}

int Settings::LogFont() const
{
    return ReadInt(prefs, "logfont", 0, 0, 4);
}

void Settings::SetLogFont(int step)
{
    Write(prefs, "logfont", QString::number(step));
}

QString Settings::ScadaLastUnit() const
{
    return Read(scada, "last", QString());
}

void Settings::SetScadaLastUnit(const QString& unit)
{
    Write(scada, "last", unit);
}

QString Settings::ScadaSensorName(int sensor) const
{
    return Read(scada, QString::number(sensor) + sensorName, QString());
}

void Settings::SetScadaSensorName(int sensor, const QString& name)
{
    Write(scada, QString::number(sensor) + sensorName, name);
}

QString Settings::ScadaControlName(int control) const
{
    return Read(scada, QString::number(control) + controlName, QString());
}

void Settings::SetScadaControlName(int control, const QString& name)
{
    Write(scada, QString::number(control) + controlName, name);
}

QString Settings::DefaultGroupKey() const
{
    return Read(regrouping, "defgroupkey", QString());
}

void Settings::SetDefaultGroupKey(const QString& key)
{
    Write(regrouping, "defgroupkey", key);
}

QString Settings::SerialPort(const QString& fallback) const
{
    return Read(serial, "port", fallback);
}

void Settings::SetSerialPort(const QString& port)
{
    Write(serial, "port", port);
}

int Settings::BaudRate() const
{
    return ReadInt(serial, "baudrate", defaultBaud, 1, highestInt);
}

void Settings::SetBaudRate(int baud)
{
    Write(serial, "baudrate", QString::number(baud));
}

Settings::Placement Settings::WindowPlacement() const
{
    Placement placement;
    placement.x = ReadInt(mainWindow, "x", placement.x, lowestInt, highestInt);
    placement.y = ReadInt(mainWindow, "y", placement.y, lowestInt, highestInt);
    placement.width = ReadInt(mainWindow, "wi", placement.width, 0, highestInt);
    placement.height = ReadInt(mainWindow, "hi", placement.height, 0, highestInt);
    placement.fullScreen = ReadBool(mainWindow, "fullscreen", placement.fullScreen);
    placement.windowState = ReadInt(mainWindow, "windowstate", placement.windowState, 0, 2);
    return placement;
}

void Settings::SetWindowPlacement(const Placement& placement)
{
    m_file->Write(mainWindow, {{"x", QString::number(placement.x)},
                               {"y", QString::number(placement.y)},
                               {"wi", QString::number(placement.width)},
                               {"hi", QString::number(placement.height)},
                               {"fullscreen", BoolText(placement.fullScreen)},
                               {"windowstate", QString::number(placement.windowState)}});
}
