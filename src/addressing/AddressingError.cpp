#include "addressing/AddressingError.h"

#include <utility>

AddressingError::AddressingError(AddressingCode code, std::vector<std::string> values)
    : m_code(code),
      m_values(std::move(values)),
      m_what("addressing error " + std::to_string(CatalogueIdOf(code)))
{
    for (const std::string& value : m_values) {
        m_what += ' ';
        m_what += value;
    }
}
