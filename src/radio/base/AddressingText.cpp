#include "radio/base/AddressingText.h"

#include "addressing/AddressingError.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"

Error AddressingFailure(const AddressingError& failure, const IStringSource& strings)
{
    QStringList values;
    for (const std::string& value : failure.Values())
        values.append(QString::fromStdString(value));
    const int id = CatalogueIdOf(failure.Code());
    return Error(ErrorCode::First + static_cast<quint32>(id), FormatMessage(strings, id, values));
}
