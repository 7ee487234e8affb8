#pragma once

#include <QString>
#include <memory>

class IniFile;
struct IStringSource;

// Of the log's period. Stored as a number, minutes are 0.
enum class TimeUnit { Minutes, Hours, Days };

// The operator's own settings: section, key, and a text value, kept in one file (see IniFile). A missing
// value reads as its default and nothing is written before a writer runs. A value that does not convert to
// its key's type raises an Error that names section, key and value, except for the log period, which falls
// back to 30. A change that somebody makes to the file while the program runs is seen by the next read.
class Settings {
public:
    // The file and its folder are created at the first write. Raises nothing.
    Settings(const QString& file, const IStringSource& strings);
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    static QString DefaultFile();
    QString FileName() const;

    // The text as it stands in the file, commas and blanks included. Section and key ignore case. Raises
    // Error when the file exists but cannot be read.
    QString Read(const QString& section, const QString& key, const QString& fallback) const;
    // Raises Error when the file cannot be written.
    void Write(const QString& section, const QString& key, const QString& value);

    // For keys of a room's own. Raise Error for what is no number, out of range, or no Boolean.
    int ReadInt(const QString& section, const QString& key, int fallback, int lowest, int highest) const;
    bool ReadBool(const QString& section, const QString& key, bool fallback) const;

    double LogWidth() const; // window units
    void SetLogWidth(double width);
    QString LogView() const; // "text" or "hex"
    void SetLogView(const QString& view);
    TimeUnit LogTimeUnit() const;
    void SetLogTimeUnit(TimeUnit unit);
    int LogTimePeriod() const;
    void SetLogTimePeriod(int period);
    int MaxLogSize() const;
    int MaxAddressListSize() const;
    bool BeepNotify() const;
    void SetBeepNotify(bool on);
    bool PrintfEscapes() const;
    void SetPrintfEscapes(bool on);
    int GetLogonCount() const;
    void IncrementLogonCount();
    int LogFont() const; // step 0..4
    void SetLogFont(int step);
    QString ScadaLastUnit() const;
    void SetScadaLastUnit(const QString& unit);
    QString ScadaSensorName(int sensor) const; // 0..7
    void SetScadaSensorName(int sensor, const QString& name);
    QString ScadaControlName(int control) const; // 0..7
    void SetScadaControlName(int control, const QString& name);
    QString DefaultGroupKey() const;
    void SetDefaultGroupKey(const QString& key);
    QString SerialPort(const QString& fallback) const;
    void SetSerialPort(const QString& port);
    int BaudRate() const; // bits per second
    void SetBaudRate(int baud);

    struct Placement {
        int x = 0, y = 0;
        int width = 600, height = 400; // device-independent pixels
        bool fullScreen = false;
        int windowState = 0; // 0 normal, 1 minimised, 2 maximised
    };
    Placement WindowPlacement() const;
    void SetWindowPlacement(const Placement& placement);

private:
    double ReadDouble(const QString& section, const QString& key, double fallback) const;

    std::unique_ptr<IniFile> m_file;
    const IStringSource& m_strings;
};
