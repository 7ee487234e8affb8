#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

// What the fuzzer has made up, read from front to back; zeros behind its end.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

    bool IsAtEnd() const { return m_rest.empty(); }
    std::uint8_t Octet()
    {
        if (m_rest.empty())
            return 0;
        const std::uint8_t octet = m_rest.front();
        m_rest = m_rest.subspan(1);
        return octet;
    }
    unsigned Word()
    {
        const unsigned high = Octet();
        return high * 256 + Octet();
    }
    // As many as its first octet says.
    std::vector<std::uint8_t> Octets() { return Take(Octet()); }
    std::vector<std::uint8_t> Take(std::size_t count)
    {
        const auto taken = m_rest.first(std::min(count, m_rest.size()));
        m_rest = m_rest.subspan(taken.size());
        return {taken.begin(), taken.end()};
    }
    std::string Text() { return AsText(Octets()); }
    std::vector<std::uint8_t> Rest() { return Take(m_rest.size()); }
    std::string RestAsText() { return AsText(Rest()); }

private:
    static std::string AsText(const std::vector<std::uint8_t>& octets)
    {
        return {octets.begin(), octets.end()};
    }

    std::span<const std::uint8_t> m_rest;
};

// What has to hold for every input; where it does not, the fuzzer keeps the input.
#define MUST_HOLD(condition)                                                                                 \
    do                                                                                                       \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);              \
            std::abort();                                                                                    \
        }                                                                                                    \
    while (false)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
