#include "core/texts/Errors.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/base/Error.h"

Error::Error(quint32 code, QString description)
    : m_code(code),
      m_description(std::move(description)),
      m_what(m_description.toStdString())
{
}

void RaiseCatalogueError(const IStringSource& strings, int id)
{
    throw Error(ErrorCode::First + static_cast<quint32>(id), strings.LoadString(id));
}

QString DescribeError(const std::exception& failure, const IStringSource& strings)
{
    if (const auto* error = dynamic_cast<const Error*>(&failure))
        return error->Description();
    if (const auto* error = dynamic_cast<const dao::Error*>(&failure))
        return FormatMessage(strings, dao::TextId(*error), error->values);
    return QString::fromUtf8(failure.what());
}

bool WasGivenUp(const std::exception& failure)
{
    const auto* error = dynamic_cast<const dao::Error*>(&failure);
    return error && error->kind == dao::Kind::GivenUp;
}

quint32 CodeOf(const std::exception& failure)
{
    const auto* error = dynamic_cast<const Error*>(&failure);
    return error ? error->Code() : ErrorCode::General;
}
