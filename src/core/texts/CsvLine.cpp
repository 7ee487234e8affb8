#include "core/texts/CsvLine.h"

#include <algorithm>

namespace {

QString Quoted(const QString& field)
{
    const bool needed = std::any_of(field.begin(), field.end(),
                                    [](QChar c) { return c == ',' || c == '"' || c == '\n' || c == '\r'; });
    return needed ? '"' + QString(field).replace("\"", "\"\"") + '"' : field;
}

} // namespace

QString CsvLine(const QStringList& fields)
{
    QStringList quoted;
    for (const QString& field : fields)
        quoted.append(Quoted(field));
    return quoted.join(',') + '\n';
}
