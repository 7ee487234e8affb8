#pragma once

#include <QString>
#include <array>

struct IStringSource;

// The status messages of the network in words, by code 0..31. Shared by the log and the radio agent.
class StatusTexts {
public:
    static constexpr int Codes = 32;

    explicit StatusTexts(const IStringSource& strings);

    void Clear();
    // Raises Error for a code outside 0..31.
    void Set(int code, const QString& inDescription, const QString& outDescription, bool emergency = false);

    // "05 - Arrived", or "Status 5 in." for a code without a row. Raise Error for a code outside 0..31.
    QString StatusInText(int code) const;
    QString StatusOutText(int code) const;

    // Whether an administrator has marked it so; false for a code outside 0..31.
    bool IsEmergency(int code) const;

    // "05 - Arrived"
    static QString Line(int code, const QString& description);

private:
    std::size_t Index(int code) const;

    const IStringSource& m_strings;
    std::array<QString, Codes> m_in;
    std::array<QString, Codes> m_out;
    std::array<bool, Codes> m_emergency{};
};
