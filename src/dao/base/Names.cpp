#include "dao/base/Names.h"
#include "dao/base/Error.h"

namespace dao {

QString Quoted(const QString& name)
{
    return '"' + QString(name).replace('"', "\"\"") + '"';
}

QString QuotedList(const QStringList& names)
{
    QStringList quoted;
    for (const QString& name : names)
        quoted.append(Quoted(name));
    return quoted.join(", ");
}

QString AllEqual(const QStringList& names)
{
    QStringList conditions;
    for (const QString& name : names)
        conditions.append(Quoted(name) + "=?");
    return conditions.join(" AND ");
}

int FieldPosition(const QStringList& names, const QString& name)
{
    // Callers mostly spell a name as the table does, and folding costs more than the rest of reading a field.
    for (qsizetype i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<int>(i);
    for (qsizetype i = 0; i < names.size(); ++i)
        if (names[i].compare(name, Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    throw Error(Kind::NoSuchField, {name});
}

} // namespace dao
