#include "ctl/files/OwnNumberingFile.h"

#include "addressing/RadioAddress.h"
#include "core/texts/Errors.h"
#include "exchange/InputFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace {

struct Field {
    const char* name;
    int RadioNumbering::*member;
    int lowest;
    int highest;
};

constexpr Field Fields[] = {
    {"prefix", &RadioNumbering::prefix, 0, HighestPrefix},
    {"ident", &RadioNumbering::ident, 0, HighestIdent},
    {"unitBaseIdent", &RadioNumbering::unitBaseIdent, 0, HighestIdent},
    {"unitMaxIdent", &RadioNumbering::unitMaxIdent, 0, HighestIdent},
    {"groupBaseIdent", &RadioNumbering::groupBaseIdent, 0, HighestIdent},
    {"groupMaxIdent", &RadioNumbering::groupMaxIdent, 0, HighestIdent},
    {"unitDigits", &RadioNumbering::unitDigits, 2, 3},
    {"groupDigits", &RadioNumbering::groupDigits, 2, 3},
};

[[noreturn]] void RaiseFieldError(const QString& path, const Field& field, const QString& reason)
{
    throw Error(ErrorCode::General,
                QStringLiteral("%1: field \"%2\" %3").arg(path, QLatin1String(field.name), reason));
}

int ReadField(const QString& path, const QJsonObject& object, const Field& field)
{
    const QJsonValue value = object.value(QLatin1String(field.name));
    if (value.isUndefined())
        RaiseFieldError(path, field, QStringLiteral("is missing"));
    const double number = value.toDouble();
    if (!value.isDouble() || std::floor(number) != number)
        RaiseFieldError(path, field, QStringLiteral("is not a whole number"));
    if (number < field.lowest || number > field.highest)
        RaiseFieldError(path, field, QStringLiteral("is not in %1..%2").arg(field.lowest).arg(field.highest));
    return static_cast<int>(number);
}

} // namespace

RadioNumbering ReadOwnNumbering(const QString& path)
{
    const QByteArray bytes = ReadInputFile(path);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        throw Error(ErrorCode::General, QStringLiteral("%1, line %2: %3")
                                            .arg(path)
                                            .arg(bytes.left(error.offset).count('\n') + 1)
                                            .arg(error.errorString()));
    if (!document.isObject())
        throw Error(ErrorCode::General, QStringLiteral("%1: this is not a JSON object").arg(path));
    RadioNumbering numbering;
    for (const Field& field : Fields)
        numbering.*field.member = ReadField(path, document.object(), field);
    return numbering;
}
