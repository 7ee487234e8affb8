#pragma once

#include "addressing/TextIds.h"

#include <exception>
#include <string>
#include <vector>

// A number, address or fleet that cannot be converted or accepted. The sentence that a person reads is made
// from the catalogue by whoever shows it: the entry CatalogueIdOf(Code()) with Values() for its
// placeholders.
class AddressingError : public std::exception {
public:
    explicit AddressingError(AddressingCode code, std::vector<std::string> values = {});

    AddressingCode Code() const { return m_code; }
    const std::vector<std::string>& Values() const { return m_values; }
    // For a log: catalogue id and values.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    AddressingCode m_code;
    std::vector<std::string> m_values;
    std::string m_what;
};

// Id of the catalogue entry whose placeholders #01, #02 … take an error's Values(), in order.
constexpr int CatalogueIdOf(AddressingCode code)
{
    return static_cast<int>(code);
}
